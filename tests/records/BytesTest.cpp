#include "core/base/Bytes.h"
#include "core/base/Numeric.h"
#include "core/base/TextBuffer.h"
#include "exact/records/RecordCopy.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace svgtool {
namespace {

    constexpr int64_t kMax64 = std::numeric_limits<int64_t>::max();
    constexpr int64_t kMin64 = std::numeric_limits<int64_t>::min();
    constexpr int32_t kMax32 = std::numeric_limits<int32_t>::max();
    constexpr int32_t kMin32 = std::numeric_limits<int32_t>::min();
    constexpr char kBytes[] = { 1, 2, 3, 4, 5, 6, 7, 8 };
    constexpr ByteView kAll = { kBytes, 8 };

    TEST(Bytes, SliceIsThereOnlyWhenAllOfItLiesInsideAndTailIsElseEmpty)
    {
        const int64_t numbers[] = { 0, 1, 3, 5, 7, 8, 9, -1, kMax64, kMin64 };
        for (const int64_t offset : numbers) {
            const bool isInside = offset >= 0 && offset <= 8;
            const int64_t room = isInside ? 8 - offset : 0;
            EXPECT_EQ(tail(kAll, offset).size, room) << offset;
            EXPECT_TRUE(room == 0 || tail(kAll, offset).data == kBytes + offset);
            for (const int64_t length : numbers) {
                const std::optional<ByteView> part = slice(kAll, offset, length);
                EXPECT_EQ(part.has_value(), isInside && length >= 0 && length <= room)
                        << offset << "+" << length;
                EXPECT_TRUE(!part || (part->data == kBytes + offset && part->size == length));
            }
        }
    }

    TEST(Bytes, ReadPaddedTakesMissingBytesForZero)
    {
        EXPECT_EQ(readPadded<uint32_t>(kAll), 0x04030201u);
        EXPECT_EQ(readPadded<uint32_t>({ kBytes, 3 }), 0x00030201u);
        EXPECT_EQ(readPadded<uint32_t>({}), 0u);
        EXPECT_EQ(readPadded<uint32_t>({ kBytes, -1 }), 0u);
        EXPECT_EQ(elementAt<uint16_t>({ kBytes + 1, 6 }, 2), 0x0706);
    }

    // What ships is what the sanitizer's builds test.
    TEST(RecordCopy, AllShareABlockAndWhatIsBehindARecordIsNobodys)
    {
        RecordCopy copy;
        const std::string file(100, 'x');
        char *const block = copy.make({ file.data(), 100 }, 100);
        EXPECT_EQ(copy.make({ file.data(), 100 }, 13), block);
#ifdef SVGTOOL_ADDRESS_SANITIZER
        EXPECT_EQ(__asan_region_is_poisoned(block, 100), block + 13);
#endif
    }

    TEST(Numbers, TruncationGoesTowardZeroOrToTheMinimum)
    {
        EXPECT_EQ(truncateToInt32(2.9), 2);
        EXPECT_EQ(truncateToInt32(-2.9), -2);
        EXPECT_EQ(truncateToInt32(2147483647.9), kMax32);
        EXPECT_EQ(truncateToInt32(-2147483647.9), -kMax32);
        constexpr auto kNoNumber = std::numeric_limits<float>::quiet_NaN();
        for (const double value : { 2147483648.0, -2147483649.0, double(kNoNumber) })
            EXPECT_EQ(truncateToInt32(value), kMin32) << value;
        // In single precision the neighbours of the limits lie farther off.
        for (const float value : { 2147483648.0F, -2147483904.0F, kNoNumber })
            EXPECT_EQ(truncateToInt32(value), kMin32) << value;
        EXPECT_EQ(truncateToInt32(-2.9F), -2);
        EXPECT_EQ(truncateToInt32(2147483520.0F), 2147483520);
    }

    TEST(Numbers, ArithmeticGoesRoundAt32And16Bits)
    {
        EXPECT_EQ(wrapAdd(kMax32, 1), kMin32);
        EXPECT_EQ(wrapSub(kMin32, 1), kMax32);
        EXPECT_EQ(wrapMul(65536, 65537), 65536);
        EXPECT_EQ(wrapMul(kMin32, -1), kMin32);
        EXPECT_EQ(wrapToInt16(0x12348001), -32767);
        EXPECT_EQ(wrapToInt16(32768), -32768);
    }

    TEST(TextBuffer, WritesUtf16AsUtf8AndUnpairedSurrogatesAsQuestionMarks)
    {
        TextBuffer text;
        text.append(std::u16string_view(u"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF "));
        text << std::u16string_view(u"\xDC00\xD800\xD800\xDC00\xD800x\xDBFF") << -12345 << 'y';
        EXPECT_EQ(text.take(),
                  "\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF "
                  "??\U00010000?x?-12345y");
        EXPECT_EQ(text.take(), "");
    }

} // namespace
} // namespace svgtool
