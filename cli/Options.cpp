#include "cli/Options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QThread>

#include <algorithm>
#include <cmath>

namespace svgtool {

namespace {

    struct UsageError
    {
        QString problem;
    };

    const char kExamples[] = R"(
Without -o a single file goes to standard output, and the files of a folder, or several, get
documents beside them: chart.emf becomes chart.emf.svg. Of these, and in an output folder, a
document that is newer than its metafile is left alone.

Examples:
  metafile2svg chart.emf >chart.svg           one file
  metafile2svg chart.emf -o chart.svg         the same
  metafile2svg - <chart.emf >chart.svg        the same, from a pipe
  metafile2svg a.emf b.wmf                    writes a.emf.svg and b.wmf.svg
  metafile2svg -r drawings -o svg/            a tree of folders into another
  metafile2svg --scale 2 chart.emf -o big.svg
  metafile2svg --info --json chart.emf        what is in it
  metafile2svg --check --report -r drawings   what would be missing
  metafile2svg --check --gallery all.html -r drawings

Exit status:
  0  all were converted
  1  some were not; a line on standard error names each and the reason
  2  wrong usage; nothing was done
  3  all were written, but some from damaged files
)";

    /// One option: its names, its help and, if it takes one, the name of its value.
    struct OptionText
    {
        const char *names; ///< separated by a blank
        const char *help;
        const char *value;
    };

    constexpr OptionText kOptions[] = {
        { "o output",
          "The file to write, or the folder to write to: one that exists, or whose "
          "name ends in a slash. - is standard output.",
          "OUT" },
        { "r recursive", "Convert what is in the folders of a folder too.", "" },
        { "j jobs", "Convert N files at the same time; by default as many as there are cores.",
          "N" },
        { "force", "Convert also where the document is newer than the metafile.", "" },
        { "exact",
          "Write precisely the bytes that the library hands back, which many viewers "
          "refuse, and convert no damaged file.",
          "" },
        { "width", "Width of the document, in pixels.", "W" },
        { "height", "Height of the document, in pixels.", "H" },
        { "scale", "Size of the document, as a multiple of its own.", "S" },
        { "check", "Do everything but write documents.", "" },
        { "info", "Tell format, size, bounds and records of each file; write no documents.", "" },
        { "report",
          "Tell which records were drawn, approximated and skipped, and where the "
          "first of each is.",
          "" },
        { "json", "Tell it as JSON.", "" },
        { "gallery", "Show all results on one page, PAGE.html, also those that are up to date.",
          "PAGE" },
        { "fail-fast", "Stop after the first file that fails.", "" },
        { "q quiet", "Show neither progress nor summary.", "" },
        { "dump-skipped",
          "List records without a handler in FILE (of a WMF, all records), one "
          "file at a time.",
          "FILE" },
        { "log-level", "Show the library's log lines: fatal, warning, info or trace.", "LEVEL" },
        { "h help", "Show this help.", "" },
        { "v version", "Show the version.", "" },
    };

    void addOptions(QCommandLineParser &parser)
    {
        for (const OptionText &text : kOptions) {
            QCommandLineOption option(QString::fromLatin1(text.names).split(QLatin1Char(' ')),
                                      QString::fromLatin1(text.help),
                                      QString::fromLatin1(text.value));
            parser.addOption(option);
        }
    }

    // The value of an option that may be given once.
    QString valueOf(const QCommandLineParser &parser, const QString &name)
    {
        const QStringList values = parser.values(name);
        if (values.size() > 1)
            throw UsageError{ QStringLiteral("--%1 is given more than once").arg(name) };
        if (values.contains(QString()))
            throw UsageError{ QStringLiteral("the value of --%1 is empty").arg(name) };
        return values.value(0);
    }

    double positiveNumber(const QCommandLineParser &parser, const char *name, double fallback)
    {
        const QString text = valueOf(parser, QString::fromLatin1(name));
        if (text.isEmpty())
            return fallback;
        bool isNumber = false;
        const double value = text.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(value) || value <= 0 || value > 1e6)
            throw UsageError{ QStringLiteral("--%1 needs a number above 0 and up to 1000000")
                                      .arg(QLatin1String(name)) };
        return value;
    }

    int threadCount(const QCommandLineParser &parser)
    {
        constexpr int kMostThreads = 1024;
        const QString text = valueOf(parser, QStringLiteral("jobs"));
        if (text.isEmpty())
            return std::max(1, QThread::idealThreadCount());
        bool isNumber = false;
        const int value = text.toInt(&isNumber);
        if (!isNumber || value < 1 || value > kMostThreads)
            throw UsageError{
                QStringLiteral("--jobs needs a number from 1 to %1").arg(kMostThreads)
            };
        return value;
    }

    // The name tells a page from a metafile that stands where the page is forgotten.
    bool isPage(const QString &path)
    {
        return path.endsWith(QLatin1String(".html"), Qt::CaseInsensitive)
                || path.endsWith(QLatin1String(".htm"), Qt::CaseInsensitive);
    }

    void rejectContradictions(const QCommandLineParser &parser, const Options &options)
    {
        const auto given = [&parser](const char *name) {
            return parser.isSet(QString::fromLatin1(name));
        };
        const struct
        {
            bool isWrong;
            const char *problem;
        } rules[] = {
            { options.inputs.isEmpty(), "no input file or folder is given" },
            { options.inputs.contains(QString()), "a file name is empty" },
            { options.inputs.size() > 1 && options.inputs.contains(kStandardStream),
              "- is standard input and cannot be one of several inputs" },
            { options.isExact && (given("width") || given("height") || given("scale")),
              "--exact leaves the size as it is" },
            { options.isJson && options.report == Options::Report::None,
              "--json needs --info or --report" },
            { given("info") && given("report"), "--info and --report exclude each other" },
            { given("info") && given("output"), "--info writes no documents, so -o has no use" },
            { !options.gallery.isEmpty() && !isPage(options.gallery),
              "--gallery needs the name of a page, which ends in .html" },
        };
        for (const auto &rule : rules) {
            if (rule.isWrong)
                throw UsageError{ QString::fromLatin1(rule.problem) };
        }
        const QStringList levels{ {},
                                  QStringLiteral("fatal"),
                                  QStringLiteral("warning"),
                                  QStringLiteral("info"),
                                  QStringLiteral("trace") };
        if (!levels.contains(options.logLevel))
            throw UsageError{ QStringLiteral("there is no log level ") + options.logLevel };
    }

    Options optionsOf(const QCommandLineParser &parser)
    {
        const auto given = [&parser](const char *name) {
            return parser.isSet(QString::fromLatin1(name));
        };
        Options options;
        options.inputs = parser.positionalArguments();
        options.output = valueOf(parser, QStringLiteral("output"));
        options.dumpFile = valueOf(parser, QStringLiteral("dump-skipped"));
        options.logLevel = valueOf(parser, QStringLiteral("log-level"));
        options.gallery = valueOf(parser, QStringLiteral("gallery"));
        options.keepsDocuments = !options.gallery.isEmpty();
        if (given("info"))
            options.report = Options::Report::Facts;
        else if (given("report"))
            options.report = Options::Report::Records;
        options.isJson = given("json");
        options.isExact = given("exact");
        options.isRecursive = given("recursive");
        options.isForced = given("force");
        options.isQuiet = given("quiet");
        options.failsFast = given("fail-fast");
        options.writes = !given("check") && !given("info");
        options.threads = threadCount(parser);
        options.width = positiveNumber(parser, "width", 0);
        options.height = positiveNumber(parser, "height", 0);
        options.scale = positiveNumber(parser, "scale", 1);
        rejectContradictions(parser, options);
        return options;
    }

} // namespace

Options parseArguments(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
            QStringLiteral("Converts Windows metafiles (EMF and WMF) to SVG 1.1."));
    parser.addPositionalArgument(
            QStringLiteral("FILE|FOLDER"),
            QStringLiteral("Metafiles, and folders with .emf and .wmf files; - is standard input."),
            QStringLiteral("FILE|FOLDER..."));
    addOptions(parser);

    Options options;
    if (!parser.parse(arguments)) {
        options.action = Options::Action::RejectUsage;
        options.text = parser.errorText();
        if (options.text.endsWith(QLatin1Char('.')))
            options.text.chop(1);
    } else if (parser.isSet(QStringLiteral("help"))) {
        options.action = Options::Action::PrintText;
        options.text = parser.helpText() + QLatin1String(kExamples);
    } else if (parser.isSet(QStringLiteral("version"))) {
        options.action = Options::Action::PrintText;
        options.text =
                QStringLiteral("metafile2svg %1\n").arg(QCoreApplication::applicationVersion());
    } else {
        try {
            options = optionsOf(parser);
        } catch (const UsageError &error) {
            options.action = Options::Action::RejectUsage;
            options.text = error.problem;
        }
    }
    return options;
}

} // namespace svgtool
