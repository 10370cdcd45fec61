#pragma once

#include <CLogSystem.h>

#include <QString>

namespace svgtool {

/// The prefix of every log line: unit, tab, line number, tab.
/// @param unit  the source unit as the trace names it, such as ".\Emf2SVG.cpp"
inline QString logLocation(const char *unit, int line)
{
    return QLatin1String(unit) + QLatin1Char('\t') + QString::number(line) + QLatin1Char('\t');
}

/// Writes a set-up step to the info output, whatever the level.
inline void logInfo(const char *unit, const char *text, int line = __builtin_LINE())
{
    CLogSystem::theRootInstance->info << logLocation(unit, line) << text
                                      << basic_logging::Logger::end;
}

/// Writes a rejected input that the caller is told about to the warning output.
inline void logWarning(const char *unit, const char *text, int line = __builtin_LINE())
{
    CLogSystem::theRootInstance->warn << logLocation(unit, line) << text
                                      << basic_logging::Logger::end;
}

/// Writes a caught exception to the fatal output.
inline void logFatal(const char *unit, const char *text, int line = __builtin_LINE())
{
    CLogSystem::theRootInstance->fatal << logLocation(unit, line) << text
                                       << basic_logging::Logger::end;
}

/// Whether the level of @p log is "TRACE". A logging library that offers no isTracing() is asked
/// for the level's name.
template<class LogSystem>
bool isTracing(const LogSystem &log) noexcept
{
    if constexpr (requires { log.isTracing(); }) {
        return log.isTracing();
    } else {
        try {
            return log.getLevel() == "TRACE";
        } catch (...) {
            return false;
        }
    }
}

/// Whether calls are traced now; asks the level afresh.
inline bool isTracing() noexcept
{
    return isTracing(*CLogSystem::theRootInstance);
}

/// Traces one call: "Enter" when it is made, "Exit" when it dies, on every return or exception.
///
/// Both ask the level afresh, so a change of the level during a call shows as an exit without an
/// entry or the reverse. Off, each costs one level query.
class TraceScope
{
public:
    [[gnu::always_inline]] TraceScope(const char *unit, int line, const char *function) noexcept
        : m_unit(unit), m_line(line), m_function(function)
    {
        if (isTracing()) [[unlikely]]
            write("Enter", m_unit, m_line, m_function);
    }
    [[gnu::always_inline]] ~TraceScope()
    {
        if (isTracing()) [[unlikely]]
            write("Exit", m_unit, m_line, m_function);
    }
    TraceScope(const TraceScope &) = delete;
    TraceScope &operator=(const TraceScope &) = delete;

private:
    // Static, so that a scope need not exist in memory. A sink that throws, or a line that finds no
    // memory, must not change what is converted.
    [[gnu::cold, gnu::noinline]] static void write(const char *event, const char *unit, int line,
                                                   const char *function) noexcept
    {
        try {
            CLogSystem::theRootInstance->trace << logLocation(unit, line) << event << function
                                               << basic_logging::Logger::end;
        } catch (...) {
        }
    }

    const char *m_unit;
    int m_line;
    const char *m_function;
};

} // namespace svgtool

/// First statement of every function. The source file names its unit once, in kTraceUnit.
#define SVGTOOL_TRACE(function)                                                                    \
    const ::svgtool::TraceScope svgtoolTraceScope(kTraceUnit, __LINE__, function)
