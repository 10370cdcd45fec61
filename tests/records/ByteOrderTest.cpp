// The readers as a big-endian host runs them: linked with an IsBigEndian() that answers true.

#include "ReaderTable.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <bit>
#include <vector>

namespace svgtool {
namespace {

    TEST(ByteOrder, ScalarsAreReversed)
    {
        EXPECT_TRUE(IsBigEndian());
        EXPECT_EQ(LE2BE_Word(0x1234), 0x3412u);
        EXPECT_EQ(LE2BE_Word(0xFF01), 0x01FFu);
        EXPECT_EQ(LE2BE_DWord(0x12345678), 0x78563412u);
        EXPECT_EQ(LE2BE_DWord(0xFEFF0180), 0x8001FFFEu);
        EXPECT_EQ(std::bit_cast<quint32>(GetFloatFromBLOB("\x00\x00\x80\x3F")), 0x0000803Fu);
    }

    class ReaderOnBigEndian : public testing::TestWithParam<ReaderCase>
    {
    };

    TEST_P(ReaderOnBigEndian, SwapsItsFieldsAndNothingElse)
    {
        const ReaderCase &reader = GetParam();
        Block source = pattern();
        Block destination = reader.kind == Kind::Copying ? pattern(0x80) : source;
        const Block expected = expectedAfter(reader.layout, destination, source);
        EXPECT_TRUE(reader.call(destination.data(), source.data()));
        EXPECT_EQ(destination, expected);
        EXPECT_TRUE(reader.kind != Kind::Copying || source == pattern());
    }

    INSTANTIATE_TEST_SUITE_P(Fixed, ReaderOnBigEndian, testing::ValuesIn(kReaders));
    INSTANTIATE_TEST_SUITE_P(ExtLogPen, ReaderOnBigEndian, testing::Values(kExtLogPenReader));

    /// A block in the foreign byte order, for records with arrays. Blocks are as long as the
    /// readers may reach, so that the sanitizers see what lies outside.
    template<class Word>
    std::vector<Word> foreign(std::vector<Word> words)
    {
        for (Word &word : words)
            word = qbswap(word);
        return words;
    }

    template<class Record, class Word>
    Record *recordIn(std::vector<Word> &words)
    {
        return overlay<Record>(static_cast<char *>(static_cast<void *>(words.data())));
    }

    using Words = std::vector<quint32>;
    using HalfWords = std::vector<quint16>;
    TEST(ArrayReaders, SwapWhatTheyPointToInPlace)
    {
        // Not swapped: the head, and what lies behind the second point.
        const Words values = { 3, 44, 1, 2, 0xFFFFFFFD, 4, 2, 10, 0xFFFFFFEC, 30, 40, 50 };
        Words record = foreign(values);
        Words expected = values;
        for (const size_t i : { 0u, 1u, 11u })
            expected[i] = qbswap(values[i]);
        EXPECT_TRUE(InitEMRPOLYGON(recordIn<EMRPOLYGON>(record)));
        EXPECT_EQ(record, expected);

        // Two points of 16 bits, (1, -2) and (0x0304, 5), and a word behind them, such as types.
        const Words small =
                foreign(Words{ 0, 0, 1, 2, 3, 4, 2, 0xFFFE0001, 0x00050304, 0x02040404 });
        const Words expectedSmall = { 0, 0, 1, 2, 3, 4, 2, 0x0001FFFE, 0x03040005, 0x04040402 };
        Words polygon = small, polyDraw = small;
        EXPECT_TRUE(InitEMRPOLYGON16(recordIn<EMRPOLYGON16>(polygon)));
        EXPECT_EQ(polygon, expectedSmall);
        EXPECT_TRUE(InitEMRPOLYDRAW16(recordIn<EMRPOLYDRAW16>(polyDraw)));
        EXPECT_EQ(polyDraw, expectedSmall);
    }

    // What a copying reader makes of a block of @p size words, of which it leaves the first @p
    // head.
    template<class Record, class Word>
    void expectCopy(bool (*read)(Record *, const Record *), std::vector<Word> source, size_t size,
                    size_t head, std::vector<Word> expected)
    {
        constexpr auto kOld = static_cast<Word>(0xEEEEEEEE);
        std::vector<Word> destination(size, kOld);
        EXPECT_TRUE(read(recordIn<Record>(destination), recordIn<Record>(source)));
        expected.insert(expected.begin(), head, kOld);
        EXPECT_EQ(destination, expected);
    }

    TEST(ArrayReaders, PolyPolygonPlacesItsPointsBehindAsManyUnitsAsPoints)
    {
        constexpr quint32 kOld = 0xEEEEEEEE;
        expectCopy(InitEMRPOLYPOLYGON,
                   foreign(Words{ 8, 96, 1, 2, 3, 4, 2, 3, 1, 2, 101, 102, 103, 104, 105, 106 }),
                   17, 6, Words{ 2, 3, 1, 2, kOld, 101, 102, 103, 104, 105, 106 });
        // With fewer points than polygons they overwrite counts.
        expectCopy(InitEMRPOLYPOLYGON, foreign(Words{ 8, 52, 0, 0, 0, 0, 3, 1, 1, 0, 0, 201, 202 }),
                   11, 6, Words{ 3, 1, 1, 201, 202 });
        // Counts of 32 bits and points of 16: (1, 2), (3, -2) and (0x7FFF, 0x0800).
        expectCopy(InitEMRPOLYPOLYGON16,
                   foreign(Words{ 91, 52, 1, 2, 3, 4, 2, 3, 1, 2, 0x00010002, 0x0003FFFE,
                                  0x7FFF0800 }),
                   14, 6, Words{ 2, 3, 1, 2, kOld, 0x00020001, 0xFFFE0003, 0x08007FFF });
    }

    TEST(ArrayReaders, WmfPolylineAndPolyPolygonKeepTheRecordsLayout)
    {
        expectCopy(InitWMRPOLYLINE, foreign(HalfWords{ 8, 0, 0x0325, 2, 10, 0xFFEC, 30, 40 }), 8, 3,
                   HalfWords{ 2, 10, 0xFFEC, 30, 40 });
        expectCopy(InitWMRPOLYPOLYLINE,
                   foreign(HalfWords{ 12, 0, 0x0538, 2, 1, 2, 11, 12, 13, 14, 15, 16 }), 12, 3,
                   HalfWords{ 2, 1, 2, 11, 12, 13, 14, 15, 16 });
    }

} // namespace
} // namespace svgtool
