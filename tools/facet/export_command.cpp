// facet export: a scene or OBJ model as glTF 2.0 (see gltf_writer.h for the file's layout).
#include <cstdio>
#include <iostream>

#include "commands.h"
#include "gltf_writer.h"
#include "input.h"
#include "progress.h"

namespace facet_tool {

void run_export(const export_options& options) {
    check_gltf_path(options.output);
    progress report(options.quiet);
    stopwatch read_clock;
    const facet::scene s = load_input(options.input, report);
    const double read_seconds = read_clock.seconds();
    gltf_times times;
    write_gltf(s, options.output, options.edges, report, &times);
    if (options.stats) {
        char line[160];
        std::snprintf(line, sizeof line,
                      "read %.3f s, meshes %.3f s, edges %.3f s, write %.3f s, total %.3f s\n",
                      read_seconds, times.meshes, times.edges, times.write,
                      read_seconds + times.meshes + times.edges + times.write);
        std::cerr << line;
    }
}

}  // namespace facet_tool
