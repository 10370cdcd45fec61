#include "style/StyleMgr.h"
#include "support/Conversion.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace svgtool::test {
namespace {

    constexpr quint32 kStock = 0x80000000;
    constexpr quint32 kRed = 0x0000FF;

    struct PenCase
    {
        const char *name;
        quint32 style;
        qint32 width;
        quint32 colour;
        std::vector<quint32> entries;
        const char *text; ///< up to the default brush
    };

    void PrintTo(const PenCase &pen, std::ostream *out)
    {
        *out << pen.name;
    }

    class PenText : public testing::TestWithParam<PenCase>
    {
    };

    TEST_P(PenText, OpensTheCombinedText)
    {
        const PenCase &pen = GetParam();
        CStyleManager styles;
        styles.EmfCreatePen(1, pen.style, pen.width, pen.colour, pen.entries);
        styles.EmfSelectObject(1);
        EXPECT_EQ(styles.combinedStyle(),
                  QLatin1String(pen.text) + QLatin1String(" fill=\"white\""));
        EXPECT_EQ(styles.GetCurrPenStyle(),
                  QLatin1String(pen.text) + QLatin1String(" fill=\"none\" "));
    }

#define ROUND_ENDS "stroke-linecap = \"round\"stroke-linejoin = \"round\""

    const PenCase kPens[] = {
        { "solid", 0, 1, kRed, {}, " stroke=\"#ff0000\" stroke-width=\"1\" \n " ROUND_ENDS },
        { "blackByName", 0, 0, 0, {}, " stroke=\"black\" stroke-width=\"0\" \n " ROUND_ENDS },
        { "channels", 0, 7, 0xAB0C01, {}, " stroke=\"#010cab\" stroke-width=\"7\" \n " ROUND_ENDS },
        { "negativeWidth",
          0,
          -1,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"4294967295\" \n " ROUND_ENDS },
        { "flatMiter",
          0x2200,
          1,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"1\" \n "
          "stroke-linecap = \"butt\"stroke-linejoin = \"miter\"" },
        { "squareBevel",
          0x1100,
          1,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"1\" \n "
          "stroke-linecap = \"square\"stroke-linejoin = \"bevel\"" },
        { "unknownEnds", 0x3300, 1, kRed, {}, " stroke=\"#ff0000\" stroke-width=\"1\" \n" },
        { "dash",
          1,
          3,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"3\" \n " ROUND_ENDS "stroke-dasharray=\"12 , 6\" " },
        { "dotOfWidthZero",
          2,
          0,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"0\" \n " ROUND_ENDS "stroke-dasharray=\"0 , 0\" " },
        { "dashDot",
          3,
          3,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"3\" \n " ROUND_ENDS
          "stroke-dasharray=\"12 , 6 , 3 , 6\" " },
        { "dashDotDot",
          0x3304,
          1,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"1\" \n stroke-dasharray=\"4 , 2 , 1 , 2 , 1 , 2\" " },
        { "hugeWidthWraps",
          0x3301,
          0x7FFFFFFF,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"2147483647\" \n stroke-dasharray=\"-4 , -2\" " },
        { "userStyle",
          7,
          2,
          kRed,
          { 5, 4294967295 },
          " stroke=\"#ff0000\" stroke-width=\"2\" \n " ROUND_ENDS
          "stroke-dasharray=\"5,4294967295\" " },
        { "userStyleWithoutEntries",
          7,
          2,
          kRed,
          {},
          " stroke=\"#ff0000\" stroke-width=\"2\" \n " ROUND_ENDS },
        { "entriesOfAnotherStyle",
          0,
          2,
          kRed,
          { 5 },
          " stroke=\"#ff0000\" stroke-width=\"2\" \n " ROUND_ENDS },
        { "sixteenEntries", 0x3307, 1, kRed, std::vector<quint32>(17, 8),
          " stroke=\"#ff0000\" stroke-width=\"1\" \n "
          "stroke-dasharray=\"8,8,8,8,8,8,8,8,8,8,8,8,8,8,8,8\" " },
    };

    INSTANTIATE_TEST_SUITE_P(Style, PenText, testing::ValuesIn(kPens),
                             testing::PrintToStringParamName());

    struct SelectCase
    {
        const char *name;
        std::function<void(CStyleManager &)> steps;
        const char *combined;
    };

    void PrintTo(const SelectCase &select, std::ostream *out)
    {
        *out << select.name;
    }

    class Selection : public testing::TestWithParam<SelectCase>
    {
    };

    TEST_P(Selection, BuildsTheCombinedText)
    {
        CStyleManager styles;
        GetParam().steps(styles);
        EXPECT_EQ(styles.combinedStyle().toStdString(), GetParam().combined);
    }

    void makeRedPen(CStyleManager &styles, quint32 index = 1)
    {
        styles.EmfCreatePen(index, 0x3300, 2, kRed);
    }

    void makeBlueBrush(CStyleManager &styles, quint32 index = 2)
    {
        styles.EmfCreateBrush(index, 0, 0xFF0000, 0);
    }

    const SelectCase kSelections[] = {
        { "nothing", [](auto &) {}, "stroke=\"black\" stroke-width=\"1\" fill=\"none\" " },
        { "unknownIndexShowsTheDefaults", [](auto &s) { s.EmfSelectObject(77); },
          "stroke=\"none\" stroke-width=\"1\"  fill=\"white\"" },
        { "penAndBrush",
          [](auto &s) {
              makeRedPen(s);
              makeBlueBrush(s);
              s.EmfSelectObject(1);
              s.EmfSelectObject(2);
          },
          " stroke=\"#ff0000\" stroke-width=\"2\" \n  fill=\"#0000ff\"\n" },
        { "nullBrush",
          [](auto &s) {
              s.EmfCreateBrush(2, 1, kRed, 0);
              s.EmfSelectObject(2);
          },
          "stroke=\"none\" stroke-width=\"1\"   fill=\"none\" " },
        { "stockBrushAfterSolid",
          [](auto &s) {
              makeBlueBrush(s);
              s.EmfSelectObject(2);
              s.EmfSelectObject(kStock + 5);
          },
          "stroke=\"none\" stroke-width=\"1\"   fill=\"none\" " },
        { "stockBlackPenCutsTheStroke",
          [](auto &s) {
              makeRedPen(s);
              makeBlueBrush(s);
              s.EmfSelectObject(1);
              s.EmfSelectObject(2);
              s.EmfSelectObject(kStock + 7);
          },
          "  stroke-width=\"2\" \n  stroke=\"black\" " },
        { "stockNullPen",
          [](auto &s) {
              makeRedPen(s);
              s.EmfSelectObject(1);
              s.EmfSelectObject(kStock + 8);
          },
          " stroke=\"none\"  fill=\"white\"" },
        { "otherStockObjectsChangeNothing",
          [](auto &s) {
              s.EmfSelectObject(kStock + 9);
              s.EmfSelectObject(kStock + 13);
              s.EmfSelectObject(kStock + 18);
          },
          "stroke=\"none\" stroke-width=\"1\"  fill=\"white\"" },
        { "deletedPenIsDrawnUntilTheNextSelection",
          [](auto &s) {
              makeRedPen(s);
              s.EmfSelectObject(1);
              s.EmfDeleteObject(1);
              s.EmfSelectObject(1);
          },
          " stroke=\"#ff0000\" stroke-width=\"2\" \n fill=\"white\"" },
        { "secondCreationWins",
          [](auto &s) {
              makeRedPen(s, 5);
              makeBlueBrush(s, 5);
              s.EmfSelectObject(5);
          },
          "stroke=\"none\" stroke-width=\"1\"   fill=\"#0000ff\"\n" },
        { "clipStaysAtTheEnd",
          [](auto &s) {
              s.ExtSetClipRgn(QStringLiteral("ClPath1"));
              s.ExtSetClipRgn(QStringLiteral("ClPath2"));
              s.EmfSelectObject(kStock + 4);
          },
          "stroke=\"none\" stroke-width=\"1\"   fill=\"black\" clip-path=\"url(#ClPath2)\"" },
        { "clipReplaced",
          [](auto &s) {
              s.ExtSetClipRgn(QStringLiteral("ClPath1"));
              s.ExtSetClipRgn(QStringLiteral("ClPath2"));
          },
          "stroke=\"black\" stroke-width=\"1\" fill=\"none\" clip-path=\"url(#ClPath2)\"" },
        { "clipCleared",
          [](auto &s) {
              s.ExtSetClipRgn(QStringLiteral("ClPath1"));
              s.ExtSetClipRgn(QString());
          },
          "stroke=\"black\" stroke-width=\"1\" fill=\"none\" " },
    };

    INSTANTIATE_TEST_SUITE_P(Style, Selection, testing::ValuesIn(kSelections),
                             testing::PrintToStringParamName());

    TEST(Style, GetBrushGivesTheTextFromTheEqualsSign)
    {
        CStyleManager styles;
        makeRedPen(styles);
        makeBlueBrush(styles);
        styles.EmfCreateBrush(3, 1, 0, 0);
        EXPECT_EQ(styles.EmfGetBrush(1), QString());
        EXPECT_EQ(styles.EmfGetBrush(2), QStringLiteral("=\"#0000ff\"\n"));
        EXPECT_EQ(styles.EmfGetBrush(3), QString());
        EXPECT_EQ(styles.EmfGetBrush(4), QString());
        EXPECT_EQ(styles.EmfGetBrush(kStock), QString());
        EXPECT_EQ(styles.GetCurrBrushStyle(),
                  QStringLiteral("\" fill=\"white\" stroke=\"none\" stroke-width=\"0\" "));
    }

    TEST(Style, HatchPatterns)
    {
        CStyleManager styles;
        const auto fill = [&styles](quint32 index, quint32 hatch) {
            styles.EmfCreateBrush(index, 2, kRed, hatch);
            styles.EmfSelectObject(index);
            return styles.combinedStyle().section(QLatin1String(" fill="), 1).toStdString();
        };
        // A brush of an unknown hatch refers to the latest pattern, made or not.
        EXPECT_EQ(fill(9, 6), "\"url(#BRUSH_0)\" \n");
        EXPECT_EQ(fill(4, 0), "\"url(#BRUSH_1)\" \n");
        styles.SetBkgColor(0x030201);
        EXPECT_EQ(fill(7, 5), "\"url(#BRUSH_2)\" \n");
        EXPECT_EQ(fill(8, 6), "\"url(#BRUSH_2)\" \n");
        EXPECT_EQ(fill(4, 1), "\"url(#BRUSH_3)\" \n");
        EXPECT_EQ(styles.GetBrushPattern(8), QString());
        EXPECT_EQ(styles.GetBrushPattern(4).toStdString(),
                  "<defs> \t\t<polygon id=\"BACKGROUND\" fill=\"#010203\" stroke=\"none\" "
                  "points=\"0 0, 8 0, 8 8, 0 8, 0 0\" /> \t\t<path id=\"HATCH_VERTICAL\" "
                  "stroke-width=\"1.0\" fill=\"#000000\" stroke=\"#ff0000\" fill-opacity=\"1.0\" "
                  "d=\"m4,0 l0,8\" /> \t\t<pattern id=\"BRUSH_3\" width=\"8\" height=\"8\" "
                  "patternUnits=\"userSpaceOnUse\" > \t\t<g><g><use x=\"0\" y=\"0\" "
                  "xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
                  "xlink:href=\"#HATCH_VERTICAL\"/> "
                  "\t\t</g></g></pattern></defs>\n");
        EXPECT_EQ(
                styles.GetBrushPattern(7).toStdString(),
                "<defs>\t\t<polygon id=\"BACKGROUND\" fill=\"#010203\" stroke=\"white\" "
                "points=\"0 0, 8 0, 8 8, 0 8, 0 0\" /> \t\t<path id=\"HATCH_DICROSS\" "
                "stroke-width=\"1.0\" fill=\"white\" stroke=\"#ff0000\" fill-opacity=\"1.0\" "
                "d=\"m0,0 l8,8 m-8,0 l8,-8\" /> \t\t<pattern id=\"BRUSH_2\" width=\"8\" "
                "height=\"8\" "
                "patternUnits=\"userSpaceOnUse\" > \t\t<g><g><use x=\"0\" y=\"0\" "
                "xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" xlink:href=\"#HATCH_DICROSS\"/> "
                "\t\t</g></g></pattern></defs>\n");
    }

    LOGFONTW logFont(const QString &faceName, qint32 height = -12)
    {
        LOGFONTW font{};
        font.lfHeight = height;
        for (int i = 0; i < faceName.size() && i < 32; ++i)
            font.lfFaceName[i] = faceName[i].unicode();
        return font;
    }

    TEST(Style, EmfFonts)
    {
        CStyleManager styles;
        const auto select = [&styles](const LOGFONTW &font) {
            styles.EmfCreateFont(6, font);
            styles.EmfSelectObject(6);
            return styles.GetCurrTextStyle().toStdString();
        };
        EXPECT_EQ(styles.GetCurrTextStyle(), QStringLiteral("   fill=\"black\" "));
        EXPECT_EQ(select(logFont({})), " font-family=\"Arial\"  fill=\"black\" ");
        EXPECT_EQ(select(logFont(QStringLiteral("A") + QChar(1) + QChar(0xFFFE) + QChar(0xD800))),
                  " font-family=\"A\"  fill=\"black\" ");
        styles.SetTextColor(0);
        LOGFONTW font = logFont(QStringLiteral("a \"b\" <&>"));
        font.lfWeight = 700;
        font.lfItalic = font.lfUnderline = font.lfStrikeOut = 1;
        EXPECT_EQ(select(font),
                  " font-family=\"a &quot;b&quot; &lt;&amp;&gt;\"  font-style=\"italic\""
                  " text-decoration=\"underline line-through\" font-weight=\"700\" \n"
                  " fill=\"#000000\" ");
        font = logFont(QString(40, QLatin1Char('x')));
        font.lfWeight = -5;
        font.lfStrikeOut = 1;
        EXPECT_EQ(select(font),
                  " font-family=\"" + std::string(32, 'x')
                          + "\"  text-decoration=\"line-through\" font-weight=\"-5\" \n"
                            " fill=\"#000000\" ");
        font = logFont(QStringLiteral("F"), 40);
        font.lfUnderline = 1;
        EXPECT_EQ(select(font),
                  " font-family=\"F\"  text-decoration=\"underline\" fill=\"#000000\" ");
        // The fake metrics take an eighth of the cell as leading and a quarter of the size as
        // descent.
        EXPECT_EQ(styles.fontSize(), 35);
        EXPECT_EQ(styles.fontDescent(), 8);
        EXPECT_EQ(styles.fontFace(), QStringLiteral("F"));
    }

    TEST(Style, RotationIsThatOfTheLastFontMade)
    {
        CStyleManager styles;
        const auto rotation = [&styles](qint32 escapement) {
            LOGFONTW font = logFont({});
            font.lfEscapement = escapement;
            styles.EmfCreateFont(1, font);
            return styles.textRotation();
        };
        EXPECT_EQ(rotation(900), -90);
        EXPECT_EQ(rotation(15), -1);
        EXPECT_EQ(rotation(-15), 1);
        EXPECT_EQ(rotation(9), 0);
        EXPECT_EQ(rotation(2700), -270);
        styles.EmfDeleteObject(99);
        EXPECT_EQ(styles.textRotation(), 0);
    }

    TEST(Style, DeviceDefaultFontIsTheLastEmfFont)
    {
        CStyleManager styles;
        styles.EmfCreateFont(3, logFont(QStringLiteral("Three")));
        styles.EmfCreateFont(4, logFont(QStringLiteral("Four")));
        styles.EmfSelectObject(3);
        styles.EmfSelectObject(kStock + 13);
        EXPECT_EQ(styles.fontFace(), QStringLiteral("Three"));
        styles.EmfSelectObject(kStock + 14);
        EXPECT_EQ(styles.fontFace(), QStringLiteral("Four"));
    }

    TEST(Style, WmfFonts)
    {
        CStyleManager styles;
        FONTSPEC font{};
        font.lfHeight = -12;
        font.lfWeight = -1;
        font.lfUnderline = 1;
        font.lfStrikeOut = 1;
        font.lfItalic = 1;
        const auto select = [&styles](const FONTSPEC &spec, const char *name, qint64 size) {
            styles.MetaCreateFont(2, spec, { name, size });
            styles.EmfSelectObject(2);
            return styles.GetCurrTextStyle().toStdString();
        };
        EXPECT_EQ(select(font, "A\xE9<\0B", 5),
                  " font-family=\"A\xC3\xA9&lt;\" font-size=\"65524\"  font-style=\"italic\""
                  " text-decoration=\"underline\" font-weight=\"65535\" \n fill=\"black\" ");
        EXPECT_EQ(styles.fontSize(), 65524);
        EXPECT_EQ(select({}, nullptr, 0), " font-family=\"\" font-size=\"0\"  fill=\"black\" ");
        EXPECT_EQ(select({}, "unended", 3),
                  " font-family=\"une\" font-size=\"0\"  fill=\"black\" ");
    }

} // namespace
} // namespace svgtool::test
