#include "exact/style/StyleMgr.h"
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

} // namespace
