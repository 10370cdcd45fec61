#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <memory>

class QDateTime;
class QFileDevice;

namespace svgtool {

/// The streams a run reads and writes. They stay open.
struct StandardStreams
{
    std::FILE *in = stdin;
    std::FILE *out = stdout;
    std::FILE *err = stderr;
};

/// Thrown where a file cannot be used.
struct Failure
{
    QString file; ///< as it may be shown
    QString reason;
};

/// The input's name in messages.
QString shownInput(const QString &path);

/// All bytes of a file, or of standard input. Throws Failure.
QByteArray readInput(const QString &path, std::FILE *standardInput);

/// A file that is written piece by piece. It appears, or changes, only when all of it is written; a
/// device or a pipe is written to.
class OutputFile
{
public:
    /// Opens it. Throws Failure.
    explicit OutputFile(const QString &path);
    ~OutputFile(); ///< Without finish(), the file stays as it was.

    /// Appends all of @p bytes, past any buffer of this process. Throws Failure.
    void write(const QByteArray &bytes);
    /// Has the file last changed at @p time, as far as its file system can tell.
    void setTime(const QDateTime &time);
    /// Puts the file in its place. Throws Failure.
    void finish();

private:
    QString m_path;
    std::unique_ptr<QFileDevice> m_file;
};

/// Writes a file as OutputFile does, or standard output. Throws Failure.
void writeOutput(const QString &path, std::FILE *standardOutput, const QByteArray &bytes);

/// A name or reason as it may stand in one line: control characters become question marks.
QString printable(QString text);

/// Prints one line to standard error, made printable.
void printMessage(const StandardStreams &streams, const QString &message);

} // namespace svgtool
