"""OBJ import, TGA files, bitmaps, hatch patterns and labels as numpy arrays."""

from pathlib import Path

import numpy as np
import pytest

import facet

TETRAHEDRON = """# a tetrahedron and a quad
v 0 0 0
v 1 0 0
v 0 1 0
v 0 0 1
vt 0.5 0.5
usemtl red
f 1 3 2
f 1 2 4
usemtl blue
f 1 4 3
f 2 3 4
"""


@pytest.fixture
def obj_file(tmp_path: Path) -> Path:
    path = tmp_path / "t.obj"
    path.write_text(TETRAHEDRON)
    return path


def test_obj_is_read_and_normalised(obj_file: Path) -> None:
    model = facet.read_obj(str(obj_file))
    # y and z swapped ((x, y, z) -> (x, z, -y)), scaled by 10000, lower corner at the origin.
    np.testing.assert_array_equal(
        model.vertices,
        [[0, 0, 10000], [10000, 0, 10000], [0, 0, 0], [0, 10000, 10000]])
    np.testing.assert_array_equal(model.faces[:, :3], [[0, 2, 1], [0, 1, 3], [0, 3, 2], [1, 2, 3]])
    np.testing.assert_array_equal(model.faces[:, 3], [-1] * 4)
    assert model.materials == ["__default__", "red", "blue"]
    assert model.texcoords.tolist() == [[0.5, 0.5]] and model.normals.shape == (4, 3)
    assert model.bounding_box == ((0.0, 0.0, 0.0), (10000.0, 10000.0, 10000.0))


def test_obj_options_and_steps(obj_file: Path) -> None:
    model = facet.read_obj(str(obj_file), scale=0.0001, offset=(1.0, 2.0, 3.0))
    np.testing.assert_allclose(model.vertices[1], [2.0, 2.0, 4.0])
    vertices = model.vertices
    model.scale(2.0)
    np.testing.assert_allclose(vertices[1], [4.0, 4.0, 8.0])  # a view: it sees the change
    model.swap_yz()
    np.testing.assert_allclose(model.vertices[1], [4.0, 8.0, -4.0])


def test_obj_becomes_a_custom_mesh_drawn_by_a_custom_object(obj_file: Path) -> None:
    mesh = facet.read_obj(str(obj_file)).to_mesh("tetra")
    assert (mesh.name, len(mesh.styles)) == ("tetra", 3)
    np.testing.assert_array_equal(mesh.faces, [[0, 2, 1], [0, 1, 3], [0, 3, 2], [1, 2, 3]])
    np.testing.assert_array_equal(mesh.face_styles, [1, 1, 2, 2])
    facet.register_mesh(mesh)
    try:
        assert "tetra" in facet.registered_meshes()
        faces = facet.Custom("tetra").mesh()
        assert faces.num_faces == 4 and faces.volume() == pytest.approx(1e12 / 6)
        np.testing.assert_array_equal(faces.face_styles, [1, 1, 2, 2])
        assert [s.name for s in faces.styles] == ["__default__", "red", "blue"]
    finally:
        assert facet.unregister_mesh("tetra")
    bad = obj_file.parent / "bad.obj"
    bad.write_text("v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 9\n")
    with pytest.raises(facet.ObjError, match="face 0: corner 2 has vertex index 8"):
        facet.read_obj(str(bad)).to_mesh("bad")
    with pytest.raises(FileNotFoundError):
        facet.read_obj(str(obj_file.parent / "missing.obj"))


def test_tga_round_trip(tmp_path: Path) -> None:
    image = np.zeros((3, 5, 4), dtype=np.uint8)
    image[..., 0] = np.arange(5)
    image[..., 1] = np.arange(3)[:, None] * 10
    image[..., 2] = 200
    image[..., 3] = 255
    path = str(tmp_path / "i.tga")
    facet.write_tga(path, image)
    back = facet.read_tga(path)
    assert back.shape == (3, 5, 4) and back.dtype == np.uint8
    # Written red first, read as blue-green-red: red and blue come back exchanged.
    np.testing.assert_array_equal(back, image[..., [2, 1, 0, 3]])
    (tmp_path / "short.tga").write_bytes(Path(path).read_bytes()[:30])
    with pytest.raises(facet.ImageError, match="Error reading image data"):
        facet.read_tga(str(tmp_path / "short.tga"))
    for largest in ((1, 65535, 4), (65535, 1, 4)):
        facet.write_tga(path, np.zeros(largest, dtype=np.uint8))
        assert facet.read_tga(path).shape == largest
    with pytest.raises(ValueError, match=r"\(height, width, 4\)"):
        facet.write_tga(path, np.zeros((3, 5, 3), dtype=np.uint8))


def test_hatch_pattern_and_mipmaps() -> None:
    plain = facet.hatch_texture(facet.Color(0, 0, 0), facet.Color(255, 255, 255), 0.5, 0.0, 1.0, 8)
    np.testing.assert_array_equal(plain, np.full((8, 8, 4), 255, np.uint8))
    hatch = facet.hatch_texture(size=64)
    assert hatch.shape == (64, 64, 4)
    # Stripes run diagonally: the pattern is the same along each anti-diagonal.
    np.testing.assert_array_equal(hatch[1:, :-1], hatch[:-1, 1:])
    assert hatch[..., 0].min() == 0 and hatch[..., 0].max() == 255
    half = facet.mipmap(hatch)
    expected = (hatch[0::2, 0::2].astype(int) + hatch[1::2, 0::2] + hatch[0::2, 1::2]
                + hatch[1::2, 1::2]) >> 2
    np.testing.assert_array_equal(half, expected)


def test_text_labels(texture_store: facet.TextureStore) -> None:
    label = facet.text_texture("Hi", width=40, height=20, font_size=14,
                               color=facet.Color(0, 0, 0), background=facet.Color(255, 255, 255))
    assert label.shape == (20, 40, 4) and label[..., 3].min() == 255
    assert label[..., 0].min() < 64 and label[0, 0, 0] == 255  # ink in the middle, margins white
    labels = facet.labels()
    labels.set_size(32, 16)
    labels.mipmap_levels = 2
    first = labels.texture_id("A")
    assert labels.texture_id("A") == first and labels.texture_id("B") != first
    assert texture_store.levels(first) == 3
    assert texture_store.image(first).shape == (16, 32, 4)
    assert texture_store.image(first, 2).shape == (4, 8, 4)
    hatch = texture_store.image(facet.hatch_texture_id())
    np.testing.assert_array_equal(hatch, facet.hatch_texture())
