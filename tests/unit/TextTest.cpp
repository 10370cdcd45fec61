#include "support/EmfRecords.h"
#include "svg/SVGWriter.h"
#include "svg/TextDecoding.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

#define FONT "font 1 -20 0 0 0 0 0 0 \"F\"; select 1; bkMode 1;"
#define UP_FONT "font 1 -20 0 900 0 0 0 0 \"F\"; select 1; bkMode 1;"

// Records, and texts behind them. In the fonts above characters are 10 wide, and reach 20 above
// and 5 below the baseline.
EmfBuilder texts(const char *records, std::initializer_list<TextRecord> texts)
{
    EmfBuilder file = emf(records);
    for (const TextRecord &each : texts)
        file.record(84, each.body());
    return file;
}

TextRecord hi(int x, int y)
{
    return { x, y, QStringLiteral("Hi") };
}

std::string text(int x, int y, const std::string &characters)
{
    return joined("<text x=\"", x, "\" y=\"", y,
                  "\" font-family=\"F\"  fill=\"black\"  font-size=\"20\"  >", characters,
                  "</text>\n");
}

std::string background(int x, int y, int width, int height)
{
    return rect(x, y, width, height, "fill=\"none\" stroke=\"none\"fill-opacity=\"0\" ");
}

// Any selection brings the pen and the brush of the start into the style.
std::string lineBehind(int x, int y)
{
    return line(x, y, 0, 0, "stroke=\"none\" stroke-width=\"1\"  fill=\"white\"");
}

const Case kTexts[] = {
    { "escaped", texts(FONT, { { 0, 0, QStringLiteral("a<b & c>d &amp; \"'") } }),
      text(0, 20, "a&lt;b &amp; c&gt;d &amp;amp; \"'") },
    { "forbiddenCharacters",
      texts(FONT,
            { { 0, 0,
                QStringLiteral("a\t\n\r b\x01\uFFFE\uFFFF") + QChar(0xD800) + QChar(0xDC00)
                        + QChar(0xDC00) + QChar(0xD800) } }),
      text(0, 20, "a\t\n\r b\xF0\x90\x80\x80") },
    { "emptyTextsWriteNothing",
      texts("smallText 0 0 0 0 1 1. 1. box", { { 0, 0, {} }, { 0, 0, QStringLiteral("\1\1") } }),
      "" },
    { "backgroundUntilAModeIsSet", texts("bkColor 0x0000FF", { hi(0, 0) }),
      rect(0, 0, 14, 17, "fill=\"#ff0000\" stroke=\"none\"fill-opacity=\"0\" ")
              + "<text x=\"0\" y=\"14\"   fill=\"black\"  font-size=\"14\"  >Hi</text>\n" },
    { "opaqueRectangle",
      texts(FONT "bkMode 2", { { 10, 20, QStringLiteral("Hi"), 2, {}, { 1, 2, 31, 42 } } }),
      background(1, 2, 30, 40) + text(10, 40, "Hi") },
    { "nullRectangle",
      texts(FONT "bkMode 2", { { 10, 20, QStringLiteral("Hi"), 2, {}, { 0, 0, -1, 9 } } }),
      background(10, 20, 20, 25) + text(10, 40, "Hi") },
    { "cellOfOneLine", texts(FONT, { { 0, 0, QStringLiteral("a\nb") } }), text(0, 20, "a\nb") },
    { "advancesGiveTheWidth",
      texts(FONT "textAlign 2",
            { { 50, 20, QStringLiteral("Hi"), 0, { 7, 8 } },
              { 50, 20, QStringLiteral("Hi"), 0x2000, { 7, 90, 8, 90 } } }),
      text(35, 40, "Hi") + text(35, 40, "Hi") },
    { "advancesBeyondTheRecord",
      texts(FONT "textAlign 2", { { 50, 20, QStringLiteral("Hi"), 0, { 7 } } }),
      text(30, 40, "Hi") },
    { "countBeyondTheRecord",
      texts(FONT, { { 0, 0, QStringLiteral("Hi"), 0, {}, { 0, 0, 0, 0 }, 0xFFFFFFFF } }),
      text(0, 20, "Hi") },
    { "textBeyondTheRecord", emf(FONT).record(84, hi(0, 0).body().left(60)), "" },
    { "glyphNumbers",
      texts(FONT,
            { { 0, 0, QStringLiteral("\x08\x09"), 0x10 },
              { 0, 0, QStringLiteral("\x08\u0900"), 0x10 } }),
      text(0, 20, "HI") },

    // The text is 20 long.
    { "bottomRight", texts(FONT "textAlign 10", { hi(50, 60) }), text(30, 55, "Hi") },
    { "baselineCenterRightToLeft", texts(FONT "textAlign 286", { hi(50, 60) }),
      text(40, 60, "Hi") },
    // Turned up by a quarter: the text's right is up, its down is right.
    { "rotatedBaselineRight", texts(UP_FONT "textAlign 26", { hi(50, 60) }),
      "<g transform=\"rotate(-90 50 80)\">" + text(50, 80, "Hi") + "</g>" },
    // 20 (0.866, -0.5) to the end and 20 (0.5, 0.866) down.
    { "rotatedByThirtyDegrees",
      texts("font 1 -20 0 300 0 0 0 0 \"F\"; select 1; bkMode 1; textAlign 2", { hi(50, 60) }),
      "<g transform=\"rotate(-30 43 87)\">" + text(43, 87, "Hi") + "</g>" },
    { "updatePosition",
      emf("line 0 0",
          texts(FONT "textAlign 25; move 5 6", { hi(0, 0), { 0, 0, QStringLiteral("Ho") } })),
      text(5, 6, "Hi") + text(25, 6, "Ho") + lineBehind(45, 6) },
    { "updatePositionCentred", emf("line 0 0", texts(FONT "textAlign 31; move 50 6", { hi(0, 0) })),
      text(40, 6, "Hi") + lineBehind(50, 6) },
};
INSTANTIATE_CASES(Texts, kTexts);

std::string smallText(const std::string &characters)
{
    return "<text x=\"10\" y=\"40\" font-family=\"F\"  fill=\"black\"  >" + characters
            + "</text>\n";
}

std::string wmfText(int size, const std::string &characters)
{
    return joined("<text x=\"10\" y=\"35\" font-family=\"F\" font-size=\"", size,
                  "\"  fill=\"black\"  >", characters, "</text>\n");
}

#define WMF_FONT(height) "font " height " 0 0 0 0 0 0 0 0 x4600; select 0;"

const Case kOtherTexts[] = {
    { "wideWithoutRectangle", emf(FONT "smallText 10 20 2 0x100 1 1. 1. \"H<\""),
      smallText("H&lt;") },
    { "narrow", emf(FONT "smallText 10 20 9 0x300 1 1. 1. x48E9"), smallText("H\xC3\xA9") },
    { "rotated",
      emf(UP_FONT "smallText 20 40 2 0x300 1 1. 1. x4869; delete 9; textAlign 24;"
                  "smallText 10 40 2 0x300 1 1. 1. x4869"),
      "<g transform=\"rotate(-90 40 40)\"><text x=\"40\" y=\"40\" font-family=\"F\"  "
      "fill=\"black\"  >Hi</text>\n</g>"
              + smallText("Hi") },
    { "narrowGlyphs", emf(FONT "smallText 10 20 2 0x310 1 1. 1. x0809"), smallText("HI") },
    { "cyrillic",
      emf("font 1 -20 0 0 0 0 x000000CC 0 \"F\"; select 1;"
          "smallText 10 20 1 0x300 1 1. 1. xC6"),
      smallText("\xD0\x96") },
    { "cutOff", emf(FONT "smallText 0 0 0 0 1 x0000"), "" },

    // A text of a WMF stands its ascent below the point.
    { "wmfRectangle", wmf(WMF_FONT("20") "text 20 10 2 4 9 9 9 9 \"a&\""), wmfText(20, "a&amp;") },
    { "wmfEmpty", wmf(WMF_FONT("20") "text 20 10 0 0; text 20 10 0 2 9 9 9 9"), "" },
    // A negative height is kept as it is read in the text, and placed as the height it is.
    { "wmfFont",
      wmf("font -20 0 0 0 -1 x0101010000000000 \"A\" xE93C00 \"B\" x00; select 0;"
          "text 20 10 1 0 \"a\" x00"),
      "<text x=\"10\" y=\"35\" font-family=\"A\xC3\xA9&lt;\" font-size=\"65516\"  "
      "font-style=\"italic\" text-decoration=\"underline\" font-weight=\"65535\" \n "
      "fill=\"black\"  >a</text>\n" },
    { "wmfFontOfALongName",
      wmf("font 20 0 0 0 0 0 0 0 0 \"123456789012345678901234567890123456\"; select 0;"
          "text 20 10 1 0 \"a\" x00"),
      "<text x=\"10\" y=\"35\" font-family=\"12345678901234567890123456789012\" "
      "font-size=\"20\"  fill=\"black\"  >a</text>\n" },
    { "wmfFontWithoutName", wmf("font 20 0 0 0 0; select 0; text 20 10 1 0 \"a\" x00"),
      "<text x=\"10\" y=\"35\" font-family=\"\" font-size=\"20\"  fill=\"black\"  "
      ">a</text>\n" },
};
INSTANTIATE_CASES(OtherTexts, kOtherTexts);

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

TEST(TextDecoding, CharacterSets)
{
    const struct
    {
        int charSet;
        const char *bytes, *text;
    } cases[] = {
        { 0, "\x80\xE4", "€ä" },        { 1, "\x80\xE4", "€ä" },
        { 2, "A\xFF", "\uF041\uF0FF" }, { 128, "\x93\xFA\x96\x7B", "日本" },
        { 129, "\xC7\xD1", "한" },      { 134, "\xD6\xD0", "中" },
        { 136, "\xA4\xA4", "中" },      { 161, "\xC1\xE1", "Αα" },
        { 162, "\xDD\xFE", "İş" },      { 177, "\xE0", "א" },
        { 178, "\xC7", "ا" },           { 186, "\xE8", "č" },
        { 204, "\xCF\xF0", "Пр" },      { 222, "\xA1", "ก" },
        { 238, "\x9C\xB3", "śł" },      { 99, "\xE4", "ä" },
    };
    for (const auto &each : cases)
        EXPECT_EQ(decodeText({ each.bytes, qint64(strlen(each.bytes)) }, quint8(each.charSet)),
                  QString::fromUtf8(each.text))
                << each.charSet;
}

} // namespace
