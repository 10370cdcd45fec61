#include "geometry/RgnPathUtil.h"
#include "geometry/RectTools.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <sstream>

using namespace svgtool;

namespace {

// Lines as text: "x1 y1 x2 y2, " for each.
template<class Line>
std::string textOf(const std::list<Line> &lines)
{
    std::ostringstream text;
    for (const CLine &line : lines)
        text << line.x1 << ' ' << line.y1 << ' ' << line.x2 << ' ' << line.y2 << ", ";
    return text.str();
}

std::string edgesOf(const std::vector<RECTL> &rects)
{
    std::list<CLine> lines;
    EXPECT_TRUE(ConvertRgnDataToPath(rects, lines));
    return textOf(lines);
}

TEST(RegionEdges, AreExact)
{
    EXPECT_EQ(edgesOf({}), "");
    // Two that share a part of a side, the second one reversed.
    EXPECT_EQ(edgesOf({ { 0, 0, 10, 5 }, { 15, 10, 5, 5 } }),
              "0 0 10 0, 5 10 15 10, 0 5 5 5, 10 5 15 5, "
              "0 0 0 5, 10 0 10 5, 15 5 15 10, 5 5 5 10, ");
    // A side inside a longer one goes from it; those that touch and upright ones stay.
    EXPECT_EQ(edgesOf({ { 0, 0, 5, 5 }, { 1, 5, 4, 9 }, { 5, 0, 8, 5 } }),
              "0 0 5 0, 1 9 4 9, 5 0 8 0, 5 5 8 5, 0 5 1 5, 4 5 5 5, "
              "0 0 0 5, 5 0 5 5, 1 5 1 9, 4 5 4 9, 5 0 5 5, 8 0 8 5, ");
    // An empty one cuts too.
    EXPECT_EQ(edgesOf({ { 0, 0, 9, 5 }, { 4, 5, 4, 8 } }),
              "0 0 9 0, 4 8 4 8, 0 5 4 5, 4 5 9 5, 0 0 0 5, 9 0 9 5, 4 5 4 8, 4 5 4 8, ");
    constexpr qint32 kLeast = std::numeric_limits<qint32>::min();
    constexpr qint32 kMost = std::numeric_limits<qint32>::max();
    EXPECT_EQ(edgesOf({ { kLeast, kLeast, kMost, kMost }, { 0, kMost, kMost, 7 } }),
              "-2147483648 -2147483648 2147483647 -2147483648, 0 7 2147483647 7, "
              "-2147483648 2147483647 0 2147483647, "
              "-2147483648 -2147483648 -2147483648 2147483647, "
              "2147483647 -2147483648 2147483647 2147483647, "
              "0 7 0 2147483647, 2147483647 7 2147483647 2147483647, ");
}

// The list algorithm as it is told, at its quadratic cost.
std::string plainEdges(const std::vector<RECTL> &rects)
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
    std::list<CVLine> sides;
    for (const RECTL &rect : rects)
        for (const qint32 side : { 0, 1 })
            sides.push_back(GetVLine(rect, side));
    return textOf(lines) + textOf(sides);
}

TEST(RegionEdges, AreThoseOfThePlainAlgorithm)
{
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const int range = 2 + int(random() % 20);
        const auto coordinate = [&] { return qint32(random() % unsigned(range)) - range / 2; };
        std::vector<RECTL> rects(round % 1000 == 1 ? 800 : random() % 25);
        for (RECTL &rect : rects)
            rect = { coordinate(), coordinate(), coordinate(), coordinate() };
        // Some as they come, some as a region divides them.
        if (round % 3 == 0)
            rects = RegionToRects(RectsToRegion(rects));
        ASSERT_EQ(edgesOf(rects), plainEdges(rects)) << "round " << round;
    }
}

// One by one, to any number of rectangles.
QRegion plainRegion(const std::vector<RECTL> &rects)
{
    QRegion region;
    for (const RECTL &r : rects)
        region += QRect(r.left, r.top, r.right - r.left, r.bottom - r.top);
    return region;
}

TEST(Regions, AreUnitedAndDividedAsQtDoes)
{
    std::mt19937 random(9);
    for (int round = 0; round < 300; ++round) {
        std::vector<RECTL> rects(random() % 40);
        for (RECTL &rect : rects) {
            const auto edge = [&] { return qint32(random() % 30); };
            rect = { edge(), edge(), edge(), edge() };
        }
        const QRegion expected = plainRegion(rects);
        ASSERT_EQ(RectsToRegion(rects), expected) << "round " << round;
        auto part = expected.begin();
        for (const RECTL &rect : RegionToRects(expected)) {
            ASSERT_EQ(QRect(QPoint(rect.left, rect.top), QPoint(rect.right, rect.bottom - 1)),
                      *part);
            ++part;
        }
        ASSERT_EQ(part, expected.end());
    }
}

TEST(Regions, OfManyBandsInOrderAreDividedAsQtDoes)
{
    // Qt leaves bands with the same columns apart when it appends to them.
    std::vector<RECTL> rects;
    for (qint32 y = 0; y < 20000; y += 2) {
        rects.push_back({ 0, y, 3, y + 2 });
        rects.push_back({ 5, y, 8, y + 2 });
    }
    EXPECT_EQ(RectsToRegion(rects), plainRegion(rects));
}

TEST(Regions, OfManyInNoOrderCoverTheSameArea)
{
    std::mt19937 random(3);
    std::vector<RECTL> rects(4000);
    for (RECTL &rect : rects) {
        const auto at = [&] { return qint32(random() % 1000); };
        const POINTL corner{ at(), at() };
        rect = { corner.x, corner.y, corner.x + 25, corner.y + 25 };
    }
    EXPECT_TRUE(RectsToRegion(rects).xored(plainRegion(rects)).isEmpty());
}

TEST(Regions, ThatGrowByTheSquareAreRefused)
{
    std::vector<RECTL> bars;
    for (qint32 i = 0; i < 1100; ++i) {
        bars.push_back({ 0, 4 * i, 4400, 4 * i + 2 });
        bars.push_back({ 4 * i, 0, 4 * i + 2, 4400 });
    }
    EXPECT_THROW(RectsToRegion(bars), std::bad_alloc);
}

} // namespace
