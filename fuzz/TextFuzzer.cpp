// Runs of text: fonts of all character sets, and all that moves and turns letters.

#include "fuzz/Choices.h"
#include "fuzz/Harness.h"
#include "fuzz/PictureChecks.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"

namespace {

using svgtool::fuzz::Choices;
using svgtool::test::ByteWriter;
using svgtool::test::EmfBuilder;
using svgtool::test::WmfBuilder;

constexpr const char *kFaces[] = { "Arial",   "Symbol",     "Wingdings", "Webdings", "MT Extra",
                                   "Missing", "@MS Mincho", "Hinted",    "Terminal", "" };
// Letters, a pair that is kerned, right-to-left, combining and joined ones, halves of pairs.
constexpr char16_t kUnits[] = { u' ',   u'A',   u'V',   u'&',   u'<',   u'\t',  u'\n',  0x05D0,
                                0x0628, 0x064B, 0x202E, 0x200D, 0x0301, 0x4E00, 0xD83D, 0xDE00,
                                0xF041, 0xFFFD, 0xFFFF, 0x2028, 1,      u'O',   u'\'',  0x00AD };

QByteArray wide(const QByteArray &text)
{
    ByteWriter units;
    for (const char unit : text)
        units.u16(uint8_t(unit));
    return units.result();
}

QByteArray face(Choices &from)
{
    return from.oneIn(4) ? from.bytes(31) : QByteArray(from.one(kFaces)).leftJustified(31, '\0');
}

// The bytes of a font behind its size: weight and style in the lower half, the character set.
QByteArray fontBytes(Choices &from)
{
    return ByteWriter()
            .u16(int(from.below(4)))
            .u16(int(from.word(2, 256)))
            .u16(int(from.below(256)))
            .u16(int(from.below(256) << 8))
            .result();
}

QByteArray units(Choices &from, int count)
{
    ByteWriter text;
    for (int i = 0; i < count; ++i)
        text.u16(from.oneIn(4) ? int(from.below(1 << 16)) : from.one(kUnits));
    return text.result();
}

void addFont(Choices &from, EmfBuilder &emf)
{
    ByteWriter font;
    font.u32(1).u32s({ from.number(), from.oneIn(2) ? 0 : from.number(), int(from.below(3600)),
                       int(from.below(3600)), int(from.below(1000)) });
    font.bytes(fontBytes(from)).bytes(wide(face(from)));
    emf.record(82, font.result().leftJustified(324, '\0')).record(37, { 1 });
}

// The fields of one run, its characters behind them at @p textAt.
void addText(Choices &from, EmfBuilder &emf)
{
    constexpr int kTextAt = 76;
    const bool isWide = !from.oneIn(4);
    const int count = int(from.below(24));
    const QByteArray text = isWide ? units(from, count) : from.bytes(count);
    const qint64 advancesAt = kTextAt + (text.size() + 3) / 4 * 4;
    const bool hasAdvances = from.oneIn(2), hasPairs = from.oneIn(8);
    ByteWriter body;
    body.u32s({ 0, 0, 0, 0, 1 + from.below(2) }).f32(1).f32(1);
    body.u32s({ from.number(), from.number(), count, kTextAt });
    body.u32(from.word(256, 32) | (hasPairs ? 0x2000 : 0));
    body.u32s({ from.number(), from.number(), from.number(), from.number() });
    body.u32(hasAdvances ? advancesAt : 0);
    body.bytes(text.leftJustified(int(advancesAt) - kTextAt, '\0'));
    for (int i = 0; hasAdvances && i < (hasPairs ? 2 : 1) * count; ++i)
        body.u32(from.number());
    emf.record(isWide ? 84 : 83, body.result());
}

void addSmallText(Choices &from, EmfBuilder &emf)
{
    const int count = int(from.below(24));
    const bool isNarrow = from.oneIn(2), hasBox = from.oneIn(2);
    ByteWriter body;
    body.u32s({ from.number(), from.number(), count });
    body.u32((isNarrow ? 0x200 : 0) | (hasBox ? 0 : 0x100) | from.below(32)).u32(1).f32(1).f32(1);
    if (hasBox)
        body.u32s({ from.number(), from.number(), from.number(), from.number() });
    emf.record(108, body.bytes(isNarrow ? from.bytes(count) : units(from, count)).result());
}

void addState(Choices &from, EmfBuilder &emf)
{
    ByteWriter matrix;
    switch (from.below(9)) {
    case 0:
        emf.record(22, { from.below(32) }); // alignment
        break;
    case 1:
        emf.record(18, { 1 + from.below(2) }); // ground
        break;
    case 2:
        emf.record(120, { from.number(), from.number() }); // justification
        break;
    case 3:
        emf.record(115, { from.below(16) }); // layout
        break;
    case 4:
        for (int i = 0; i < 6; ++i)
            matrix.f32(from.real());
        emf.record(35, matrix.result());
        break;
    case 5:
        emf.record(17, { 1 + from.below(8) }); // map mode
        break;
    case 6:
        emf.record(from.one({ 59U, 60U, 67U }), { 1 + from.below(5) }); // path, clip
        break;
    case 7:
        emf.record(from.one({ 33U, 34U }), { -1 }); // saved states
        break;
    default:
        emf.record(27, { from.number(), from.number() }); // current position
    }
}

QByteArray makeEmf(Choices &from)
{
    EmfBuilder emf;
    emf.handles = 2;
    addFont(from, emf);
    while (!from.isEmpty()) {
        void (*const kAdd[])(Choices &, EmfBuilder &) = { addText, addText, addSmallText, addFont,
                                                          addState };
        from.one(kAdd)(from, emf);
    }
    return emf.build();
}

void addFont(Choices &from, WmfBuilder &wmf)
{
    ByteWriter font;
    font.u16s({ from.number(), from.oneIn(2) ? 0 : from.number(), int(from.below(3600)),
                int(from.below(3600)), int(from.below(1000)) });
    wmf.record(0x01F0, { 0 })
            .record(0x02FB,
                    font.bytes(fontBytes(from)).bytes(face(from)).result().leftJustified(50, '\0'));
    wmf.record(0x012D, { 0 });
}

void addText(Choices &from, WmfBuilder &wmf)
{
    const int count = int(from.below(24));
    const QByteArray text = from.bytes(count).leftJustified((count + 1) / 2 * 2, '\0');
    ByteWriter body;
    if (from.oneIn(3)) {
        body.u16(count).bytes(text).u16s({ from.number(), from.number() });
        wmf.record(0x0521, body.result());
        return;
    }
    const int options = int(from.word(8, 64));
    body.u16s({ from.number(), from.number(), count, options });
    if ((options & 6) != 0)
        body.u16s({ from.number(), from.number(), from.number(), from.number() });
    body.bytes(text);
    if (from.oneIn(2))
        body.bytes(from.bytes(2 * count));
    wmf.record(0x0A32, body.result());
}

QByteArray makeWmf(Choices &from)
{
    WmfBuilder wmf;
    if (from.oneIn(2))
        wmf.placeable(0, 0, 100, 50, 96);
    addFont(from, wmf);
    while (!from.isEmpty()) {
        switch (from.below(8)) {
        case 0:
            addFont(from, wmf);
            break;
        case 1:
            wmf.record(0x012E, { int(from.below(32)) }); // alignment
            break;
        case 2: // room between characters, or of blanks
            wmf.record(from.one({ 0x0108U, 0x020AU }), { from.number(), from.number() });
            break;
        case 3: // extents and origins
            wmf.record(from.one({ 0x020BU, 0x020CU, 0x020DU, 0x020EU }),
                       { from.number(), from.number() });
            break;
        default:
            addText(from, wmf);
        }
    }
    return wmf.build();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Choices from(data, size);
    svgtool::PictureOptions options;
    if (from.oneIn(8))
        options.text = svgtool::PictureText::Outlines;
    const QByteArray metafile = from.oneIn(2) ? makeWmf(from) : makeEmf(from);
    svgtool::fuzz::drawAndCheck(std::as_bytes(std::span(metafile)), options);
    return 0;
}
