"""Shared fixtures of the Python tests: small objects and scenes built afresh for each test."""

from typing import Iterator

import pytest

import facet


@pytest.fixture
def box() -> facet.Box:
    return facet.Box(2.0, 3.0, 4.0, name="box")


@pytest.fixture
def scene() -> facet.Scene:
    """A root box with a cylinder under it, and a light."""
    s = facet.Scene()
    base = s.add(facet.Box(2.0, 1.0, 2.0, name="base", color=facet.Color(200, 60, 60)))
    s.add(
        facet.Cylinder(1.5, 0.5, 16, name="post", position=(1.0, 1.0, 1.0),
                       orientation=((0.0, 0.0, 1.0), 30.0)),
        parent=base,
    )
    s.add(facet.Light(name="sun", position=(3.0, 6.0, 4.0)))
    return s


@pytest.fixture
def texture_store() -> Iterator[facet.TextureStore]:
    store = facet.TextureStore()
    facet.set_texture_manager(store)
    yield store
    facet.set_texture_manager(None)
