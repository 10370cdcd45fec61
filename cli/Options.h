#pragma once

#include <QString>
#include <QStringList>

namespace svgtool {

/// Stands for standard input or output in place of a file's name.
const QString kStandardStream = QStringLiteral("-");

/// What a command line asks for.
struct Options
{
    enum class Action { Convert, PrintText, RejectUsage };
    enum class Report {
        None,
        Records, ///< --report: what became of the records
        Facts, ///< --info: the header too; nothing is written
    };

    Action action = Action::Convert;
    QString text; ///< PrintText: what to print. RejectUsage: what is wrong

    QStringList inputs; ///< files and folders, or kStandardStream alone
    QString output; ///< file or folder; empty without -o
    QString dumpFile; ///< where to list records; empty for nowhere
    QString logLevel; ///< empty for none
    QString gallery; ///< the page of all results; empty for none
    Report report = Report::None;
    bool isJson = false; ///< reports as JSON
    bool isExact = false; ///< what the library gives, and only of what it accepts
    bool isRecursive = false;
    bool isForced = false; ///< convert what is converted already
    bool isQuiet = false;
    bool failsFast = false; ///< try no further file after one that failed
    bool keepsDocuments = false; ///< in the results, for what is made of them
    bool writes = true; ///< false for --check and --info
    int threads = 1; ///< files converted at the same time
    double width = 0; ///< of the root element, as height; 0 leaves it
    double height = 0;
    double scale = 1;
};

/// Reads the arguments, the program's name first.
Options parseArguments(const QStringList &arguments);

} // namespace svgtool
