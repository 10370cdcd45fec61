#include "support/RandomMetafile.h"

#include "support/Bitmaps.h"
#include "support/EmfBuilder.h"
#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"

namespace svgtool::test {
namespace {

    // Distributions of the standard library differ between implementations; this does not.
    int below(std::mt19937 &random, int limit)
    {
        return int(random() % quint32(limit));
    }

    int number(std::mt19937 &random)
    {
        switch (below(random, 12)) {
        case 0:
            return 0;
        case 1:
            return int(random());
        case 2:
            return -below(random, 300);
        default:
            return below(random, 100);
        }
    }

    // Letters with the characters that XML escapes or forbids among them.
    QString text(std::mt19937 &random)
    {
        static constexpr char16_t kUnits[] =
                u"aB3 -&<>\"';#\t\r\n\x01\x7F\xE9\u20AC\uFFFE\xD83D\xDE00";
        QString result;
        for (int length = below(random, 10); length > 0; --length)
            result += QChar(ushort(kUnits[below(random, int(std::size(kUnits)) - 1)]));
        return result;
    }

    // Records of nothing but 32-bit numbers, of which none needs more than these.
    constexpr int kWords = 8;
    constexpr quint32 kPlain[] = { 9,  10, 11, 12, 17, 18, 22, 24, 25, 27, 30, 41, 42, 43,
                                   44, 45, 46, 47, 54, 55, 59, 60, 61, 62, 64, 67, 68 };
    constexpr quint32 kPolys[] = { 2, 3, 4, 5, 6, 85, 86, 87, 88, 89, 90, 91 };

    void addObject(EmfBuilder &emf, std::mt19937 &random, int index)
    {
        const int colour = below(random, 3) == 0 ? 0 : int(random() & 0xFFFFFF);
        switch (below(random, 5)) {
        case 0:
            emf.record(38, { index, below(random, 9), below(random, 4), 0, colour });
            break;
        case 1:
            emf.record(95,
                       { index, 0, 0, 0, 0, int(random() & 0x1370F), below(random, 4), 0, colour, 0,
                         2, 3, number(random) });
            break;
        case 2: // unknown hatches among them
            emf.record(39, { index, 2, colour, below(random, 8) });
            break;
        case 3:
            emf.record(39, { index, below(random, 3), colour, 0 });
            break;
        default:
            emf.record(
                    82,
                    font(quint32(index), number(random) % 50, "F\"<&>--", below(random, 2) * 450));
        }
    }

    QByteArray region(std::mt19937 &random)
    {
        ByteWriter body;
        const int count = below(random, 4);
        body.u32s({ 32, 1, count, count * 16, 0, 0, 90, 40 });
        for (int i = 0; i < count * 4; ++i)
            body.u32(number(random));
        return body.result();
    }

    QByteArray points(std::mt19937 &random, bool is16Bit, bool isPolyPoly)
    {
        ByteWriter body;
        const int count = 1 + below(random, 8);
        body.u32s({ 0, 0, 0, 0 });
        if (isPolyPoly)
            body.u32s({ 2, count + 2, 2 });
        body.u32(count);
        for (int i = 0; i < 2 * (count + (isPolyPoly ? 2 : 0)); ++i)
            is16Bit ? body.u16(number(random)) : body.u32(number(random));
        return body.result();
    }

    // One bit or 24, three by two pixels.
    Dib bitmap(std::mt19937 &random)
    {
        ByteWriter bits;
        for (int i = 0; i < 6; ++i)
            bits.u32(qint64(random()));
        const bool isMask = below(random, 2) == 0;
        const DibHead head{ 3, below(random, 2) == 0 ? 2 : -2, isMask ? 1 : 24 };
        return { head.info(isMask ? QByteArray::fromHex("00000000ffffff00") : QByteArray()),
                 bits.result() };
    }

    qint64 rasterOperation(std::mt19937 &random)
    {
        static constexpr qint64 kUsual[] = { kSourceCopy, 0x008800C6, 0x00EE0086, 0x00660046,
                                             0x00F00021,  0x005A0049, 0x00E20746 };
        return kUsual[below(random, int(std::size(kUsual)))];
    }

    // Often in one of two places, where one bitmap meets another.
    void addBitmap(EmfBuilder &emf, std::mt19937 &random)
    {
        const Box to = below(random, 4) == 0
                ? Box{ number(random), number(random), number(random), number(random) }
                : Box{ below(random, 2) * 20, 5, 30, 20 };
        if (below(random, 4) == 0)
            emf.record(76, blt({}, to, 0, 0, rasterOperation(random)));
        else
            emf.record(81,
                       stretchDib(bitmap(random), to, { below(random, 2), 0, 3, 2 },
                                  rasterOperation(random)));
    }

    void addRecord(EmfBuilder &emf, std::mt19937 &random)
    {
        const int index = 1 + below(random, 4);
        switch (below(random, 10)) {
        case 0:
            return addObject(emf, random, index);
        case 1:
        case 2: // stock objects and indices that hold nothing among them
            emf.record(37, { below(random, 4) == 0 ? 0x80000000LL + below(random, 16) : index });
            return;
        case 3: {
            const quint32 type = kPolys[below(random, int(std::size(kPolys)))];
            emf.record(type, points(random, type >= 85, type >= 90));
            return;
        }
        case 4:
            emf.record(84, TextRecord{ number(random), number(random), text(random) }.body());
            return;
        case 5:
            if (below(random, 2) == 0)
                emf.record(35, transform({ 0.5F, 0, 0.25F, float(below(random, 3)), 1, 2 }));
            else
                emf.record(75,
                           ByteWriter()
                                   .u32s({ 64, 1 + below(random, 5) })
                                   .bytes(region(random))
                                   .result());
            return;
        case 6: {
            const QByteArray rects = region(random);
            const bool isFrame = below(random, 2) == 0;
            ByteWriter body;
            body.u32s({ 0, 0, 0, 0, rects.size(), index });
            if (isFrame)
                body.u32s({ below(random, 3), below(random, 3) });
            emf.record(isFrame ? 72 : 71, body.bytes(rects).result());
            return;
        }
        case 7:
            return addBitmap(emf, random);
        default: {
            ByteWriter body;
            for (int i = 0; i < kWords; ++i)
                body.u32(number(random));
            emf.record(kPlain[below(random, int(std::size(kPlain)))], body.result());
        }
        }
    }

    // Of 16-bit numbers; brushes and selections more often.
    constexpr int kWmfPlain[] = { 0x0102, 0x012D, 0x01F0, 0x020B, 0x020C, 0x0213, 0x0214, 0x0324,
                                  0x0325, 0x0418, 0x041B, 0x061D, 0x012D, 0x02FA, 0x02FC, 0x02FC };

} // namespace

QByteArray randomEmf(std::mt19937 &random)
{
    EmfBuilder emf;
    emf.frame(0, 0, number(random) % 1000 * 100, number(random) % 1000 * 100);
    for (int count = 1 + below(random, 60); count > 0; --count)
        addRecord(emf, random);
    return emf.build();
}

QByteArray randomWmf(std::mt19937 &random)
{
    WmfBuilder wmf;
    wmf.placeable(0, 0, 1 + below(random, 2000), 1 + below(random, 2000), 1440);
    for (int count = 1 + below(random, 60); count > 0; --count) {
        ByteWriter body;
        for (int i = 0; i < kWords; ++i)
            body.u16(i == 0 ? below(random, 5) : number(random) % 0x8000);
        wmf.record(kWmfPlain[below(random, int(std::size(kWmfPlain)))], body.result());
        const QByteArray letters = text(random).leftJustified(10, QLatin1Char('x')).toLatin1();
        if (below(random, 5) == 0)
            wmf.record(0x0A32, ByteWriter().u16s({ 9, 9, 10, 0 }).bytes(letters).result());
    }
    return wmf.build();
}

} // namespace svgtool::test
