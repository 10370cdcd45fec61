#include "support/Bitmaps.h"
#include "unit/Cases.h"

using namespace svgtool::test;

namespace {

// The tables that the cases share: black, red, green, blue; and 16-bit and 32-bit masks.
#define COLOURS "00000000 0000ff00 00ff0000 ff000000"
#define MASKS_565 "00f80000 e0070000 1f000000"
#define MASKS_BGR "ff000000 00ff0000 0000ff00"
#define MASKS_ARGB "0000ff00 00ff0000 ff000000 000000ff"
// A V5 header goes on for 68 bytes behind its masks, a V4 header for 52.
#define ZEROS_8 "0000000000000000"
#define REST_OF_V4 ZEROS_8 ZEROS_8 ZEROS_8 ZEROS_8 ZEROS_8 ZEROS_8 "00000000"
#define REST_OF_V5 REST_OF_V4 ZEROS_8 ZEROS_8

const struct
{
    const char *name;
    Dib dib;
    int width, height;
    const char *pixels;
} kDepths[] = {
    { "bits1", dib({ 3, 2, 1 }, "ffffff00 0000ff00", "a0000000 40000000"), 3, 2,
      "ffffff ff0000 ffffff/ff0000 ffffff ff0000" },
    { "bits1Core", dib({ 2, 1, 1, 0, 0, 12 }, "ff0000 00ff00", "40000000"), 2, 1, "0000ff 00ff00" },
    { "bits4", dib({ 3, 2, 4, 0, 4 }, COLOURS, "12300000 03210000"), 3, 2,
      "000000 0000ff 00ff00/ff0000 00ff00 0000ff" },
    { "bits8", dib({ 2, 2, 8, 0, 4 }, COLOURS, "00010000 02030000"), 2, 2,
      "00ff00 0000ff/000000 ff0000" },
    { "bits8TableShort", dib({ 2, 1, 8, 0, 2 }, "11223300 44556600", "01ff0000"), 2, 1,
      "665544 000000" },
    { "bits4PaletteIndices", dib({ 2, 1, 4, 0, 3 }, "0f00 0100 ffff", "01000000", 1), 2, 1,
      "ffffff 111111" },
    { "bits8NoTable", dib({ 3, 1, 8 }, "", "0080ff00", 2), 3, 1, "000000 808080 ffffff" },
    { "bits16TopDown", dib({ 1, -2, 16 }, "", "e0030000 ff7f0000"), 1, 2, "00ff00/ffffff" },
    { "bits16Fields565", dib({ 2, 1, 16, 3 }, MASKS_565, "00f8 e007"), 2, 1, "ff0000 00ff00" },
    { "bits16FieldsOwn", dib({ 2, 1, 16, 3 }, "0f000000 f0000000 000f0000", "0f00 f00f"), 2, 1,
      "ff0000 00ffff" },
    { "bits16Core", dib({ 1, 1, 16, 0, 0, 12 }, "", "ff7f0000"), 1, 1, "ffffff" },
    { "bits16V5Alpha",
      dib({ 2, 1, 16, 3, 0, 124 }, "007c0000 e0030000 1f000000 00800000" REST_OF_V5, "ff7f ffff"),
      2, 1, "...... ffffff" },
    { "bits24", dib({ 2, 2, 24 }, "", "010203 040506 0000 070809 0a0b0c 0000"), 2, 2,
      "090807 0c0b0a/030201 060504" },
    { "bits24Core", dib({ 1, 1, 24, 0, 0, 12 }, "", "010203 00"), 1, 1, "030201" },
    { "bits32NoAlpha", dib({ 2, 1, 32 }, "", "01020300 04050680"), 2, 1, "030201 060504" },
    { "bits32AlphaFields", dib({ 2, 1, 32, 6 }, MASKS_ARGB, "01020380 040506ff"), 2, 1,
      "03020180 060504" },
    { "bits32V4", dib({ 2, 1, 32, 3, 0, 108 }, MASKS_ARGB REST_OF_V4, "01020340 04050600"), 2, 1,
      "03020140 ......" },
    { "bits32V5", dib({ 1, -2, 32, 0, 0, 124 }, MASKS_ARGB REST_OF_V5, "010203ff 04050611"), 1, 2,
      "030201/06050411" },
    { "bits32V5AlphaNotUsed", dib({ 1, 1, 32, 3, 0, 124 }, MASKS_ARGB REST_OF_V5, "01020300"), 1, 1,
      "030201" },
    { "bits32OwnAlpha",
      dib({ 1, 1, 32, 3, 0, 108 }, "ff000000 00ff0000 0000ff00 0000000f" REST_OF_V4, "0102030f"), 1,
      1, "010203" },
    { "runs4OfAllColours", dib({ 17, 1, 4, 2, 1 }, "ff000000", "0010 0123456789abcdef 0001"), 17, 1,
      "0000ff 000000 000000 000000 000000 000000 000000 000000 000000 000000 000000 000000 000000 "
      "000000 000000 000000 ......" },
    { "runs8", dib({ 4, 2, 8, 1, 4 }, COLOURS, "0401 0000 0003 010203 00 0100 0001"), 4, 2,
      "ff0000 00ff00 0000ff 000000/ff0000 ff0000 ff0000 ff0000" },
    { "runs8SkipsAndEndsEarly", dib({ 3, 3, 8, 1, 4 }, COLOURS, "0101 0002 0101 0102 0001"), 3, 3,
      "...... ...... ....../...... ...... 00ff00/ff0000 ...... ......" },
    { "runs8TooLong", dib({ 2, 2, 8, 1, 4 }, COLOURS, "ff01 0000 ff02 0000 ff03 00ff"), 2, 2,
      "00ff00 00ff00/ff0000 ff0000" },
    { "runs8LiteralCutOff", dib({ 4, 1, 8, 1, 4 }, COLOURS, "0004 0102"), 4, 1,
      "ff0000 00ff00 ...... ......" },
    { "runs4", dib({ 5, 2, 4, 2, 4 }, COLOURS, "0005 123100 00 0000 0512 0001"), 5, 2,
      "ff0000 00ff00 ff0000 00ff00 ff0000/ff0000 00ff00 0000ff ff0000 000000" },
};

TEST(DibPixels, ComeOutOfTheDocument)
{
    for (const auto &[name, dib, width, height, pixels] : kDepths) {
        const std::string expected =
                joined("<image x=\"0\" y=\"0\" width=\"", width, "\" height=\"", height,
                       "\" preserveAspectRatio=\"none\" xlink:href=\"", pixels, "\" />\n");
        const Box whole{ 0, 0, width, height };
        const EmfBuilder inEmf = EmfBuilder().record(81, stretchDib(dib, whole, whole));
        EXPECT_EQ(withPixels(convert(inEmf.build()).body()), expected) << name;
        if (dib.usage == 2)
            continue;
        // The same bytes in one piece, as 16-bit records hold them.
        const QByteArray fields =
                ByteWriter()
                        .u32(kSourceCopy)
                        .u16(dib.usage)
                        .u16s({ height, width, 0, 0, height * 15, width * 15, 1, 0 })
                        .result();
        const WmfBuilder inWmf = WmfBuilder().record(0x0F43, fields + dib.packed());
        EXPECT_EQ(withPixels(convert(inWmf.build()).body(1024, 768)), expected) << name;
    }
}

// What is damaged draws nothing, and the record behind it draws.
TEST(DamagedDib, FailsItsRecordOnly)
{
    const struct
    {
        const char *name;
        Dib dib;
    } kCases[] = {
        { "bits missing", dib({ 2, 2, 24 }, "", "010203 040506 0000 070809 0a0b0c 00") },
        { "no width", dib({ 0, 2, 24 }, "", ZEROS_8) },
        { "negative width", dib({ -1, 1, 24 }, "", ZEROS_8) },
        { "no height", dib({ 2, 0, 24 }, "", ZEROS_8) },
        { "lowest height", dib({ 1, -2147483648LL, 1 }, "", ZEROS_8) },
        { "stride overflows", dib({ 0x7FFFFFFF, 0x7FFFFFFF, 32 }, "", ZEROS_8) },
        { "unknown depth", dib({ 1, 1, 2 }, "", ZEROS_8) },
        { "unknown compression", dib({ 1, 1, 8, 9 }, COLOURS, ZEROS_8) },
        { "run lengths of the wrong depth", dib({ 1, 1, 4, 1 }, COLOURS, "0101") },
        { "run lengths top down", dib({ 1, -1, 8, 1 }, COLOURS, "0101") },
        { "run lengths of a giant", dib({ 65536, 1025, 8, 1 }, COLOURS, "0101") },
        { "fields of the wrong depth", dib({ 1, 1, 24, 3 }, MASKS_565, ZEROS_8) },
        { "masks cut off", dib({ 1, 1, 32, 3 }, "", ZEROS_8) },
        { "header cut off", { DibHead{ 1, 1, 24 }.info().left(30), QByteArray(8, '\1') } },
        { "header unknown", dib({ 1, 1, 24, 0, 0, 41000 }, "", ZEROS_8) },
        { "no PNG file", dib({ 1, 1, 0, 5 }, "", "89504e470d0a1a0b 00") },
        { "no JPEG file", dib({ 1, 1, 0, 4 }, "", "ffd7ff") },
    };
    const Box box{ 0, 0, 2, 2 };
    for (const auto &row : kCases) {
        const EmfBuilder emf =
                EmfBuilder().record(81, stretchDib(row.dib, box, box)).record(43, { 1, 2, 3, 4 });
        EXPECT_EQ(convert(emf.build()).body().find("<rect"), 0U) << row.name;
    }
    QByteArray far = stretchDib(dib({ 1, 1, 24 }, "", "01020300"), box, box);
    far[40 + 3] = '\x7f';
    EXPECT_EQ(convert(EmfBuilder().record(81, far).build()).body(), "") << "offset into nowhere";
}

// Pixels that few bytes can ask for are counted over the whole document.
TEST(RunLengths, ShareOneAllowance)
{
    const Box box{ 0, 0, 1, 1 };
    const QByteArray giant = stretchDib(dib({ 8192, 4096, 8, 1 }, COLOURS, "0001"), box, box);
    const EmfBuilder three = EmfBuilder().record(81, giant).record(81, giant).record(81, giant);
    EXPECT_EQ(QByteArray::fromStdString(convert(three.build()).body()).count("<image"), 2)
            << "three have more than 64 Mi pixels";
}

} // namespace
