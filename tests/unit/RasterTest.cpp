#include "support/Bitmaps.h"
#include "support/Cases.h"
#include "support/WmfBuilder.h"

using namespace svgtool::test;

namespace {

#define IMAGE(x, y, width, height, pixels)                                                         \
    "<image x=\"" #x "\" y=\"" #y "\" width=\"" #width "\" height=\"" #height                      \
    "\" preserveAspectRatio=\"none\" xlink:href=\"" pixels "\" />\n"
#define RECT(x, y, width, height, colour)                                                          \
    "<rect x=\"" #x "\" y=\"" #y "\" width=\"" #width "\" height=\"" #height                       \
    "\" rx=\"0\" ry=\"0\" stroke=\"none\" fill=\"" colour "\" />\n"

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
    return EmfBuilder()
            .record(39, { 1, 0, brush, 0 })
            .record(37, { 1 })
            .record(76, blt(dib, { 0, 0, 3, 1 }, 0, 0, rop));
}

QByteArray onTop(const Dib &dib, qint64 rop)
{
    return stretchDib(dib, { 5, 5, 20, 10 }, { 0, 0, 2, 1 }, rop);
}

EmfBuilder masked(qint64 rop, int maskX)
{
    const QByteArray maskAt = ByteWriter().u32s({ maskX, 0 }).result();
    const Dib mask = dib({ 3, 1, 1 }, "00000000 ffffff00", "a0000000");
    return EmfBuilder().record(78, blt(kGreys, { 0, 0, 3, 1 }, 0, 0, rop, maskAt, mask));
}

// The fields of a transfer without a source, in front of those of a mask behind it.
EmfBuilder maskedBrush(qint64 rop)
{
    const Dib mask = dib({ 3, 1, 1 }, "00000000 ffffff00", "a0000000");
    const QByteArray fields = ByteWriter()
                                      .u32s({ 0, 0, 0, 128, mask.info.size() })
                                      .u32s({ 128 + mask.info.size(), mask.bits.size() })
                                      .result();
    return EmfBuilder()
            .record(39, { 1, 0, 0x0000FF, 0 })
            .record(37, { 1 })
            .record(78, blt({}, { 0, 0, 3, 1 }, 0, 0, rop, fields) + mask.packed());
}

const EmfCase kCases[] = {
    { "whole", stretched({ 10, 20, 30, 40 }, { 0, 0, 3, 2 }),
      IMAGE(10, 20, 30, 40, "ff0000 00ff00 0000ff/000000 808080 ffffff") },
    { "mirroredByDestination", stretched({ 40, 60, -30, -40 }, { 0, 0, 3, 2 }),
      IMAGE(10, 20, 30, 40, "ffffff 808080 000000/0000ff 00ff00 ff0000") },
    { "mirroredBySource", stretched({ 10, 20, 30, 40 }, { 3, 0, -3, 2 }),
      IMAGE(10, 20, 30, 40, "0000ff 00ff00 ff0000/ffffff 808080 000000") },
    { "partCountsFromTheBottom", stretched({ 0, 0, 2, 1 }, { 1, 0, 2, 1 }),
      IMAGE(0, 0, 2, 1, "808080 ffffff") },
    { "partOutside", stretched({ 0, 0, 60, 40 }, { -3, 1, 6, 4 }),
      IMAGE(30, 30, 30, 10, "ff0000 00ff00 0000ff") },
    { "partOutsideMirrored", stretched({ 60, 0, -60, 40 }, { -3, 1, 6, 4 }),
      IMAGE(0, 30, 30, 10, "0000ff 00ff00 ff0000") },
    { "nothingInside", stretched({ 0, 0, 60, 40 }, { 3, 0, 3, 2 }), "" },
    { "noExtent", stretched({ 0, 0, 0, 40 }, { 0, 0, 3, 2 }), "" },
    { "extentsAtTheLimits",
      stretched({ 0, 0, 100, 50 }, { -2147483647, -2147483647, 2147483647, 2147483647 }), "" },
    { "bitBltCountsFromTheTop",
      EmfBuilder().record(76, blt(kPicture, { 0, 0, 2, 1 }, 1, 0, kSourceCopy)),
      IMAGE(0, 0, 2, 1, "00ff00 0000ff") },
    { "stretchBlt",
      EmfBuilder().record(77,
                          blt(kPicture, { 0, 0, 20, 20 }, 1, 0, kSourceCopy,
                              ByteWriter().u32s({ 2, 2 }).result())),
      IMAGE(0, 0, 20, 20, "00ff00 0000ff/808080 ffffff") },

    { "notSourceCopy", blitted(kGreys, 0x00330008), IMAGE(0, 0, 3, 1, "ffffff bfbfbf 000000") },
    { "andOfGreys", blitted(kGreys, kAnd), IMAGE(0, 0, 3, 1, "000000 000000bf ......") },
    { "andOfGreysBesideUnusedRed",
      blitted(dib({ 3, 1, 8, 0, 3 }, "00000000 80808000 0000ff00", "00010100"), kAnd),
      IMAGE(0, 0, 3, 1, "000000 0000007f 0000007f") },
    { "andOfColours", blitted(kPicture, kAnd), IMAGE(0, 0, 3, 1, "ff0000 00ff00 0000ff") },
    { "paint", blitted(kGreys, kPaint), IMAGE(0, 0, 3, 1, "...... 404040 ffffff") },
    { "invert", blitted(kGreys, kInvert), IMAGE(0, 0, 3, 1, "...... 404040 ffffff") },
    { "mergeCopy", blitted(kGreys, 0x00C000CA), IMAGE(0, 0, 3, 1, "000000 400000 ff0000") },
    { "mergePaint", blitted(kGreys, 0x00BB0226), IMAGE(0, 0, 3, 1, "ffffff 404040 ......") },
    { "brushWhereWhite", blitted(kMask, 0x00E20746), IMAGE(0, 0, 2, 1, "...... ff0000") },
    { "brushWhereBlack", blitted(kMask, 0x00B8074A), IMAGE(0, 0, 2, 1, "ff0000 ......") },
    { "patternOverSource", blitted(kGreys, 0x00F00021), RECT(0, 0, 3, 1, "#ff0000") },
    { "doNothing", blitted(kGreys, 0x00AA0029), "" },

    { "blackness", blitted({}, 0x00000042), RECT(0, 0, 3, 1, "#000000") },
    { "whiteness", blitted({}, 0x00FF0062), RECT(0, 0, 3, 1, "#ffffff") },
    { "patternCopy", blitted({}, 0x00F00021), RECT(0, 0, 3, 1, "#ff0000") },
    { "patternInverse", blitted({}, 0x000F0001), RECT(0, 0, 3, 1, "#00ffff") },
    { "patternInvertOfColour", blitted({}, kPatternInvert), RECT(0, 0, 3, 1, "#ff0000") },
    { "patternInvertOfBlack", blitted({}, kPatternInvert, 0), "" },
    { "patternAndOfColour", blitted({}, 0x00A000C9), "" },
    { "patternAnd", blitted({}, 0x00A000C9, 0xFFFFFF), "" },
    { "destinationInvert", blitted({}, 0x00550009), "" },
    { "sourceMissing", blitted({}, kSourceCopy), "" },
    { "patternOfNoBrush",
      EmfBuilder().record(37, { 0x80000005 }).record(76, blt({}, { 0, 0, 3, 1 }, 0, 0, 0x00F00021)),
      "" },
    { "patternOfStockBrush",
      EmfBuilder()
              .record(37, { 0x80000002 })
              .record(76, blt({}, { 9, 9, -3, -1 }, 0, 0, 0x00F00021)),
      RECT(6, 8, 3, 1, "#808080") },

    { "transparentColour",
      EmfBuilder().record(116,
                          blt(kPicture, { 0, 0, 3, 2 }, 0, 0, 0x0000FF00,
                              ByteWriter().u32s({ 3, 2 }).result())),
      IMAGE(0, 0, 3, 2, "ff0000 ...... 0000ff/000000 808080 ffffff") },
    { "maskKeepsGround", masked(0xAACC0020, 0), IMAGE(0, 0, 3, 1, "000000 ...... ffffff") },
    { "maskOfTwoOperations", masked(0x33CC0020, 0), IMAGE(0, 0, 3, 1, "000000 bfbfbf ffffff") },
    { "maskMoved", masked(0xAACC0020, 1), IMAGE(0, 0, 3, 1, "...... 404040 ......") },

    { "maskOfBrushWithoutSource", maskedBrush(0xAAF00021),
      IMAGE(0, 0, 3, 1, "ff0000 ...... ff0000") },
    { "brushWithoutSourceOrMask",
      EmfBuilder().record(78, blt({}, { 0, 0, 3, 1 }, 0, 0, 0xAA000042, QByteArray(28, '\0'))),
      RECT(0, 0, 3, 1, "#000000") },

    { "maskThenPaint", EmfBuilder().record(81, onTop(kMask, kAnd)).record(81, onTop(kTwo, kPaint)),
      IMAGE(5, 5, 20, 10, "ff0000 ......") },
    { "maskThenInvert",
      EmfBuilder().record(81, onTop(kMask, kAnd)).record(81, onTop(kGreys, kInvert)),
      IMAGE(5, 5, 20, 10, "000000 404040") },
    { "invertMaskInvert",
      EmfBuilder()
              .record(81, onTop(kGreys, kInvert))
              .record(81, onTop(kMask, kAnd))
              .record(81, onTop(kGreys, kInvert)),
      IMAGE(5, 5, 20, 10, "000000 ......") },
    { "invertTwoMasksInvert",
      EmfBuilder()
              .record(81, onTop(kTwo, kInvert))
              .record(81, onTop(kMask, kAnd))
              .record(81, onTop(kOtherMask, kAnd))
              .record(81, onTop(kTwo, kInvert)),
      IMAGE(5, 5, 20, 10, "ff0000 ......") IMAGE(5, 5, 20, 10, "000000 ......")
              IMAGE(5, 5, 20, 10, "ff0000 000000") },
    { "maskWithFigureBetween",
      EmfBuilder()
              .record(81, onTop(kMask, kAnd))
              .record(54, { 7, 7 })
              .record(81, onTop(kTwo, kPaint)),
      IMAGE(5, 5, 20, 10,
            "000000 ......") "<line x1=\"0\" y1 = \"0\" x2 =\"7\" y2=\"7\" " DEFAULT_STYLE
                             "/>\n" IMAGE(5, 5, 20, 10, "ff0000 ......") },
    { "maskOfOtherPlace",
      EmfBuilder()
              .record(81, onTop(kMask, kAnd))
              .record(81, stretchDib(kTwo, { 6, 5, 20, 10 }, { 0, 0, 2, 1 }, kPaint)),
      IMAGE(5, 5, 20, 10, "000000 ......") IMAGE(6, 5, 20, 10, "ff0000 ......") },
    { "patternInvertMaskPatternInvert",
      EmfBuilder()
              .record(39, { 1, 0, 0xFF, 0 })
              .record(37, { 1 })
              .record(76, blt({}, { 5, 5, 20, 10 }, 0, 0, kPatternInvert))
              .record(81, onTop(kMask, kAnd))
              .record(76, blt({}, { 5, 5, 20, 10 }, 0, 0, kPatternInvert)),
      IMAGE(5, 5, 20, 10, "ff0000 ......") },

    { "jpegPassedOn",
      stretched({ 0, 0, 30, 20 }, { 0, 0, 3, 2 }, dib({ 3, 2, 0, 4 }, "", "ffd8ff00 1122")),
      IMAGE(0, 0, 30, 20, "data:image/jpeg;base64,/9j/ABEi") },
    { "jpegPartMirrored",
      stretched({ 30, 0, -30, 20 }, { 1, 0, 1, 1 }, dib({ 3, 2, 0, 4 }, "", "ffd8ff00")),
      "<g transform=\"translate(30,0) scale(-1,1)\"><svg x=\"0\" y=\"0\" width=\"30\" "
      "height=\"20\" viewBox=\"1 1 1 1\" preserveAspectRatio=\"none\">" IMAGE(
              0, 0, 3, 2, "data:image/jpeg;base64,/9j/AA==") "</svg>\n</g>\n" },
};

class EmfPictures : public EmfBody
{
};

TEST_P(EmfPictures, AreExact)
{
    EXPECT_EQ(withPixels(convert(GetParam().emf.build()).body()), GetParam().body);
}

INSTANTIATE_TEST_SUITE_P(All, EmfPictures, testing::ValuesIn(kCases),
                         testing::PrintToStringParamName());

TEST(EmfPicture, IsClipped)
{
    const QByteArray region =
            ByteWriter().u32s({ 48, 5, 32, 1, 1, 16, 0, 0, 9, 9, 0, 0, 9, 9 }).result();
    const std::string body =
            withPixels(convert(EmfBuilder()
                                       .record(75, region)
                                       .record(81, onTop(kTwo, kSourceCopy))
                                       .record(76, blt({}, { 0, 0, 3, 1 }, 0, 0, 0))
                                       .build())
                               .body());
    const size_t image = body.find("<image");
    ASSERT_NE(image, std::string::npos);
    EXPECT_EQ(body.substr(image),
              "<image x=\"5\" y=\"5\" width=\"20\" height=\"10\" preserveAspectRatio=\"none\" "
              "xlink:href=\"ff0000 000000\" clip-path=\"url(#ClPath1)\"/>\n"
              "<rect x=\"0\" y=\"0\" width=\"3\" height=\"1\" rx=\"0\" ry=\"0\" stroke=\"none\" "
              "fill=\"#000000\" clip-path=\"url(#ClPath1)\"/>\n");
}

// What is cut or turned round has a clip around it, which counts in the document's units; and a
// mask under a clip does not meet a picture that is not.
TEST(EmfPicture, IsClippedInItsPlace)
{
    const QByteArray region =
            ByteWriter().u32s({ 48, 5, 32, 1, 1, 16, 0, 0, 9, 9, 0, 0, 9, 9 }).result();
    const Dib file = dib({ 3, 2, 0, 4 }, "", "ffd8ff00");
    const std::string body =
            withPixels(convert(EmfBuilder()
                                       .record(75, region)
                                       .record(81, stretchDib(file, { 0, 0, 3, 2 }, { 1, 0, 1, 1 }))
                                       .record(81, onTop(kMask, kAnd))
                                       .record(75, { 0, 5 })
                                       .record(81, onTop(kTwo, kPaint))
                                       .build())
                               .body());
    const size_t group = body.find("<g ");
    ASSERT_NE(group, std::string::npos);
    EXPECT_EQ(
            body.substr(group),
            "<g clip-path=\"url(#ClPath1)\"><svg x=\"0\" y=\"0\" width=\"3\" height=\"2\" "
            "viewBox=\"1 1 1 1\" preserveAspectRatio=\"none\">" IMAGE(
                    0, 0, 3, 2,
                    "data:image/jpeg;base64,/9j/AA==") "</svg>\n</g>\n"
                                                       "<image x=\"5\" y=\"5\" width=\"20\" "
                                                       "height=\"10\" preserveAspectRatio=\"none\" "
                                                       "xlink:href=\"000000 ......\" "
                                                       "clip-path=\"url(#ClPath1)\"/>\n" IMAGE(
                                                               5, 5, 20, 10, "ff0000 ......"));
}

struct WmfCase
{
    const char *name;
    int function;
    QByteArray body;
    const char *expected;
};

// A unit is a pixel, and the vertical origin is 1.
const QByteArray kPlace = ByteWriter().u16s({ 2, 3, 2, 1 }).result();

QByteArray wmfBlt(qint64 rop, ByteWriter source, const QByteArray &bitmap = {})
{
    return ByteWriter().u32(rop).bytes(source.result()).bytes(kPlace).bytes(bitmap).result();
}

// A device-dependent bitmap: its lines end on 16-bit borders.
QByteArray bitmap16(int width, int height, int lineBytes, int depth, const char *bitsHex)
{
    return ByteWriter()
            .u16s({ 0, width, height, lineBytes, 1 | depth << 8 })
            .bytes(QByteArray::fromHex(bitsHex))
            .result();
}

TEST(WmfPictures, AreExact)
{
    const QByteArray picture = kPicture.packed();
    const WmfCase cases[] = {
        { "pattern blt", 0x061D, wmfBlt(0x00FF0062, {}), RECT(1, 1, 3, 2, "#ffffff") },
        { "bit blt", 0x0940, wmfBlt(kSourceCopy, ByteWriter().u16s({ 0, 0 }), picture),
          IMAGE(1, 1, 3, 2, "ff0000 00ff00 0000ff/000000 808080 ffffff") },
        { "bit blt without bitmap", 0x0940, wmfBlt(0x00000042, ByteWriter().u16s({ 0, 0, 0 })),
          RECT(1, 1, 3, 2, "#000000") },
        { "stretch", 0x0B41, wmfBlt(kSourceCopy, ByteWriter().u16s({ 1, 2, 0, 1 }), picture),
          IMAGE(1, 1, 3, 2, "00ff00 0000ff") },
        { "stretch without bitmap", 0x0B41,
          wmfBlt(0x00000042, ByteWriter().u16s({ 1, 2, 0, 1, 0 })), RECT(1, 1, 3, 2, "#000000") },
        { "stretch of bits", 0x0F43,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 0, 1, 2, 0, 1 }), picture),
          IMAGE(1, 1, 3, 2, "808080 ffffff") },
        { "device bits 1", 0x0B23,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 2, 3, 0, 0 }), bitmap16(3, 2, 2, 1, "a000 4000")),
          IMAGE(1, 1, 3, 2, "ffffff 000000 ffffff/000000 ffffff 000000") },
        { "device bits 8", 0x0B23,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 1, 2, 0, 0 }), bitmap16(2, 1, 2, 8, "00ff")),
          IMAGE(1, 1, 3, 2, "000000 ffffff") },
        { "device bits 24", 0x0B23,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 1, 1, 0, 0 }), bitmap16(1, 1, 4, 24, "01020300")),
          IMAGE(1, 1, 3, 2, "030201") },
        { "device bits missing", 0x0B23,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 2, 3, 0, 0 }), bitmap16(3, 2, 2, 1, "a000 40")),
          "" },
        { "device blt without bitmap", 0x0922, wmfBlt(0x00000042, ByteWriter().u16s({ 0, 0, 0 })),
          RECT(1, 1, 3, 2, "#000000") },
        { "file with padding", 0x0940,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 0, 0 }),
                 ByteWriter().u32s({ 40, 3, 2 }).u16(1).u16(0).u32s({ 4, 5, 0, 0, 0, 0 }).result()
                         + QByteArray::fromHex("ffd8ff001100")),
          IMAGE(1, 1, 3, 2, "data:image/jpeg;base64,/9j/ABE=") },
        { "table cut off", 0x0940,
          wmfBlt(kSourceCopy, ByteWriter().u16s({ 0, 0 }), DibHead{ 1, 1, 8 }.info("1234")), "" },
    };
    for (const WmfCase &row : cases) {
        const QByteArray wmf =
                WmfBuilder().placeable(0, 0, 100, 50, 96).record(row.function, row.body).build();
        EXPECT_EQ(withPixels(convert(wmf).body()), row.expected) << row.name;
    }
}

} // namespace
