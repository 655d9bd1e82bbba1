#!/usr/bin/env python3
"""facet's triangulate() beside earcut (python3-mapbox-earcut) on the star-shaped outlines of
bench/triangulate.cpp, in one process.

The outlines are the C++ benchmark's `star` family with identical coordinates: the same 64-bit
Mersenne Twister seeded with the point count, the same formula evaluated in the same order, and
the C library's cos and sin (through Python's math module, not numpy's own vectorised ones).

Every call is timed in CPU time (time.process_time), best of --runs, alternating the two
libraries so that both see the same load. Prints one row per size: the CPU times, the ratio
facet / earcut and the growth of each from the size before; then the cost of the Python binding
of facet.triangulate: the elapsed time of the call from Python against the library's own
(facet._facet._time_triangulate) on the same outline.

Run with the built package on the path and Debian's Python (where the earcut package lives):
    PYTHONPATH=<build>/python /usr/bin/python3 bench/triangulate_earcut.py [--runs N]
"""

import argparse
import math
import sys
import time

import mapbox_earcut
import numpy as np

import facet
from facet import _facet

MASK64 = (1 << 64) - 1


def mt19937_64(seed: int, count: int) -> np.ndarray:  # type: ignore[type-arg]
    """The first `count` outputs of std::mt19937_64 seeded with `seed`."""
    n, m = 312, 156
    state = [seed & MASK64]
    for i in range(1, n):
        prev = state[-1]
        state.append((6364136223846793005 * (prev ^ (prev >> 62)) + i) & MASK64)
    mt = np.array(state, dtype=np.uint64)
    upper, lower = np.uint64(0xFFFFFFFF80000000), np.uint64(0x7FFFFFFF)
    matrix = np.uint64(0xB5026F5AA96619E9)
    one = np.uint64(1)

    def twist(lo: int, hi: int) -> None:
        # mt[i] for i in lo..hi-1, which read mt[i + 1] (old) and mt[i + m mod n] (new when it
        # wraps below lo); the three chunks of one round keep those reads apart.
        x = (mt[lo:hi] & upper) | (mt[np.arange(lo + 1, hi + 1) % n] & lower)
        mag = np.where((x & one) == one, matrix, np.uint64(0))
        mt[lo:hi] = mt[np.arange(lo + m, hi + m) % n] ^ (x >> one) ^ mag

    out = np.empty(count + n, dtype=np.uint64)
    for start in range(0, count, n):
        twist(0, n - m)
        twist(n - m, n - 1)
        twist(n - 1, n)
        y = mt.copy()
        y ^= (y >> np.uint64(29)) & np.uint64(0x5555555555555555)
        y ^= (y << np.uint64(17)) & np.uint64(0x71D67FFFEDA60000)
        y ^= (y << np.uint64(37)) & np.uint64(0xFFF7EEE000000000)
        y ^= y >> np.uint64(43)
        out[start:start + n] = y
    return out[:count]


def star(n: int) -> np.ndarray:  # type: ignore[type-arg]
    """bench/triangulate.cpp's star(n) as an (n, 2) float64 array."""
    two_pi = 6.283185307179586
    step = two_pi / n
    unit = (mt19937_64(n, n) >> np.uint64(11)).astype(np.float64) * 2.0**-53
    radii = 1.0 + 3.0 * step * unit  # evaluated left to right as in C++: (3·step)·u, then 1 +
    points = np.empty((n, 2))
    for i in range(n):
        a = step * i
        points[i, 0] = radii[i] * math.cos(a)
        points[i, 1] = radii[i] * math.sin(a)
    return points


def cpu(call) -> float:  # type: ignore[no-untyped-def]
    start = time.process_time()
    call()
    return time.process_time() - start


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--runs", type=int, default=7, help="timed runs per size (best kept)")
    parser.add_argument("--sizes", type=int, nargs="+", default=[10000, 100000, 1000000])
    args = parser.parse_args()

    print(f"{'star, points':>14} {'facet ms':>10} {'earcut ms':>10} {'facet/earcut':>13} "
          f"{'facet growth':>13} {'earcut growth':>14}")
    before = None
    binding = []
    for n in args.sizes:
        outline = star(n)
        rings = np.array([n], dtype=np.uint32)
        ours = facet.triangulate(outline)
        theirs = mapbox_earcut.triangulate_float64(outline, rings)
        assert ours.shape[0] > 0 and theirs.size > 0
        facet_times, earcut_times, wall_times, library_times = [], [], [], []
        for _ in range(args.runs):
            facet_times.append(cpu(lambda: facet.triangulate(outline)))
            earcut_times.append(cpu(lambda: mapbox_earcut.triangulate_float64(outline, rings)))
            start = time.perf_counter()
            facet.triangulate(outline)
            wall_times.append(time.perf_counter() - start)
            library_times.append(_facet._time_triangulate(outline))
        f, e = min(facet_times), min(earcut_times)
        growth = ("", "") if before is None else (f"{f / before[0]:.2f}x", f"{e / before[1]:.2f}x")
        print(f"{n:>14,} {f * 1e3:>10.2f} {e * 1e3:>10.2f} {f / e:>13.2f} {growth[0]:>13} "
              f"{growth[1]:>14}")
        binding.append((n, min(wall_times), min(library_times)))
        before = (f, e)
    print("Python binding of facet.triangulate (elapsed time of the call from Python against the "
          "library's own, best of each):")
    for n, f, lib in binding:
        print(f"{n:>14,} {f * 1e3:>10.2f} ms vs {lib * 1e3:.2f} ms: {100 * (f / lib - 1):+.1f} %")
    return 0


if __name__ == "__main__":
    sys.exit(main())
