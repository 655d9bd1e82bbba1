// Progress of long work on stderr: nothing for work that ends within a second, a single
// rewritten line after that, and never anything when quiet or when stderr is not a terminal.
#pragma once

#include <chrono>
#include <string>

namespace facet_tool {

class progress {
public:
    /// `quiet` silences it; so does an stderr that is not a terminal.
    explicit progress(bool quiet);
    ~progress();
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    /// Starts a named stage ("reading model.obj", "drawing"); shows it once work has taken a
    /// second.
    void stage(const std::string& name);
    /// Reports how far the current stage is, `fraction` from 0 to 1. Cheap enough to call per
    /// element: the line is redrawn at most ten times a second.
    void update(double fraction);
    /// Ends the line, if one was shown.
    void finish();

private:
    void draw(double fraction);

    bool m_enabled;
    bool m_shown = false;
    std::string m_stage;
    std::chrono::steady_clock::time_point m_start;
    std::chrono::steady_clock::time_point m_last_draw;
};

/// Wall-clock seconds between construction and seconds().
class stopwatch {
public:
    stopwatch() : m_start(std::chrono::steady_clock::now()) {}
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start;
};

}  // namespace facet_tool
