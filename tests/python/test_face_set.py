"""Face set arrays: exact contents, zero-copy views and their lifetime."""

import gc

import numpy as np
import numpy.typing as npt
import pytest

import facet


def address(a: npt.NDArray[np.generic]) -> int:
    return int(a.__array_interface__["data"][0])


def test_box_vertices_faces_and_normals_are_exact(box: facet.Box) -> None:
    mesh = box.mesh()
    corners = {(x, y, z) for x in (0.0, 2.0) for y in (0.0, 3.0) for z in (0.0, 4.0)}
    assert {tuple(v) for v in mesh.vertices.tolist()} == corners
    assert mesh.vertices.dtype == np.float64 and mesh.vertices.shape == (8, 3)
    assert mesh.faces.dtype == np.uint32 and mesh.faces.shape == (12, 3)
    v = mesh.vertices[mesh.faces.astype(np.int64)]
    n = np.cross(v[:, 1] - v[:, 0], v[:, 2] - v[:, 0])
    n = n / np.sqrt((n * n).sum(axis=1))[:, None]
    np.testing.assert_array_equal(mesh.face_normals, n)
    # Each face's normal points away from the box's centre, and the corners carry it (flat).
    centre = np.array([1.0, 1.5, 2.0])
    assert np.all(((v.mean(axis=1) - centre) * n).sum(axis=1) > 0)
    np.testing.assert_array_equal(mesh.normals, np.repeat(n, 3, axis=0))
    np.testing.assert_array_equal(mesh.face_styles, np.zeros(12, np.int32))


@pytest.mark.parametrize(
    "make, vertices, faces",
    [
        (lambda: facet.Box(1, 1, 1), 8, 12),
        (lambda: facet.Cylinder(2, 1, 10), 22, 40),
        (lambda: facet.Cone(1, 1), 14, 24),
        (lambda: facet.Quad(), 4, 2),
        (lambda: facet.Polygon([[0, 0, 0], [1, 0, 0], [1, 0, 1], [0, 0, 1]]), 4, 2),
        (lambda: facet.ExtrudedPolygon([[0, 0, 0], [1, 0, 0], [0, 0, 1]]), 6, 8),
        (lambda: facet.PathExtrusion([[0, 0, 0], [1, 0, 0], [0, 1, 0]],
                                     [[0, 0, 0], [0, 0, 2]]), 6, 8),
        (lambda: facet.Light(), 0, 0),
    ],
)
def test_counts_of_each_primitive(make: object, vertices: int, faces: int) -> None:
    mesh = make().mesh()  # type: ignore[operator]
    assert (mesh.num_vertices, mesh.num_faces) == (vertices, faces)
    assert mesh.vertices.shape == (vertices, 3) and mesh.faces.shape == (faces, 3)
    assert mesh.normals.shape == (3 * faces, 3)


def test_free_mesh_keeps_vertices_and_triangles_in_order() -> None:
    grid = np.array([[x, 0.0, z] for z in range(3) for x in range(3)], dtype=np.float64)
    tris = np.array([[0, 3, 1], [1, 3, 4], [4, 5, 1], [8, 4, 7]], dtype=np.uint32)
    mesh = facet.Mesh(grid, tris).mesh()
    np.testing.assert_array_equal(mesh.vertices, grid)
    np.testing.assert_array_equal(mesh.faces, tris)
    np.testing.assert_allclose(mesh.face_normals, [[0.0, 1.0, 0.0]] * 4)


def test_empty_lists_are_empty_point_and_index_arrays() -> None:
    mesh = facet.Mesh([], [])
    assert mesh.vertices.shape == (0, 3) and mesh.triangles.shape == (0, 3)
    assert facet.Polyline([]).mesh().num_vertices == 0
    assert facet.triangulate([]).shape == (0, 3)


def test_quad_texcoords_follow_its_corners() -> None:
    quad = facet.Quad()
    quad.texcoords = np.array([[0.0, 0.0], [0.5, 0.0], [0.5, 0.25], [0.0, 0.25]])
    np.testing.assert_array_equal(quad.texcoords,
                                  [[0.0, 0.0], [0.5, 0.0], [0.5, 0.25], [0.0, 0.25]])
    quad.texture_scale = (2.0, 4.0)
    mesh = quad.mesh()
    expected = np.array([[0, 0], [1, 0], [1, 1], [0, 0], [1, 1], [0, 1]], dtype=np.float32)
    np.testing.assert_array_equal(mesh.texcoords[mesh.face_texcoords.reshape(-1)], expected)
    assert mesh.texcoords.dtype == np.float32
    # The tangent runs along u (+x for this quad), the bitangent against v.
    np.testing.assert_allclose(mesh.tangents, [[1.0, 0.0, 0.0]] * 6, atol=1e-12)
    assert mesh.bitangents.shape == (6, 3)


@pytest.mark.parametrize(
    "obj, lines",
    [
        (facet.Polyline([[0, 0, 0], [1, 0, 0], [1, 1, 0], [1, 1, 1]]), [[0, 1], [1, 2], [2, 3]]),
        (facet.Line((0, 0, 0), (1, 2, 3)), [[0, 1]]),
        (facet.Arrow(10, 2, 3), [[0, 1], [1, 2], [1, 3], [1, 4], [1, 5]]),
        (facet.Crosshair(2), [[0, 1], [2, 3], [4, 5]]),
    ],
)
def test_line_records(obj: facet.SceneObject, lines: list[list[int]]) -> None:
    mesh = obj.mesh()
    np.testing.assert_array_equal(mesh.lines, lines)
    assert mesh.lines.dtype == np.uint32 and mesh.num_faces == 0


def test_arrays_are_views_that_outlive_their_object() -> None:
    obj = facet.Cylinder(1.0, 0.5, 12)
    mesh = obj.mesh()
    arrays = {
        "vertices": mesh.vertices, "faces": mesh.faces, "normals": mesh.normals,
        "tangents": mesh.tangents, "texcoords": mesh.texcoords, "face_styles": mesh.face_styles,
    }
    copies = {k: a.copy() for k, a in arrays.items()}
    # The same memory on every access: nothing is copied out of the face set.
    assert address(mesh.vertices) == address(arrays["vertices"])
    assert np.shares_memory(mesh.faces, arrays["faces"])
    assert np.shares_memory(mesh.face_styles, mesh.face_normals) is False
    assert all(not a.flags.owndata and not a.flags.writeable for a in arrays.values())
    assert all(a.base is mesh for a in arrays.values())  # each holds the face set itself
    # faces and face_normals lie in the same records: a strided view over them.
    assert mesh.faces.strides[0] == mesh.face_normals.strides[0] > 12
    del obj, mesh
    gc.collect()
    facet.Box(5, 5, 5).mesh()  # new allocations do not reuse the face set's memory
    for k, a in arrays.items():
        np.testing.assert_array_equal(a, copies[k], err_msg=k)


def test_a_new_mesh_leaves_earlier_arrays_alone(box: facet.Box) -> None:
    before = box.mesh().vertices
    box.width = 10.0
    after = box.mesh().vertices
    assert before[:, 0].max() == 2.0 and after[:, 0].max() == 10.0
    assert not np.shares_memory(before, after)


def test_sharp_edges_of_a_box(box: facet.Box) -> None:
    edges = box.mesh().edges
    assert edges.shape == (12, 2)  # the 12 creases; the 6 face diagonals are smooth
    v = box.mesh().vertices
    lengths = sorted(np.linalg.norm(v[e[0]] - v[e[1]]) for e in edges.tolist())
    assert lengths == [2.0] * 4 + [3.0] * 4 + [4.0] * 4


def test_silhouette_of_a_cylinder_depends_on_the_view() -> None:
    mesh = facet.Cylinder(2.0, 1.0, 32).mesh()
    proj = facet.OrthographicProjector(4, 4, 1, 100)
    mesh.determine_visible_edges(facet.Camera((0, 1, 10), (0, 0, -1)), proj, angle=65.0)
    v = mesh.vertices
    side = [e for e in mesh.edges.tolist() if abs(v[e[0], 1] - v[e[1], 1]) == 2.0]
    # Seen along -z, the silhouette runs down the sides at x = -1 and x = +1.
    xs = sorted({round(float(v[a, 0]), 6) for a, _ in side})
    assert xs == [-1.0, 1.0]
    mesh.determine_visible_edges(facet.Camera((10, 1, 0), (-1, 0, 0)), proj)
    side = [e for e in mesh.edges.tolist() if abs(v[e[0], 1] - v[e[1], 1]) == 2.0]
    assert sorted({round(float(v[a, 2]), 6) for a, _ in side}) == [-1.0, 1.0]


def test_shadow_volume_of_a_box_under_a_light() -> None:
    box = facet.Box(1, 1, 1)
    volume = facet.shadow_volume(box, (0.5, 10.0, 0.5))
    # Lit from straight above: the four top edges are the silhouette, one quad each.
    assert (volume.num_vertices, volume.num_faces) == (16, 8)
    top = volume.vertices[0::4]
    np.testing.assert_array_equal(top[:, 1], np.ones(4))
    far = volume.vertices[2::4]
    assert np.all(far[:, 1] < -1000.0)
    flat = box.mesh().shadow_volume((0.5, 10.0, 0.5))
    assert flat.num_faces == 8 and flat.normals.shape == (0, 3)


def test_ray_intersection_and_bounds(box: facet.Box) -> None:
    mesh = box.mesh()
    hit = mesh.intersect((1.0, 1.0, -5.0), (0.0, 0.0, 1.0))
    assert hit is not None and hit[0] == 5.0
    assert mesh.intersect((10.0, 10.0, -5.0), (0.0, 0.0, 1.0)) is None
    assert mesh.bounds() == ((0.0, 0.0, 0.0), (2.0, 3.0, 4.0))


@pytest.mark.parametrize("mode", [facet.TexgenMode.NONE, facet.TexgenMode.SPHERE_MAP])
def test_objects_without_faces_or_with_their_own_texcoords_build_in_any_texgen_mode(
        mode: facet.TexgenMode) -> None:
    two = [[0, 0, 0], [1, 0, 0]]
    for obj in (facet.Quad(), facet.Polyline(two), facet.Polygon(two), facet.Mesh(),
                facet.ExtrudedPolygon(two), facet.PathExtrusion(np.eye(3), two[:1]),
                facet.PathExtrusion(two, two), facet.Custom(), facet.Light()):
        obj.texgen_mode = mode
        assert obj.mesh().num_faces == (2 if isinstance(obj, facet.Quad) else 0)

