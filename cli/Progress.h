#pragma once

#include <chrono>
#include <cstddef>
#include <cstdio>

namespace svgtool {

/// A bar with the rate and the time left, on one line of a terminal. On anything else, nothing.
class Progress
{
public:
    Progress(std::FILE *stream, size_t total, bool isWanted);

    /// Shows how many files are done; at most ten times a second.
    void show(size_t done);
    /// Takes the bar away, so that a line can be printed.
    void hide();

private:
    using Clock = std::chrono::steady_clock;

    std::FILE *m_stream;
    size_t m_total;
    bool m_isOn;
    bool m_isShown = false;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_latest{};
};

} // namespace svgtool
