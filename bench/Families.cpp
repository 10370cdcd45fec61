#include "bench/Families.h"

#include "support/Bitmaps.h"
#include "support/WmfBuilder.h"

#include <array>
#include <random>
#include <string_view>

namespace svgtool::bench {

using namespace svgtool::test;

namespace {

    // Coordinates of up to four digits, the same ones each time.
    class Coordinates
    {
    public:
        int operator()() { return int(m_random() % 10000); }

        QByteArray words(int count, bool is16Bit)
        {
            ByteWriter writer;
            for (int i = 0; i < count; ++i)
                is16Bit ? writer.u16((*this)()) : writer.u32((*this)());
            return writer.result();
        }

    private:
        std::minstd_rand m_random;
    };

    // A family of files that start alike and go on with groups that are added by a function of the
    // builder and the coordinates.
    template<class Builder, class AddGroup>
    Family family(const char *name, bool isOfElements, const Builder &start, AddGroup addGroup)
    {
        return { name, isOfElements, [start, addGroup](int count) {
                    Builder builder = start;
                    Coordinates coordinates;
                    for (int i = 0; i < count; ++i)
                        addGroup(builder, coordinates);
                    return builder.build();
                } };
    }

    // Adds a record of coordinates behind other bytes.
    auto record(int type, int words, bool is16Bit = false, const QByteArray &head = {})
    {
        return [=](auto &builder, Coordinates &coordinates) {
            builder.record(quint16(type), head + coordinates.words(words, is16Bit));
        };
    }

    // The same of points, behind an empty box and their number.
    auto emfPoints(int type, int points, bool is16Bit)
    {
        return record(type, 2 * points, is16Bit,
                      ByteWriter().u32s({ 0, 0, 0, 0, points }).result());
    }

    // An EMF that shows all places that coordinates name, each a pixel of its device.
    EmfBuilder wholeEmf()
    {
        EmfBuilder emf;
        emf.bounds = { 0, 0, 9999, 9999 };
        emf.frame = { 0, 0, 1000000, 1000000 };
        emf.handles = 3;
        return emf;
    }

    constexpr qint64 kBrush = 2;

    // The same with a brush in its table of objects.
    EmfBuilder brushedEmf()
    {
        return wholeEmf().record(39, { kBrush, 0, 0x654321, 0 });
    }

    // A pen of sixteen dashes and the brush, which every later element repeats.
    EmfBuilder longStyle()
    {
        ByteWriter pen;
        pen.u32s({ 1, 0, 0, 0, 0, 0x11107, 3, 0, 0x123456, 0, 16 });
        for (int length = 10; length < 26; ++length)
            pen.u32(length);
        return brushedEmf().record(95, pen.result()).record(37, { 1 }).record(37, { kBrush });
    }

    using Edges = std::array<int, 4>;

    // The data of a region.
    template<class RectAt>
    QByteArray region(int rects, RectAt rectAt)
    {
        ByteWriter data;
        data.u32s({ 32, 1, rects, 16 * rects, 0, 0, 10000, 10000 });
        for (int i = 0; i < rects; ++i)
            for (const int edge : rectAt(i))
                data.u32(edge);
        return data.result();
    }

    // Bands below one another, behind what a record says of their use.
    QByteArray bands(std::initializer_list<qint64> use, Coordinates &next)
    {
        return ByteWriter().u32s(use).result() + region(8, [&next](int i) {
                   const int x = next();
                   return Edges{ x, 100 * i, x + 500, 100 * i + 80 };
               });
    }

    // A frame around the black squares of a board of 128 columns.
    QByteArray emfFrame(int count)
    {
        const auto square = [](int i) {
            const int x = i % 64 * 8 + i / 64 % 2 * 4;
            const int y = i / 64 * 4;
            return Edges{ x, y, x + 4, y + 4 };
        };
        const ByteWriter use = ByteWriter().u32s({ 0, 0, 0, 0, 32 + 16 * count, kBrush, 1, 1 });
        return brushedEmf().record(72, use.result() + region(count, square)).build();
    }

    // A bitmap of 8 by 8 pixels of 24 bits.
    Dib bitmap(Coordinates &next)
    {
        return { DibHead{ 8, 8, 24 }.info(), next.words(96, true) };
    }

    // Adds an EMF+ record, which is a comment of the EMF.
    void addPlus(EmfBuilder &emf, int type, int flags, const QByteArray &data)
    {
        constexpr qint64 kHead = 12, kIdentifier = 0x2B464D45, kComment = 70;
        ByteWriter body;
        body.u32(4 + kHead + data.size()).u32(kIdentifier).u16(type).u16(flags);
        emf.record(kComment, body.u32(kHead + data.size()).u32(data.size()).bytes(data).result());
    }

    // A file of nothing but EMF+, with a pen as object 0 and a font as object 1.
    EmfBuilder plusEmf()
    {
        constexpr qint64 kVersion = 0xDBC01002;
        const std::u16string_view face = u"Liberation Sans";
        EmfBuilder emf = wholeEmf();
        addPlus(emf, 0x4001, 0, ByteWriter().u32s({ kVersion, 1, 96, 96 }).result());
        ByteWriter pen;
        pen.u32s({ kVersion, 0, 0, 0 }).f32(3).u32s({ kVersion, 0, 0xFF123456 });
        addPlus(emf, 0x4008, 0x0200, pen.result());
        ByteWriter font;
        font.u32(kVersion).f32(16).u32s({ 2, 0, 0, qint64(face.size()) });
        for (const char16_t unit : face)
            font.u16(unit);
        addPlus(emf, 0x4008, 0x0601, font.u16(0).result());
        return emf;
    }

    // Adds an EMF+ record of 16-bit coordinates behind other bytes.
    auto plusRecord(int type, int flags, int words, const QByteArray &head)
    {
        return [=](EmfBuilder &emf, Coordinates &coordinates) {
            addPlus(emf, type, flags, head + coordinates.words(words, true));
        };
    }

    // Groups of records. Arguments in braces are evaluated in their order.

    void addEmfRectangle(EmfBuilder &emf, Coordinates &next)
    {
        const qint64 x = next(), y = next();
        emf.record(43, { x, y, x + next(), y + next() });
    }
    void addEmfText(EmfBuilder &emf, Coordinates &next)
    {
        const TextRecord text{ next(), next(), QStringLiteral("Widths & heights, 100 %") };
        emf.record(84, text.body());
    }
    void addWmfText(WmfBuilder &wmf, Coordinates &next)
    {
        const QByteArray text("Widths & heights, 100 % ");
        wmf.record(0x0A32, ByteWriter().u16s({ next(), next(), 24, 0 }).bytes(text).result());
    }
    void addEmfPen(EmfBuilder &emf, Coordinates &next)
    {
        emf.record(38, { 1, 1, 2, 0, next() }).record(37, { 1 });
        emf.record(54, next.words(2, false)).record(40, { 1 });
    }
    void addWmfPen(WmfBuilder &wmf, Coordinates &next)
    {
        wmf.record(0x02FA, { 1, 2, 0, next(), 0 }).record(0x012D, { 0 });
        wmf.record(0x0213, next.words(2, true)).record(0x01F0, { 0 });
    }
    void addEmfRegion(EmfBuilder &emf, Coordinates &next)
    {
        emf.record(71, bands({ 0, 0, 0, 0, 160, kBrush }, next));
    }
    void addEmfClip(EmfBuilder &emf, Coordinates &next)
    {
        emf.record(75, bands({ 160, 5 }, next)).record(43, next.words(4, false));
    }
    void addEmfBitmap(EmfBuilder &emf, Coordinates &next)
    {
        const Box to{ next(), next(), 40, 40 };
        emf.record(81, stretchDib(bitmap(next), to, { 0, 0, 8, 8 }));
    }
    void addPlusText(EmfBuilder &emf, Coordinates &next)
    {
        const std::u16string_view text = u"Widths & heights, 100 % ";
        ByteWriter body;
        body.u32s({ 0xFF123456, 0xFFFFFFFF, qint64(text.size()) });
        const auto x = float(next()), y = float(next());
        body.f32(x).f32(y).f32(0).f32(0);
        for (const char16_t unit : text)
            body.u16(unit);
        addPlus(emf, 0x401C, 0x8001, body.result());
    }
    void addWmfBitmap(WmfBuilder &wmf, Coordinates &next)
    {
        ByteWriter body;
        body.u32(kSourceCopy).u16s({ 0, 8, 8, 0, 0, 40, 40, next(), next() });
        wmf.record(0x0F43, body.bytes(bitmap(next).packed()).result());
    }

} // namespace

const std::vector<Family> &families()
{
    const EmfBuilder emf = wholeEmf();
    EmfBuilder emfFont = emf;
    ByteWriter emfFontBody;
    emfFontBody.u32s({ 1, -16, 0, 0, 0, 0, 0, 0 });
    for (const char letter : std::string_view("Liberation Sans"))
        emfFontBody.u16(letter);
    emfFontBody.u16(0);
    emfFont.record(82, emfFontBody.result()).record(37, { 1 });
    WmfBuilder wmf;
    wmf.placeable(0, 0, 10000, 10000, 96).record(0x020C, { 10000, 10000 });
    WmfBuilder wmfFont = wmf;
    ByteWriter wmfFontBody;
    wmfFontBody.u16s({ 16, 0, 0, 0, 400, 0, 0, 0, 0 }).bytes(QByteArray("Liberation Sans\0", 16));
    wmfFont.record(0x02FB, wmfFontBody.result()).record(0x012D, { 0 });

    const auto plus = [start = plusEmf()](const char *name, auto addGroup) {
        Family made = family(name, true, start, addGroup);
        made.isPlus = true;
        return made;
    };
    const QByteArray color = ByteWriter().u32(0xFF123456).result();
    const QByteArray count = ByteWriter().u32(16).result();

    static const std::vector<Family> all{
        family("emf lines", true, emf, record(54, 2)),
        family("emf rectangles", true, emf, record(43, 4)),
        family("emf lines, long style", true, longStyle(), record(54, 2)),
        family("emf rectangles, long style", true, longStyle(), &addEmfRectangle),
        family("emf polygons of 32 bits", false, emf, emfPoints(3, 16, false)),
        family("emf polygons of 16 bits", false, emf, emfPoints(86, 16, true)),
        family("emf Béziers", false, emf, emfPoints(85, 13, true)),
        family("emf texts", true, emfFont, &addEmfText),
        family("emf pens and selections", true, emf, &addEmfPen),
        family("emf regions", true, brushedEmf(), &addEmfRegion),
        { "emf frame of one region", true, &emfFrame },
        family("emf clips", true, emf, &addEmfClip),
        family("emf bitmaps", false, emf, &addEmfBitmap),
        family("wmf lines", true, wmf, record(0x0213, 2, true)),
        family("wmf rectangles", true, wmf, record(0x041B, 4, true)),
        family("wmf polygons", false, wmf, record(0x0324, 32, true, ByteWriter().u16(16).result())),
        family("wmf texts", true, wmfFont, &addWmfText),
        family("wmf pens and selections", true, wmf, &addWmfPen),
        family("wmf bitmaps", false, wmf, &addWmfBitmap),
        plus("emf+ lines", plusRecord(0x400D, 0x4000, 4, ByteWriter().u32(2).result())),
        plus("emf+ rectangles",
             plusRecord(0x400A, 0xC000, 4, color + ByteWriter().u32(1).result())),
        plus("emf+ polygons", plusRecord(0x400C, 0xC000, 32, color + count)),
        plus("emf+ Béziers", plusRecord(0x4019, 0x4000, 32, count)),
        plus("emf+ texts", &addPlusText),
    };
    return all;
}

} // namespace svgtool::bench
