#include "cli/Run.h"

#include "cli/Batch.h"
#include "cli/Exact.h"
#include "cli/Gallery.h"
#include "cli/Progress.h"
#include "cli/Report.h"

#include <new>
#include <optional>

namespace svgtool {

namespace {

    // Prints reports one behind the other.
    class ReportPrinter
    {
    public:
        ReportPrinter(const Options &options, const StandardStreams &streams)
            : m_options(options),
              m_stream(options.writes && options.output == kStandardStream ? streams.err
                                                                           : streams.out),
              m_messages(streams.err)
        {
            if (m_options.isJson)
                print("[\n");
        }
        bool tellsMessages() const { return m_options.isJson && m_stream == m_messages; }
        void print(const FileResult &result)
        {
            if (m_options.report == Options::Report::None)
                return;
            if (m_options.isJson && m_hasOne)
                print(",\n");
            m_hasOne = true;
            print(reportText(result, m_options));
        }
        void end()
        {
            if (m_options.isJson)
                print("\n]\n");
        }

    private:
        void print(const QByteArray &text) { writeOutput(kStandardStream, m_stream, text); }

        const Options &m_options;
        std::FILE *m_stream;
        std::FILE *m_messages;
        bool m_hasOne = false;
    };

    std::vector<FileResult> convertPlan(const Plan &plan, const Options &options,
                                        const StandardStreams &streams)
    {
        std::optional<Gallery> gallery;
        if (!options.gallery.empty())
            gallery.emplace(options.gallery);
        ReportPrinter reports(options, streams);
        Progress progress(streams.err, plan.jobs.size(), plan.isBatch && !options.isQuiet);
        const auto tell = [&](FileResult &result) {
            const QString loss = options.isQuiet ? QString() : result.loss;
            if (!result.message.isEmpty() || !loss.isEmpty()
                || options.report != Options::Report::None)
                progress.hide();
            // Where reports are JSON on standard error, they say it and nothing else may.
            if (!reports.tellsMessages()) {
                if (!result.message.isEmpty())
                    printMessage(streams, result.message,
                                 isWritten(result.status) ? Tone::Warning : Tone::Error);
                if (!loss.isEmpty())
                    printMessage(streams, loss, Tone::Warning);
            }
            reports.print(result);
            if (gallery)
                gallery->add(result);
            // A batch may be large; what is told is not needed any more.
            result.facts = {};
            result.report.records = {};
            result.document = {};
        };
        auto results = convertAll(plan.jobs, options, streams, tell,
                                  [&progress](size_t done) { progress.show(done); });
        progress.hide();
        reports.end();
        if (gallery)
            gallery->finish();
        return results;
    }

    // The file that lists records without a handler, while files are converted.
    class RecordList
    {
    public:
        explicit RecordList(const std::string &path) : m_path(path), m_file(path)
        {
            check(exactPath().startRecordList(m_file.descriptor(), &m_reason));
        }
        void finish()
        {
            check(exactPath().stopRecordList(&m_reason));
            m_file.finish();
        }

    private:
        void check(bool isDone) const
        {
            if (!isDone)
                throw Failure{ shownName(m_path),
                               QStringLiteral("cannot be written: ") + m_reason };
        }

        std::string m_path;
        OutputFile m_file;
        QString m_reason;
    };

    ExitStatus convert(Options &options, const StandardStreams &streams)
    {
        const Plan plan = makePlan(options);
        if (!plan.problem.isEmpty()) {
            printMessage(streams, plan.problem);
            return ExitStatus::WrongUsage;
        }
        if (!options.logLevel.empty())
            exactPath().showLog(options.logLevel);
        if (!plan.isBatch && options.output.empty())
            options.output = kStandardStream;
        std::optional<RecordList> list;
        if (!options.dumpFile.empty()) {
            if (options.threads > 1 && plan.jobs.size() > 1)
                printMessage(streams, QStringLiteral("--dump-skipped converts one file at a time"),
                             Tone::Warning);
            options.threads = 1;
            list.emplace(options.dumpFile);
        }
        const std::vector<FileResult> results = convertPlan(plan, options, streams);
        if (plan.isBatch && !options.isQuiet)
            printMessage(streams, summaryText(results) + leftOutText(plan), Tone::Note);
        if (list)
            list->finish();
        return exitStatus(results, options);
    }

} // namespace

ExitStatus run(Options options, const StandardStreams &streams)
{
    try {
        switch (options.action) {
        case Options::Action::RejectUsage:
            printMessage(streams,
                         shownName(options.text)
                                 + QStringLiteral(" (metafile2svg --help explains)"));
            return ExitStatus::WrongUsage;
        case Options::Action::PrintText:
            writeOutput(kStandardStream, streams.out, QByteArray::fromStdString(options.text));
            return ExitStatus::Converted;
        case Options::Action::Convert:
            return convert(options, streams);
        }
    } catch (const Failure &failure) {
        printMessage(streams, failure.file + QLatin1String(": ") + failure.reason);
    } catch (const std::bad_alloc &) {
        printMessage(streams, QStringLiteral("not enough memory"));
    }
    return ExitStatus::Failed;
}

} // namespace svgtool
