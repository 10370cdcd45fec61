#include "cli/Files.h"

#include "cli/Options.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace svgtool {

namespace {

    // Everything that the open file still has.
    QByteArray readAll(const QString &name, QFile &file)
    {
        // A Qt 5 byte array ends at 2 GiB, and an input that never ends must not fill the memory.
        constexpr qint64 kLargestInput = qint64(1) << 30;
        constexpr qint64 kChunk = qint64(1) << 20;
        QByteArray bytes;
        QByteArray chunk(int(kChunk), Qt::Uninitialized);
        qint64 count = 0;
        while ((count = file.read(chunk.data(), kChunk)) > 0) {
            if (bytes.size() + count > kLargestInput)
                throw Failure{ name, QStringLiteral("is larger than 1 GiB") };
            bytes.append(chunk.constData(), int(count));
        }
        if (count < 0)
            throw Failure{ name, QStringLiteral("cannot be read: ") + file.errorString() };
        return bytes;
    }

    Failure writeFailure(const QString &name, const QFileDevice &file)
    {
        return { name, QStringLiteral("cannot be written: ") + file.errorString() };
    }

    // Writes the whole text or throws. A device that fills up takes a part of it first and says why
    // only when asked again; and what fails in a buffer shows when it is flushed.
    void writeAll(const QString &name, QFileDevice &file, const QByteArray &svg)
    {
        qint64 done = 0;
        while (done < svg.size()) {
            const qint64 count = file.write(svg.constData() + done, svg.size() - done);
            if (count <= 0)
                throw writeFailure(name, file);
            done += count;
        }
        if (!file.flush())
            throw writeFailure(name, file);
    }

} // namespace

QString printable(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char('?');
    }
    return text;
}

QString shownInput(const QString &path)
{
    return path == kStandardStream ? QStringLiteral("standard input") : path;
}

QByteArray readInput(const QString &path, std::FILE *standardInput)
{
    QFile file;
    if (path == kStandardStream) {
        const QString name = shownInput(path);
        if (!file.open(standardInput, QIODevice::ReadOnly | QIODevice::Unbuffered))
            throw Failure{ name, QStringLiteral("cannot be read: ") + file.errorString() };
        return readAll(name, file);
    }
    const QFileInfo info(path);
    if (info.isDir())
        throw Failure{ path, QStringLiteral("is a folder") };
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw Failure{ path,
                       info.exists() ? QStringLiteral("cannot be read: ") + file.errorString()
                                     : QStringLiteral("no such file") };
    }
    return readAll(path, file);
}

OutputFile::OutputFile(const QString &path) : m_path(path)
{
    const QFileInfo info(path);
    if (info.isDir())
        throw Failure{ path, QStringLiteral("cannot be written: it is a folder") };
    // A device or a pipe is written to, never replaced by a file.
    if (info.exists() && !info.isFile())
        m_file = std::make_unique<QFile>(path);
    else
        m_file = std::make_unique<QSaveFile>(path);
    // A buffer that is flushed in part does not tell why.
    if (!m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw writeFailure(path, *m_file);
}

// A save file that is left without commit() takes its temporary file away.
OutputFile::~OutputFile() = default;

void OutputFile::write(const QByteArray &bytes)
{
    writeAll(m_path, *m_file, bytes);
}

void OutputFile::setTime(const QDateTime &time)
{
    m_file->setFileTime(time, QFileDevice::FileModificationTime);
}

void OutputFile::finish()
{
    auto *file = qobject_cast<QSaveFile *>(m_file.get());
    if (file != nullptr && !file->commit())
        throw writeFailure(m_path, *file);
}

void writeOutput(const QString &path, std::FILE *standardOutput, const QByteArray &bytes)
{
    if (path == kStandardStream) {
        const QString name = QStringLiteral("standard output");
        QFile file;
        if (!file.open(standardOutput, QIODevice::WriteOnly | QIODevice::Unbuffered))
            throw writeFailure(name, file);
        return writeAll(name, file, bytes);
    }
    OutputFile file(path);
    file.write(bytes);
    file.finish();
}

void printMessage(const StandardStreams &streams, const QString &message)
{
    const QString line = QStringLiteral("metafile2svg: ") + printable(message);
    std::fputs((line + QLatin1Char('\n')).toLocal8Bit().constData(), streams.err);
}

} // namespace svgtool
