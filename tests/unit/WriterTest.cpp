#include "core/text/CharacterSet.h"
#include "exact/svg/SVGWriter.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

TEST(Writer, FallsBackToTheStyleOfTheStart)
{
    CMySVGWriter writer;
    writer.DrawRect(1, 2, 3, 4, QString(), 0, 0);
    writer.DrawEllipse(1, 2, 3, 5, QString());
    writer.DrawLine(1, -2147483647 - 1, 2147483647, 4, QStringLiteral("S"));
    EXPECT_EQ(
            writer.takeDocument().toStdString(),
            R"(<rect x="1" y="2" width="3" height="4" rx="0" ry="0"  stroke="black" stroke-width="1" fill="none"/>
<ellipse cx="1" cy = "2" rx = "3" ry = "5 "  stroke="black" stroke-width="1" fill="none"/>
<line x1="1" y1 = "-2147483648" x2 ="2147483647" y2="4" S/>
)");
}

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
        std::string_view bytes;
        std::u16string_view text;
    } cases[] = {
        { 0, "\x80\xE4\x81", u"€ä\u0081" },
        { 1, "\x80\xE4", u"€ä" },
        { 2, "A\xFF", u"\uF041\uF0FF" },
        { 77, "\xC6\xF0", u"\u2206\uF8FF" },
        { 128, "\x93\xFA\x96\x7B\x1C\x7F\xA0", u"日本\u007F\u001A\u001A" },
        { 128, "\x85\x40\x81 \x81", u"\uFFFD\u001A " },
        { 129, "\xC7\xD1\xC9\xA1\xFE\xFE\xFF\xA2\xE8\xA2", u"한\uE000\uE0BB\uF8F7\uFFFD" },
        { 134, "\xD6\xD0\xA1\x40\xA7\xA0\xFE\xA0\xFE\xFE", u"中\uE4C6\uE765\uE864\uE4C5" },
        { 134, "\xA2\xAB\xA9\xA3\x81\x7F", u"\uE766\uE800\uFFFD\u007F" },
        { 136, "\xA4\xA4\x81\xA1\xA0\xFE\xFE\xFE\x81\xA0", u"中\uEEF7\uEEB7\uE310\uFFFD" },
        { 161, "\xC1\xE1\xAA\xD2", u"Αα\u00AA\uFFFD" },
        { 162, "\xDD\xFE", u"İş" },
        { 163, "a\xCC", u"a\u0300" },
        { 177, "\xE0\xCA", u"א\uFFFD" },
        { 178, "\xC7", u"ا" },
        { 186, "\xE8", u"č" },
        { 204, "\xCF\xF0", u"Пр" },
        { 222, "\xA1\xFF", u"ก\uF8C8" },
        { 238, "\x9C\xB3", u"śł" },
        { 99, "\xE4", u"ä" },
    };
    for (const auto &each : cases)
        EXPECT_EQ(decodeText({ each.bytes.data(), int64_t(each.bytes.size()) },
                             uint8_t(each.charSet)),
                  each.text)
                << each.charSet;
}

} // namespace
