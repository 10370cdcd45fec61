#include "unit/Cases.h"

#include <random>

using namespace svgtool;
using namespace svgtool::test;

namespace {

const Case kFigures[] = {
    { "rectangleFromRightToLeft", wmf("rect 20 10 40 30"), rect(30, 40, -20, -20) },
    { "shortRectangleReadsZeros", wmf("rect 20"), rect(0, 0, 0, 20) },
    { "ellipse", wmf("ellipse 11 31 2 10"),
      "<ellipse cx=\"20\" cy = \"6\" rx = \"10\" ry = \"4 \" " DEFAULT_STYLE "/>\n" },
    { "circleOfEqualHalves", wmf("ellipse 10 11 0 0"),
      "<circle cx=\"5\" cy = \"5\" r=\"5\" " DEFAULT_STYLE "/>\n" },
    { "emptyPolygonsUseTheNextPoint", wmf("polyPolygon 2 0 1 1 2"),
      "<path d=\" M1,2  Z M1,2  Z\" fill-rule=\"evenodd\"" DEFAULT_STYLE "/>\n" },
    { "countsBeyondTheRecord",
      wmf("polygon 4 1 2 3 4 5 6; polyline -1 1 2; polyPolygon 2 3 3 1 2 3 4 5 6 7 8 9 10;"
          "polyPolygon -1 1; polygon 0; polygon; polyPolygon"),
      "" },
    { "acceptedWithoutEffect", wmf("arc 1 2 3 4 5 6 7 8; mapMode 8; bkMode 1"), "" },
};
INSTANTIATE_CASES(WmfFigures, kFigures);

const Case kMappings[] = {
    { "verticalOriginStartsAtOne", wmf("line 5 5", WmfBuilder().placeable(0, 0, 100, 50, 96)),
      line(0, 0, 5, 4) },
    { "windowExtentScalesToThePicture", wmf("windowExt 100 50; line 21 11"), line(0, 0, 22, 10) },
    { "extentOfZeroScalesByThePicture", wmf("windowExt 0 50; line 3 2"), line(0, 0, 200, 150) },
    { "negativeExtentTurnsTheAxis", wmf("windowExt -50 100; line 21 11"), line(0, 0, 11, -21) },
    { "distanceWraps", wmf("windowOrg 0 -30000; line 0 10000"), line(0, 0, -25536, 0) },
    { "scaledDistanceWraps", wmf("windowExt 50 1; line 0 700"), line(0, 0, 4464, 0) },
    { "truncatedBeforeAndAfterScaling",
      wmf("windowOrg 0 0; windowExt 500 1500; line -19 79",
          WmfBuilder().placeable(0, 0, 1000, 500, 960)),
      line(0, 0, 4, -1) },
    { "lengthCountsThePlaceableHeader", wmf("line 3 4").size(5), line(0, 0, 4, 3) },
    { "twipsWithoutAPlaceableHeader", wmf("rect 151 44 16 -29", WmfBuilder()), rect(-1, 1, 3, 9) },
};
INSTANTIATE_CASES(WmfMappings, kMappings);

// A dot in the style of a pen without ends.
std::string dot(int penWidth)
{
    return rect(0, 0, 0, 0,
                joined(" stroke=\"black\" stroke-width=\"", penWidth, "\" \n fill=\"white\""));
}

const std::string kBlue =
        rect(0, 0, 1, 1, "stroke=\"none\" stroke-width=\"1\"   fill=\"#0000ff\"\n");

const Case kObjects[] = {
    { "penWidthIsScaledButNeverVanishes",
      wmf("windowExt 500 -500; pen 0x3300 12 0 0 0; pen 0x3300 1 0 0 0; pen 0x3300 0 0 0 0;"
          "select 0; rect 0 0 0 0; select 1; rect 0 0 0 0; select 2; rect 0 0 0 0"),
      dot(2) + dot(1) + dot(0) },
    { "kindsWithoutAHandlerTakeNoIndex",
      wmf("0x00F7 0x300 0; 0x06FF 0; 0x01F9 0; 0x0142 0; brush 0 0 0x00FF 0; select 0;"
          "rect 1 1 0 0"),
      kBlue },
    // A short record makes an object of zeros, and the next one keeps its number.
    { "shortCreationTakesAnIndex", wmf("pen; brush 0 0 0x00FF 0; select 1; rect 1 1 0 0"), kBlue },
};
INSTANTIATE_CASES(WmfObjects, kObjects);

// Brushes come and go at random; each is told by its colour. A plain list of slots says which
// index every creation must take.
TEST(WmfObjects, LowestFreeIndexIsUsedAgain)
{
    std::mt19937 random(1);
    QString records;
    std::string expected;
    std::vector<bool> isUsed;
    for (int i = 0; i < 600; ++i) {
        if (random() % 3 != 0) {
            const auto free = std::find(isUsed.begin(), isUsed.end(), false);
            const auto index = free - isUsed.begin();
            if (free == isUsed.end())
                isUsed.push_back(true);
            isUsed[size_t(index)] = true;
            records += QStringLiteral("brush 0 %1 0 0; select %2; rect 0 0 0 0;").arg(i).arg(index);
            char colour[8];
            snprintf(colour, sizeof colour, "#%02x%02x00", unsigned(i & 0xFF), unsigned(i >> 8));
            expected +=
                    rect(0, 0, 0, 0,
                         joined("stroke=\"none\" stroke-width=\"1\"   fill=\"", colour, "\"\n"));
        } else {
            // Some of these were never given out, or are free already.
            const size_t index = random() % (isUsed.size() + 2);
            records += QStringLiteral("delete %1;").arg(index);
            if (index < isUsed.size())
                isUsed[index] = false;
        }
    }
    EXPECT_EQ(convert(wmf(records).build()).body(), expected);
}

} // namespace
