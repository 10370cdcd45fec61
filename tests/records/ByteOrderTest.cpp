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
    }

    TEST(ByteOrder, FloatFromBlobIsReversed)
    {
        EXPECT_EQ(GetFloatFromBLOB("\x3F\x80\x00\x00"), 1.0f);
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
    constexpr quint32 kOld = 0xEEEEEEEE;

    TEST(ArrayReaders, PolygonSwapsBoundsCountAndPointsInPlace)
    {
        const Words values = { 3, 44, 1, 2, 0xFFFFFFFD, 4, 2, 10, 0xFFFFFFEC, 30, 40, 50 };
        Words record = foreign(values);
        EXPECT_TRUE(InitEMRPOLYGON(recordIn<EMRPOLYGON>(record)));
        // Not swapped: the head, and what lies behind the second point.
        Words expected = values;
        for (const size_t i : { 0u, 1u, 11u })
            expected[i] = qbswap(values[i]);
        EXPECT_EQ(record, expected);
    }

    TEST(ArrayReaders, ShortPointsAreSwappedOneByOne)
    {
        // Two points, (1, -2) and (0x0304, 5), and a word behind them, such as point types.
        const Words values = {
            0, 0, 11, 12, 13, 14, qbswap(2u), 0x0100FEFF, 0x03040005, 0x02040404
        };
        Words expected = { 0, 0, 11, 12, 13, 14, 2, 0x0001FFFE, 0x04030500, 0x02040404 };
        Words polygon = values, polyDraw = values;
        for (size_t i = 2; i < 6; ++i)
            expected[i] = qbswap(values[i]);
        EXPECT_TRUE(InitEMRPOLYGON16(recordIn<EMRPOLYGON16>(polygon)));
        EXPECT_EQ(polygon, expected);
        EXPECT_TRUE(InitEMRPOLYDRAW16(recordIn<EMRPOLYDRAW16>(polyDraw)));
        EXPECT_EQ(polyDraw, expected);
    }

    TEST(ArrayReaders, PolyPolygonPlacesItsPointsBehindAsManyUnitsAsPoints)
    {
        Words source = foreign(Words{ 8,   96,  1,   2,   3,   4,   2,   7,   3,   4,   101, 102,
                                      103, 104, 105, 106, 107, 108, 109, 110, 111, 112, 113, 114 });
        Words destination(8 + 7 + 14, kOld);
        EXPECT_TRUE(InitEMRPOLYPOLYGON(recordIn<EMRPOLYPOLYGON>(destination),
                                       recordIn<EMRPOLYPOLYGON>(source)));
        EXPECT_EQ(destination, (Words{ kOld, kOld, kOld, kOld, kOld, kOld, 2,   7,   3,   4,
                                       kOld, kOld, kOld, kOld, kOld, 101,  102, 103, 104, 105,
                                       106,  107,  108,  109,  110,  111,  112, 113, 114 }));
    }

    TEST(ArrayReaders, PolyPolygonWithFewerPointsThanPolygonsOverwritesCounts)
    {
        Words source = foreign(Words{ 8, 52, 0, 0, 0, 0, 3, 1, 1, 0, 0, 201, 202 });
        Words destination(8 + 3, kOld);
        EXPECT_TRUE(InitEMRPOLYPOLYGON(recordIn<EMRPOLYPOLYGON>(destination),
                                       recordIn<EMRPOLYPOLYGON>(source)));
        EXPECT_EQ(destination, (Words{ kOld, kOld, kOld, kOld, kOld, kOld, 3, 1, 1, 201, 202 }));
    }

    TEST(ArrayReaders, PolyPolygon16HasCountsOf32BitsAndPointsOf16)
    {
        Words source = foreign(Words{ 91, 52, 1, 2, 3, 4, 2, 3, 1, 2, 0, 0, 0 });
        source[10] = 0x02000100; // (1, 2), and so on
        source[11] = 0xFEFF0300;
        source[12] = 0x0008FF7F;
        Words destination(8 + 3 + 3, kOld);
        EXPECT_TRUE(InitEMRPOLYPOLYGON16(recordIn<EMRPOLYPOLYGON16>(destination),
                                         recordIn<EMRPOLYPOLYGON16>(source)));
        EXPECT_EQ(destination,
                  (Words{ kOld, kOld, kOld, kOld, kOld, kOld, 2, 3, 1, 2, kOld, 0x00020001,
                          0xFFFE0003, 0x08007FFF }));
    }

    TEST(ArrayReaders, WmfPolylineAndPolyPolygonKeepTheRecordsLayout)
    {
        HalfWords polyline = foreign(HalfWords{ 8, 0, 0x0325, 2, 10, 0xFFEC, 30, 40 });
        HalfWords destination(8, 0xEEEE);
        EXPECT_TRUE(InitWMRPOLYLINE(recordIn<WMRPOLYLINE>(destination),
                                    recordIn<WMRPOLYLINE>(polyline)));
        EXPECT_EQ(destination, (HalfWords{ 0xEEEE, 0xEEEE, 0xEEEE, 2, 10, 0xFFEC, 30, 40 }));

        HalfWords polygons = foreign(HalfWords{ 12, 0, 0x0538, 2, 1, 2, 11, 12, 13, 14, 15, 16 });
        destination.assign(12, 0xEEEE);
        EXPECT_TRUE(InitWMRPOLYPOLYLINE(recordIn<WMRPOLYPOLYLINE>(destination),
                                        recordIn<WMRPOLYPOLYLINE>(polygons)));
        EXPECT_EQ(destination,
                  (HalfWords{ 0xEEEE, 0xEEEE, 0xEEEE, 2, 1, 2, 11, 12, 13, 14, 15, 16 }));
    }

    TEST(Quirks, HeaderTypeKeepsItsLowHalf)
    {
        ENHMETAHEADER header{};
        header.iType = 0x01000000;
        header.nSize = 0x58000000;
        header.nHandles = 0x0200;
        EXPECT_TRUE(InitEnhMetaHeader(&header));
        EXPECT_EQ(header.iType, 0u);
        EXPECT_EQ(header.nSize, 88u);
        EXPECT_EQ(header.nHandles, 2);
    }

    TEST(Quirks, DispatchedSizeKeepsItsLowHalf)
    {
        const WMR source = { 0x00010003, 0x3208 };
        WMR dispatched{}, head{};
        EXPECT_TRUE(InitMETARECORD(&dispatched, &source));
        EXPECT_EQ(dispatched.rdSize, 0x00000300u);
        EXPECT_EQ(dispatched.rdFunction, 0x0832);
        EXPECT_TRUE(InitWMR(&head, &source));
        EXPECT_EQ(head.rdSize, 0x03000100u);
    }

    TEST(Quirks, TextCountAndOptionsChangePlaces)
    {
        HalfWords source = foreign(HalfWords{ 9, 0, 0x0A32, 20, 0xFFF6, 5, 0x0004 });
        WMREXTTEXTOUT text{};
        EXPECT_TRUE(InitWMREXTTEXTOUT(&text, recordIn<WMREXTTEXTOUT>(source)));
        EXPECT_EQ(text.ptReference.y, 20);
        EXPECT_EQ(text.ptReference.x, -10);
        EXPECT_EQ(text.cChars, 0x0004);
        EXPECT_EQ(text.fuOptions, 5);
    }

    TEST(Quirks, FontSizeIsCopiedUnswappedAndTheNextThreeSwappedWhereTheyStand)
    {
        FONTSPEC source{}, destination{};
        source.lfHeight = 0x0102;
        source.lfWidth = 0x0304;
        source.lfEscapement = source.lfWeight = 0x7777;
        source.lfItalic = 1;
        destination.lfEscapement = 0x0506;
        destination.lfWeight = 0x1122;
        EXPECT_TRUE(InitFONTSPEC(&destination, &source));
        EXPECT_EQ(destination.lfHeight, 0x0102);
        EXPECT_EQ(destination.lfWidth, 0x0304);
        EXPECT_EQ(destination.lfEscapement, 0x0605);
        EXPECT_EQ(destination.lfOrientation, 0);
        EXPECT_EQ(destination.lfWeight, 0x2211);
        EXPECT_EQ(destination.lfItalic, 0);
    }

    TEST(Unaligned, InPlaceSwapKeepsThe32Bits)
    {
        METAPLACEABLEHEADER header{};
        header.Key = 0xD7CDC69A;
        header.Right = 0x0001;
        EXPECT_TRUE(InitPlaceableMetaHeader(&header));
        EXPECT_EQ(header.Key, 0x9AC6CDD7u);
        EXPECT_EQ(header.Right, 0x0100);
    }

} // namespace
} // namespace svgtool
