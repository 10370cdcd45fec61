#include "records/Bytes.h"
#include "records/Numeric.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace svgtool {
namespace {

    constexpr qint64 kMax64 = std::numeric_limits<qint64>::max();
    constexpr qint64 kMin64 = std::numeric_limits<qint64>::min();
    constexpr qint32 kMax32 = std::numeric_limits<qint32>::max();
    constexpr qint32 kMin32 = std::numeric_limits<qint32>::min();
    constexpr char kBytes[] = { 1, 2, 3, 4, 5, 6, 7, 8 };
    constexpr ByteView kAll = { kBytes, 8 };

    struct SliceCase
    {
        qint64 offset, length;
        bool inside;
    };

    void PrintTo(const SliceCase &slice, std::ostream *out)
    {
        *out << slice.offset << "+" << slice.length;
    }

    class Slice : public testing::TestWithParam<SliceCase>
    {
    };

    TEST_P(Slice, IsThereOnlyWhenAllOfItLiesInside)
    {
        const auto [offset, length, inside] = GetParam();
        const std::optional<ByteView> part = slice(kAll, offset, length);
        ASSERT_EQ(part.has_value(), inside);
        EXPECT_TRUE(!inside || (part->data == kBytes + offset && part->size == length));
    }

    constexpr SliceCase kSlices[] = {
        { 0, 8, true },
        { 0, 0, true },
        { 8, 0, true },
        { 3, 5, true },
        { 3, 6, false },
        { 9, 0, false },
        { -1, 2, false },
        { 2, -1, false },
        { 4, kMax64, false },
        { kMax64, 4, false },
        { kMin64, 0, false },
        { 0, kMin64, false },
        { kMax64, kMax64, false },
    };
    INSTANTIATE_TEST_SUITE_P(Bounds, Slice, testing::ValuesIn(kSlices));

    TEST(Bytes, TailIsEmptyPastTheEnd)
    {
        EXPECT_EQ(tail(kAll, 5).data, kBytes + 5);
        EXPECT_EQ(tail(kAll, 5).size, 3);
        EXPECT_EQ(tail(kAll, 8).size, 0);
        for (const qint64 offset : { qint64(9), qint64(-1), kMax64, kMin64 })
            EXPECT_EQ(tail(kAll, offset).size, 0) << offset;
    }

    TEST(Bytes, ReadPaddedTakesMissingBytesForZero)
    {
        EXPECT_EQ(readPadded<quint32>(kAll), 0x04030201u);
        EXPECT_EQ(readPadded<quint32>({ kBytes, 3 }), 0x00030201u);
        EXPECT_EQ(readPadded<quint32>({ kBytes, 0 }), 0u);
        EXPECT_EQ(readPadded<quint32>({}), 0u);
        EXPECT_EQ(readPadded<quint32>({ kBytes, -1 }), 0u);
        EXPECT_EQ(elementAt<quint16>({ kBytes + 1, 6 }, 2), 0x0706);
    }

    struct TruncateCase
    {
        double value;
        qint32 expected;
    };

    void PrintTo(const TruncateCase &truncation, std::ostream *out)
    {
        *out << truncation.value;
    }

    class Truncate : public testing::TestWithParam<TruncateCase>
    {
    };

    TEST_P(Truncate, GoesTowardZeroOrToTheMinimum)
    {
        EXPECT_EQ(truncateToInt32(GetParam().value), GetParam().expected);
    }

    constexpr TruncateCase kTruncations[] = {
        { 0.0, 0 },
        { 2.9, 2 },
        { -2.9, -2 },
        { -0.9, 0 },
        { 2147483647.0, kMax32 },
        { 2147483647.9, kMax32 },
        { 2147483648.0, kMin32 },
        { -2147483648.0, kMin32 },
        { -2147483648.9, kMin32 },
        { -2147483649.0, kMin32 },
        { 1e300, kMin32 },
        { std::numeric_limits<double>::infinity(), kMin32 },
        { -std::numeric_limits<double>::infinity(), kMin32 },
        { std::numeric_limits<double>::quiet_NaN(), kMin32 },
    };
    INSTANTIATE_TEST_SUITE_P(Values, Truncate, testing::ValuesIn(kTruncations));

    TEST(Wrap, ArithmeticGoesRoundAt32And16Bits)
    {
        EXPECT_EQ(wrapAdd(kMax32, 1), kMin32);
        EXPECT_EQ(wrapAdd(-7, 3), -4);
        EXPECT_EQ(wrapSub(kMin32, 1), kMax32);
        EXPECT_EQ(wrapSub(0, kMin32), kMin32);
        EXPECT_EQ(wrapMul(65536, 65536), 0);
        EXPECT_EQ(wrapMul(-3, 5), -15);
        EXPECT_EQ(wrapMul(kMin32, -1), kMin32);
        EXPECT_EQ(wrapToInt16(0x12348001), -32767);
        EXPECT_EQ(wrapToInt16(-1), -1);
        EXPECT_EQ(wrapToInt16(32768), -32768);
    }

} // namespace
} // namespace svgtool
