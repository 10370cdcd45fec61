// The cost of regions: their edges, and their way through a QRegion, at three sizes.

#include "geometry/RgnPathUtil.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace svgtool {
namespace {

    using Rects = std::vector<RECTL>;

    // Bands below one another, each wider or narrower than the last.
    Rects stackedBands(qint32 count)
    {
        Rects rects;
        for (qint32 i = 0; i < count; ++i)
            rects.push_back({ i % 7, i * 5, 100 + i % 11, i * 5 + 5 });
        return rects;
    }

    // The black squares of a board as high as it is wide.
    Rects checkerboard(qint32 count)
    {
        Rects rects;
        qint32 side = 1;
        while (side * side / 2 < count)
            ++side;
        for (qint32 y = 0; y < side; ++y)
            for (qint32 x = y % 2; x < side && qint32(rects.size()) < count; x += 2)
                rects.push_back({ x * 4, y * 4, x * 4 + 4, y * 4 + 4 });
        return rects;
    }

    // Steps that touch the next one along a part of a side.
    Rects staircase(qint32 count)
    {
        Rects rects;
        for (qint32 i = 0; i < count; ++i)
            rects.push_back({ i * 3, i * 3, i * 3 + 5, i * 3 + 3 });
        return rects;
    }

    void edges(benchmark::State &state, Rects (*shape)(qint32))
    {
        const Rects rects = shape(static_cast<qint32>(state.range(0)));
        for (auto _ : state) {
            std::list<CLine> lines;
            ConvertRgnDataToPath(rects, lines);
            benchmark::DoNotOptimize(lines.size());
        }
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }

    void region(benchmark::State &state, Rects (*shape)(qint32))
    {
        const Rects rects = shape(static_cast<qint32>(state.range(0)));
        for (auto _ : state)
            benchmark::DoNotOptimize(RegionToRects(RectsToRegion(rects)).size());
        state.SetItemsProcessed(state.iterations() * state.range(0));
    }

    BENCHMARK_CAPTURE(edges, stackedBands, stackedBands)->RangeMultiplier(10)->Range(1000, 100000);
    BENCHMARK_CAPTURE(edges, checkerboard, checkerboard)->RangeMultiplier(10)->Range(1000, 100000);
    BENCHMARK_CAPTURE(edges, staircase, staircase)->RangeMultiplier(10)->Range(1000, 100000);
    BENCHMARK_CAPTURE(region, stackedBands, stackedBands)->RangeMultiplier(10)->Range(1000, 100000);
    BENCHMARK_CAPTURE(region, checkerboard, checkerboard)->RangeMultiplier(10)->Range(1000, 100000);
    BENCHMARK_CAPTURE(region, staircase, staircase)->RangeMultiplier(10)->Range(1000, 100000);

} // namespace
} // namespace svgtool
