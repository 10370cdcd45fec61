#pragma once

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

} // namespace svgtool::test
