#pragma once

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <sstream>
#include <string>

#if defined(_WIN32) && defined(BASIC_LOGGING_BUILD)
#define BASIC_LOGGING_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define BASIC_LOGGING_EXPORT __declspec(dllimport)
#else
#define BASIC_LOGGING_EXPORT __attribute__((visibility("default")))
#endif

/// A small logging system: one root object with a level name and four level loggers, each of
/// which hands its finished lines to a sink that a host may replace.
namespace basic_logging {

/// Takes the finished lines of one level.
///
/// By default a line goes to the Qt logging category "svgtool": trace lines as debug messages,
/// info, warning and fatal lines as info, warning and critical messages. The category is off until
/// Qt's filter rules switch it on. Whether a line is kept is thus decided by them or by the sink,
/// never by the code that wrote it.
/// @note All members may be called from any thread.
class BASIC_LOGGING_EXPORT LevelOutput
{
public:
    /// Receives one finished line, without a line feed. Called under the level's logger lock:
    /// it must not log to the same level. What it throws is ignored by the trace convention.
    using Sink = std::function<void(const std::string &)>;

    /// Sends lines to @p defaultSink until there is another.
    explicit LevelOutput(void (*defaultSink)(const std::string &));
    LevelOutput(const LevelOutput &) = delete;
    LevelOutput &operator=(const LevelOutput &) = delete;
    ~LevelOutput();

    /// Puts @p sink in place of the sink in force; an empty one brings the default back.
    void setSink(Sink sink);

    /// Hands @p line to the sink in force.
    void operator()(const std::string &line) const;

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<const Sink> m_sink;
    void (*m_defaultSink)(const std::string &);
};

extern BASIC_LOGGING_EXPORT LevelOutput tracelevel; ///< where trace lines go
extern BASIC_LOGGING_EXPORT LevelOutput infolevel; ///< where lines go that inform
extern BASIC_LOGGING_EXPORT LevelOutput warnlevel; ///< where warnings go
extern BASIC_LOGGING_EXPORT LevelOutput fatallevel; ///< where lines go that tell of an end

/// Collects the items streamed into it and hands them, each followed by one blank, to its
/// level's output when Logger::end comes.
///
/// Every streaming operation locks for itself only, so the items of two threads that write one
/// level at the same time may mix in a line.
class Logger
{
public:
    /// Type of the end-of-line marker.
    enum class End { Line };
    /// Streamed into a logger to finish a line.
    static constexpr End end = End::Line;

    /// Hands finished lines to @p output.
    explicit Logger(const LevelOutput &output) : m_output(&output) { }

    /// Adds an item to the line, or with end finishes it.
    /// @{
    Logger &operator<<(const std::string &text)
    {
        const std::lock_guard lock(m_mutex);
        m_buffer << text << ' ';
        return *this;
    }
    Logger &operator<<(const char *text) { return *this << std::string(text); }
    Logger &operator<<(const QString &text) { return *this << text.toStdString(); }
    Logger &operator<<(End)
    {
        const std::lock_guard lock(m_mutex);
        const std::string line = m_buffer.str();
        m_buffer.str(std::string());
        m_buffer.clear(); // a line for which there was no memory ends here
        (*m_output)(line);
        return *this;
    }
    /// @}

private:
    std::mutex m_mutex;
    const LevelOutput *m_output;
    std::ostringstream m_buffer;
};

} // namespace basic_logging

/// The root of the logging system: the level in force and the four level loggers.
///
/// The level is a name and nothing more; "TRACE", spelt so, switches the trace lines of the
/// converter on, and every other name switches them off. It starts as "INFO".
/// @note All members may be called from any thread.
class BASIC_LOGGING_EXPORT CLogSystem
{
public:
    CLogSystem();
    CLogSystem(const CLogSystem &) = delete;
    CLogSystem &operator=(const CLogSystem &) = delete;
    ~CLogSystem();

    /// The only instance; it lives as long as the logging library is loaded.
    static CLogSystem *theRootInstance;

    /// The name of the level in force.
    std::string getLevel() const { return *m_level.load(std::memory_order_acquire); }
    /// Whether that name is "TRACE"; what every function asks, so it makes no string.
    static bool isTracing() noexcept { return s_isTracing.load(std::memory_order_relaxed); }
    /// Sets the level's name, for all threads at once.
    void setLevel(const std::string &name);

    basic_logging::Logger trace{ basic_logging::tracelevel }; ///< of tracelevel
    basic_logging::Logger info{ basic_logging::infolevel }; ///< of infolevel
    basic_logging::Logger warn{ basic_logging::warnlevel }; ///< of warnlevel
    basic_logging::Logger fatal{ basic_logging::fatallevel }; ///< of fatallevel

private:
    // Names are kept for good, so that a query is one load and a copy, with no lock.
    std::mutex m_namesMutex;
    std::set<std::string> m_names;
    std::atomic<const std::string *> m_level;
    static std::atomic<bool> s_isTracing; // not in the object, which saves a load for each query
};
