#include "style/StyleMgr.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

constexpr char kSquare[] = "; rect 0 0 1 1";

// The unit square in a given style.
std::string square(const std::string &style)
{
    return rect(0, 0, 1, 1, style);
}

// An extended pen of the given style, width, colour and dashes with their count.
EmfBuilder pen(const char *style, const char *width, const char *colour = "0x0000FF",
               const char *dashes = "0")
{
    return emf(QStringLiteral("extPen 1 box %1 %2 0 %3 0 %4; select 1; rect 0 0 1 1")
                       .arg(QLatin1String(style), QLatin1String(width), QLatin1String(colour),
                            QLatin1String(dashes)));
}

std::string drawn(const std::string &colour, const std::string &width, const std::string &rest)
{
    return square(joined(" stroke=\"", colour, "\" stroke-width=\"", width, "\" \n", rest,
                         " fill=\"white\""));
}

const Case kPens[] = {
    { "channels", pen("0", "7", "0xAB0C01"), drawn("#010cab", "7", " " ROUND_ENDS) },
    { "negativeWidth", pen("0", "-1"), drawn("#ff0000", "4294967295", " " ROUND_ENDS) },
    { "nullPenIsWrittenAsAnyOther", pen("5", "1"), drawn("#ff0000", "1", " " ROUND_ENDS) },
    { "flatMiter", pen("0x2200", "1"),
      drawn("#ff0000", "1", " stroke-linecap = \"butt\"stroke-linejoin = \"miter\"") },
    { "squareBevel", pen("0x1100", "1"),
      drawn("#ff0000", "1", " stroke-linecap = \"square\"stroke-linejoin = \"bevel\"") },
    { "unknownEnds", pen("0x3300", "1"), drawn("#ff0000", "1", "") },
    { "dashDot", pen("0x3303", "3"),
      drawn("#ff0000", "3", " stroke-dasharray=\"12 , 6 , 3 , 6\" ") },
    { "dashDotDot", pen("0x3304", "1"),
      drawn("#ff0000", "1", " stroke-dasharray=\"4 , 2 , 1 , 2 , 1 , 2\" ") },
    { "hugeWidthWraps", pen("0x3301", "0x40000000"),
      drawn("#ff0000", "1073741824", " stroke-dasharray=\"0 , -2147483648\" ") },
    { "userStyle", pen("0x3307", "2", "0x0000FF", "2 5 4294967295"),
      drawn("#ff0000", "2", " stroke-dasharray=\"5,4294967295\" ") },
    { "dashesBeyondTheRecord", pen("0x3307", "2", "0x0000FF", "0xFFFFFFFF 5 3"),
      drawn("#ff0000", "2", " stroke-dasharray=\"5,3\" ") },
    { "dashesOfAnotherStyle", pen("0", "2", "0x0000FF", "1 5"),
      drawn("#ff0000", "2", " " ROUND_ENDS) },
    { "sixteenDashes", pen("0x3307", "1", "0x0000FF", "17 8 8 8 8 8 8 8 8 8 8 8 8 8 8 8 8 8"),
      drawn("#ff0000", "1", " stroke-dasharray=\"8,8,8,8,8,8,8,8,8,8,8,8,8,8,8,8\" ") },
    // Lengths are divided by 10 across and by 5 down.
    { "widthIsALength",
      emf("mapMode 8; windowExt 10 5; viewportExt 1 1; pen 1 0x3300 25 99 0x0000FF; select 1;"
          "rect 0 0 10 5; extPen 1 box 0x3300 20 0 0 0 0; select 1; rect 0 0 10 5"),
      drawn("#ff0000", "3", "") + drawn("black", "2", "") },
};
INSTANTIATE_CASES(Pens, kPens);

#define RED_PEN "pen 1 0x3300 2 0 0x0000FF; select 1;"
#define BLUE_BRUSH "brush 2 0 0xFF0000 0; select 2;"

EmfBuilder selected(const char *records)
{
    return emf(kSquare, emf(records));
}

// A region of the unit square filled with an object.
#define FILL(index) "fillRgn box 48 " index " 32 1 1 16 box 0 0 1 1;"

const std::string kBare = square("stroke=\"none\" stroke-width=\"1\" ");

std::string clip(int number)
{
    return joined("\n<defs><clipPath id= \"ClPath", number,
                  "\">\n<path d = \"\" /></clipPath></defs>");
}

const Case kSelections[] = {
    { "penAndBrush", selected(RED_PEN BLUE_BRUSH),
      square(" stroke=\"#ff0000\" stroke-width=\"2\" \n  fill=\"#0000ff\"\n") },
    { "stockBrushAfterSolid", selected(BLUE_BRUSH "select 0x80000005"),
      square("stroke=\"none\" stroke-width=\"1\"   fill=\"none\" ") },
    { "stockPensCutTheStroke",
      emf(RED_PEN BLUE_BRUSH "select 0x80000007; rect 0 0 1 1; select 0x80000006; rect 0 0 1 1"),
      square("  stroke-width=\"2\" \n  stroke=\"black\" ")
              + square("  stroke-width=\"2\" \n  stroke=\"white\" ") },
    { "stockNullPen", selected(RED_PEN "select 0x80000008"),
      square(" stroke=\"none\"  fill=\"white\"") },
    { "otherStockObjectsChangeNothing",
      selected("select 0x80000009; select 0x8000000D; select 0x80000012"),
      square("stroke=\"none\" stroke-width=\"1\"  fill=\"white\"") },
    { "deletedPenIsDrawnUntilTheNextSelection", selected(RED_PEN "delete 1; select 1"),
      square(" stroke=\"#ff0000\" stroke-width=\"2\" \n fill=\"white\"") },
    { "secondCreationWins", selected(RED_PEN "brush 1 0 0xFF0000 0; select 1"),
      square(" stroke=\"#ff0000\" stroke-width=\"2\" \n  fill=\"#0000ff\"\n") },
    { "clipStaysAtTheEnd",
      emf("clipPath 5; clipPath 5; rect 0 0 1 1; select 0x80000004; rect 0 0 1 1"),
      clip(1) + clip(2) + square(DEFAULT_STYLE "clip-path=\"url(#ClPath2)\"")
              + square("stroke=\"none\" stroke-width=\"1\"   fill=\"black\" "
                       "clip-path=\"url(#ClPath2)\"") },
    // What a pen, a null brush, no object and a stock brush leave for a region is no fill at all.
    { "regionWithoutABrush",
      emf("pen 1 0 2 0 0; brush 2 1 0 0;" FILL("1") FILL("2") FILL("9") FILL("0x80000004")),
      kBare + kBare + kBare + kBare },
};
INSTANTIATE_CASES(Selections, kSelections);

// The style of a text in a font that the fields behind its index describe.
EmfBuilder font(const char *fields)
{
    return emf(QStringLiteral("bkMode 1; font 6 %1; select 6; text box 1 1. 1. 0 0 1 76 0 box "
                              "0 \"A\" x0000")
                       .arg(QLatin1String(fields)));
}

std::string text(const std::string &style, int size = 20)
{
    return joined("<text x=\"0\" y=\"", size, "\"", style, " font-size=\"", size,
                  "\"  >A</text>\n");
}

const std::string k32 = std::string(32, 'x');

const Case kFonts[] = {
    { "unnamed", font("-20 0 0 0 0 box"), text(" font-family=\"Arial\"  fill=\"black\" ") },
    { "forbiddenCharacters", font("-20 0 0 0 0 0 0 \"B\" 1,0xFFFE 0xD800,0"),
      text(" font-family=\"B\"  fill=\"black\" ") },
    { "all", font("-20 0 0 0 700 x01010100 0 \"a&<\\\"b\\\">\"; textColor 0"),
      text(" font-family=\"a&amp;&lt;&quot;b&quot;&gt;\"  font-style=\"italic\""
           " text-decoration=\"underline line-through\" font-weight=\"700\" \n"
           " fill=\"#000000\" ") },
    { "longName", font("-20 0 0 0 -5 x00000100 0 \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\""),
      text(" font-family=\"" + k32
           + "\"  text-decoration=\"line-through\" font-weight=\"-5\" \n fill=\"black\" ") },
    // The fake metrics take an eighth of a cell as leading.
    { "cell", font("40 0 0 0 0 x00010000 0 \"F\""),
      text(" font-family=\"F\"  text-decoration=\"underline\" fill=\"black\" ", 35) },
    { "deviceDefaultIsTheLastFontMade",
      emf("bkMode 1; font 3 -20 0 0 0 0 0 0 \"Three\"; font 4 -20 0 0 0 0 0 0 \"Four\";"
          "select 3; select 0x8000000D; text box 1 1. 1. 0 0 1 76 0 box 0 \"A\" x0000;"
          "select 0x8000000E; text box 1 1. 1. 0 0 1 76 0 box 0 \"A\" x0000"),
      text(" font-family=\"Three\"  fill=\"black\" ")
              + text(" font-family=\"Four\"  fill=\"black\" ") },
};
INSTANTIATE_CASES(Fonts, kFonts);

TEST(Style, RotationIsThatOfTheLastFontMade)
{
    CStyleManager styles;
    const std::pair<qint32, qint32> cases[] = {
        { 900, -90 }, { 15, -1 }, { -15, 1 }, { 9, 0 }, { 2700, -270 },
    };
    for (const auto &[escapement, rotation] : cases) {
        LOGFONTW font{};
        font.lfEscapement = escapement;
        styles.EmfCreateFont(1, font);
        EXPECT_EQ(styles.textRotation(), rotation);
    }
    styles.EmfDeleteObject(99);
    EXPECT_EQ(styles.textRotation(), 0);
}

// A brush of an unknown hatch refers to the latest pattern, made or not. The texts of the
// patterns are in the recorded documents.
TEST(Style, HatchPatternsAreNumbered)
{
    CStyleManager styles;
    const std::pair<quint32, const char *> cases[] = {
        { 6, "0" }, { 0, "1" }, { 5, "2" }, { 6, "2" }, { 1, "3" },
    };
    for (const auto &[hatch, number] : cases) {
        styles.EmfCreateBrush(4, 2, 0, hatch);
        styles.EmfSelectObject(4);
        EXPECT_EQ(styles.combinedStyle().section(QLatin1String(" fill="), 1).toStdString(),
                  joined("\"url(#BRUSH_", number, ")\" \n"));
    }
    EXPECT_EQ(styles.GetBrushPattern(8), QString());
}

} // namespace
