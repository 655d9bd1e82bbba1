#!/usr/bin/env python3
"""The cost of calling facet from Python over calling the library from C++.

Times, best of several runs each:
  - mesh() of a free mesh of a 1001 x 1001 vertex grid (2,000,000 triangles), from Python (the
    call plus taking its vertices, faces and normals as numpy arrays) against the library
    building the same face set in C++ (facet._facet._time_mesh);
  - triangulate() of a 100,000-point outline given as an (n, 2) array, from Python (the call,
    its conversion of the input and the (m, 3) result array) against the library's triangulate
    on the same outline in C++ (facet._facet._time_triangulate).

Run with the built package on the path, e.g.
    PYTHONPATH=build/release/python python3 bench/python_overhead.py [--runs N] [--grid N]
It prints one line per operation and exits 1 when an overhead is above 5 %.
"""

import argparse
import sys
import time

import numpy as np

import facet
from facet import _facet


def grid_mesh(n: int) -> facet.Mesh:
    xs, zs = np.meshgrid(np.arange(n, dtype=np.float64), np.arange(n, dtype=np.float64))
    heights = 0.1 * np.sin(xs * 0.05) * np.cos(zs * 0.07)
    vertices = np.stack([xs.ravel(), heights.ravel(), zs.ravel()], axis=1)
    i = np.arange(n - 1)
    corner = (i[None, :] + n * i[:, None]).ravel()
    a, b, c, d = corner, corner + 1, corner + n, corner + n + 1
    triangles = np.concatenate([np.stack([a, c, b], 1), np.stack([b, c, d], 1)])
    return facet.Mesh(vertices, triangles)


def star_outline(n: int) -> np.ndarray:  # type: ignore[type-arg]
    rng = np.random.default_rng(1)
    angles = np.linspace(0.0, 2.0 * np.pi, n, endpoint=False)
    radii = 1.0 + 0.3 * rng.random(n)
    return np.stack([radii * np.cos(angles), radii * np.sin(angles)], axis=1)


def best(runs: int, python_call, cpp_call) -> tuple[float, float]:  # type: ignore[no-untyped-def]
    """The shortest time of each call over `runs` alternating runs (the machine's other load
    varies from one moment to the next, so both sides see the same conditions)."""
    python_times, cpp_times = [], []
    for _ in range(runs):
        python_times.append(python_call())
        cpp_times.append(cpp_call())
    return min(python_times), min(cpp_times)


def python_mesh(obj: facet.Mesh) -> float:
    start = time.perf_counter()
    faces = obj.mesh()
    arrays = (faces.vertices, faces.faces, faces.normals)
    elapsed = time.perf_counter() - start
    assert arrays[1].shape == (faces.num_faces, 3)
    return elapsed


def python_triangulate(points: np.ndarray) -> float:  # type: ignore[type-arg]
    start = time.perf_counter()
    triangles = facet.triangulate(points)
    elapsed = time.perf_counter() - start
    assert triangles.shape[0] > 0
    return elapsed


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--runs", type=int, default=4)
    parser.add_argument("--grid", type=int, default=1001, help="vertices along each side")
    parser.add_argument("--points", type=int, default=100000)
    args = parser.parse_args()

    obj = grid_mesh(args.grid)
    outline = star_outline(args.points)
    rows = [
        (f"mesh() of {2 * (args.grid - 1) ** 2:,} triangles",
         *best(args.runs, lambda: python_mesh(obj), lambda: _facet._time_mesh(obj))),
        (f"triangulate() of {args.points:,} points",
         *best(5 * args.runs, lambda: python_triangulate(outline),
               lambda: _facet._time_triangulate(outline))),
    ]
    worst = 0.0
    for name, py_time, cpp_time in rows:
        overhead = py_time / cpp_time - 1.0
        worst = max(worst, overhead)
        print(f"{name:36s} Python {py_time * 1e3:9.2f} ms   C++ {cpp_time * 1e3:9.2f} ms   "
              f"overhead {overhead * 100:+6.2f} %")
    return 0 if worst <= 0.05 else 1


if __name__ == "__main__":
    sys.exit(main())
