// Output files that appear whole or not at all, and the parts of a path.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

namespace facet_tool {

/// Calls `write` with a binary stream on a temporary file beside `path`, then renames it over
/// `path`. When `write` throws or the stream fails, the temporary file is removed and nothing
/// appears at `path`; the failure is reported as tool_error naming `path`.
void write_file_atomically(const std::string& path,
                           const std::function<void(std::ostream&)>& write);

/// The temporary name used for `path` (same folder, so the rename stays on one file system).
std::string temporary_name_for(const std::string& path);

/// The lower-case extension of `path` with its dot (".obj"), or "".
std::string extension_of(const std::string& path);

/// The last component of `path` ("models/gear.obj" -> "gear.obj").
std::string file_name_of(const std::string& path);

/// The file name of `path` without its extension ("models/gear.obj" -> "gear").
std::string stem_of(const std::string& path);

/// The folder of `path` with its trailing slash ("models/gear.obj" -> "models/"), or "".
std::string folder_of(const std::string& path);

}  // namespace facet_tool
