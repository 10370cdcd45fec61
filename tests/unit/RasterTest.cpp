#include "support/Bitmaps.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

std::string image(int x, int y, int width, int height, const std::string &pixels,
                  const std::string &clip = "")
{
    return joined("<image x=\"", x, "\" y=\"", y, "\" width=\"", width, "\" height=\"", height,
                  "\" preserveAspectRatio=\"none\" xlink:href=\"", pixels, "\" ", clip, "/>\n");
}

std::string fill(int x, int y, int width, int height, const std::string &colour,
                 const std::string &clip = "")
{
    return rect(x, y, width, height, "stroke=\"none\" fill=\"" + colour + "\" " + clip);
}

std::string there(const std::string &pixels, const std::string &clip = "")
{
    return image(5, 5, 20, 10, pixels, clip);
}

std::string row(const std::string &pixels)
{
    return image(0, 0, 3, 1, pixels);
}

const EmfBuilder kRedBrush = emf("brush 1 0 0x0000FF 0; select 1");

constexpr qint64 kAnd = 0x008800C6;
constexpr qint64 kPaint = 0x00EE0086;
constexpr qint64 kInvert = 0x00660046;
constexpr qint64 kPatternInvert = 0x005A0049;

// Two lines of three pixels: red, green, blue over black, grey, white.
const Dib kPicture =
        dib({ 3, 2, 24 }, "", "000000 808080 ffffff 000000 0000ff 00ff00 ff0000 000000");
// One bit: black, white; and colours of every grey.
const Dib kMask = dib({ 2, 1, 1 }, "00000000 ffffff00", "40000000");
const Dib kOtherMask = dib({ 2, 1, 1 }, "00000000 ffffff00", "80000000");
const Dib kGreys = dib({ 3, 1, 24 }, "", "000000 404040 ffffff 000000");
const Dib kTwo = dib({ 2, 1, 24 }, "", "0000ff 000000 0000");

EmfBuilder stretched(Box to, Box from, const Dib &dib = kPicture, qint64 rop = kSourceCopy)
{
    return EmfBuilder().record(81, stretchDib(dib, to, from, rop));
}

EmfBuilder blitted(const Dib &dib, qint64 rop, quint32 brush = 0x0000FF)
{
    return emf(QStringLiteral("brush 1 0 %1 0; select 1").arg(brush))
            .record(76, blt(dib, { 0, 0, 3, 1 }, 0, 0, rop));
}

// Transfers to one place, one on top of the other; without a bitmap it is the brush's.
EmfBuilder stack(std::initializer_list<std::pair<Dib, qint64>> transfers, EmfBuilder file = {})
{
    for (const auto &[dib, rop] : transfers) {
        if (dib.info.isEmpty())
            file.record(76, blt(dib, { 5, 5, 20, 10 }, 0, 0, rop));
        else
            file.record(81, stretchDib(dib, { 5, 5, 20, 10 }, { 0, 0, 2, 1 }, rop));
    }
    return file;
}

EmfBuilder masked(qint64 rop, int maskX, int sourceX = 0)
{
    const QByteArray maskAt = ByteWriter().u32s({ maskX, 0 }).result();
    const Dib mask = dib({ 3, 1, 1 }, "00000000 ffffff00", "a0000000");
    return EmfBuilder().record(78, blt(kGreys, { 0, 0, 3, 1 }, sourceX, 0, rop, maskAt, mask));
}

// The fields of a transfer without a source, in front of those of a mask behind it.
EmfBuilder maskedBrush(qint64 rop)
{
    const Dib mask = dib({ 3, 1, 1 }, "00000000 ffffff00", "a0000000");
    const QByteArray fields = ByteWriter()
                                      .u32s({ 0, 0, 0, 128, mask.info.size() })
                                      .u32s({ 128 + mask.info.size(), mask.bits.size() })
                                      .result();
    return EmfBuilder(kRedBrush).record(78,
                                        blt({}, { 0, 0, 3, 1 }, 0, 0, rop, fields) + mask.packed());
}

const Dib kJpeg = dib({ 3, 2, 0, 4 }, "", "ffd8ff00");

#define CLIPPED "clip-path=\"url(#ClPath1)\""
const EmfBuilder kClipped = emf("clipRgn 48 5 32 1 1 16 box 0 0 9 9");
const std::string kClip = "\n<defs><clipPath id= \"ClPath1\">"
        + rect(0, 0, 8, 9, "stroke=\"none\" fill=\"none\" stroke-width=\"1\" ")
        + "</clipPath></defs>";

const Case kCases[] = {
    { "whole", stretched({ 10, 20, 30, 40 }, { 0, 0, 3, 2 }),
      image(10, 20, 30, 40, "ff0000 00ff00 0000ff/000000 808080 ffffff") },
    { "mirroredByDestination", stretched({ 40, 60, -30, -40 }, { 0, 0, 3, 2 }),
      image(10, 20, 30, 40, "ffffff 808080 000000/0000ff 00ff00 ff0000") },
    { "partCountsFromTheBottom", stretched({ 0, 0, 2, 1 }, { 1, 0, 2, 1 }),
      image(0, 0, 2, 1, "808080 ffffff") },
    { "partOutsideMirrored", stretched({ 60, 0, -60, 40 }, { -3, 1, 6, 4 }),
      image(0, 30, 30, 10, "0000ff 00ff00 ff0000") },
    { "nothingInside", stretched({ 0, 0, 60, 40 }, { 3, 0, 3, 2 }), "" },
    { "noExtent", stretched({ 0, 0, 0, 40 }, { 0, 0, 3, 2 }), "" },
    { "extentsAtTheLimits",
      stretched({ 0, 0, 100, 50 }, { -2147483647, -2147483647, 2147483647, 2147483647 }), "" },
    { "bitBltCountsFromTheTop",
      EmfBuilder().record(76, blt(kPicture, { 0, 0, 2, 1 }, 1, 0, kSourceCopy)),
      image(0, 0, 2, 1, "00ff00 0000ff") },

    { "andOfGreys", blitted(kGreys, kAnd), row("000000 000000bf ......") },
    { "andOfGreysBesideUnusedRed",
      blitted(dib({ 3, 1, 8, 0, 3 }, "00000000 80808000 0000ff00", "00010100"), kAnd),
      row("000000 0000007f 0000007f") },
    { "andOfColours", blitted(kPicture, kAnd), row("ff0000 00ff00 0000ff") },
    { "mergeCopy", blitted(kGreys, 0x00C000CA), row("000000 400000 ff0000") },
    { "brushWhereWhite", blitted(kMask, 0x00E20746), image(0, 0, 2, 1, "...... ff0000") },
    { "patternOverSource", blitted(kGreys, 0x00F00021), fill(0, 0, 3, 1, "#ff0000") },
    { "doNothing", blitted(kGreys, 0x00AA0029), "" },

    { "blackness", blitted({}, 0x00000042), fill(0, 0, 3, 1, "#000000") },
    { "patternInverse", blitted({}, 0x000F0001), fill(0, 0, 3, 1, "#00ffff") },
    { "patternInvertOfColour", blitted({}, kPatternInvert), fill(0, 0, 3, 1, "#ff0000") },
    { "patternInvertOfBlack", blitted({}, kPatternInvert, 0), "" },
    { "destinationInvert", blitted({}, 0x00550009), "" },
    { "sourceMissing", blitted({}, kSourceCopy), "" },
    { "patternOfNoBrush",
      emf("select 0x80000005").record(76, blt({}, { 0, 0, 3, 1 }, 0, 0, 0x00F00021)), "" },
    { "patternOfStockBrush",
      emf("select 0x80000002").record(76, blt({}, { 9, 9, -3, -1 }, 0, 0, 0x00F00021)),
      fill(6, 8, 3, 1, "#808080") },

    { "transparentColour",
      EmfBuilder().record(116,
                          blt(kPicture, { 0, 0, 3, 2 }, 0, 0, 0x0000FF00,
                              ByteWriter().u32s({ 3, 2 }).result())),
      image(0, 0, 3, 2, "ff0000 ...... 0000ff/000000 808080 ffffff") },
    { "maskKeepsGround", masked(0xAACC0020, 0), row("000000 ...... ffffff") },
    { "maskOfTwoOperations", masked(0x33CC0020, 0), row("000000 bfbfbf ffffff") },
    { "maskMoved", masked(0xAACC0020, 1), row("...... 404040 ......") },
    { "maskUnderACutSource", masked(0xAACC0020, 0, -1), image(1, 0, 2, 1, "...... 404040") },

    { "maskOfBrushWithoutSource", maskedBrush(0xAAF00021), row("ff0000 ...... ff0000") },
    { "brushWithoutSourceOrMask",
      EmfBuilder().record(78, blt({}, { 0, 0, 3, 1 }, 0, 0, 0xAA000042, QByteArray(28, '\0'))),
      fill(0, 0, 3, 1, "#000000") },

    { "maskThenInvert", stack({ { kMask, kAnd }, { kGreys, kInvert } }), there("000000 404040") },
    { "invertMaskInvert", stack({ { kGreys, kInvert }, { kMask, kAnd }, { kGreys, kInvert } }),
      there("000000 ......") },
    { "invertTwoMasksInvert",
      stack({ { kTwo, kInvert }, { kMask, kAnd }, { kOtherMask, kAnd }, { kTwo, kInvert } }),
      there("ff0000 ......") + there("000000 ......") + there("ff0000 000000") },
    { "patternInvertMaskPatternInvert",
      stack({ { {}, kPatternInvert }, { kMask, kAnd }, { {}, kPatternInvert } }, kRedBrush),
      there("ff0000 ......") },
    { "maskWithFigureBetween",
      stack({ { kTwo, kPaint } }, emf("line 7 7", stack({ { kMask, kAnd } }))),
      there("000000 ......") + line(0, 0, 7, 7) + there("ff0000 ......") },
    { "maskOfOtherPlace",
      stack({ { kMask, kAnd } })
              .record(81, stretchDib(kTwo, { 6, 5, 20, 10 }, { 0, 0, 2, 1 }, kPaint)),
      there("000000 ......") + image(6, 5, 20, 10, "ff0000 ......") },

    { "jpegPartMirrored", stretched({ 30, 0, -30, 20 }, { 1, 0, 1, 1 }, kJpeg),
      "<g transform=\"translate(30,0) scale(-1,1)\"><svg x=\"0\" y=\"0\" width=\"30\" "
      "height=\"20\" viewBox=\"1 1 1 1\" preserveAspectRatio=\"none\">"
              + image(0, 0, 3, 2, "data:image/jpeg;base64,/9j/AA==") + "</svg>\n</g>\n" },

    { "clipped",
      stack({ { kTwo, kSourceCopy } }, kClipped).record(76, blt({}, { 0, 0, 3, 1 }, 0, 0, 0)),
      kClip + there("ff0000 000000", CLIPPED) + fill(0, 0, 3, 1, "#000000", CLIPPED) },
    // What is cut or turned round has a clip around it, which counts in the document's units.
    { "clippedPartOfAFile",
      EmfBuilder(kClipped).record(81, stretchDib(kJpeg, { 0, 0, 3, 2 }, { 1, 0, 1, 1 })),
      kClip
              + "<g " CLIPPED "><svg x=\"0\" y=\"0\" width=\"3\" height=\"2\" "
                "viewBox=\"1 1 1 1\" preserveAspectRatio=\"none\">"
              + image(0, 0, 3, 2, "data:image/jpeg;base64,/9j/AA==") + "</svg>\n</g>\n" },
    { "clippedMaskDoesNotMeetAPictureThatIsNot",
      stack({ { kTwo, kPaint } }, emf("clipRgn 0 5", stack({ { kMask, kAnd } }, kClipped))),
      kClip + there("000000 ......", CLIPPED) + there("ff0000 ......") },
};
INSTANTIATE_CASES(EmfPictures, kCases);

// A unit is a pixel, and the vertical origin is 1.
const QByteArray kPlace = ByteWriter().u16s({ 2, 3, 2, 1 }).result();

WmfBuilder wmfBlt(int function, qint64 rop, std::initializer_list<int> source,
                  const QByteArray &bitmap = {})
{
    const QByteArray body = ByteWriter().u32(rop).u16s(source).bytes(kPlace).bytes(bitmap).result();
    return WmfBuilder().placeable(0, 0, 100, 50, 96).record(function, body);
}

// A device-dependent bitmap: its lines end on 16-bit borders.
QByteArray bitmap16(int width, int height, int lineBytes, int depth, const char *bitsHex)
{
    return ByteWriter()
            .u16s({ 0, width, height, lineBytes, 1 | depth << 8 })
            .bytes(QByteArray::fromHex(bitsHex))
            .result();
}

const Case kWmfCases[] = {
    { "patternBlt", wmfBlt(0x061D, 0x00FF0062, {}), fill(1, 1, 3, 2, "#ffffff") },
    { "bitBlt", wmfBlt(0x0940, kSourceCopy, { 0, 0 }, kPicture.packed()),
      image(1, 1, 3, 2, "ff0000 00ff00 0000ff/000000 808080 ffffff") },
    { "bitBltWithoutBitmap", wmfBlt(0x0940, 0x00000042, { 0, 0, 0 }), fill(1, 1, 3, 2, "#000000") },
    { "stretch", wmfBlt(0x0B41, kSourceCopy, { 1, 2, 0, 1 }, kPicture.packed()),
      image(1, 1, 3, 2, "00ff00 0000ff") },
    { "stretchWithoutBitmap", wmfBlt(0x0B41, 0x00000042, { 1, 2, 0, 1, 0 }),
      fill(1, 1, 3, 2, "#000000") },
    { "stretchOfBits", wmfBlt(0x0F43, kSourceCopy, { 0, 1, 2, 0, 1 }, kPicture.packed()),
      image(1, 1, 3, 2, "808080 ffffff") },
    { "deviceBits1", wmfBlt(0x0B23, kSourceCopy, { 2, 3, 0, 0 }, bitmap16(3, 2, 2, 1, "a000 4000")),
      image(1, 1, 3, 2, "ffffff 000000 ffffff/000000 ffffff 000000") },
    { "deviceBits24",
      wmfBlt(0x0B23, kSourceCopy, { 1, 1, 0, 0 }, bitmap16(1, 1, 4, 24, "01020300")),
      image(1, 1, 3, 2, "030201") },
    { "deviceBitsMissing",
      wmfBlt(0x0B23, kSourceCopy, { 2, 3, 0, 0 }, bitmap16(3, 2, 2, 1, "a000 40")), "" },
    { "deviceBltWithoutBitmap", wmfBlt(0x0922, 0x00000042, { 0, 0, 0 }),
      fill(1, 1, 3, 2, "#000000") },
    { "fileWithPadding",
      wmfBlt(0x0940, kSourceCopy, { 0, 0 },
             ByteWriter().u32s({ 40, 3, 2 }).u16(1).u16(0).u32s({ 4, 5, 0, 0, 0, 0 }).result()
                     + QByteArray::fromHex("ffd8ff001100")),
      image(1, 1, 3, 2, "data:image/jpeg;base64,/9j/ABE=") },
    { "tableCutOff", wmfBlt(0x0940, kSourceCopy, { 0, 0 }, DibHead{ 1, 1, 8 }.info("1234")), "" },
};
INSTANTIATE_CASES(WmfPictures, kWmfCases);

} // namespace
