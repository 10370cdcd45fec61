#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

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

/// Writes a file, or standard output. Throws Failure.
///
/// A file appears, or changes, only when all of it is written; a device or a pipe is written to.
void writeOutput(const QString &path, std::FILE *standardOutput, const QByteArray &bytes);

/// A name or reason as it may stand in one line: control characters become question marks.
QString printable(QString text);

/// Prints one line to standard error, made printable.
void printMessage(const StandardStreams &streams, const QString &message);

} // namespace svgtool
