#!/bin/sh
# Stage times of `facet render` on height-field models of about 0.5, 1 and 2 million
# triangles at 1920x1080, with shadows and outlines: the library stages (meshes, edges, shadow
# volumes) should grow linearly with the triangles, the whole 2M render stay under 3 s.
#
#   bench/render_stats.sh [path/to/facet] [work folder]
set -eu
FACET=${1:-build/release/tools/facet/facet}
WORK=${2:-${TMPDIR:-/tmp}/facet_render_stats}
mkdir -p "$WORK"

# A wavy n x n grid of vertices: 2 (n - 1)^2 triangles.
make_model() {
    awk -v n="$1" 'BEGIN {
        for (j = 0; j < n; ++j)
            for (i = 0; i < n; ++i) {
                x = i / (n - 1); z = j / (n - 1)
                printf "v %.6f %.6f %.6f\n", x, z, 0.25 * sin(14 * x) * cos(11 * z) + 0.3
            }
        for (j = 0; j < n - 1; ++j)
            for (i = 0; i < n - 1; ++i) {
                a = j * n + i + 1; b = a + 1; c = a + n; d = c + 1
                printf "f %d %d %d\nf %d %d %d\n", a, b, d, a, d, c
            }
    }' > "$2"
}

for n in 501 708 1001; do
    model="$WORK/grid_$n.obj"
    [ -f "$model" ] || make_model "$n" "$model"
    echo "== $(( 2 * (n - 1) * (n - 1) )) triangles, 1920x1080"
    "$FACET" render "$model" -o "$WORK/grid_$n.png" --size 1920x1080 --stats -q
done
