#include "output_file.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "commands.h"

namespace facet_tool {

std::string temporary_name_for(const std::string& path) {
    return path + ".tmp" + std::to_string(static_cast<long>(getpid()));
}

std::string extension_of(const std::string& path) {
    const auto slash = path.find_last_of('/');
    const auto dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    std::string ext = path.substr(dot);
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

std::string file_name_of(const std::string& path) {
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string stem_of(const std::string& path) {
    std::string name = file_name_of(path);
    const auto dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0) name.erase(dot);
    return name;
}

std::string folder_of(const std::string& path) {
    const auto slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

void write_file_atomically(const std::string& path,
                           const std::function<void(std::ostream&)>& write) {
    const std::string temporary = temporary_name_for(path);
    try {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) throw tool_error(path + ": cannot write: " + std::strerror(errno));
        write(out);
        out.flush();
        if (!out) throw tool_error(path + ": cannot write: " + std::strerror(errno));
        out.close();
        if (std::rename(temporary.c_str(), path.c_str()) != 0)
            throw tool_error(path + ": cannot write: " + std::strerror(errno));
    } catch (...) {
        std::remove(temporary.c_str());
        throw;
    }
}

}  // namespace facet_tool
