#include "CLogSystem.h"

#include <QLoggingCategory>

#include <utility>

namespace {

// Off until a host's filter rules or QT_LOGGING_RULES switch it on: what a library prints without
// being asked ends up among the messages of its host.
Q_LOGGING_CATEGORY(svgtoolCategory, "svgtool", QtFatalMsg)

void writeDebug(const std::string &line)
{
    qCDebug(svgtoolCategory, "%s", line.c_str());
}

void writeInfo(const std::string &line)
{
    qCInfo(svgtoolCategory, "%s", line.c_str());
}

void writeWarning(const std::string &line)
{
    qCWarning(svgtoolCategory, "%s", line.c_str());
}

// A fatal line reports a failed conversion. Qt's own fatal level would end the host.
void writeCritical(const std::string &line)
{
    qCCritical(svgtoolCategory, "%s", line.c_str());
}

} // namespace

namespace basic_logging {

LevelOutput::LevelOutput(void (*defaultSink)(const std::string &)) : m_defaultSink(defaultSink) { }

LevelOutput::~LevelOutput() = default;

void LevelOutput::setSink(Sink sink)
{
    std::shared_ptr<const Sink> shared;
    if (sink)
        // make_shared would bring in a symbol that keeps the library loaded for good.
        shared.reset(new Sink(std::move(sink)));
    const std::lock_guard lock(m_mutex);
    m_sink = std::move(shared);
}

void LevelOutput::operator()(const std::string &line) const
{
    std::shared_ptr<const Sink> sink;
    {
        const std::lock_guard lock(m_mutex);
        sink = m_sink;
    }
    if (sink)
        (*sink)(line);
    else
        m_defaultSink(line);
}

LevelOutput tracelevel(&writeDebug);
LevelOutput infolevel(&writeInfo);
LevelOutput warnlevel(&writeWarning);
LevelOutput fatallevel(&writeCritical);

} // namespace basic_logging

std::atomic<bool> CLogSystem::s_isTracing{ false };

CLogSystem::CLogSystem() : m_names{ "INFO" }, m_level(&*m_names.begin()) { }

CLogSystem::~CLogSystem() = default;

void CLogSystem::setLevel(const std::string &name)
{
    const std::lock_guard lock(m_namesMutex);
    m_level.store(&*m_names.insert(name).first, std::memory_order_release);
    s_isTracing.store(name == "TRACE", std::memory_order_relaxed);
}

namespace {
CLogSystem rootInstance;
} // namespace

CLogSystem *CLogSystem::theRootInstance = &rootInstance;
