"""Handing the face set's arrays to plain numpy: volume and area against the library's."""

import numpy as np
import numpy.typing as npt
import pytest

import facet


def numpy_volume_and_area(vertices: npt.NDArray[np.float64],
                          faces: npt.NDArray[np.uint32]) -> tuple[float, float]:
    a, b, c = (vertices[faces[:, k]] for k in range(3))
    volume = np.einsum("ij,ij->i", a, np.cross(b, c)).sum() / 6.0
    area = np.linalg.norm(np.cross(b - a, c - a), axis=1).sum() / 2.0
    return float(volume), float(area)


@pytest.mark.parametrize(
    "obj, volume, area",
    [
        (facet.Box(2.0, 3.0, 4.0), 24.0, 52.0),
        (facet.ExtrudedPolygon([[0, 0, 0], [0, 0, 2], [3, 0, 2], [3, 0, 0]], (0, 1.5, 0)),
         9.0, 2 * 6.0 + 1.5 * 10.0),
        (facet.Cylinder(2.0, 1.0, 64), 2.0 * 32 * np.sin(2 * np.pi / 64), None),
        (facet.Cone(3.0, 1.0), 3.0 * 6 * np.sin(2 * np.pi / 12) / 3, None),
    ],
)
def test_volume_and_area_agree(obj: facet.SceneObject, volume: float, area: float | None) -> None:
    mesh = obj.mesh()
    v, a = numpy_volume_and_area(mesh.vertices, mesh.faces)
    assert v == pytest.approx(mesh.volume(), rel=1e-12)
    assert a == pytest.approx(mesh.area(), rel=1e-12)
    assert v == pytest.approx(volume, rel=1e-12)
    if area is not None:
        assert a == pytest.approx(area, rel=1e-12)
