"""Calls whose arguments would fail a precondition of the library raise instead of aborting."""

from typing import Callable

import numpy as np
import pytest

import facet


def custom_with_bad_inline_mesh() -> facet.Custom:
    c = facet.Custom()
    c.inline_mesh = facet.CustomMesh("m", vertices=np.zeros((3, 3)), faces=[[0, 1, 5]])
    return c


def bad_cylinder() -> facet.Cylinder:
    return facet.Cylinder(1.0, 1.0, 0)


def without_texcoords(obj: facet.SceneObject) -> facet.SceneObject:
    obj.texgen_mode = facet.TexgenMode.NONE
    return obj


def scene_with(obj: facet.SceneObject) -> facet.Scene:
    s = facet.Scene()
    s.add(obj)
    return s


GUARDS: list[tuple[str, Callable[[], object], type[BaseException], str]] = [
    ("cylinder without divisions", lambda: bad_cylinder().mesh(), ValueError, "divisions"),
    ("cylinder of too many divisions", lambda: facet.Cylinder(1, 1, 2.0**30).mesh(),
     ValueError, "divisions"),
    ("cylinder at the largest division count is only too large",
     lambda: facet.Cylinder(1, 1, 2**30 - 1).mesh(), facet.MeshTooLargeError, "above the limit"),
    ("free mesh index beyond the vertices",
     lambda: facet.Mesh(np.zeros((3, 3)), [[0, 1, 3]]).mesh(), ValueError, "beyond the 3"),
    ("custom inline mesh index beyond the vertices",
     lambda: custom_with_bad_inline_mesh().mesh(), ValueError, "beyond the 3"),
    ("box without texture coordinates",
     lambda: without_texcoords(facet.Box()).mesh(), ValueError, "texgen_mode BOX"),
    ("free mesh without texture coordinates",
     lambda: without_texcoords(facet.Mesh(np.eye(3), [[0, 1, 2]])).mesh(), ValueError,
     "texgen_mode BOX"),
    ("triangle polygon without texture coordinates",
     lambda: without_texcoords(facet.Polygon(np.eye(3))).mesh(), ValueError, "texgen_mode BOX"),
    ("extruded triangle without texture coordinates",
     lambda: without_texcoords(facet.ExtrudedPolygon(np.eye(3))).mesh(), ValueError,
     "texgen_mode BOX"),
    ("shortest path extrusion without texture coordinates",
     lambda: without_texcoords(facet.PathExtrusion(np.eye(3), [[0, 0, 0], [0, 0, 1]])).mesh(),
     ValueError, "texgen_mode BOX"),
    ("custom part without texture coordinates",
     lambda: facet.Custom().add_primitive(without_texcoords(facet.Cone())), ValueError,
     "texgen_mode BOX"),
    ("custom part that cannot be built",
     lambda: facet.Custom().add_primitive(bad_cylinder()), ValueError, "divisions"),
    ("custom style beyond the list", lambda: facet.Custom().style(0), IndexError, "style 0"),
    ("custom style index out of range", lambda: facet.Custom().set_style(2**31, facet.Style()),
     ValueError, "style index"),
    ("scene bounds over a bad object", lambda: scene_with(bad_cylinder()).bounds(), ValueError,
     "divisions"),
    ("shadow volume of a bad object", lambda: facet.shadow_volume(bad_cylinder(), (0, 5, 0)),
     ValueError, "divisions"),
    ("render of a bad object", lambda: facet.render(scene_with(bad_cylinder()), size=(8, 8)),
     ValueError, "divisions"),
    ("export of a bad object",
     lambda: facet.export_gltf(scene_with(bad_cylinder()), "/tmp/never.glb"), ValueError,
     "divisions"),
    ("render size", lambda: facet.render(facet.Scene(), size=(0, 8)), ValueError, "size"),
    ("scene index", lambda: facet.Scene()[0], IndexError, "out of range"),
    ("parent outside the scene",
     lambda: facet.Scene().set_parent(facet.Box(), None), ValueError, ""),
    ("label without a texture manager", lambda: facet.labels().texture_id("x"), RuntimeError,
     "no texture manager"),
    ("pattern without a texture manager", lambda: facet.hatch_texture_id(), RuntimeError,
     "no texture manager"),
    ("string texture without a texture manager", lambda: facet.string_texture("x"),
     RuntimeError, "no texture manager"),
    ("registered mesh without a name", lambda: facet.register_mesh(facet.CustomMesh()),
     ValueError, "needs a name"),
    ("unproject through a singular view",
     lambda: facet.unproject(np.zeros((1, 3)), facet.Camera(direction=(0, 0, 0)),
                             facet.PerspectiveProjector()),
     facet.SingularMatrixError, "Determinant is 0"),
    ("path extrusion turning back",
     lambda: facet.PathExtrusion([[0, 0, 0], [1, 0, 0], [0, 1, 0]],
                                 [[0, 0, 0], [0, 0, 1], [0, 0, 0]]).mesh(),
     facet.TriangulationError, "turns back"),
    ("polygon that cannot be cut",
     lambda: facet.Polygon([[0, 0, 0], [2, 0, 2], [2, 0, 0], [0, 0, 2], [1, 0, 3]]).mesh(),
     facet.TriangulationError, "bad polygon"),
    ("quad of three corners", lambda: facet.Quad(np.zeros((3, 3))), ValueError, "4 points"),
    ("image wider than a bitmap",
     lambda: facet.write_tga("/tmp/never.tga", np.zeros((1, 65536, 4), np.uint8)), ValueError,
     "at most 65535"),
    ("image higher than a bitmap",
     lambda: facet.write_tga("/tmp/never.tga", np.zeros((65536, 1, 4), np.uint8)), ValueError,
     "at most 65535"),
    ("offset of two points", lambda: facet.offset_polygon([[0, 0], [1, 0]], 1.0), ValueError,
     "at least 3"),
    ("color component", lambda: facet.Color(256, 0, 0), ValueError, "0 to 255"),
    ("hatch of no pixels", lambda: facet.hatch_texture(size=0), ValueError, "size"),
    ("label size", lambda: facet.labels().set_size(0, 10), ValueError, "width"),
    ("negative vertex index", lambda: facet.Mesh(np.zeros((3, 3)), [[0, 1, -1]]),
     ValueError, "32 bits"),
    ("unknown keyword", lambda: facet.Box(colour=1), TypeError, "colour"),
]


@pytest.mark.parametrize("call, error, match", [g[1:] for g in GUARDS],
                         ids=[g[0] for g in GUARDS])
def test_guarded_call_raises(call: Callable[[], object], error: type[BaseException],
                             match: str) -> None:
    with pytest.raises(error, match=match):
        call()
