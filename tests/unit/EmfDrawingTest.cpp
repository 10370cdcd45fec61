#include "support/Cases.h"
#include "support/EmfRecords.h"

#include <limits>

namespace svgtool::test {
namespace {

    // A file whose coordinates come out less 10 and less 20.
    EmfBuilder shifted()
    {
        return EmfBuilder().bounds(10, 20, 110, 70).frame(1000, 2000, 11000, 7000);
    }

    const EmfCase kShapes[] = {
        { "rectangle", shifted().record(43, { 15, 27, 30, 28 }),
          "<rect x=\"5\" y=\"7\" width=\"15\" height=\"1\" rx=\"0\" ry=\"0\" " DEFAULT_STYLE
          "/>\n" },
        { "rectangleFromRightToLeft", EmfBuilder().record(43, { 9, 8, 4, 6 }),
          "<rect x=\"9\" y=\"8\" width=\"-5\" height=\"-2\" rx=\"0\" ry=\"0\" " DEFAULT_STYLE
          "/>\n" },
        { "shortRecordReadsZeros", EmfBuilder().record(43, { 3, 2 }),
          "<rect x=\"3\" y=\"2\" width=\"-3\" height=\"-2\" rx=\"0\" ry=\"0\" " DEFAULT_STYLE
          "/>\n" },
        { "roundedRectangle", shifted().record(44, { 10, 20, 40, 35, 7, 5 }),
          "<rect x=\"0\" y=\"0\" width=\"30\" height=\"15\" rx=\"3\" ry=\"2\" " DEFAULT_STYLE
          "/>\n" },
        { "ellipse", shifted().record(42, { 10, 20, 31, 31 }),
          "<ellipse cx=\"10\" cy = \"5\" rx = \"10\" ry = \"5 \" " DEFAULT_STYLE "/>\n" },
        { "circle", EmfBuilder().record(42, { 0, 0, 11, 10 }),
          "<circle cx=\"5\" cy = \"5\" r=\"5\" " DEFAULT_STYLE "/>\n" },
        { "extremeBox", EmfBuilder().record(42, { 2147483647, 0, -2147483648LL, 8 }),
          "<ellipse cx=\"-2147483648\" cy = \"4\" rx = \"0\" ry = \"4 \" " DEFAULT_STYLE "/>\n" },
        { "lines", shifted().record(27, { 11, 22 }).record(54, { 13, 24 }).record(54, { 10, 20 }),
          "<line x1=\"1\" y1 = \"2\" x2 =\"3\" y2=\"4\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"3\" y1 = \"4\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "acceptedAndIgnored", EmfBuilder().record(93).record(79).record(30), "" },
    };
    INSTANTIATE_TEST_SUITE_P(Shapes, EmfBody, testing::ValuesIn(kShapes),
                             testing::PrintToStringParamName());

    // The ellipse of all arcs: centre 50,25, half axes 50 and 25.
    EmfBuilder arc(quint32 type, int startX, int startY, int endX, int endY)
    {
        return EmfBuilder().record(type, { 0, 0, 100, 50, startX, startY, endX, endY });
    }

    const EmfCase kArcs[] = {
        { "rightToTop", arc(45, 200, 25, 50, -10),
          "<path d=\"M100,25 a50,25 0 0,0 -50,-25\" " DEFAULT_STYLE "/>\n" },
        { "topToRight", arc(45, 50, -10, 200, 25),
          "<path d=\"M50,0 a50,25 0 1,0 50,25\" " DEFAULT_STYLE "/>\n" },
        { "leftToBottom", arc(45, -1, 25, 50, 26),
          "<path d=\"M0,25 a50,25 0 0,0 50,25\" " DEFAULT_STYLE "/>\n" },
        { "lowerRightToLowerLeft", arc(45, 100, 50, 0, 50),
          "<path d=\"M85,42 a50,25 0 1,0 -70,0\" " DEFAULT_STYLE "/>\n" },
        { "lowerLeftToLowerRight", arc(45, 0, 50, 100, 50),
          "<path d=\"M15,42 a50,25 0 0,0 70,0\" " DEFAULT_STYLE "/>\n" },
        { "upperRightToUpperLeft", arc(45, 100, 0, 0, 0),
          "<path d=\"M85,8 a50,25 0 0,0 -70,0\" " DEFAULT_STYLE "/>\n" },
        { "halfIsNotLarge", arc(45, 200, 25, -5, 25),
          "<path d=\"M100,25 a50,25 0 0,0 -100,0\" " DEFAULT_STYLE "/>\n" },
        { "radialInTheCentre", arc(45, 50, 25, 50, -10),
          "<path d=\"M100,25 a50,25 0 0,0 -50,-25\" " DEFAULT_STYLE "/>\n" },
        { "whole", arc(45, 200, 25, 101, 25),
          "<path d=\"M100,25 a50,25 0 0,0 -100,0\" " DEFAULT_STYLE "/>\n"
          "<path d=\"M0,25 a50,25 0 0,0 100,0\" " DEFAULT_STYLE "/>\n" },
        { "mappedBeforeProjected", shifted().record(45, { 10, 20, 110, 70, 210, 45, 60, 10 }),
          "<path d=\"M100,25 a50,25 0 0,0 -50,-25\" " DEFAULT_STYLE "/>\n" },
        { "chord", arc(46, 200, 25, 50, -10),
          "<path d=\"M100,25a50,25 0 0,0 -50,-25 z \" " DEFAULT_STYLE "/>\n" },
        { "wholeChord", arc(46, 50, 0, 50, 0),
          "<path d=\"M50,0 a50,25 0 0,0 0,50\" " DEFAULT_STYLE "/>\n"
          "<path d=\"M50,50 a50,25 0 0,0 0,-50\" " DEFAULT_STYLE "/>\n" },
        { "pie", arc(47, 200, 25, 50, -10),
          "<path d=\"M100,25a50,25 0 0,0 -50,-25l0,25 z \" " DEFAULT_STYLE "/>\n" },
        { "pieTakenForLarge", arc(47, 50, 90, 100, 25),
          "<path d=\"M50,50a50,25 0 1,0 50,-25l-50,0 z \" " DEFAULT_STYLE "/>\n" },
        { "arcTo", arc(55, 200, 25, 50, -10).record(54, { 1, 2 }),
          "<path d=\"M100,25 a50,25 0 0,0 -50,-25\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"100\" y2=\"25\" " FALLBACK_STYLE "/>\n"
          "<line x1=\"50\" y1 = \"0\" x2 =\"1\" y2=\"2\" " DEFAULT_STYLE "/>\n" },
        { "wholeArcTo", arc(55, 200, 25, 200, 25).record(54, { 1, 2 }),
          "<path d=\"M100,25 a50,25 0 0,0 -100,0\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"100\" y2=\"25\" " FALLBACK_STYLE "/>\n"
          "<path d=\"M0,25 a50,25 0 0,0 100,0\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"100\" y1 = \"25\" x2 =\"1\" y2=\"2\" " DEFAULT_STYLE "/>\n" },
        { "flatBox", EmfBuilder().record(45, { 0, 5, 20, 5, 30, 5, 10, 9 }),
          "<path d=\"M20,5 a10,0 0 1,0 -10,0\" " DEFAULT_STYLE "/>\n" },
        { "emptyBox", EmfBuilder().record(45, { 5, 5, 5, 5, 9, 9, 1, 1 }),
          "<path d=\"M5,5 a0,0 0 0,0 0,0\" " DEFAULT_STYLE "/>\n"
          "<path d=\"M5,5 a0,0 0 0,0 0,0\" " DEFAULT_STYLE "/>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Arcs, EmfBody, testing::ValuesIn(kArcs),
                             testing::PrintToStringParamName());

    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();

    const EmfCase kAngleArcs[] = {
        { "quarter", shifted().record(41, angleArc(60, 45, 10, 0, 90)).record(54, { 10, 20 }),
          "<path d=\"M60,25 a10,10 0 0,0 -10,-10\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"60\" y2=\"25\" " FALLBACK_STYLE "/>\n"
          "<line x1=\"50\" y1 = \"15\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "clockwise", EmfBuilder().record(41, angleArc(50, 25, 10, 90, -90)),
          "<path d=\"M50,15 a10,10 0 0,1 10,10\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"50\" y2=\"15\" " FALLBACK_STYLE "/>\n" },
        { "large", EmfBuilder().record(41, angleArc(50, 25, 10, 360, 270)),
          "<path d=\"M60,25 a10,10 0 1,0 -10,10\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"60\" y2=\"25\" " FALLBACK_STYLE "/>\n" },
        { "nearestInteger", EmfBuilder().record(41, angleArc(0, 0, 10, 30, 30)),
          "<path d=\"M9,-5 a10,10 0 0,0 -4,-4\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"9\" y2=\"-5\" " FALLBACK_STYLE "/>\n" },
        { "fullCircleAndMore",
          EmfBuilder().record(41, angleArc(50, 25, 10, 0, 450)).record(54, { 0, 0 }),
          "<path d=\"M60,25 a10,10 0 0,0 -20,0\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"60\" y2=\"25\" " FALLBACK_STYLE "/>\n"
          "<path d=\"M40,25 a10,10 0 0,0 20,0\" " DEFAULT_STYLE "/>\n"
          "<line x1=\"50\" y1 = \"15\" x2 =\"0\" y2=\"0\" " DEFAULT_STYLE "/>\n" },
        { "noNumbers",
          EmfBuilder()
                  .record(41, angleArc(1, 1, 1, kNan, 1))
                  .record(41, angleArc(1, 1, 1, 0, -kInfinity)),
          "" },
    };
    INSTANTIATE_TEST_SUITE_P(AngleArcs, EmfBody, testing::ValuesIn(kAngleArcs),
                             testing::PrintToStringParamName());

} // namespace
} // namespace svgtool::test
