#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

// A frame of 100 by 50 mm over bounds of 200 by 25: 50 and 200 frame units per logical unit.
EmfBuilder unequal(const char *records)
{
    return emf(records, EmfBuilder().bounds(0, 0, 200, 25));
}

// A file whose frame lies otherwise than its bounds, which begin at 10,20.
EmfBuilder apart(int left, int top, const char *records)
{
    return emf(records,
               EmfBuilder().bounds(10, 20, 110, 70).frame(left, top, left + 10000, top + 5000));
}

// One rectangle shows how positions (x, y) and lengths (width, height) are mapped.
const Case kMappings[] = {
    { "nearInOneAxisIsEnough", apart(1099, 9900, "rect 10 20 11 21"), rect(0, 0, 1, 1) },
    // Two pixels a millimetre.
    { "elseTheFrameCornerInMillimetres",
      emf("rect 12 -23 13 -22",
          EmfBuilder()
                  .bounds(10, 20, 110, 70)
                  .frame(1250, -2370, 6250, 130)
                  .device(2000, 2000, 1000, 1000)),
      rect(0, 0, 1, 1) },
    { "oneUnitAwayIsNotNear", apart(1100, 2100, "rect 11 21 12 22"), rect(0, 0, 1, 1) },
    { "modeLastsForTheRestOfTheFile",
      unequal("mapMode 8; rect 100 100 300 500; mapMode 1; rect 100 100 300 500"),
      rect(2, 0, 4, 2) + rect(2, 0, 4, 2) },
    { "positionsTruncateAndLengthsRoundHalfUp",
      emf("mapMode 8; windowExt 10 10; viewportExt 1 1; rect 109 -109 214 -214;"
          "rect 0 0 25 -25; rect 0 0 24 -26; rect 0 0 -30 4"),
      rect(10, -10, 11, -10) + rect(0, 0, 3, -2) + rect(0, 0, 2, -3) + rect(0, 0, -3, 0) },
    { "viewportExtentWithoutTheMode", emf("windowExt 10 10; viewportExt 1 1; rect 50 50 60 70"),
      rect(50, 50, 10, 20) },
    { "windowExtentDoesNotRescale",
      emf("mapMode 8; windowExt 10 10; viewportExt 5 2; windowExt 7 7; rect 20 20 60 60"),
      rect(10, 4, 20, 8) },
    { "extentOfZeroKeepsTheAxis",
      emf("mapMode 8; windowExt 10 10; viewportExt 5 2; viewportExt 0 10; rect 20 20 60 60"),
      rect(10, 20, 20, 40) },
    { "negativeExtentsCountAsHuge",
      emf("mapMode 8; windowExt -10 -10; viewportExt 5 -10; rect 20 20 60 60"),
      rect(0, 20, 0, 40) },
    { "windowOriginMovesPositionsOnly", emf("windowOrg 5 6; rect 20 20 60 60"),
      rect(15, 14, 40, 40) },
    // 2^32 - 5 in single precision is 2^32; what does not fit comes out as the lowest number.
    { "negativeWindowOriginIsFarOutside", emf("windowOrg -5 0; rect 20 20 60 60"),
      rect(-2147483648, 20, 40, 40) },
    { "viewportOriginIsIgnored", emf("viewportOrg 5 6; rect 20 20 60 60"), rect(20, 20, 40, 40) },
    { "singlePrecision", emf("rect 16777217 0 33554436 1"), rect(16777216, 0, 16777220, 1) },
    { "emptyBoundsGiveNoScale", emf("mapMode 8; rect 20 20 60 60", EmfBuilder().bounds(0, 0, 0, 0)),
      rect(0, 0, 0, 0) },
};
INSTANTIATE_CASES(Mappings, kMappings);

std::string group(const std::string &matrix, const std::string &content = "")
{
    return joined("<g transform=\"matrix(", matrix, ")\">\n", content, "</g>\n");
}

#define SCALE "transform 2. 0. 0. 3. 4. 5.;"
#define HUGE_NUMBER "170141183460469231731687303715884105728"

const Case kTransforms[] = {
    { "groupLastsUntilTheNext",
      emf("line 1 1;" SCALE "line 2 2; transform 0.1 -1.5 0.0000001 1000000000. 0. "
          "0.333333343; line 3 3; transform 1. 0. 0. 1. 0. 0.; line 4 4"),
      line(0, 0, 1, 1) + group("2 0 0 3 4 5", line(1, 1, 2, 2))
              + group("0.1 -1.5 0.0000001 1000000000 0 0.33333334", line(2, 2, 3, 3))
              + line(3, 3, 4, 4) },
    // The record's transform first, then the one in force: 10 * 2 + 4, 20 * 3 + 5.
    { "leftMultiply", emf(SCALE "modify 1. 0. 0. 1. 10. 20. 2"),
      group("2 0 0 3 4 5") + group("2 0 0 3 24 65") },
    { "rightMultiply", emf(SCALE "modify 1. 0. 0. 1. 10. 20. 3"),
      group("2 0 0 3 4 5") + group("2 0 0 3 14 25") },
    // A quarter turn (1,0 becomes 0,1), then the scaling.
    { "leftMultiplyRotation", emf(SCALE "modify 0. 1. -1. 0. 0. 0. 2"),
      group("2 0 0 3 4 5") + group("0 3 -2 0 4 5") },
    { "neverSetCountsAsIdentity", emf("modify 2. 0. 0. 3. 4. 5. 2"), group("2 0 0 3 4 5") },
    { "unknownModeChangesNothing", emf("modify 2. 0. 0. 3. 4. 5. 5"), "" },
    { "noNumbersAreRefused",
      emf("transform 1. 0. 0. 1. 10. 20.; transform 1. 0. 0. inf 0. 0.;"
          "modify nan 0. 0. 1. 0. 0. 4; transform 1. 0. 0. 1. 0. -inf;"
          "modify " HUGE_NUMBER ". 0. 0. 1. " HUGE_NUMBER ". 0. 2;"
          "modify " HUGE_NUMBER ". 0. 0. 1. 0. 0. 3"),
      group("1 0 0 1 10 20") + group(HUGE_NUMBER " 0 0 1 " HUGE_NUMBER " 20") },
};
INSTANTIATE_CASES(Transforms, kTransforms);

} // namespace
