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

/// Traces one call: "Enter" when it is made, "Exit" when it dies, on every return or exception.
///
/// Both ask the level afresh, so a change of the level during a call shows as an exit without an
/// entry or the reverse. Off, each costs one level query and one comparison.
class TraceScope
{
public:
    TraceScope(const char *unit, int line, const char *function) noexcept
        : m_unit(unit), m_line(line), m_function(function)
    {
        if (isOn())
            write("Enter");
    }
    ~TraceScope()
    {
        if (isOn())
            write("Exit");
    }
    TraceScope(const TraceScope &) = delete;
    TraceScope &operator=(const TraceScope &) = delete;

private:
    static bool isOn() noexcept
    {
        try {
            return CLogSystem::theRootInstance->getLevel() == "TRACE";
        } catch (...) {
            return false;
        }
    }

    // A sink that throws, or a line that finds no memory, must not change what is converted.
    void write(const char *event) const noexcept
    {
        try {
            CLogSystem::theRootInstance->trace << logLocation(m_unit, m_line) << event << m_function
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
