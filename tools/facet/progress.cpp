#include "progress.h"

#include <unistd.h>

#include <cstdio>

namespace facet_tool {

using clock = std::chrono::steady_clock;

progress::progress(bool quiet)
    : m_enabled(!quiet && isatty(STDERR_FILENO) == 1), m_start(clock::now()) {}

progress::~progress() { finish(); }

void progress::stage(const std::string& name) {
    m_stage = name;
    update(0.0);
}

void progress::update(double fraction) {
    if (!m_enabled) return;
    const auto now = clock::now();
    if (now - m_start < std::chrono::seconds(1)) return;
    if (m_shown && now - m_last_draw < std::chrono::milliseconds(100)) return;
    m_last_draw = now;
    draw(fraction);
}

void progress::draw(double fraction) {
    const int percent = static_cast<int>(fraction * 100.0 + 0.5);
    std::fprintf(stderr, "\r\033[Kfacet: %s %3d%%", m_stage.c_str(), percent);
    std::fflush(stderr);
    m_shown = true;
}

void progress::finish() {
    if (!m_shown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    m_shown = false;
}

}  // namespace facet_tool
