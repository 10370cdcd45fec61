#include "support/Cases.h"
#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"
#include "svg/SVGWriter.h"
#include "svg/TextDecoding.h"

namespace svgtool::test {
namespace {

    constexpr quint32 kSetBkMode = 18;
    constexpr quint32 kSetTextAlign = 22;
    constexpr quint32 kMoveTo = 27;
    constexpr quint32 kSelect = 37;
    constexpr quint32 kLineTo = 54;
    constexpr quint32 kCreateFont = 82;
    constexpr quint32 kText = 84;
    constexpr quint32 kSmallText = 108;

    // A font of 20 pixels whose characters are 10 wide, 20 above and 5 below the baseline, and a
    // transparent background.
    EmfBuilder withFont(int escapement = 0)
    {
        return EmfBuilder()
                .record(kCreateFont, font(1, -20, "F", escapement))
                .record(kSelect, { 1 })
                .record(kSetBkMode, { 1 });
    }

    QByteArray text(int x, int y, const char *characters)
    {
        return TextRecord{ x, y, QString::fromUtf8(characters) }.body();
    }

#define TEXT(x, y, characters)                                                                     \
    "<text x=\"" x "\" y=\"" y                                                                     \
    "\" font-family=\"F\"  fill=\"black\"  font-size=\"20\"  >" characters "</text>\n"
#define BACKGROUND(x, y, width, height)                                                            \
    "<rect x=\"" x "\" y=\"" y "\" width=\"" width "\" height=\"" height                           \
    "\" rx=\"0\" ry=\"0\" fill=\"none\" stroke=\"none\"fill-opacity=\"0\" />\n"
// Any selection brings the pen and the brush of the start into the style.
#define LINE(x1, y1, x2, y2)                                                                       \
    "<line x1=\"" x1 "\" y1 = \"" y1 "\" x2 =\"" x2 "\" y2=\"" y2                                  \
    "\" stroke=\"none\" stroke-width=\"1\"  fill=\"white\"/>\n"

    const EmfCase kTexts[] = {
        { "plain", withFont().record(kText, text(10, 20, "Hi")), TEXT("10", "40", "Hi") },
        { "escaped", withFont().record(kText, text(0, 0, "a<b & c>d &amp; \"'")),
          TEXT("0", "20", "a&lt;b &amp; c&gt;d &amp;amp; \"'") },
        { "forbiddenCharacters",
          withFont().record(kText,
                            TextRecord{ 0, 0,
                                        QStringLiteral("a\t\n\r b") + QChar(1) + QChar(0xFFFE)
                                                + QChar(0xFFFF) + QChar(0xD800) + QChar(0xDC00)
                                                + QChar(0xDC00) + QChar(0xD800) }
                                    .body()),
          TEXT("0", "20", "a\t\n\r b\xF0\x90\x80\x80") },
        { "emptyTextsWriteNothing",
          EmfBuilder()
                  .record(kText, text(0, 0, ""))
                  .record(kText, TextRecord{ 0, 0, QString(2, QChar(1)) }.body())
                  .record(kSmallText, smallText(0, 0, 0, 0, {})),
          "" },
        { "background", withFont().record(kSetBkMode, { 2 }).record(kText, text(10, 20, "Hi")),
          BACKGROUND("10", "20", "20", "25") TEXT("10", "40", "Hi") },
        { "backgroundUntilAModeIsSet",
          EmfBuilder().record(25, { 0x0000FF }).record(kText, text(0, 0, "Hi")),
          "<rect x=\"0\" y=\"0\" width=\"14\" height=\"17\" rx=\"0\" ry=\"0\" fill=\"#ff0000\" "
          "stroke=\"none\"fill-opacity=\"0\" />\n"
          "<text x=\"0\" y=\"14\"   fill=\"black\"  font-size=\"14\"  >Hi</text>\n" },
        { "opaqueRectangle",
          withFont()
                  .record(kSetBkMode, { 2 })
                  .record(kText,
                          TextRecord{ 10, 20, QStringLiteral("Hi"), 2, {}, { 1, 2, 31, 42 } }
                                  .body()),
          BACKGROUND("1", "2", "30", "40") TEXT("10", "40", "Hi") },
        { "nullRectangle",
          withFont()
                  .record(kSetBkMode, { 2 })
                  .record(kText,
                          TextRecord{ 10, 20, QStringLiteral("Hi"), 2, {}, { 0, 0, -1, -1 } }
                                  .body()),
          BACKGROUND("10", "20", "20", "25") TEXT("10", "40", "Hi") },
        { "cellOfOneLine",
          withFont().record(kText, TextRecord{ 0, 0, QStringLiteral("a\nb") }.body()),
          TEXT("0", "20", "a\nb") },
        { "advancesGiveTheWidth",
          withFont()
                  .record(kSetTextAlign, { 2 })
                  .record(kText, TextRecord{ 50, 20, QStringLiteral("Hi"), 0, { 7, 8 } }.body()),
          TEXT("35", "40", "Hi") },
        { "advancesInPairs",
          withFont()
                  .record(kSetTextAlign, { 2 })
                  .record(kText,
                          TextRecord{ 50, 20, QStringLiteral("Hi"), 0x2000, { 7, 90, 8, 90 } }
                                  .body()),
          TEXT("35", "40", "Hi") },
        { "advancesBeyondTheRecord",
          withFont()
                  .record(kSetTextAlign, { 2 })
                  .record(kText, TextRecord{ 50, 20, QStringLiteral("Hi"), 0, { 7 } }.body()),
          TEXT("30", "40", "Hi") },
        { "countBeyondTheRecord",
          withFont().record(
                  kText,
                  TextRecord{ 0, 0, QStringLiteral("Hi"), 0, {}, { 0, 0, 0, 0 }, 0xFFFFFFFF }
                          .body()),
          TEXT("0", "20", "Hi") },
        { "textBeyondTheRecord", withFont().record(kText, text(0, 0, "Hi").left(60)), "" },
        { "glyphNumbers",
          withFont()
                  .record(kText, TextRecord{ 0, 0, QString(QChar(8)) + QChar(9), 0x10 }.body())
                  .record(kText, TextRecord{ 0, 0, QString(QChar(8)) + QChar(900), 0x10 }.body()),
          TEXT("0", "20", "HI") },
    };
    INSTANTIATE_TEST_SUITE_P(Texts, EmfBody, testing::ValuesIn(kTexts),
                             testing::PrintToStringParamName());

    EmfBuilder aligned(int mode, int escapement = 0)
    {
        return withFont(escapement)
                .record(kSetTextAlign, { mode })
                .record(kText, text(50, 60, "Hi"));
    }

    // The text is 20 long.
    const EmfCase kAlignments[] = {
        { "topLeft", aligned(0), TEXT("50", "80", "Hi") },
        { "topRight", aligned(2), TEXT("30", "80", "Hi") },
        { "topCenter", aligned(6), TEXT("40", "80", "Hi") },
        { "bottomLeft", aligned(8), TEXT("50", "55", "Hi") },
        { "bottomRight", aligned(10), TEXT("30", "55", "Hi") },
        { "bottomCenter", aligned(14), TEXT("40", "55", "Hi") },
        { "baselineLeft", aligned(24), TEXT("50", "60", "Hi") },
        { "baselineRight", aligned(26), TEXT("30", "60", "Hi") },
        { "baselineCenterRightToLeft", aligned(30 + 256), TEXT("40", "60", "Hi") },
        // Turned up by a quarter: the text's right is up, its down is right.
        { "rotatedTopLeft", aligned(0, 900),
          "<g transform=\"rotate(-90 70 60)\">" TEXT("70", "60", "Hi") "</g>" },
        { "rotatedBaselineRight", aligned(26, 900),
          "<g transform=\"rotate(-90 50 80)\">" TEXT("50", "80", "Hi") "</g>" },
        { "rotatedBottomCenter", aligned(14, 1800),
          "<g transform=\"rotate(-180 60 65)\">" TEXT("60", "65", "Hi") "</g>" },
        // 20 (0.866, -0.5) to the end and 20 (0.5, 0.866) down.
        { "rotatedByThirtyDegrees", aligned(2, 300),
          "<g transform=\"rotate(-30 43 87)\">" TEXT("43", "87", "Hi") "</g>" },
        { "updatePosition",
          withFont()
                  .record(kSetTextAlign, { 25 })
                  .record(kMoveTo, { 5, 6 })
                  .record(kText, text(0, 0, "Hi"))
                  .record(kText, text(0, 0, "Ho"))
                  .record(kLineTo, { 0, 0 }),
          TEXT("5", "6", "Hi") TEXT("25", "6", "Ho") LINE("45", "6", "0", "0") },
        { "updatePositionToTheLeft",
          withFont()
                  .record(kSetTextAlign, { 27 })
                  .record(kMoveTo, { 50, 6 })
                  .record(kText, text(0, 0, "Hi"))
                  .record(kLineTo, { 0, 0 }),
          TEXT("30", "6", "Hi") LINE("30", "6", "0", "0") },
    };
    INSTANTIATE_TEST_SUITE_P(Alignments, EmfBody, testing::ValuesIn(kAlignments),
                             testing::PrintToStringParamName());

#define SMALL_TEXT(x, y, characters)                                                               \
    "<text x=\"" x "\" y=\"" y "\" font-family=\"F\"  fill=\"black\"  >" characters "</text>\n"

    const EmfCase kSmallTexts[] = {
        { "wide", withFont().record(kSmallText, smallText(10, 20, 2, 0, QByteArray("H\0i\0", 4))),
          SMALL_TEXT("10", "40", "Hi") },
        { "wideWithoutRectangle",
          withFont().record(kSmallText, smallText(10, 20, 2, 0x100, QByteArray("H\0<\0", 4))),
          SMALL_TEXT("10", "40", "H&lt;") },
        { "narrow", withFont().record(kSmallText, smallText(10, 20, 9, 0x300, "H\xE9")),
          SMALL_TEXT("10", "40", "H\xC3\xA9") },
        { "rotated", withFont(900).record(kSmallText, smallText(10, 20, 2, 0x300, "Hi")),
          "<g transform=\"rotate(-90 30 20)\">" SMALL_TEXT("30", "20", "Hi") "</g>" },
        { "narrowGlyphs", withFont().record(kSmallText, smallText(10, 20, 2, 0x310, "\x08\x09")),
          SMALL_TEXT("10", "40", "HI") },
        { "cyrillic",
          EmfBuilder()
                  .record(kCreateFont, font(1, -20, "F", 0, 204))
                  .record(kSelect, { 1 })
                  .record(kSmallText, smallText(0, 0, 1, 0x300, "\xC6")),
          SMALL_TEXT("0", "20", "\xD0\x96") },
        { "cutOff", withFont().record(kSmallText, smallText(0, 0, 0, 0, {}).left(30)), "" },
    };
    INSTANTIATE_TEST_SUITE_P(SmallTexts, EmfBody, testing::ValuesIn(kSmallTexts),
                             testing::PrintToStringParamName());

    TEST(TextStyle, Suppressed)
    {
        CMySVGWriter writer;
        writer.SetTextStyleSuppression(true);
        writer.SetBkMode(1);
        writer.TextOut(QStringLiteral("a"), 1, 2, {});
        writer.SmallTextOut(QStringLiteral("b"), 3, 4, QStringLiteral(" s"));
        writer.SetTextStyleSuppression(false);
        writer.SmallTextOut(QStringLiteral("c"), 5, 6, QString());
        EXPECT_EQ(writer.takeDocument().toStdString(),
                  "<text x=\"1\" y=\"2\" >a</text>\n<text x=\"3\" y=\"4\" >b</text>\n"
                  "<text x=\"5\" y=\"6\" fill=\"black\" >c</text>\n");
    }

    struct CharSetCase
    {
        int charSet;
        const char *bytes;
        const char *text;
    };

    TEST(TextDecoding, CharacterSets)
    {
        const CharSetCase cases[] = {
            { 0, "\x80\xE4", "€ä" },        { 1, "\x80\xE4", "€ä" },
            { 2, "A\xFF", "\uF041\uF0FF" }, { 128, "\x93\xFA\x96\x7B", "日本" },
            { 129, "\xC7\xD1", "한" },      { 134, "\xD6\xD0", "中" },
            { 136, "\xA4\xA4", "中" },      { 161, "\xC1\xE1", "Αα" },
            { 162, "\xDD\xFE", "İş" },      { 177, "\xE0", "א" },
            { 178, "\xC7", "ا" },           { 186, "\xE8", "č" },
            { 204, "\xCF\xF0", "Пр" },      { 222, "\xA1", "ก" },
            { 238, "\x9C\xB3", "śł" },      { 99, "\xE4", "ä" },
        };
        for (const CharSetCase &each : cases)
            EXPECT_EQ(decodeText({ each.bytes, qint64(strlen(each.bytes)) }, quint8(each.charSet)),
                      QString::fromUtf8(each.text))
                    << each.charSet;
    }

    // Records of a WMF: a font of the given height, and a text at 10,20.
    WmfBuilder wmfText(int height, int options, const QByteArray &characters,
                       const QByteArray &rect = {})
    {
        ByteWriter fontBody;
        fontBody.u16s({ height, 0, 0, 0, 0, 0, 0, 0, 0 }).bytes(QByteArray("F\0", 2));
        ByteWriter body;
        body.u16(20).u16(10).u16(int(characters.size())).u16(options).bytes(rect).bytes(characters);
        if (characters.size() % 2 != 0)
            body.bytes(QByteArray(1, '\0'));
        return WmfBuilder()
                .placeable(0, 0, 100, 50, 96)
                .record(0x020B, { 0, 0 })
                .record(0x02FB, fontBody.result())
                .record(0x012D, { 0 })
                .record(0x0A32, body.result());
    }

#define WMF_TEXT(y, size, characters)                                                              \
    "<text x=\"10\" y=\"" y "\" font-family=\"F\" font-size=\"" size                               \
    "\"  fill=\"black\"  >" characters "</text>\n"

    TEST(WmfText, StandsItsAscentBelowThePoint)
    {
        EXPECT_EQ(convert(wmfText(20, 0, "abc").build()).body(), WMF_TEXT("35", "20", "abc"));
        EXPECT_EQ(convert(wmfText(20, 4, "a&", QByteArray(8, '\x41')).build()).body(),
                  WMF_TEXT("35", "20", "a&amp;"));
        // A negative height is kept as it is read in the text, and placed as the height it is.
        EXPECT_EQ(convert(wmfText(-20, 2, "a", QByteArray(8, '\x41')).build()).body(),
                  WMF_TEXT("35", "65516", "a"));
        EXPECT_EQ(convert(wmfText(20, 0, "").build()).body(), "");
        EXPECT_EQ(convert(wmfText(20, 2, "").build()).body(), "");
    }

} // namespace
} // namespace svgtool::test
