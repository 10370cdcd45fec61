#include "geometry/RgnPathUtil.h"
#include "geometry/RectTools.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <tuple>

namespace svgtool::test {
namespace {

    using Edge = std::tuple<qint32, qint32, qint32, qint32>;
    using Edges = std::vector<Edge>;

    Edges edgesOf(const std::vector<RECTL> &rects)
    {
        std::list<CLine> lines;
        EXPECT_TRUE(ConvertRgnDataToPath(rects, lines));
        Edges edges;
        for (const CLine &line : lines)
            edges.emplace_back(line.x1, line.y1, line.x2, line.y2);
        return edges;
    }

    struct EdgesCase
    {
        const char *name;
        std::vector<RECTL> rects;
        Edges edges;
    };

    TEST(RegionEdges, AreExact)
    {
        const EdgesCase cases[] = {
            { "none", {}, {} },
            { "one",
              { { 0, 0, 10, 5 } },
              { { 0, 0, 10, 0 }, { 0, 5, 10, 5 }, { 0, 0, 0, 5 }, { 10, 0, 10, 5 } } },
            { "reversed",
              { { 10, 5, 0, 0 } },
              { { 0, 5, 10, 5 }, { 0, 0, 10, 0 }, { 10, 0, 10, 5 }, { 0, 0, 0, 5 } } },
            { "sideBySide",
              { { 0, 0, 5, 5 }, { 5, 0, 9, 5 } },
              { { 0, 0, 5, 0 },
                { 0, 5, 5, 5 },
                { 5, 0, 9, 0 },
                { 5, 5, 9, 5 },
                { 0, 0, 0, 5 },
                { 5, 0, 5, 5 },
                { 5, 0, 5, 5 },
                { 9, 0, 9, 5 } } },
            { "sameSidesStay",
              { { 0, 0, 5, 5 }, { 0, 5, 5, 9 } },
              { { 0, 0, 5, 0 },
                { 0, 5, 5, 5 },
                { 0, 5, 5, 5 },
                { 0, 9, 5, 9 },
                { 0, 0, 0, 5 },
                { 5, 0, 5, 5 },
                { 0, 5, 0, 9 },
                { 5, 5, 5, 9 } } },
        };
        for (const EdgesCase &each : cases)
            EXPECT_EQ(edgesOf(each.rects), each.edges) << each.name;
    }

    // The list algorithm as it is told, at its quadratic cost.
    Edges plainEdges(const std::vector<RECTL> &rects)
    {
        std::list<CHLine> lines;
        for (const RECTL &rect : rects)
            for (const qint32 side : { 0, 1 })
                lines.push_back(GetHLine(rect, side));
        for (auto a = lines.begin(); a != lines.end();) {
            auto b = std::next(a);
            while (b != lines.end() && HSplitIfOverlap(*a, *b, lines) <= 0)
                ++b;
            if (b == lines.end()) {
                ++a;
                continue;
            }
            a = lines.erase(a);
            if (a == b)
                a = lines.erase(b);
            else
                lines.erase(b);
        }
        Edges edges;
        for (const CHLine &line : lines)
            edges.emplace_back(line.x1, line.y1, line.x2, line.y2);
        for (const RECTL &rect : rects)
            for (const qint32 side : { 0, 1 }) {
                const CVLine line = GetVLine(rect, side);
                edges.emplace_back(line.x1, line.y1, line.x2, line.y2);
            }
        return edges;
    }

    TEST(RegionEdges, AreThoseOfThePlainAlgorithm)
    {
        std::mt19937 random(7);
        for (int round = 0; round < 3000; ++round) {
            const int range = 2 + int(random() % 20);
            const auto coordinate = [&] { return qint32(random() % unsigned(range)) - range / 2; };
            std::vector<RECTL> rects(random() % 25);
            for (RECTL &rect : rects)
                rect = { coordinate(), coordinate(), coordinate(), coordinate() };
            // Some as they come, some as a region divides them.
            if (round % 3 == 0)
                rects = RegionToRects(RectsToRegion(rects));
            ASSERT_EQ(edgesOf(rects), plainEdges(rects)) << "round " << round;
        }
    }

    TEST(Regions, AreUnitedAndDividedAsQtDoes)
    {
        std::mt19937 random(9);
        for (int round = 0; round < 300; ++round) {
            std::vector<RECTL> rects(random() % 40);
            QRegion expected;
            for (RECTL &rect : rects) {
                const auto edge = [&] { return qint32(random() % 30); };
                rect = { edge(), edge(), edge(), edge() };
                expected = expected.united(QRegion(rectAt(
                        rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top)));
            }
            const QRegion region = RectsToRegion(rects);
            ASSERT_EQ(region, expected) << "round " << round;
            std::vector<Edge> parts;
            for (const RECTL &rect : RegionToRects(region))
                parts.emplace_back(rect.left, rect.top, rect.right, rect.bottom);
            std::vector<Edge> expectedParts;
            for (const QRect &rect : expected)
                expectedParts.emplace_back(rect.left(), rect.top(), rect.right(),
                                           rect.bottom() + 1);
            ASSERT_EQ(parts, expectedParts) << "round " << round;
        }
    }

} // namespace
} // namespace svgtool::test
