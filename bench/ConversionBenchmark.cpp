// The cost of whole conversions in this process, and beside each the cost of what no converter can
// do without: two copies of the input, the numbers of the document formatted and its characters
// encoded; and where elements make up the document, its text copied twice, which is measured by
// itself as well.

#include "bench/Families.h"
#include "exact/svgtool/SVGTool.h"
#include "support/Corpus.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstring>
#include <fstream>
#include <string>

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
    double statusBytes(const std::string &name)
    {
        std::ifstream file("/proc/self/status");
        for (std::string line; std::getline(file, line);)
            if (line.compare(0, name.size(), name) == 0)
                return std::stod(line.substr(name.size())) * 1024;
        return 0;
    }

    // The most memory that one conversion takes on top of what was there, its result included.
    double peakBytes(const QByteArray &metafile)
    {
#if defined(__GLIBC__)
        malloc_trim(0);
#endif
        if (!(std::ofstream("/proc/self/clear_refs") << '5' << std::flush))
            return 0;
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

    void copyTwice(const QByteArray &bytes, std::vector<char> &into)
    {
        for (int i = 0; i < 2; ++i) {
            std::memcpy(into.data(), bytes.constData(), size_t(bytes.size()));
            benchmark::DoNotOptimize(into.data());
            benchmark::ClobberMemory();
        }
    }

    void runFloor(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        const QByteArray svg = convert(metafile);
        const Floor needed = floorOf(svg);
        std::vector<char> input(size_t(metafile.size()));
        std::vector<char> text(size_t(svg.size()));
        for (auto _ : state) {
            copyTwice(metafile, input);
            char digits[24];
            for (const qint64 number : needed.numbers)
                benchmark::DoNotOptimize(
                        std::to_chars(std::begin(digits), std::end(digits), number));
            benchmark::DoNotOptimize(needed.characters.toUtf8());
            if (family.isOfElements)
                copyTwice(svg, text);
        }
    }

    void runCopies(benchmark::State &state, const Family &family)
    {
        const QByteArray svg = convert(family.make(int(state.range(0))));
        std::vector<char> text(size_t(svg.size()));
        for (auto _ : state)
            copyTwice(svg, text);
    }

    // Converts all files, and reports their bytes and elements a second.
    void run(benchmark::State &state, const std::vector<QByteArray> &files)
    {
        const auto count = [&state](const char *name, double each) {
            auto &counter = state.counters[name];
            counter.flags = benchmark::Counter::kIsIterationInvariantRate;
            counter.value += each;
        };
        for (const QByteArray &file : files) {
            const QByteArray svg = convert(file);
            count("in", double(file.size()));
            count("out", double(svg.size()));
            count("elements", double(svg.count("/>") + svg.count("</text>")));
        }
        for (auto _ : state)
            for (const QByteArray &file : files)
                benchmark::DoNotOptimize(convert(file));
    }

    void runConversion(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        convert(metafile);
        state.counters["peak"] = peakBytes(metafile);
        run(state, { metafile });
    }

    void runCorpus(benchmark::State &state)
    {
        std::vector<QByteArray> files;
        for (const auto &[path, bytes] :
             test::metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR "/corpus" }))
            files.push_back(bytes);
        state.counters["files"] = double(files.size());
        run(state, files);
    }

} // namespace
} // namespace svgtool::bench

int main(int argc, char *argv[])
{
    using namespace svgtool::bench;
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
