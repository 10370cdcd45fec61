#include "style/StyleMgr.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

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
                  std::string("\"url(#BRUSH_") + number + ")\" \n");
    }
    EXPECT_EQ(styles.GetBrushPattern(8), QString());
}

} // namespace
