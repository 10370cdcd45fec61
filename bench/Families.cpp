#include "bench/Families.h"

#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"

#include <random>

namespace svgtool::bench {

using namespace svgtool::test;

namespace {

    // Coordinates of up to four digits, the same ones each time.
    class Coordinates
    {
    public:
        int next() { return int(m_random() % 10000); }

        QByteArray words32(int count)
        {
            ByteWriter writer;
            for (int i = 0; i < count; ++i)
                writer.u32(next());
            return writer.result();
        }
        QByteArray words16(int count)
        {
            ByteWriter writer;
            for (int i = 0; i < count; ++i)
                writer.u16(next());
            return writer.result();
        }

    private:
        std::minstd_rand m_random;
    };

    template<class Builder, class AddGroup>
    QByteArray repeated(Builder builder, int count, AddGroup addGroup)
    {
        Coordinates coordinates;
        for (int i = 0; i < count; ++i)
            addGroup(builder, coordinates);
        return builder.build();
    }

    template<quint32 type>
    QByteArray emfOfWords(int count, int words)
    {
        return repeated(EmfBuilder(), count, [words](EmfBuilder &emf, Coordinates &coordinates) {
            emf.record(type, coordinates.words32(words));
        });
    }

    QByteArray emfLines(int count)
    {
        return emfOfWords<54>(count, 2);
    }

    QByteArray emfRectangles(int count)
    {
        return emfOfWords<43>(count, 4);
    }

    // A pen of sixteen dashes and a brush, which every later element repeats.
    EmfBuilder longStyle()
    {
        ByteWriter pen;
        pen.u32s({ 1, 0, 0, 0, 0, 0x11107, 3, 0, 0x123456, 0, 16 });
        for (int length = 10; length < 26; ++length)
            pen.u32(length);
        EmfBuilder emf;
        emf.record(95, pen.result()).record(37, { 1 });
        return emf.record(39, { 2, 0, 0x654321, 0 }).record(37, { 2 });
    }

    QByteArray emfLinesOfLongStyle(int count)
    {
        return repeated(longStyle(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            emf.record(54, coordinates.words32(2));
        });
    }

    QByteArray emfRectanglesOfLongStyle(int count)
    {
        return repeated(longStyle(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            const int x = coordinates.next();
            const int y = coordinates.next();
            emf.record(43, { x, y, x + coordinates.next(), y + coordinates.next() });
        });
    }

    // Point lists of some length in either width.
    template<quint32 type, int points, bool is16Bit>
    QByteArray emfPoints(int count)
    {
        return repeated(EmfBuilder(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            ByteWriter body;
            body.u32s({ 0, 0, 0, 0, points });
            body.bytes(is16Bit ? coordinates.words16(2 * points) : coordinates.words32(2 * points));
            emf.record(type, body.result());
        });
    }

    QByteArray emfTexts(int count)
    {
        EmfBuilder emf;
        emf.record(82, font(1, -16, "Liberation Sans")).record(37, { 1 });
        return repeated(emf, count, [](EmfBuilder &builder, Coordinates &coordinates) {
            const TextRecord text{ coordinates.next(), coordinates.next(),
                                   QStringLiteral("Widths & heights, 100 %") };
            builder.record(84, text.body());
        });
    }

    QByteArray emfPens(int count)
    {
        return repeated(EmfBuilder(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            emf.record(38, { 1, 1, 2, 0, coordinates.next() })
                    .record(37, { 1 })
                    .record(54, coordinates.words32(2))
                    .record(40, { 1 });
        });
    }

    // Data of a region: bands below one another.
    QByteArray regionData(int rects, Coordinates &coordinates)
    {
        ByteWriter data;
        data.u32s({ 32, 1, rects, 16 * rects, 0, 0, 10000, 10000 });
        for (int i = 0; i < rects; ++i) {
            const int x = coordinates.next();
            data.u32s({ x, 100 * i, x + 500, 100 * i + 80 });
        }
        return data.result();
    }

    QByteArray emfRegions(int count)
    {
        return repeated(EmfBuilder(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            const QByteArray data = regionData(8, coordinates);
            emf.record(71, ByteWriter().u32s({ 0, 0, 0, 0, data.size(), 0 }).bytes(data).result());
        });
    }

    QByteArray emfClips(int count)
    {
        return repeated(EmfBuilder(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            const QByteArray data = regionData(8, coordinates);
            emf.record(75, ByteWriter().u32s({ data.size(), 5 }).bytes(data).result());
            emf.record(43, coordinates.words32(4));
        });
    }

    // A device-independent bitmap of 8 by 8 pixels of 24 bits.
    QByteArray bitmap(Coordinates &coordinates)
    {
        ByteWriter dib;
        dib.u32s({ 40, 8, 8 }).u16s({ 1, 24 }).u32s({ 0, 192, 0, 0, 0, 0 });
        return dib.bytes(coordinates.words16(96)).result();
    }

    QByteArray emfBitmaps(int count)
    {
        return repeated(EmfBuilder(), count, [](EmfBuilder &emf, Coordinates &coordinates) {
            const int x = coordinates.next();
            const int y = coordinates.next();
            emf.record(81,
                       ByteWriter()
                               .u32s({ 0, 0, 0, 0, x, y, 0, 0, 8, 8, 80, 40, 120, 192, 0,
                                       0x00CC0020, 40, 40 })
                               .bytes(bitmap(coordinates))
                               .result());
        });
    }

    WmfBuilder placeable()
    {
        return WmfBuilder().placeable(0, 0, 10000, 10000, 96).record(0x020C, { 10000, 10000 });
    }

    template<int function>
    QByteArray wmfOfWords(int count, int words)
    {
        return repeated(placeable(), count, [words](WmfBuilder &wmf, Coordinates &coordinates) {
            wmf.record(function, coordinates.words16(words));
        });
    }

    QByteArray wmfLines(int count)
    {
        return wmfOfWords<0x0213>(count, 2);
    }

    QByteArray wmfRectangles(int count)
    {
        return wmfOfWords<0x041B>(count, 4);
    }

    QByteArray wmfPolygons(int count)
    {
        constexpr int kPoints = 16;
        return repeated(placeable(), count, [](WmfBuilder &wmf, Coordinates &coordinates) {
            wmf.record(0x0324,
                       ByteWriter().u16(kPoints).bytes(coordinates.words16(2 * kPoints)).result());
        });
    }

    QByteArray wmfTexts(int count)
    {
        WmfBuilder wmf = placeable();
        wmf.record(0x02FB,
                   ByteWriter()
                           .u16s({ 16, 0, 0, 0, 400, 0, 0, 0, 0 })
                           .bytes(QByteArray("Liberation Sans\0", 16))
                           .result());
        wmf.record(0x012D, { 0 });
        return repeated(wmf, count, [](WmfBuilder &builder, Coordinates &coordinates) {
            const QByteArray text("Widths & heights, 100 % ");
            ByteWriter body;
            body.u16s({ coordinates.next(), coordinates.next(), int(text.size()), 0 });
            builder.record(0x0A32, body.bytes(text).result());
        });
    }

    QByteArray wmfPens(int count)
    {
        return repeated(placeable(), count, [](WmfBuilder &wmf, Coordinates &coordinates) {
            wmf.record(0x02FA, { 1, 2, 0, coordinates.next(), 0 })
                    .record(0x012D, { 0 })
                    .record(0x0213, coordinates.words16(2))
                    .record(0x01F0, { 0 });
        });
    }

    QByteArray wmfBitmaps(int count)
    {
        return repeated(placeable(), count, [](WmfBuilder &wmf, Coordinates &coordinates) {
            ByteWriter body;
            body.u32(0x00CC0020).u16s({ 0, 8, 8, 0, 0, 40, 40, coordinates.next() });
            wmf.record(0x0F43, body.u16(coordinates.next()).bytes(bitmap(coordinates)).result());
        });
    }

} // namespace

std::span<const Family> families()
{
    static constexpr Family kFamilies[] = {
        { "emf lines", &emfLines, true },
        { "emf rectangles", &emfRectangles, true },
        { "emf lines, long style", &emfLinesOfLongStyle, true },
        { "emf rectangles, long style", &emfRectanglesOfLongStyle, true },
        { "emf polygons of 32 bits", &emfPoints<3, 16, false>, false },
        { "emf polygons of 16 bits", &emfPoints<86, 16, true>, false },
        { "emf Béziers", &emfPoints<85, 13, true>, false },
        { "emf texts", &emfTexts, true },
        { "emf pens and selections", &emfPens, true },
        { "emf regions", &emfRegions, true },
        { "emf clips", &emfClips, true },
        { "emf bitmaps", &emfBitmaps, false },
        { "wmf lines", &wmfLines, true },
        { "wmf rectangles", &wmfRectangles, true },
        { "wmf polygons", &wmfPolygons, false },
        { "wmf texts", &wmfTexts, true },
        { "wmf pens and selections", &wmfPens, true },
        { "wmf bitmaps", &wmfBitmaps, false },
    };
    return kFamilies;
}

} // namespace svgtool::bench
