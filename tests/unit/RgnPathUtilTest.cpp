#include "exact/geometry/RgnPathUtil.h"
#include "exact/geometry/RectTools.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <sstream>

using namespace svgtool;

namespace {

using Rects = std::vector<RECTL>;

// Lines as text: "x1 y1 x2 y2, " for each.
std::string textOf(const auto &lines)
{
    std::ostringstream text;
    for (const CLine &line : lines)
        text << line.x1 << ' ' << line.y1 << ' ' << line.x2 << ' ' << line.y2 << ", ";
    return text.str();
}

std::string edgesOf(const Rects &rects)
{
    std::list<CLine> lines;
    EXPECT_TRUE(ConvertRgnDataToPath(rects, lines));
    return textOf(lines);
}

TEST(RegionEdges, AreExact)
{
    // Two that share a part of a side, the second one reversed.
    EXPECT_EQ(edgesOf({ { 0, 0, 10, 5 }, { 15, 10, 5, 5 } }),
              "0 0 10 0, 5 10 15 10, 0 5 5 5, 10 5 15 5, "
              "0 0 0 5, 10 0 10 5, 15 5 15 10, 5 5 5 10, ");
    // A side inside a longer one goes from it; those that touch and upright ones stay.
    EXPECT_EQ(edgesOf({ { 0, 0, 5, 5 }, { 1, 5, 4, 9 }, { 5, 0, 8, 5 } }),
              "0 0 5 0, 1 9 4 9, 5 0 8 0, 5 5 8 5, 0 5 1 5, 4 5 5 5, "
              "0 0 0 5, 5 0 5 5, 1 5 1 9, 4 5 4 9, 5 0 5 5, 8 0 8 5, ");
    // An empty one cuts too.
    constexpr qint32 kMost = std::numeric_limits<qint32>::max();
    EXPECT_EQ(edgesOf({ { -kMost, 0, kMost, 5 }, { 4, 5, 4, 8 } }),
              "-2147483647 0 2147483647 0, 4 8 4 8, -2147483647 5 4 5, 4 5 2147483647 5, "
              "-2147483647 0 -2147483647 5, 2147483647 0 2147483647 5, 4 5 4 8, 4 5 4 8, ");
}

// The list algorithm as it is told, at its quadratic cost.
std::string plainEdges(const Rects &rects)
{
    std::list<CHLine> lines;
    std::list<CVLine> sides;
    for (const RECTL &rect : rects)
        for (const qint32 side : { 0, 1 }) {
            lines.push_back(GetHLine(rect, side));
            sides.push_back(GetVLine(rect, side));
        }
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
    return textOf(lines) + textOf(sides);
}

// The same ones in every run, with edges over @p range numbers around zero.
Rects randomRects(std::mt19937 &random, size_t count, unsigned range)
{
    Rects rects(count);
    for (RECTL &rect : rects)
        for (qint32 *edge : { &rect.left, &rect.top, &rect.right, &rect.bottom })
            *edge = qint32(random() % range) - 8;
    return rects;
}

TEST(RegionEdges, AreThoseOfThePlainAlgorithm)
{
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        Rects rects = randomRects(random, round % 1000 == 1 ? 800 : random() % 25,
                                  2 + unsigned(random() % 20));
        // Some as they come, some as a region divides them.
        if (round % 3 == 0)
            rects = RegionToRects(RectsToRegion(rects));
        ASSERT_EQ(edgesOf(rects), plainEdges(rects)) << "round " << round;
    }
}

// One by one, to any number of rectangles.
QRegion plainRegion(const Rects &rects)
{
    QRegion region;
    for (const RECTL &r : rects)
        region += QRect(r.left, r.top, r.right - r.left, r.bottom - r.top);
    return region;
}

TEST(Regions, AreUnitedAndDividedAsQtDoes)
{
    std::mt19937 random(9);
    Rects bands;
    for (qint32 y = 0; y < 20000; y += 2)
        for (const qint32 x : { 0, 5 })
            bands.push_back({ x, y, x + 3, y + 2 });
    for (int round = 0; round < 300; ++round) {
        // Qt leaves bands with the same columns apart when it appends to them.
        const Rects rects = round == 0 ? bands : randomRects(random, random() % 40, 30);
        const QRegion expected = plainRegion(rects);
        ASSERT_EQ(RectsToRegion(rects), expected) << "round " << round;
        auto part = expected.begin();
        for (const RECTL &r : RegionToRects(expected))
            ASSERT_EQ(QRect(QPoint(r.left, r.top), QPoint(r.right, r.bottom - 1)), *part++);
        ASSERT_EQ(part, expected.end());
    }
    Rects squares = randomRects(random, 4000, 1000);
    for (RECTL &r : squares)
        r = { r.left, r.top, r.left + 25, r.top + 25 };
    EXPECT_TRUE(RectsToRegion(squares).xored(plainRegion(squares)).isEmpty());
}

TEST(Regions, ThatGrowByTheSquareAreRefused)
{
    Rects bars;
    for (qint32 i = 0; i < 4400; i += 4) {
        bars.push_back({ 0, i, 4400, i + 2 });
        bars.push_back({ i, 0, i + 2, 4400 });
    }
    EXPECT_THROW(RectsToRegion(bars), std::bad_alloc);
}

} // namespace
