#include "support/Bitmaps.h"
#include "support/Conversion.h"
#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>
#include <ostream>
#include <utility>

// How large a document may get: the worst record of each family, repeated, and how many bytes each
// byte of it makes. docs/limits.md has the same numbers.

namespace svgtool::test {
namespace {

    constexpr quint32 kMost = 0xFFFFFFFF;
    constexpr quint32 kFarOrigin = 0x80000000; // maps every position to -2147483648
    const QByteArray kAmpersands(64, '&');

    QByteArray words(EmfBuilder::Words values)
    {
        return ByteWriter().u32s(values).result();
    }

    QByteArray emfRecord(quint32 type, const QByteArray &body = {})
    {
        return words({ type, 8 + body.size() }) + body;
    }

    QByteArray wmfRecord(int function, const QByteArray &body = {})
    {
        return ByteWriter().u32((6 + body.size()) / 2).u16(function).bytes(body).result();
    }

    // An EMF whose shapes have the longest style that there is: a dashed pen of the most entries,
    // a hatched brush and a clip path.
    EmfBuilder longStyle()
    {
        ByteWriter pen;
        pen.u32s({ 1, 0, 0, 0, 0, 0x0107, kMost, 0, 0xFF, 0, 16 });
        for (int i = 0; i < 16; ++i)
            pen.u32(kMost);
        return EmfBuilder()
                .record(10, { kFarOrigin, kFarOrigin })
                .record(39, { 2, 2, 0, 0 })
                .record(95, pen.result())
                .record(37, { 1 })
                .record(37, { 2 })
                .record(67);
    }

    // An EMF whose texts have the longest style, and turn.
    EmfBuilder longTextStyle()
    {
        ByteWriter font;
        font.u32s({ 1, -2147483647, 0, 2147483640, 0, -2147483647 }).u32(0x00010101);
        font.u32(0);
        for (int i = 0; i < 32; ++i)
            font.u16('"');
        return EmfBuilder()
                .record(10, { kFarOrigin, kFarOrigin })
                .record(82, font.result())
                .record(37, { 1 })
                .record(24, { 0xFF })
                .record(25, { 0xFF });
    }

    // A whole text record is 76 bytes; this one ends with the least that its text needs, and has
    // its characters in the fields before.
    QByteArray shortText()
    {
        ByteWriter body;
        body.bytes(kAmpersands.left(36)); // bounds to reference
        return body.bytes("\x18").result(); // that many characters from the start of the record on
    }

    WmfBuilder longWmfStyle()
    {
        return WmfBuilder()
                .placeable(0, 0, 32767, 32767, 96)
                .maxRecord(0x7FFFFFFF)
                .record(0x020B, { -32768, -32768 })
                .record(0x02FC, { 2, 0, 0, 0 })
                .record(0x02FA, { 0x0104, 0x7FFF, 0, 0xFF, 0 })
                .record(0x012D, { 0 })
                .record(0x012D, { 1 });
    }

    WmfBuilder longWmfTextStyle()
    {
        ByteWriter font;
        font.u16s({ -1, 0, 0, 0, -1, 0x0101, 0, 0, 0 }).bytes(QByteArray(32, '"'));
        return longWmfStyle().record(0x02FB, font.result()).record(0x012D, { 2 });
    }

    // Region data of rectangles from one corner.
    QByteArray regionData(int rects, int rightBottom)
    {
        ByteWriter data;
        data.u32s({ 32, 1, rects, 16 * rects, 0, 0, 0, 0 });
        for (int i = 0; i < rects; ++i)
            data.u32s({ 0, 0, rightBottom, rightBottom });
        return data.result();
    }

    QByteArray manyFigures(int count)
    {
        ByteWriter body;
        body.u32s({ 0, 0, 0, 0, count, count });
        for (int i = 0; i < count; ++i)
            body.u32(1);
        for (int i = 0; i < count; ++i)
            body.u32(0);
        return body.result();
    }

    constexpr int kMany = 1000; // what a record holds, so that its head no longer counts

    struct CostCase
    {
        const char *name;
        std::function<QByteArray(const QByteArray &records)> file;
        QByteArray record;
        int bytesPerByte; ///< of the document for each of the record, rounded up
        bool countsUp = false; ///< each record writes a number that grows
    };

    std::function<QByteArray(const QByteArray &)> emf(const EmfBuilder &start)
    {
        return [start](const QByteArray &records) {
            return EmfBuilder(start).recordCount(kMost).raw(records).build();
        };
    }

    std::function<QByteArray(const QByteArray &)> wmf(const WmfBuilder &start)
    {
        return [start](const QByteArray &records) {
            return WmfBuilder(start).raw(records).build();
        };
    }

    void PrintTo(const CostCase &costCase, std::ostream *out)
    {
        *out << costCase.name;
    }

    class Cost : public testing::TestWithParam<CostCase>
    {
    };

    qint64 documentSize(int count)
    {
        const CostCase &family = Cost::GetParam();
        return qint64(convert(family.file(family.record.repeated(count))).text.size());
    }

    TEST_P(Cost, GrowsWithTheRecords)
    {
        const CostCase &family = GetParam();
        const qint64 one = documentSize(1);
        const qint64 four = documentSize(4);
        const qint64 sixteen = documentSize(16);
        const qint64 each = (four - one) / 3;
        EXPECT_EQ((each + family.record.size() - 1) / family.record.size(), family.bytesPerByte)
                << each << " bytes for " << family.record.size();
        // A longer number takes one more byte wherever it stands.
        const qint64 longerNumbers = family.countsUp ? 16 * 2 : 0;
        EXPECT_GE(sixteen - four, 12 * each);
        EXPECT_LE(sixteen - four, 12 * each + longerNumbers);
    }

    TEST_P(Cost, TakesLittleStack)
    {
        const CostCase &family = GetParam();
        const QByteArray file = family.file(family.record.repeated(16));
        std::pair<const QByteArray &, qint32> work(file, 0);
        const auto start = [](void *argument) -> void * {
            auto &[bytes, result] = *static_cast<decltype(work) *>(argument);
            result = convert(bytes).result;
            return nullptr;
        };
        // Threads of Qt would hide from the thread sanitizer that one waits for the other.
        pthread_attr_t attributes;
        pthread_t thread;
        ASSERT_EQ(pthread_attr_init(&attributes), 0);
        ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
        ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
        ASSERT_EQ(pthread_join(thread, nullptr), 0);
        EXPECT_GT(work.second, 0);
    }

    const CostCase kFamilies[] = {
        { "lines", emf(longStyle()), emfRecord(54), 53 },
        { "boxes", emf(longStyle()), emfRecord(43), 52 },
        { "ellipses", emf(longStyle()), emfRecord(42), 50 },
        { "arcs", emf(longStyle()), emfRecord(55), 151 },
        { "pointLists", emf(longStyle()), emfRecord(89, words({ 0, 0, 0, 0, 1, 0 })), 25 },
        { "manyPoints", emf(longStyle()),
          emfRecord(87, words({ 0, 0, 0, 0, kMany }) + QByteArray(4 * kMany, '\0')), 7 },
        { "manyFigures", emf(longStyle()), emfRecord(91, manyFigures(kMany)), 49 },
        { "curves", emf(longStyle()),
          emfRecord(88, words({ 0, 0, 0, 0, 3 }) + QByteArray(12, '\0')), 12 },
        { "mixedFigures", emf(longStyle()),
          emfRecord(92,
                    words({ 0, 0, 0, 0, kMany }) + QByteArray(4 * kMany, '\0')
                            + QByteArray(kMany, '\3')),
          11 },
        { "paths", emf(longStyle()), emfRecord(64), 44 },
        { "collectedPaths", emf(longStyle()), emfRecord(61) + emfRecord(62), 5 },
        { "clipPaths", emf(longStyle()), emfRecord(67), 9, true },
        { "brushes", emf(EmfBuilder().record(25, { 0xFF })),
          emfRecord(39, QByteArray("\0\0\0\0\2", 5)), 33, true },
        { "transforms", emf(EmfBuilder()),
          emfRecord(35,
                    transform({ -1.1754942e-38F, -1.1754942e-38F, -1.1754942e-38F, -1.1754942e-38F,
                                -1.1754942e-38F, -1.1754942e-38F })),
          11 },
        { "filledRegions", emf(longStyle()),
          emfRecord(71, words({ 0, 0, 0, 0, 32 + 16 * kMany, 2 }) + regionData(kMany, 0x7FFFFFFF)),
          11 },
        { "framedRegions", emf(longStyle()),
          emfRecord(72, words({ 0, 0, 0, 0, 32 + 16 * kMany, 2, kMost, 0 }) + regionData(kMany, 0)),
          34 },
        { "bitmaps", emf(EmfBuilder().record(67)),
          emfRecord(81,
                    stretchDib(dib({ 1, 1, 8, 0, 0, 12 }, "0000ff", "00000000"), { 0, 0, 9, 9 },
                               { 0, 0, 1, 1 })),
          14 },
        { "texts", emf(longTextStyle()), emfRecord(84, shortText()), 15 },
        { "smallTexts", emf(longTextStyle()),
          emfRecord(108, words({ 0, 0, 1, 0x300, 0, 0, 0 }) + "&"), 12 },
        { "longTexts", emf(longTextStyle()),
          emfRecord(108, words({ 0, 0, 64 * 64, 0x300, 0, 0, 0 }) + kAmpersands.repeated(64)), 6 },
        { "wmfLines", wmf(longWmfStyle()), wmfRecord(0x0213), 41 },
        { "wmfBoxes", wmf(longWmfStyle()), wmfRecord(0x041B), 42 },
        { "wmfPoints", wmf(longWmfStyle()),
          wmfRecord(0x0324, ByteWriter().u16(kMany).bytes(QByteArray(4 * kMany, '\0')).result()),
          4 },
        { "wmfFigures", wmf(longWmfStyle()), wmfRecord(0x0538, QByteArray("\1\0\0\0", 4)), 23 },
        { "wmfManyFigures", wmf(longWmfStyle()),
          wmfRecord(0x0538,
                    ByteWriter()
                            .u16(kMany)
                            .bytes(QByteArray(2 * kMany - 2, '\0') + QByteArray("\1\0\0\0\0", 6))
                            .result()),
          10 },
        { "wmfBrushes", wmf(WmfBuilder()), wmfRecord(0x02FC, QByteArray("\2\0", 2)), 53, true },
        { "wmfBitmaps", wmf(WmfBuilder().placeable(0, 0, 100, 50, 96)),
          wmfRecord(0x0940,
                    ByteWriter()
                            .u32(kSourceCopy)
                            .u16s({ 0, 0, 1, 1, 1, 0 })
                            .bytes(dib({ 1, 1, 8, 0, 1 }, "0000ff00", "00000000").packed())
                            .result()),
          19 },
        { "wmfTexts", wmf(longWmfTextStyle()),
          wmfRecord(0x0A32, ByteWriter().u16s({ 0, 0, 2, 0 }).bytes("&&").result()), 23 },
        { "wmfLongTexts", wmf(longWmfTextStyle()),
          wmfRecord(0x0A32,
                    ByteWriter().u16s({ 0, 0, 4096, 0 }).bytes(kAmpersands.repeated(64)).result()),
          6 },
    };
    INSTANTIATE_TEST_SUITE_P(Families, Cost, testing::ValuesIn(kFamilies),
                             testing::PrintToStringParamName());

} // namespace
} // namespace svgtool::test
