#include "cli/Cli.h"

#include "svgtool/SVGTool.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QtEndian>

#include <new>

namespace svgtool {

namespace {

    const QString kStandardStream = QStringLiteral("-");

    // Why a file cannot be used.
    struct Failure
    {
        QString file;
        QString reason;
    };

    // A name or reason as it may stand in the one line that is printed.
    QString printable(QString text)
    {
        for (QChar &character : text) {
            if (character.category() == QChar::Other_Control)
                character = QLatin1Char('?');
        }
        return text;
    }

    void printError(const StandardStreams &streams, const QString &message)
    {
        const QString line = QStringLiteral("metafile2svg: ") + printable(message);
        std::fputs((line + QLatin1Char('\n')).toLocal8Bit().constData(), streams.err);
    }

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

    QByteArray readInput(const QString &path, std::FILE *standardInput)
    {
        QFile file;
        if (path == kStandardStream) {
            const QString name = QStringLiteral("standard input");
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

    // What the header of an EMF gives as the size of the file.
    quint32 emfHeaderSize(const QByteArray &bytes)
    {
        constexpr int kOffsetOfSize = 48;
        return bytes.size() < kOffsetOfSize + 4
                ? 0
                : qFromLittleEndian<quint32>(bytes.constData() + kOffsetOfSize);
    }

    QString reasonOf(qint32 result, const QByteArray &bytes)
    {
        switch (result) {
        case SvgToolUnusableInput:
            return QStringLiteral("not enough memory");
        case SvgToolException:
            return QStringLiteral("an exception ended the conversion");
        case SvgToolInvalidEmf:
            return QStringLiteral("its EMF header names %1 bytes, but it has %2")
                    .arg(emfHeaderSize(bytes))
                    .arg(bytes.size());
        case SvgToolInvalidWmf:
            return QStringLiteral("not a metafile: neither an EMF nor a WMF header");
        default:
            return QStringLiteral("the library gave the unknown result %1").arg(result);
        }
    }

    QByteArray convert(const QString &name, const QByteArray &bytes)
    {
        constexpr int kSmallestMetafile = 18;
        if (bytes.isEmpty())
            throw Failure{ name, QStringLiteral("is empty") };
        if (bytes.size() < kSmallestMetafile) {
            throw Failure{ name,
                           QStringLiteral("has only %1 bytes; a metafile has at least %2")
                                   .arg(bytes.size())
                                   .arg(kSmallestMetafile) };
        }
        QByteArray svg;
        const qint32 result = ConvertMetaFileToSVG(bytes, svg);
        if (result != SvgToolEmfConverted && result != SvgToolWmfConverted)
            throw Failure{ name, reasonOf(result, bytes) };
        return svg;
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

    void writeOutput(const QString &path, std::FILE *standardOutput, const QByteArray &svg)
    {
        if (path == kStandardStream) {
            const QString name = QStringLiteral("standard output");
            QFile file;
            if (!file.open(standardOutput, QIODevice::WriteOnly | QIODevice::Unbuffered))
                throw writeFailure(name, file);
            return writeAll(name, file, svg);
        }
        const QFileInfo info(path);
        if (info.isDir())
            throw Failure{ path, QStringLiteral("cannot be written: it is a folder") };
        if (info.exists() && !info.isFile()) {
            // A device or a pipe is written to, never replaced by a file.
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
                throw writeFailure(path, file);
            return writeAll(path, file, svg);
        }
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            throw writeFailure(path, file);
        // A save file that is left without commit() takes its temporary file away.
        writeAll(path, file, svg);
        if (!file.commit())
            throw writeFailure(path, file);
    }

} // namespace

Command parseArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Converts a Windows metafile (EMF or WMF) to SVG 1.1."));
    parser.addPositionalArgument(QStringLiteral("IN"),
                                 QStringLiteral("The metafile; - reads standard input."));
    const QCommandLineOption output(
            { QStringLiteral("o"), QStringLiteral("output") },
            QStringLiteral("The SVG file to write; - or no -o writes standard output. An existing "
                           "file is replaced once the new one is complete."),
            QStringLiteral("OUT"));
    const QCommandLineOption exact(
            QStringLiteral("exact"),
            QStringLiteral("Write precisely the bytes that the library hands back. The output "
                           "without this option is the same today."));
    const QCommandLineOption help({ QStringLiteral("h"), QStringLiteral("help") },
                                  QStringLiteral("Show this help."));
    const QCommandLineOption version({ QStringLiteral("v"), QStringLiteral("version") },
                                     QStringLiteral("Show the version."));
    parser.addOptions({ output, exact, help, version });

    using Action = Command::Action;
    const auto reject = [](const QString &problem) {
        return Command{ Action::RejectUsage, {}, {}, problem };
    };
    if (!parser.parse(arguments)) {
        QString problem = parser.errorText();
        if (problem.endsWith(QLatin1Char('.')))
            problem.chop(1);
        return reject(problem);
    }
    if (parser.isSet(help))
        return { Action::PrintText, {}, {}, parser.helpText() };
    if (parser.isSet(version)) {
        return { Action::PrintText,
                 {},
                 {},
                 QStringLiteral("metafile2svg %1\n").arg(QCoreApplication::applicationVersion()) };
    }
    // --exact needs no more than to be known: there is one output so far, the exact one.
    const QStringList inputs = parser.positionalArguments();
    const QStringList outputs = parser.values(output);
    if (inputs.size() != 1)
        return reject(QStringLiteral("one input file is needed, %1 are given").arg(inputs.size()));
    if (outputs.size() > 1)
        return reject(QStringLiteral("more than one output file is given"));
    if (inputs.first().isEmpty() || outputs.contains(QString()))
        return reject(QStringLiteral("a file name is empty"));
    return { Action::Convert, inputs.first(), outputs.value(0, kStandardStream), {} };
}

ExitStatus run(const Command &command, const StandardStreams &streams)
{
    const QString inputName =
            command.input == kStandardStream ? QStringLiteral("standard input") : command.input;
    try {
        if (command.action == Command::Action::RejectUsage) {
            printError(streams, command.text + QStringLiteral(" (metafile2svg --help explains)"));
            return ExitStatus::WrongUsage;
        }
        if (command.action == Command::Action::PrintText) {
            writeOutput(kStandardStream, streams.out, command.text.toLocal8Bit());
            return ExitStatus::Converted;
        }
        const QByteArray svg = convert(inputName, readInput(command.input, streams.in));
        writeOutput(command.output, streams.out, svg);
        return ExitStatus::Converted;
    } catch (const Failure &failure) {
        printError(streams, failure.file + QStringLiteral(": ") + failure.reason);
    } catch (const std::bad_alloc &) {
        printError(streams, inputName + QStringLiteral(": not enough memory"));
    }
    return ExitStatus::Failed;
}

} // namespace svgtool
