// The cost of whole conversions in this process, as exact texts and as pictures, and beside each
// the cost of what no converter can do without: two copies of the input, the numbers of the
// document formatted and its characters encoded; where elements make up an exact text, that copied
// twice, which is measured by itself as well; and of a picture, its document written once.

#include "bench/Families.h"
#include "exact/svgtool/SVGTool.h"
#include "picture/api/picture.hpp"
#include "support/Corpus.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace svgtool::bench {
namespace {

    QByteArray exactText(const QByteArray &metafile)
    {
        QByteArray svg;
        ConvertMetaFileToSVG(metafile, svg);
        return svg;
    }

    std::string drawn(const QByteArray &metafile)
    {
        const std::span bytes(metafile.constData(), size_t(metafile.size()));
        return drawMetafile(std::as_bytes(bytes)).document;
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
    template<auto convert>
    double peakBytes(const QByteArray &metafile)
    {
#if defined(__GLIBC__)
        malloc_trim(0);
#endif
        if (!(std::ofstream("/proc/self/clear_refs") << '5' << std::flush))
            return 0;
        const double before = statusBytes("VmRSS:");
        benchmark::DoNotOptimize(convert(metafile));
        return statusBytes("VmHWM:") - before;
    }

    std::string_view viewOf(const QByteArray &text)
    {
        return { text.constData(), size_t(text.size()) };
    }
    std::string_view viewOf(const std::string &text)
    {
        return text;
    }

    // The digits of all numbers of a document, each as a whole number.
    std::vector<int64_t> numbersOf(std::string_view svg)
    {
        constexpr size_t kMostDigits = 18;
        std::vector<int64_t> numbers;
        std::string digits;
        bool hasPoint = false;
        const auto take = [&] {
            if (!digits.empty())
                numbers.push_back(std::stoll(digits));
            digits.clear();
            hasPoint = false;
        };
        for (const char c : svg) {
            if (c >= '0' && c <= '9' && digits.size() < kMostDigits) {
                digits += c;
            } else if (c == '.' && !hasPoint) {
                hasPoint = true;
            } else {
                take();
            }
        }
        take();
        return numbers;
    }

    // The characters of an exact text.
    QString charactersOf(const QByteArray &svg)
    {
        QString characters;
        for (qsizetype at = svg.indexOf(" >"); at >= 0; at = svg.indexOf(" >", int(at + 1)))
            characters += QString::fromUtf8(
                    svg.mid(int(at + 2), int(svg.indexOf("</text>", int(at)) - at - 2)));
        return characters;
    }

    void copy(std::string_view bytes, int times, std::vector<char> &into)
    {
        for (int i = 0; i < times; ++i) {
            std::memcpy(into.data(), bytes.data(), bytes.size());
            benchmark::DoNotOptimize(into.data());
            benchmark::ClobberMemory();
        }
    }

    // What any converter must do for a document.
    void runFloor(benchmark::State &state, const QByteArray &metafile, std::string_view svg,
                  int copies, const QString &characters)
    {
        const std::vector<int64_t> numbers = numbersOf(svg);
        std::vector<char> input(size_t(metafile.size()));
        std::vector<char> text(svg.size());
        for (auto _ : state) {
            copy(viewOf(metafile), 2, input);
            char digits[24];
            for (const int64_t number : numbers)
                benchmark::DoNotOptimize(
                        std::to_chars(std::begin(digits), std::end(digits), number));
            benchmark::DoNotOptimize(characters.toUtf8());
            copy(svg, copies, text);
        }
    }

    void runExactFloor(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        const QByteArray svg = exactText(metafile);
        runFloor(state, metafile, viewOf(svg), family.isOfElements ? 2 : 0, charactersOf(svg));
    }

    void runPictureFloor(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        runFloor(state, metafile, drawn(metafile), 1, {});
    }

    void runCopies(benchmark::State &state, const Family &family)
    {
        const QByteArray svg = exactText(family.make(int(state.range(0))));
        std::vector<char> text(size_t(svg.size()));
        for (auto _ : state)
            copy(viewOf(svg), 2, text);
    }

    size_t count(std::string_view text, std::string_view part)
    {
        size_t times = 0;
        for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1))
            ++times;
        return times;
    }

    // Converts all files, and reports their bytes and elements a second.
    template<auto convert>
    void run(benchmark::State &state, const std::vector<QByteArray> &files)
    {
        const auto add = [&state](const char *name, size_t each) {
            auto &counter = state.counters[name];
            counter.flags = benchmark::Counter::kIsIterationInvariantRate;
            counter.value += double(each);
        };
        for (const QByteArray &file : files) {
            const auto svg = convert(file);
            add("in", size_t(file.size()));
            add("out", size_t(svg.size()));
            add("elements", count(viewOf(svg), "/>") + count(viewOf(svg), "</text>"));
        }
        for (auto _ : state)
            for (const QByteArray &file : files)
                benchmark::DoNotOptimize(convert(file));
    }

    template<auto convert>
    void runConversion(benchmark::State &state, const Family &family)
    {
        const QByteArray metafile = family.make(int(state.range(0)));
        const size_t bytes = size_t(metafile.size()) + viewOf(convert(metafile)).size();
        const double peak = peakBytes<convert>(metafile);
        state.counters["peak"] = peak;
        state.counters["peak to bytes"] = peak / double(bytes);
        run<convert>(state, { metafile });
    }

    template<auto convert>
    void runCorpus(benchmark::State &state)
    {
        std::vector<QByteArray> files;
        for (const auto &[path, bytes] :
             test::metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR "/corpus" }))
            files.push_back(bytes);
        state.counters["files"] = double(files.size());
        run<convert>(state, files);
    }

    // The smallest sound files of the corpus, for scripts/bench_start.py.
    void runSmallFiles(benchmark::State &state)
    {
        constexpr size_t kCount = 40;
        std::vector<QByteArray> files;
        for (const auto &[path, bytes] : test::metafilesBelow(
                     { SVGTOOL_SHARED_DIR "/corpus/emf", SVGTOOL_SHARED_DIR "/corpus/wmf" }))
            files.push_back(bytes);
        std::ranges::stable_sort(files, {}, &QByteArray::size);
        files.resize(std::min(files.size(), kCount));
        state.counters["files"] = double(files.size());
        run<drawn>(state, files);
    }

} // namespace
} // namespace svgtool::bench

int main(int argc, char *argv[])
{
    using namespace svgtool::bench;
    struct Kind
    {
        const char *name;
        void (*run)(benchmark::State &, const Family &);
        bool isOfPictures;
    };
    const Kind kinds[] = {
        { "convert", &runConversion<exactText>, false },
        { "floor", &runExactFloor, false },
        { "copies", &runCopies, false },
        { "picture", &runConversion<drawn>, true },
        { "picture floor", &runPictureFloor, true },
    };
    for (const Family &family : families())
        for (const Kind &kind : kinds)
            if (kind.isOfPictures || !family.isPlus)
                benchmark::RegisterBenchmark((std::string(kind.name) + ':' + family.name).c_str(),
                                             kind.run, family)
                        ->Arg(256)
                        ->Arg(1024)
                        ->Arg(65536)
                        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("corpus", &runCorpus<exactText>)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("picture corpus", &runCorpus<drawn>)
            ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("picture small files", &runSmallFiles)
            ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
