"""Plane geometry on arrays, cameras and projectors, project and unproject."""

import numpy as np
import numpy.typing as npt
import pytest

import facet

L_SHAPE = np.array([[0, 0], [3, 0], [3, 1], [1, 1], [1, 3], [0, 3]], dtype=np.float64)


def triangle_areas(points: npt.NDArray[np.float64],
                   tris: npt.NDArray[np.uint32]) -> npt.NDArray[np.float64]:
    p: npt.NDArray[np.float64] = points[tris.astype(np.int64)]
    a, b = p[:, 1] - p[:, 0], p[:, 2] - p[:, 0]
    areas: npt.NDArray[np.float64] = 0.5 * (a[:, 0] * b[:, 1] - a[:, 1] * b[:, 0])
    return areas


@pytest.mark.parametrize("outline", [L_SHAPE, L_SHAPE[::-1].copy()])
def test_triangulation_covers_the_outline_keeping_its_winding(
        outline: npt.NDArray[np.float64]) -> None:
    tris = facet.triangulate(outline)
    assert tris.shape == (4, 3) and tris.dtype == np.uint32
    areas = triangle_areas(outline, tris)
    assert np.all(np.sign(areas) == np.sign(facet.polygon_area(outline)))
    assert areas.sum() == pytest.approx(facet.polygon_area(outline))
    assert abs(facet.polygon_area(outline)) == 5.0


def test_triangulation_of_a_circle_and_bad_outlines() -> None:
    t = np.linspace(0.0, 2 * np.pi, 100, endpoint=False)
    circle = np.stack([np.cos(t), np.sin(t)], axis=1)
    tris = facet.triangulate(circle)
    assert tris.shape == (98, 3)
    assert triangle_areas(circle, tris).sum() == pytest.approx(facet.polygon_area(circle))
    assert facet.triangulate(np.zeros((0, 2))).shape == (0, 3)
    with pytest.raises(facet.TriangulationError, match="bad polygon"):
        facet.triangulate(np.array([[0, 0], [2, 2], [2, 0], [0, 2], [1, 3]], dtype=float))
    with pytest.raises(ValueError, match=r"shape \(n, 2\)"):
        facet.triangulate(np.zeros((4, 3)))


def test_point_in_polygon_matches_a_numpy_crossing_count() -> None:
    grid = np.stack(np.meshgrid(np.linspace(-0.5, 3.5, 33), np.linspace(-0.5, 3.5, 29)),
                    axis=-1).reshape(-1, 2)
    inside = facet.point_in_polygon(L_SHAPE, grid)
    x, y = grid[:, 0:1], grid[:, 1:2]
    a, b = L_SHAPE, np.roll(L_SHAPE, -1, axis=0)
    spans = (a[:, 1] > y) != (b[:, 1] > y)
    with np.errstate(divide="ignore", invalid="ignore"):
        cross_x = a[:, 0] + (y - a[:, 1]) * (b[:, 0] - a[:, 0]) / (b[:, 1] - a[:, 1])
    expected = ((spans & (x < cross_x)).sum(axis=1) % 2) == 1
    np.testing.assert_array_equal(inside, expected)
    assert facet.point_in_polygon(L_SHAPE, np.array([0.5, 2.0])) is True
    assert facet.point_in_polygon(L_SHAPE, np.array([2.0, 2.0])) is False


def test_offsetting_moves_every_edge() -> None:
    square = np.array([[0, 0], [2, 0], [2, 2], [0, 2]], dtype=float)
    grown = facet.offset_polygon(square, 0.5)
    np.testing.assert_allclose(grown, [[-0.5, -0.5], [2.5, -0.5], [2.5, 2.5], [-0.5, 2.5]])
    np.testing.assert_allclose(facet.offset_polygon(square, -0.5), square * 0.5 + 0.5)
    triangle = np.array([[0, 0], [4, 0], [0, 3]], dtype=float)
    inner = facet.offset_polygon(triangle, -1.0)  # the triangle's incircle has radius 1
    np.testing.assert_allclose(inner[0], [1.0, 1.0])
    with pytest.raises(ValueError, match="parallel"):
        facet.offset_polygon(np.array([[0, 0], [1, 0], [2, 0], [1, 1]], dtype=float), 0.1)


@pytest.mark.parametrize(
    "proj",
    [
        facet.PerspectiveProjector(60.0, 4 / 3, 1.0, 100.0),
        facet.OrthographicProjector(8.0, 6.0, 1.0, 100.0),
        facet.FrustumProjector(-1.0, 1.0, -0.75, 0.75, 1.0, 100.0),
    ],
)
def test_project_and_unproject_are_inverse(proj: facet.Projector) -> None:
    proj.viewport = (0.0, 0.0, 640.0, 480.0)
    cam = facet.Camera((1.0, 2.0, 10.0), (0.0, 0.0, -1.0))
    cam.look_at((0.0, 0.0, 0.0))
    rng = np.random.default_rng(7)
    points = rng.uniform(-2.0, 2.0, (50, 3))
    screen = facet.project(points, cam, proj)
    assert screen.shape == (50, 3)
    h = np.c_[points, np.ones(50)] @ facet.view_matrix(cam, proj).T
    np.testing.assert_allclose(screen, h[:, :3] / h[:, 3:], rtol=1e-12)
    np.testing.assert_allclose(facet.unproject(screen, cam, proj), points, atol=1e-9)
    centre = facet.project(np.array([[0.0, 0.0, 0.0]]), cam, proj)[0]
    assert centre[:2] == pytest.approx((320.0, 240.0))


def test_camera_and_projector_properties() -> None:
    cam = facet.Camera(position=(0, 0, 5), direction=(0, 0, -2))
    assert cam.direction == (0.0, 0.0, -1.0)
    np.testing.assert_array_equal(facet.Camera().matrix, np.eye(4))
    p = facet.PerspectiveProjector()
    p.hfov, p.near, p.far = 45.0, 0.5, 20.0
    assert (p.hfov, p.near, p.far, p.viewport) == (45.0, 0.5, 20.0, (0.0, 0.0, 800.0, 600.0))
    o = facet.OrthographicProjector(4, 2)
    o.set_bounds(-1, 3, -2, 0)
    assert (o.left, o.right, o.bottom, o.top) == (-1.0, 3.0, -2.0, 0.0)
