#pragma once

#include <QString>
#include <QStringList>

#include <cstdio>

namespace svgtool {

/// Exit statuses of the tool.
enum class ExitStatus : int {
    Converted = 0, ///< the SVG was written; also after --help and --version
    Failed = 1, ///< nothing was converted, or it could not be written; one line says why
    WrongUsage = 2, ///< the arguments make no sense
};

/// What a command line asks for.
struct Command
{
    enum class Action { Convert, PrintText, RejectUsage };

    Action action = Action::Convert;
    QString input; ///< path of the metafile; "-" is standard input
    QString output; ///< path of the SVG; "-" is standard output
    QString text; ///< PrintText: what to print. RejectUsage: what is wrong
};

/// The streams a run reads and writes. They stay open.
struct StandardStreams
{
    std::FILE *in = stdin;
    std::FILE *out = stdout;
    std::FILE *err = stderr;
};

/// Reads the arguments, the program's name first.
Command parseArguments(const QStringList &arguments);

/// Does what @p command asks for. An output file appears, or changes, only when it is complete.
ExitStatus run(const Command &command, const StandardStreams &streams = {});

} // namespace svgtool
