"""The host kit from Python: ownership, hierarchy, lookup, world matrices and scene files."""

import gc
import math
from pathlib import Path

import numpy as np
import pytest

import facet


def rotation_z(degrees: float) -> np.ndarray:  # type: ignore[type-arg]
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return np.array([[c, -s, 0, 0], [s, c, 0, 0], [0, 0, 1, 0], [0, 0, 0, 1]])


def translation(x: float, y: float, z: float) -> np.ndarray:  # type: ignore[type-arg]
    m = np.eye(4)
    m[:3, 3] = (x, y, z)
    return m


def test_iteration_lookup_and_hierarchy(scene: facet.Scene) -> None:
    assert [o.name for o in scene] == ["base", "post", "sun"]
    assert [type(o).__name__ for o in scene.objects()] == ["Box", "Cylinder", "Light"]
    post = scene["post"]
    assert post is scene[1] is scene[-2] is scene.find("post")
    assert scene[0].name == "base" and scene[-3] is scene[0]
    assert post.parent is scene["base"] and scene["base"].children == [post]
    assert scene.find("nothing") is None and scene.index(post) == 1
    with pytest.raises(KeyError):
        scene["nothing"]
    with pytest.raises(IndexError):
        scene[3]


def test_world_matrices_compose_parents(scene: facet.Scene) -> None:
    scene["base"].position = (5.0, 0.0, 0.0)
    scene["base"].orientation = ((0.0, 0.0, 1.0), 90.0)
    w = scene.world_matrices()
    assert w.shape == (3, 4, 4)
    base = translation(5, 0, 0) @ rotation_z(90)
    np.testing.assert_allclose(w[0], base, atol=1e-15)
    np.testing.assert_allclose(w[1], base @ translation(1, 1, 1) @ rotation_z(30), atol=1e-15)
    # The same bits as the object's own matrix, and a point goes through it.
    np.testing.assert_array_equal(w[1], scene["post"].world_matrix)
    p = scene["post"].to_world((0.0, 1.0, 0.0))
    np.testing.assert_allclose(p, (w[1] @ [0, 1, 0, 1])[:3], atol=1e-15)
    np.testing.assert_allclose(scene["post"].to_object(p), (0.0, 1.0, 0.0), atol=1e-12)


def test_round_trip_through_a_file(scene: facet.Scene, tmp_path: Path) -> None:
    path = tmp_path / "s.scene"
    scene["post"].brush = facet.Brush(facet.Color(10, 20, 30, 40), style=2)
    scene["base"].position = (0.1, 1.0 / 3.0, -2.5e-7)
    facet.write_scene(scene, str(path))
    back = facet.read_scene(str(path))
    assert [(o.type, o.name) for o in back] == [(o.type, o.name) for o in scene]
    np.testing.assert_array_equal(back.world_matrices(), scene.world_matrices())
    assert back["post"].brush == scene["post"].brush and back["post"].parent is back["base"]
    np.testing.assert_array_equal(scene["base"].mesh().vertices, back["base"].mesh().vertices)
    post = back["post"]
    assert isinstance(post, facet.Cylinder) and post.divisions == 6  # not kept by the format
    assert facet.scene_to_string(back).encode() == path.read_bytes()


def test_format_errors_name_the_line() -> None:
    text = "beginscene\r\nprimitive box\r\n  name lid\r\n  bogus\r\n"
    with pytest.raises(facet.FormatError, match=r"^broken:\d+: box"):
        facet.scene_from_string(text, "broken")
    with pytest.raises(facet.FormatError, match="cannot open"):
        facet.read_scene("/nonexistent/s.scene")
    assert issubclass(facet.FormatError, ValueError)


def test_ownership_moves_to_the_scene_and_back() -> None:
    s = facet.Scene()
    box = facet.Box(1, 2, 3, name="b")
    assert s.add(box) is box and box.in_scene and box in s
    with pytest.raises(ValueError, match="already belongs"):
        s.add(box)
    with pytest.raises(ValueError, match="already belongs"):
        facet.Scene().add(box)
    assert s.remove(box) and not box.in_scene and len(s) == 0
    assert not s.remove(box)
    del s
    gc.collect()
    assert box.mesh().num_faces == 12  # the object lives on with its Python object


def test_objects_keep_their_scene_alive() -> None:
    scene = facet.Scene()
    scene.add(facet.Cone(2.0, 1.0, name="c"))
    cone = scene["c"]
    del scene
    gc.collect()
    assert cone.in_scene and cone.mesh().num_faces == 24


def test_remove_and_clear_turn_children_into_roots(scene: facet.Scene) -> None:
    post = scene["post"]
    assert scene.remove(scene["base"])
    assert post.parent is None and [o.name for o in scene] == ["post", "sun"]
    scene.clear()
    assert len(scene) == 0 and not post.in_scene and post.mesh().num_faces == 64


def test_parent_links_are_checked(scene: facet.Scene) -> None:
    base, post = scene["base"], scene["post"]
    with pytest.raises(ValueError):
        scene.set_parent(base, post)  # would close a cycle
    with pytest.raises(ValueError, match="not in this scene"):
        scene.add(facet.Box(), parent=facet.Box())
    scene.set_parent(post, None)
    assert post.parent is None and base.children == []


def test_bounds_of_the_scene(scene: facet.Scene) -> None:
    lo, hi = scene.world_bounds()[0]
    assert lo == (0.0, 0.0, 0.0) and hi == (2.0, 1.0, 2.0)
    lo, hi = scene.world_bounds()[2]
    assert lo[0] > hi[0]  # a light has no mesh: an empty box
    assert facet.Scene().bounds() is None
    total = scene.bounds()
    assert total is not None and total[0][0] <= 0.0 and total[1][1] > 2.0
