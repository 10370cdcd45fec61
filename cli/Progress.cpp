#include "cli/Progress.h"

#include "cli/Files.h"

#include <string>

namespace svgtool {

Progress::Progress(std::FILE *stream, size_t total, bool isWanted)
    : m_stream(stream), m_total(total), m_isOn(isWanted && total > 1 && isTerminal(stream))
{
}

void Progress::show(size_t done)
{
    constexpr std::chrono::milliseconds kPause(100);
    constexpr size_t kWidth = 30;
    const Clock::time_point now = Clock::now();
    if (!m_isOn || now - m_latest < kPause)
        return;
    m_latest = now;
    m_isShown = true;
    const double seconds = std::chrono::duration<double>(now - m_start).count();
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    const double left = rate > 0 ? static_cast<double>(m_total - done) / rate : 0;
    const size_t filled = done * kWidth / m_total;
    const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
    std::fprintf(m_stream, "\r[%s] %zu of %zu, %.0f/s, %.0f s left\033[K", bar.c_str(), done,
                 m_total, rate, left);
    std::fflush(m_stream);
}

void Progress::hide()
{
    if (!m_isShown)
        return;
    m_isShown = false;
    std::fputs("\r\033[K", m_stream);
    std::fflush(m_stream);
}

} // namespace svgtool
