#include "support/Cases.h"
#include "support/EmfRecords.h"

namespace svgtool::test {
namespace {

    // Coordinates that are mapped come out less 10 and less 20.
    EmfBuilder shifted()
    {
        return EmfBuilder().bounds(10, 20, 110, 70).frame(1000, 2000, 11000, 7000);
    }

    const PointList kTriangle{ { 11, 22 }, { 13, 24 }, { 15, 26 } };

#define UNMAPPED "points=\"11,22 13,24 15,26 \n\" "
#define MAPPED "points=\"1,2 3,4 5,6 \n\" "

    const EmfCase kLists[] = {
        { "polygon", shifted().record(3, pointList(kTriangle)),
          "<polygon " UNMAPPED FALLBACK_STYLE "/>\n" },
        { "polyline", shifted().record(4, pointList(kTriangle)),
          "<polyline " UNMAPPED DEFAULT_PEN "/>\n" },
        { "polylineTo", shifted().record(6, pointList(kTriangle)).record(54, { 10, 20 }),
          "<polyline " UNMAPPED DEFAULT_PEN "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"11\" y2=\"22\" " FALLBACK_STYLE "/>\n"
          "<line x1=\"15\" y1 = \"26\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "polygon16", shifted().record(86, pointList16(kTriangle)),
          "<polygon " MAPPED DEFAULT_STYLE "/>\n" },
        { "polyline16", shifted().record(87, pointList16(kTriangle)),
          "<polyline " MAPPED DEFAULT_PEN "/>\n" },
        { "polylineTo16", shifted().record(89, pointList16(kTriangle)).record(54, { 10, 20 }),
          "<polyline " MAPPED DEFAULT_PEN "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"1\" y2=\"2\" " FALLBACK_STYLE "/>\n"
          "<line x1=\"5\" y1 = \"6\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "negative16", EmfBuilder().record(87, pointList16({ { -1, -32768 } })),
          "<polyline points=\"-1,-32768 \n\" " DEFAULT_PEN "/>\n" },
        { "noPoints",
          EmfBuilder().record(3, pointList({})).record(89, pointList16({})).record(54, { 3, 4 }),
          "<line x1=\"0\" y1 = \"0\" x2 =\"3\" y2=\"4\" " DEFAULT_STYLE "/>\n" },
        { "countBeyondTheRecord",
          EmfBuilder()
                  .record(3, pointList(kTriangle, false, 4))
                  .record(6, pointList(kTriangle, false, 0xFFFFFFFF))
                  .record(86, pointList(kTriangle, true, 0x40000003))
                  .record(4, QByteArray())
                  .record(54, { 3, 4 }),
          "<line x1=\"0\" y1 = \"0\" x2 =\"3\" y2=\"4\" " DEFAULT_STYLE "/>\n" },
        { "countBelowTheRecord", EmfBuilder().record(4, pointList(kTriangle, false, 1)),
          "<polyline points=\"11,22 \n\" " DEFAULT_PEN "/>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Lists, EmfBody, testing::ValuesIn(kLists),
                             testing::PrintToStringParamName());

    const PointList kFive{ { 11, 22 }, { 13, 24 }, { 15, 26 }, { 17, 28 }, { 19, 30 } };

    const EmfCase kFigures[] = {
        { "polyPolyline", shifted().record(7, figures({ 2, 3 }, kFive)),
          "<polyline points=\"11,22 13,24 \n\" " DEFAULT_PEN "/>\n"
          "<polyline points=\"15,26 17,28 19,30 \n\" " DEFAULT_PEN "/>\n" },
        { "polyPolygon", shifted().record(8, figures({ 3, 0, 2 }, kFive)),
          "<polygon points=\"11,22 13,24 15,26 \n\" " FALLBACK_STYLE "/>\n"
          "<polygon points=\"17,28 19,30 \n\" " FALLBACK_STYLE "/>\n" },
        { "polyPolyline16", shifted().record(90, figures({ 2, 3 }, kFive, true)),
          "<polyline points=\"1,2 3,4 \n\" " DEFAULT_PEN "/>\n"
          "<polyline points=\"5,6 7,8 9,10 \n\" " DEFAULT_PEN "/>\n" },
        { "polyPolygon16", shifted().record(91, figures({ 2 }, kFive, true)),
          "<polygon points=\"1,2 3,4 \n\" " DEFAULT_STYLE "/>\n" },
        { "countsBeyondThePoints",
          shifted()
                  .record(8, figures({ 3, 3 }, kFive))
                  .record(91, figures({ 0xFFFFFFFF, 6 }, kFive, true))
                  .record(7, figures({ 5 }, kFive).chopped(1))
                  .record(90, QByteArray(20, '\x7F')),
          "" },
    };
    INSTANTIATE_TEST_SUITE_P(Figures, EmfBody, testing::ValuesIn(kFigures),
                             testing::PrintToStringParamName());

    const PointList kCurves{ { 11, 22 }, { 13, 24 }, { 15, 26 }, { 17, 28 },
                             { 19, 30 }, { 21, 32 }, { 23, 34 }, { 99, 99 } };

    const EmfCase kBeziers[] = {
        { "bezierIsMapped", shifted().record(2, pointList(kCurves)).record(54, { 10, 20 }),
          "<path d=\" M1,2  C3,4 5,6 7,8  C9,10 11,12 13,14 \" " DEFAULT_PEN "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "bezierToIsNot",
          shifted().record(27, { 15, 25 }).record(5, pointList(kCurves)).record(54, { 10, 20 }),
          "<path d=\" M5,5  C11,22 13,24 15,26  C17,28 19,30 21,32 \" " DEFAULT_PEN "/>\n"
          "<line x1=\"21\" y1 = \"32\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "bezier16",
          shifted().record(85, pointList16({ { 11, 22 }, { 13, 24 }, { 15, 26 }, { 17, 28 } })),
          "<path d=\" M1,2  C3,4 5,6 7,8 \" " DEFAULT_PEN "/>\n" },
        { "bezierTo16", shifted().record(88, pointList16(kTriangle)).record(54, { 10, 20 }),
          "<path d=\" M0,0  C1,2 3,4 5,6 \" " DEFAULT_PEN "/>\n"
          "<line x1=\"5\" y1 = \"6\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "tooFewPoints",
          shifted()
                  .record(2, pointList(kTriangle))
                  .record(88, pointList16({ { 11, 22 }, { 13, 24 } }))
                  .record(85, pointList16({}))
                  .record(5, pointList(kTriangle, false, 6))
                  .record(54, { 11, 22 }),
          "<line x1=\"0\" y1 = \"0\" x2 =\"1\" y2=\"2\" " DEFAULT_STYLE "/>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Beziers, EmfBody, testing::ValuesIn(kBeziers),
                             testing::PrintToStringParamName());

    const EmfCase kMixed[] = {
        { "moveLineCurveClose",
          shifted()
                  .record(92,
                          mixedFigure(
                                  { { 11, 21 }, { 12, 22 }, { 13, 23 }, { 14, 24 }, { 15, 25 } },
                                  QByteArray("\6\2\4\4\5")))
                  .record(54, { 10, 20 }),
          "<path d=\" M1,1  L2,2  C3,3 4,4 5,5  Z\" " DEFAULT_PEN "/>\n"
          "<line x1=\"5\" y1 = \"5\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "fromTheCurrentPosition",
          EmfBuilder()
                  .record(27, { 7, 8 })
                  .record(92, mixedFigure({ { 1, 1 }, { 2, 2 }, { 3, 3 } }, QByteArray("\2\3\2"))),
          "<path d=\" M7,8  L1,1  L2,2  Z M2,2  L3,3 \" " DEFAULT_PEN "/>\n" },
        { "unknownTypesFailTheRecord",
          EmfBuilder()
                  .record(92, mixedFigure({ { 1, 1 }, { 2, 2 } }, QByteArray("\6\0", 2)))
                  .record(92, mixedFigure({ { 1, 1 }, { 2, 2 } }, QByteArray("\6\7")))
                  .record(92, mixedFigure({ { 1, 1 }, { 2, 2 } }, QByteArray("\4\4")))
                  .record(92, mixedFigure({ { 1, 1 }, { 2, 2 } }, QByteArray("\6")))
                  .record(92, mixedFigure({}, QByteArray()))
                  .record(54, { 5, 6 }),
          "<line x1=\"0\" y1 = \"0\" x2 =\"5\" y2=\"6\" " DEFAULT_STYLE "/>\n" },
        { "withoutAnEntryFor32Bits", EmfBuilder().record(56, mixedFigure({ { 1, 1 } }, "\2")), "" },
    };
    INSTANTIATE_TEST_SUITE_P(Mixed, EmfBody, testing::ValuesIn(kMixed),
                             testing::PrintToStringParamName());

} // namespace
} // namespace svgtool::test
