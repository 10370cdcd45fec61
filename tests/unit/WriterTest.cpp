#include "core/text/TextDecoding.h"
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
