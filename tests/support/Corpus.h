#pragma once

#include <CLogSystem.h>

#include <QByteArray>
#include <QDirIterator>
#include <QFile>

#include <initializer_list>
#include <map>

namespace svgtool::test {

/// The bytes of every metafile below @p folders, by its path. One that cannot be read is empty.
inline std::map<QString, QByteArray> metafilesBelow(std::initializer_list<const char *> folders)
{
    std::map<QString, QByteArray> files;
    for (const char *folder : folders) {
        QDirIterator paths(QString::fromUtf8(folder),
                           { QStringLiteral("*.emf"), QStringLiteral("*.wmf") }, QDir::Files,
                           QDirIterator::Subdirectories);
        while (paths.hasNext()) {
            QFile file(paths.next());
            QByteArray &bytes = files[file.fileName()];
            if (file.open(QIODevice::ReadOnly))
                bytes = file.readAll();
        }
    }
    return files;
}

/// While it lives, nobody gets the log lines.
class SilentLogs
{
public:
    SilentLogs()
    {
        setSinks([](const std::string &) {});
    }
    ~SilentLogs() { setSinks({}); }
    SilentLogs(const SilentLogs &) = delete;
    SilentLogs &operator=(const SilentLogs &) = delete;

private:
    static void setSinks(const basic_logging::LevelOutput::Sink &sink)
    {
        for (auto *level : { &basic_logging::tracelevel, &basic_logging::infolevel,
                             &basic_logging::fatallevel, &basic_logging::warnlevel })
            level->setSink(sink);
    }
};

} // namespace svgtool::test
