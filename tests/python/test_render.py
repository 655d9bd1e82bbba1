"""Rendering through the OpenGL module into arrays and PNG files, and glTF export."""

import json
from pathlib import Path

import numpy as np
import pytest

import facet

pytestmark = pytest.mark.skipif(not facet.HAS_RENDER, reason="built without the tool")

SIZE = (96, 64)


def red_box_scene() -> facet.Scene:
    s = facet.Scene()
    s.add(facet.Box(2.0, 2.0, 2.0, name="box", color=facet.Color(220, 30, 30)))
    return s


def test_render_returns_the_image_as_an_array() -> None:
    image = facet.render(red_box_scene(), size=SIZE)
    assert image is not None and image.shape == (64, 96, 4) and image.dtype == np.uint8
    assert image.flags.c_contiguous
    np.testing.assert_array_equal(image[0, 0, :3], [236, 239, 244])  # the background
    centre = image[32, 48].astype(int)
    assert centre[0] > 2 * centre[1] and centre[0] > 2 * centre[2]  # the red box, lit


@pytest.mark.parametrize("size", [(1, 1), (facet.MAX_RENDER_SIZE, 1), (1, facet.MAX_RENDER_SIZE)])
def test_smallest_and_largest_sizes(size: tuple[int, int]) -> None:
    image = facet.render(red_box_scene(), size=size, shadows=False, outlines=False)
    assert image is not None and image.shape == (size[1], size[0], 4)
    with pytest.raises(ValueError, match="size"):
        facet.render(red_box_scene(), size=(size[0] + facet.MAX_RENDER_SIZE, size[1]))


def test_black_and_white_mode_and_background() -> None:
    s = red_box_scene()
    bw = facet.render(s, size=SIZE, bw=True)
    assert bw is not None
    np.testing.assert_array_equal(bw[0, 0, :3], [255, 255, 255])
    assert np.all(bw[..., 0] == bw[..., 1])  # grey levels only
    assert bw[..., 0].min() < 60  # black outlines
    plain = facet.render(s, size=SIZE, bw=True, outlines=False)
    assert plain is not None and plain[..., 0].min() > bw[..., 0].min()
    blue = facet.render(s, size=SIZE, background=facet.Color(0, 0, 255))
    assert blue is not None and blue[0, 0, :3].tolist() == [0, 0, 255]


def test_render_with_an_explicit_camera_sees_the_box_where_it_projects() -> None:
    s = red_box_scene()
    image = facet.render(s, size=SIZE, eye=(1.0, 1.0, 12.0), target=(1.0, 1.0, 1.0),
                         shadows=False)
    assert image is not None
    r, b = image[..., 0].astype(int), image[..., 2].astype(int)
    red = (r > 40) & (r > 3 * b)
    rows, cols = np.nonzero(red)
    assert abs(rows.mean() - 31.5) < 2 and abs(cols.mean() - 47.5) < 2


def test_render_to_a_png_file_keeps_the_scene_as_it_was(tmp_path: Path,
                                                        texture_store: facet.TextureStore) -> None:
    s = red_box_scene()
    s["box"].material = "hatch"
    path = tmp_path / "out.png"
    assert facet.render(s, str(path), size=SIZE, bw=True) is None
    assert path.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"
    # The hatch texture was switched on for the frame only; the registered store still works.
    assert not s["box"].texturing and s["box"].texture_id == 0
    assert facet.labels().texture_id("after") in texture_store.ids
    with pytest.raises(facet.RenderError):
        facet.render(s, str(tmp_path / "missing" / "out.png"), size=SIZE)


def test_export_gltf(tmp_path: Path, scene: facet.Scene) -> None:
    facet.export_gltf(scene, str(tmp_path / "s.glb"))
    assert (tmp_path / "s.glb").read_bytes()[:4] == b"glTF"
    facet.export_gltf(scene, str(tmp_path / "s.gltf"), edges=True)
    doc = json.loads((tmp_path / "s.gltf").read_text())
    assert [n["name"] for n in doc["nodes"]] == ["base", "post", "sun"]
    assert doc["nodes"][0]["children"] == [1]
    with pytest.raises(ValueError, match="glb or .gltf"):
        facet.export_gltf(scene, str(tmp_path / "s.obj"))
