#include "faults/Allocator.h"
#include "picture/api/picture.hpp"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

// What short records can ask for again and again: of each family a file that would cost many times
// as much without its bound (docs/limits.md). Work is counted in bytes that are asked for, so that
// it is the same on every run.

namespace svgtool::test {
namespace {

    struct Family
    {
        const char *name;
        std::function<void(EmfBuilder &file, int i)> add; ///< the first one with what all share
        int count;
        int64_t document; ///< bytes at most, in thousands
        int64_t work; ///< bytes at most, in millions

        friend void PrintTo(const Family &family, std::ostream *out) { *out << family.name; }
    };

    constexpr quint32 kVersion = 0xDBC01002;

    void addPlus(EmfBuilder &file, int type, int flags, const QByteArray &data)
    {
        ByteWriter body;
        body.u32(16 + data.size()).u32(0x2B464D45);
        body.u16(type).u16(flags).u32(12 + data.size()).u32(data.size()).bytes(data);
        file.record(70, body.result());
    }
    void beginPlus(EmfBuilder &file)
    {
        addPlus(file, 0x4001, 0, ByteWriter().u32s({ kVersion, 0, 96, 96 }).result());
    }
    void addObject(EmfBuilder &file, int kind, const QByteArray &data)
    {
        addPlus(file, 0x4008, kind << 8, data);
    }
    QByteArray points(int count)
    {
        ByteWriter writer;
        for (int i = 0; i < count; ++i)
            writer.f32(float(i % 7)).f32(float(i % 11));
        return writer.result();
    }
    void drawLine(EmfBuilder &file, int i)
    {
        addPlus(file, 0x400D, 0x4000, ByteWriter().u32(2).u16s({ i % 90, 1, 9, 40 }).result());
    }

    // A brush of 128 by 128 pixels of two colours, which are others each time.
    void addMonoBrush(EmfBuilder &file, int i)
    {
        if (i == 0) {
            ByteWriter brush;
            brush.u32s({ 1, 0, 32, 48, 80, 2048, 40, 128, 128, 0x10001, 0, 0, 0, 0, 2, 2 });
            brush.u32s({ 0, 0xFFFFFF }).bytes(QByteArray(2048, 'U'));
            file.record(93, brush.result()).record(37, { 1 });
        }
        file.record(25, { i }).record(43, { 0, 0, 5 + i % 9, 9 });
    }
    // The brush of a large bitmap of run lengths, which has hardly any.
    void addRunLengthBrush(EmfBuilder &file, int i)
    {
        if (i == 0) {
            ByteWriter brush;
            brush.u32s({ 1, 0, 32, 48, 80, 4, 40, 2000, 2000, 0x80001, 1, 4, 0, 0, 2, 2 });
            file.record(94, brush.u32s({ 0, 0xFFFFFF, 0x0100 }).result()).record(37, { 1 });
        }
        file.record(43, { 0, 0, 5 + i % 9, 9 });
    }
    // Strings that are all the same long one.
    void addTexts(EmfBuilder &file, int)
    {
        constexpr int kStrings = 500, kCharacters = 10000, kText = 40 + 40 * kStrings;
        ByteWriter texts;
        texts.u32s({ 0, 0, -1, -1, 1 }).f32(1).f32(1).u32(kStrings);
        for (int string = 0; string < kStrings; ++string)
            texts.u32s({ 1, string, kCharacters, kText, 0, 0, 0, 0, 0, 0 });
        file.record(96, texts.bytes(QByteArray(kCharacters, 'A')).result());
    }
    // Two small triangles in two corners of the picture.
    void addTriangles(EmfBuilder &file, int)
    {
        file.bounds = { 0, 0, 1000, 1000 };
        file.frame = { 0, 0, 100000, 100000 };
        ByteWriter fill;
        fill.u32s({ 0, 0, -1, -1, 6, 2, 2 });
        for (const int at : { 1, 990 })
            for (const auto &[x, y] : { std::pair(at, at), { at + 2, at }, { at, at + 3 } })
                fill.u32(x).u32(y).u16s({ x * 64, y * 60, (x + y) % 7 * 9000, 0 });
        file.record(118, fill.u32s({ 0, 1, 2, 3, 4, 5 }).result());
    }
    // Lines of a pen that has many stripes, with as many dashes, or whose end has many points.
    void addStripes(EmfBuilder &file, int i)
    {
        constexpr int kEdges = 4000;
        if (i == 0) {
            beginPlus(file);
            ByteWriter pen;
            pen.u32s({ kVersion, 0, 0x500, 2 }).f32(30);
            for (int list = 0; list < 2; ++list) {
                pen.u32(kEdges);
                for (int edge = 0; edge < kEdges; ++edge)
                    pen.f32(float(edge) / kEdges);
            }
            addObject(file, 2, pen.u32s({ kVersion, 0, 0xFF000000 }).result());
        }
        drawLine(file, i);
    }
    void addCaps(EmfBuilder &file, int i)
    {
        constexpr int kPoints = 10000;
        if (i == 0) {
            beginPlus(file);
            ByteWriter path;
            path.u32s({ kVersion, kPoints, 0 }).bytes(points(kPoints));
            path.bytes(QByteArray(kPoints, 1));
            ByteWriter cap;
            cap.u32s({ kVersion, 0, 1, 0 }).f32(0).u32s({ 0, 0, 0 }).f32(10).f32(1);
            cap.u32s({ 0, 0, 0, 0, path.result().size() }).bytes(path.result());
            ByteWriter pen;
            pen.u32s({ kVersion, 0, 0x1000, 2 }).f32(4).u32(cap.result().size());
            pen.bytes(cap.result()).u32s({ kVersion, 0, 0xFF000000 });
            addObject(file, 2, pen.result());
        }
        drawLine(file, i);
    }
    // Boxes of small circles side by side, each with many stops.
    void addCircles(EmfBuilder &file, int i)
    {
        constexpr quint32 kStops = 1000;
        constexpr float kRing[][2] = { { 8, 4 },    { 8, 6.2F }, { 6.2F, 8 }, { 4, 8 },
                                       { 1.8F, 8 }, { 0, 6.2F }, { 0, 4 },    { 0, 1.8F },
                                       { 1.8F, 0 }, { 4, 0 },    { 6.2F, 0 }, { 8, 1.8F },
                                       { 8, 4 } };
        if (i == 0) {
            beginPlus(file);
            ByteWriter path;
            path.u32s({ kVersion, std::size(kRing), 0 });
            for (const auto &[x, y] : kRing)
                path.f32(x).f32(y);
            path.bytes(QByteArray(1, 0) + QByteArray(11, 3) + char(0x83) + QByteArray(3, 0));
            const QByteArray outline = path.result();
            ByteWriter brush;
            brush.u32s({ kVersion, 3, 5, 0, 0xFFFFFFFF }).f32(4).f32(4).u32s({ 1, 0xFF0000FF });
            brush.u32(quint32(outline.size())).bytes(outline).u32(kStops);
            for (quint32 stop = 0; stop < kStops; ++stop)
                brush.f32(float(stop) / (kStops - 1));
            for (quint32 stop = 0; stop < kStops; ++stop)
                brush.u32(0xFF000000 | stop * 2654435761U >> 8);
            addObject(file, 1, brush.result());
        }
        addPlus(file, 0x402D, 0, ByteWriter().f32(0.1F).f32(0).result());
        addPlus(file, 0x400A, 0x4000,
                ByteWriter().u32s({ 0, 1 }).u16s({ 0, 0, 300, 300 }).result());
    }
    // Parts of an image with its tiles around, each somewhere else.
    void addTiles(EmfBuilder &file, int i)
    {
        constexpr int kSide = 128;
        if (i == 0) {
            beginPlus(file);
            ByteWriter image;
            image.u32s({ kVersion, 1, kSide, kSide, kSide * 4, 0x26200A, 0 });
            for (quint32 pixel = 0; pixel < kSide * kSide; ++pixel)
                image.u32(0xFF000000 | pixel * 2654435761U >> 8);
            addObject(file, 5, image.result());
            addPlus(file, 0x4008, 0x0801, ByteWriter().u32s({ kVersion, 0, 0, 0, 0, 0 }).result());
        }
        ByteWriter call;
        call.u32s({ 1, 2 }).f32(-9).f32(-9).f32(999).f32(999);
        call.f32(float(i % 50)).f32(float(i / 50)).f32(40).f32(40);
        addPlus(file, 0x401A, 0, call.result());
    }
    // A metafile within this one.
    void addNested(EmfBuilder &file, int i)
    {
        if (i == 0) {
            beginPlus(file);
            EmfBuilder inner;
            for (int box = 0; box < 2000; ++box)
                inner.record(43, { box % 80, box % 40, 90, 45 });
            const QByteArray bytes = inner.build();
            addObject(file, 5,
                      ByteWriter().u32s({ kVersion, 2, 3, bytes.size() }).bytes(bytes).result());
        }
        ByteWriter call;
        call.u32s({ -1, 2 }).f32(0).f32(0).f32(100).f32(50);
        addPlus(file, 0x401A, 0, call.f32(float(i % 9)).f32(0).f32(90).f32(45).result());
    }

    // A clip of many rectangles that is moved.
    void addClipMove(EmfBuilder &file, int i)
    {
        if (i == 0) {
            constexpr int kRects = 10'000;
            ByteWriter clip;
            clip.u32s({ 32 + 16 * kRects, 5, 32, 1, kRects, 16 * kRects, 0, 0, 300, 300 });
            for (int rect = 0; rect < kRects; ++rect) {
                const int x = rect % 100 * 3, y = rect / 100 * 3;
                clip.u32s({ x, y, x + 1, y + 1 });
            }
            file.record(75, clip.result());
        }
        file.record(26, { 1, 0 }).record(43, { 0, 0, 5 + i % 9, 9 });
    }

    void expectBounded(const QByteArray &bytes, int64_t document, int64_t work)
    {
        ASSERT_LT(bytes.size(), 1'000'000);
        FailingAllocator allocator(0, Scarcity::OneCall);
        const Picture picture =
                drawMetafile(std::as_bytes(std::span(bytes.constData(), size_t(bytes.size()))));
        const auto given = int64_t(allocator.bytesGiven());
        EXPECT_EQ(picture.error, PictureError::None);
        EXPECT_LE(int64_t(picture.document.size()), document * 1000);
        EXPECT_LE(given, work * 1'000'000);
    }

    class PictureCost : public testing::TestWithParam<Family>
    {
    };

    TEST_P(PictureCost, IsBounded)
    {
        const Family &family = GetParam();
        EmfBuilder file;
        file.handles = 9;
        for (int i = 0; i < family.count; ++i)
            family.add(file, i);
        expectBounded(file.build(), family.document, family.work);
    }

    const Family kFamilies[] = {
        { "monoBrush", addMonoBrush, 5000, 600, 15 },
        { "runLengthBrush", addRunLengthBrush, 5000, 400, 25 },
        { "texts", addTexts, 4, 200, 50 },
        { "triangles", addTriangles, 3000, 20, 100 },
        { "stripes", addStripes, 5000, 3500, 130 },
        { "caps", addCaps, 5000, 15000, 220 },
        { "circles", addCircles, 100, 25000, 150 },
        { "tiles", addTiles, 5000, 1000, 25 },
        { "nested", addNested, 5000, 10000, 190 },
        { "clipMove", addClipMove, 20000, 4000, 300 },
    };
    INSTANTIATE_TEST_SUITE_P(Families, PictureCost, testing::ValuesIn(kFamilies),
                             testing::PrintToStringParamName());

    // A region of many rectangles that is painted, framed and inverted.
    TEST(PictureCost, OfRegionsIsBounded)
    {
        constexpr int kRows = 200, kInRow = 100;
        ByteWriter region;
        region.u16s({ 0, 6, 0, 0, 0, kRows, 2 * kInRow, 0, 0, 400, 400 });
        for (int row = 0; row < kRows; ++row) {
            region.u16s({ 2 * kInRow, 2 * row, 2 * row + 1 });
            for (int rect = 0; rect < kInRow; ++rect)
                region.u16s({ 4 * rect, 4 * rect + 2 });
            region.u16(2 * kInRow);
        }
        WmfBuilder file;
        file.placeable(0, 0, 400, 400, 96).record(0x6FF, region.result());
        file.record(0x2FC, { 0, 255, 0, 0 });
        for (int i = 0; i < 10'000; ++i)
            file.record(0x12B, { 0 }).record(0x429, { 0, 1, 1, 1 }).record(0x12A, { 0 });
        expectBounded(file.build(), 12'000, 600);
    }

} // namespace
} // namespace svgtool::test
