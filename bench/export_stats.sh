#!/bin/sh
# Stage times of `facet export --stats` at three sizes: square OBJ grids of n x n quads
# (2 n^2 triangles) for n = 100, 316 and 1000 (20 thousand, 200 thousand and 2 million
# triangles), exported with and without --edges.
#
# Usage: bench/export_stats.sh [FACET_BINARY] [WORK_DIR]
set -eu
facet=${1:-build/release/tools/facet/facet}
work=${2:-${TMPDIR:-/tmp}/facet_export_stats}
mkdir -p "$work"

for n in 100 316 1000; do
  obj="$work/grid$n.obj"
  if [ ! -f "$obj" ]; then
    awk -v n="$n" 'BEGIN {
      for (j = 0; j <= n; j++)
        for (i = 0; i <= n; i++)
          printf "v %d %.6f %d\n", i, 0.25 * sin(i * 0.1) * cos(j * 0.1), j
      for (j = 0; j < n; j++)
        for (i = 0; i < n; i++) {
          a = j * (n + 1) + i + 1; b = a + 1; c = a + n + 2; d = a + n + 1
          printf "f %d %d %d\nf %d %d %d\n", a, d, c, a, c, b
        }
    }' > "$obj"
  fi
  for edges in "" "--edges"; do
    printf '%8d triangles %-8s ' $((2 * n * n)) "$edges"
    "$facet" export "$obj" -o "$work/grid$n.glb" --stats -q $edges 2>&1
  done
done
