// The cost of whole conversions in this process, and beside each the cost of what no converter can
// do without: two copies of the input, the numbers of the document formatted and its characters
// encoded; and where elements make up the document, its text copied twice, which is measured by
// itself as well.

#include "bench/Families.h"
#include "svgtool/SVGTool.h"

#include <CLogSystem.h>
#include <benchmark/benchmark.h>

#include <QDirIterator>
#include <QFile>

#include <charconv>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace svgtool::bench {
namespace {

    QByteArray convert(const QByteArray &metafile)
    {
        QByteArray svg;
        ConvertMetaFileToSVG(metafile, svg);
        return svg;
    }

    // A line of /proc/self/status in bytes; 0 where there is none.
    double statusBytes(const char *name)
    {
        QFile file(QStringLiteral("/proc/self/status"));
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray text = file.readAll();
        const auto at = text.indexOf(name);
        return at < 0
                ? 0
                : text.mid(at + int(std::strlen(name))).trimmed().split(' ').front().toDouble()
                        * 1024;
    }

    // The most memory that one conversion takes on top of what was there, its result included.
    double peakBytes(const QByteArray &metafile)
    {
#if defined(__GLIBC__)
        malloc_trim(0);
#endif
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1)
            return 0;
        reset.close();
        const double before = statusBytes("VmRSS:");
        convert(metafile);
        return statusBytes("VmHWM:") - before;
    }

    /// What any converter must put into the document.
    struct Floor
    {
        std::vector<qint64> numbers;
        QString characters;
    };

    Floor floorOf(const QByteArray &svg)
    {
        Floor result;
        const char *const end = svg.constData() + svg.size();
        for (const char *at = svg.constData(); at != end;) {
            qint64 number = 0;
            const auto parsed = std::from_chars(at, end, number);
            if (parsed.ec == std::errc())
                result.numbers.push_back(number);
            at = std::max(at + 1, parsed.ptr);
        }
        for (qsizetype at = svg.indexOf(" >"); at >= 0; at = svg.indexOf(" >", int(at + 1)))
            result.characters += QString::fromUtf8(
                    svg.mid(int(at + 2), int(svg.indexOf("</text>", int(at)) - at - 2)));
        return result;
    }

    void copy(const QByteArray &bytes, std::vector<char> &into)
    {
        std::memcpy(into.data(), bytes.constData(), size_t(bytes.size()));
        benchmark::DoNotOptimize(into.data());
        benchmark::ClobberMemory();
    }

    void runFloor(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        const QByteArray svg = convert(metafile);
        const Floor needed = floorOf(svg);
        std::vector<char> input(size_t(metafile.size()));
        std::vector<char> text(size_t(svg.size()));
        for (auto _ : state) {
            copy(metafile, input);
            copy(metafile, input);
            char digits[24];
            for (const qint64 number : needed.numbers)
                benchmark::DoNotOptimize(
                        std::to_chars(std::begin(digits), std::end(digits), number));
            benchmark::DoNotOptimize(needed.characters.toUtf8());
            if (family.isOfElements) {
                copy(svg, text);
                copy(svg, text);
            }
        }
    }

    void runCopies(benchmark::State &state, const Family &family)
    {
        const QByteArray svg = convert(family.make(int(state.range(0))));
        std::vector<char> text(size_t(svg.size()));
        for (auto _ : state) {
            copy(svg, text);
            copy(svg, text);
        }
    }

    void report(benchmark::State &state, double in, double out, double elements)
    {
        const auto perSecond = benchmark::Counter::kIsIterationInvariantRate;
        state.counters["in"] = benchmark::Counter(in, perSecond);
        state.counters["out"] = benchmark::Counter(out, perSecond);
        state.counters["elements"] = benchmark::Counter(elements, perSecond);
    }

    double elementsIn(const QByteArray &svg)
    {
        return double(svg.count("/>") + svg.count("</text>"));
    }

    void runConversion(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        const QByteArray svg = convert(metafile);
        state.counters["peak"] = peakBytes(metafile);
        for (auto _ : state)
            benchmark::DoNotOptimize(convert(metafile));
        report(state, double(metafile.size()), double(svg.size()), elementsIn(svg));
    }

    std::vector<QByteArray> corpus()
    {
        std::map<QString, QByteArray> files;
        for (const char *folder : { SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR "/corpus" }) {
            QDirIterator it(QString::fromUtf8(folder),
                            { QStringLiteral("*.emf"), QStringLiteral("*.wmf") }, QDir::Files,
                            QDirIterator::Subdirectories);
            while (it.hasNext()) {
                QFile file(it.next());
                if (file.open(QIODevice::ReadOnly))
                    files[file.fileName()] = file.readAll();
            }
        }
        std::vector<QByteArray> bytes;
        for (const auto &[path, content] : files)
            bytes.push_back(content);
        return bytes;
    }

    void runCorpus(benchmark::State &state)
    {
        const std::vector<QByteArray> files = corpus();
        double in = 0;
        double out = 0;
        double elements = 0;
        for (const QByteArray &file : files) {
            const QByteArray svg = convert(file);
            in += double(file.size());
            out += double(svg.size());
            elements += elementsIn(svg);
        }
        for (auto _ : state)
            for (const QByteArray &file : files)
                benchmark::DoNotOptimize(convert(file));
        report(state, in, out, elements);
        state.counters["files"] = double(files.size());
    }

} // namespace
} // namespace svgtool::bench

int main(int argc, char *argv[])
{
    using namespace svgtool::bench;
    // A line a conversion that nobody reads.
    basic_logging::infolevel.setSink([](const std::string &) {});
    basic_logging::warnlevel.setSink([](const std::string &) {});
    const std::pair<const char *, void (*)(benchmark::State &, const Family &)> kinds[] = {
        { "convert", &runConversion }, { "floor", &runFloor }, { "copies", &runCopies }
    };
    for (const Family &family : families())
        for (const auto &[kind, run] : kinds)
            benchmark::RegisterBenchmark((std::string(kind) + ':' + family.name).c_str(), run,
                                         family)
                    ->RangeMultiplier(16)
                    ->Range(256, 65536)
                    ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("corpus", &runCorpus)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
