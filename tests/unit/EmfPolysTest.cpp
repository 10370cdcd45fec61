#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

#define TRIANGLE " 11 22 13 24 15 26"
#define TRIANGLE16 " 11,22 13,24 15,26"
#define FIVE " 11 22 13 24 15 26 17 28 19 30"
#define FIVE16 " 11,22 13,24 15,26 17,28 19,30"

const Case kCases[] = {
    { "polygon", shifted("polygon box 3" TRIANGLE), polygon("11,22 13,24 15,26", FALLBACK_STYLE) },
    { "polyline", shifted("polyline box 3" TRIANGLE), polyline("11,22 13,24 15,26") },
    { "polylineTo", shifted("polylineTo box 3" TRIANGLE "; line 10 20"),
      polyline("11,22 13,24 15,26") + line(0, 0, 11, 22, FALLBACK_STYLE) + line(15, 26, 0, 0) },
    { "polylineTo16", shifted("polylineTo16 box 3" TRIANGLE16 "; line 10 20"),
      polyline("1,2 3,4 5,6") + line(0, 0, 1, 2, FALLBACK_STYLE) + line(5, 6, 0, 0) },
    { "noPoints", emf("polygon box 0; polylineTo16 box 0; line 3 4"), line(0, 0, 3, 4) },
    { "countBeyondTheRecord",
      emf("polygon box 4" TRIANGLE "; polylineTo box 0xFFFFFFFF" TRIANGLE
          "; polygon16 box 0x40000003" TRIANGLE16 "; polyline; line 3 4"),
      line(0, 0, 3, 4) },
    { "countBelowTheRecord", emf("polyline box 1" TRIANGLE), polyline("11,22") },

    { "polyPolyline", shifted("polyPolyline box 2 5 2 3" FIVE),
      polyline("11,22 13,24") + polyline("15,26 17,28 19,30") },
    { "polyPolygon", shifted("polyPolygon box 3 5 3 0 2" FIVE),
      polygon("11,22 13,24 15,26", FALLBACK_STYLE) + polygon("17,28 19,30", FALLBACK_STYLE) },
    { "polyPolyline16", shifted("polyPolyline16 box 2 5 2 3" FIVE16),
      polyline("1,2 3,4") + polyline("5,6 7,8 9,10") },
    { "countsBeyondThePoints",
      emf("polyPolygon box 2 5 3 3" FIVE "; polyPolygon16 box 2 5 0xFFFFFFFF 6" FIVE16
          "; polyPolyline box 1 6 5" FIVE " x000000; polyPolyline16 box 0x7F7F7F7F"),
      "" },

    { "bezierIsMapped", shifted("bezier box 8" FIVE " 21 32 23 34 99 99; line 10 20"),
      path(" M1,2  C3,4 5,6 7,8  C9,10 11,12 13,14 ", DEFAULT_PEN) + line(0, 0, 0, 0) },
    { "bezierToIsNot", shifted("move 15 25; bezierTo box 8" FIVE " 21 32 23 34 99 99; line 10 20"),
      path(" M5,5  C11,22 13,24 15,26  C17,28 19,30 21,32 ", DEFAULT_PEN) + line(21, 32, 0, 0) },
    { "bezierTo16", shifted("bezierTo16 box 3" TRIANGLE16 "; line 10 20"),
      path(" M0,0  C1,2 3,4 5,6 ", DEFAULT_PEN) + line(5, 6, 0, 0) },
    { "tooFewPoints",
      shifted("bezier box 3" TRIANGLE "; bezierTo16 box 2 11,22 13,24; bezier16 box 0;"
              "bezierTo box 6" TRIANGLE "; line 11 22"),
      line(0, 0, 1, 2) },

    { "moveLineCurveClose",
      shifted("polyDraw16 box 5 11,21 12,22 13,23 14,24 15,25 x0602040405; line 10 20"),
      path(" M1,1  L2,2  C3,3 4,4 5,5  Z", DEFAULT_PEN) + line(5, 5, 0, 0) },
    { "fromTheCurrentPosition", emf("move 7 8; polyDraw16 box 3 1,1 2,2 3,3 x020302"),
      path(" M7,8  L1,1  L2,2  Z M2,2  L3,3 ", DEFAULT_PEN) },
    { "unknownTypesFailTheRecord",
      emf("polyDraw16 box 2 1,1 2,2 x0600; polyDraw16 box 2 1,1 2,2 x0607;"
          "polyDraw16 box 2 1,1 2,2 x0404; polyDraw16 box 2 1,1 2,2 x06; polyDraw16 box 0;"
          "line 5 6"),
      line(0, 0, 5, 6) },
    { "withoutAnEntryFor32Bits", emf("56 box 1 1,1 x02"), "" },
};
INSTANTIATE_CASES(Polys, kCases);

} // namespace
