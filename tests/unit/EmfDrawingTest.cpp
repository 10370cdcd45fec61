#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

const Case kShapes[] = {
    { "rectangleFromRightToLeft", emf("rect 9 8 4 6"), rect(9, 8, -5, -2) },
    { "shortRecordReadsZeros", emf("rect 3 2"), rect(3, 2, -3, -2) },
    { "roundedRectangle", shifted("roundRect 10 20 40 35 7 5"),
      "<rect x=\"0\" y=\"0\" width=\"30\" height=\"15\" rx=\"3\" ry=\"2\" " DEFAULT_STYLE "/>\n" },
    { "extremeBox", emf("ellipse 2147483647 0 -2147483648 8"),
      "<ellipse cx=\"-2147483648\" cy = \"4\" rx = \"0\" ry = \"4 \" " DEFAULT_STYLE "/>\n" },
    { "acceptedAndIgnored", emf("93; 79; 30"), "" },
};
INSTANTIATE_CASES(Shapes, kShapes);

// The ellipse of all arcs: centre 50,25, half axes 50 and 25.
EmfBuilder arc(const char *ends, const char *kind = "arc")
{
    return emf(QStringLiteral("%1 0 0 100 50 %2").arg(QLatin1String(kind), QLatin1String(ends)));
}

const std::string kRightToLeft = path("M100,25 a50,25 0 0,0 -100,0");
const std::string kLeftToRight = path("M0,25 a50,25 0 0,0 100,0");

// What joins the current position to an arc.
std::string join(qint64 x, qint64 y)
{
    return line(0, 0, x, y, FALLBACK_STYLE);
}

const Case kArcs[] = {
    { "topToRight", arc("50 -10 200 25"), path("M50,0 a50,25 0 1,0 50,25") },
    { "lowerRightToLowerLeft", arc("100 50 0 50"), path("M85,42 a50,25 0 1,0 -70,0") },
    { "halfIsNotLarge", arc("200 25 -5 25"), kRightToLeft },
    { "radialInTheCentre", arc("50 25 50 -10"), path("M100,25 a50,25 0 0,0 -50,-25") },
    { "mappedBeforeProjected", shifted("arc 10 20 110 70 210 45 60 10"),
      path("M100,25 a50,25 0 0,0 -50,-25") },
    { "wholeChord", arc("50 0 50 0", "chord"),
      path("M50,0 a50,25 0 0,0 0,50") + path("M50,50 a50,25 0 0,0 0,-50") },
    { "pieTakenForLarge", arc("50 90 100 25", "pie"), path("M50,50a50,25 0 1,0 50,-25l-50,0 z ") },
    { "arcTo", emf("line 1 2", arc("200 25 50 -10", "arcTo")),
      path("M100,25 a50,25 0 0,0 -50,-25") + join(100, 25) + line(50, 0, 1, 2) },
    { "wholeArcTo", emf("line 1 2", arc("200 25 200 25", "arcTo")),
      kRightToLeft + join(100, 25) + kLeftToRight + line(100, 25, 1, 2) },
    { "flatBox", emf("arc 0 5 20 5 30 5 10 9"), path("M20,5 a10,0 0 1,0 -10,0") },
    { "emptyBox", emf("arc 5 5 5 5 9 9 1 1"),
      path("M5,5 a0,0 0 0,0 0,0") + path("M5,5 a0,0 0 0,0 0,0") },

    { "angleArc", shifted("angleArc 60 45 10 0. 90.; line 10 20"),
      path("M60,25 a10,10 0 0,0 -10,-10") + join(60, 25) + line(50, 15, 0, 0) },
    { "clockwise", emf("angleArc 50 25 10 90. -90."),
      path("M50,15 a10,10 0 0,1 10,10") + join(50, 15) },
    { "nearestInteger", emf("angleArc 0 0 10 30. 30."),
      path("M9,-5 a10,10 0 0,0 -4,-4") + join(9, -5) },
    { "fullCircleAndMore", emf("angleArc 50 25 10 0. 450.; line 0 0"),
      path("M60,25 a10,10 0 0,0 -20,0") + join(60, 25) + path("M40,25 a10,10 0 0,0 20,0")
              + line(50, 15, 0, 0) },
    { "noNumbers", emf("angleArc 1 1 1 nan 1.; angleArc 1 1 1 0. -inf"), "" },
};
INSTANTIATE_CASES(Arcs, kArcs);

} // namespace
