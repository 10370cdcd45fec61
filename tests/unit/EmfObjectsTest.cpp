#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

#define TRIANGLE "polyline16 box 3 0,0 10,0 0,10;"
#define CURVE "bezier16 box 4 1,2 3,4 5,6 7,8;"
#define FILL "; endPath; fillPath"

std::string filled(const std::string &data)
{
    return "\n<path d = \"" + data + "\" fill=\"white\" stroke=\"none\" stroke-width=\"0\" />\n";
}

std::string stroked(const std::string &data)
{
    return "\n<path d = \"" + data + "\"" DEFAULT_PEN "/>\n";
}

const std::string kTriangle = " M0,0  L10,0  L0,10  Z";

const Case kPaths[] = {
    { "emptiedByDrawing", emf("beginPath;" TRIANGLE "strokePath; closeFigure" FILL),
      stroked(kTriangle) + filled(" L0,0 ") },
    { "keptByASecondBracket",
      emf("beginPath; polyline16 box 1 1,1; endPath; beginPath; polygon box 1 2 2" FILL),
      filled(" M1,1  Z M2,2  Z") },
    { "aborted", emf("beginPath;" TRIANGLE "abortPath; polyline16 box 1 1,1" FILL),
      polyline("1,1") + filled("") },
    { "curvesStayOpen", emf("beginPath;" CURVE "polyDraw16 box 2 1,1 2,2 x0602" FILL),
      filled(" M1,2  C3,4 5,6 7,8  M1,1  L2,2 ") },
    { "closesToAMoveInTheBracket", emf("beginPath; move 3 4; closeFigure; closeFigure" FILL),
      filled(" L3,4  L0,4 ") },
    { "notToAMoveBefore", emf("move 3 4; beginPath; closeFigure" FILL), filled(" L0,0 ") },
    { "notToTheEndOfALine", emf("beginPath; line 3 4; closeFigure" FILL),
      line(0, 0, 3, 4) + filled(" L0,0 ") },
    { "closesToTheFirstPointOfACurve", emf("beginPath;" CURVE "closeFigure" FILL),
      filled(" M1,2  C3,4 5,6 7,8  L1,2 ") },
    { "closesToTheCurrentPositionOfACurveTo",
      emf("move 9 8; beginPath; bezierTo16 box 3 0,0 10,0 0,10; closeFigure" FILL),
      filled(" M9,8  C0,0 10,0 0,10  L9,8 ") },
    { "bracketTakesTheStyleForFallback",
      emf("select 0x80000004; polygon box 1 1 1; beginPath; endPath; polygon box 1 1 1"),
      polygon("1,1", FALLBACK_STYLE)
              + polygon("1,1", "stroke=\"none\" stroke-width=\"1\"   fill=\"black\" ") },
};
INSTANTIATE_CASES(Paths, kPaths);

std::string clip(int number, const std::string &rects)
{
    return joined("\n<defs><clipPath id= \"ClPath", number, "\">", rects, "</clipPath></defs>");
}

std::string clipRect(int x, int y, int width, int height)
{
    return rect(x, y, width, height, "stroke=\"none\" fill=\"none\" stroke-width=\"1\" ");
}

std::string filledRect(int x, int y, int width, int height)
{
    return rect(x, y, width, height, "stroke=\"none\" stroke-width=\"1\" fill=\"#ff0000\"\n");
}

std::string edge(int x1, int y1, int x2, int y2)
{
    return line(x1, y1, x2, y2, "stroke=\"#ff0000\"\n fill=\"none\" stroke-width=\"2\" ");
}

#define RED_BRUSH "brush 1 0 0x0000FF 0;"
// The size of region data with one or two rectangles, the data's header, and a clip to copy.
#define ONE "32 1 1 16 box "
#define TWO "32 1 2 32 box "
#define CLIP_ONE "clipRgn 48 5 " ONE
#define CLIPPED "clip-path=\"url(#ClPath1)\""
#define SQUARES "; rect 10 20 11 21; polygon box 1 1 1"

const std::string kPoint = line(0, 0, 0, 0, "fill=\"none\" stroke-width=\"1\" ");

const Case kRegions[] = {
    { "filledRegion", shifted(RED_BRUSH "fillRgn box 64 1 " TWO "10 20 15 30 30 40 20 41"),
      filledRect(0, 0, 5, 10) + filledRect(20, 20, -10, 1) },
    { "framedRegion", shifted(RED_BRUSH "frameRgn box 64 1 1 2 " TWO "10 20 20 25 15 25 25 30"),
      edge(0, 0, 10, 0) + edge(5, 10, 15, 10) + edge(0, 5, 5, 5) + edge(10, 5, 15, 5)
              + edge(0, 0, 0, 5) + edge(10, 0, 10, 5) + edge(5, 5, 5, 10) + edge(15, 5, 15, 10) },
    { "frameIsAtLeastOneWide", emf("frameRgn box 48 1 0 -3 " ONE "box; frameRgn box box"),
      kPoint + kPoint + kPoint + kPoint },
    { "malformedRegions",
      shifted(RED_BRUSH "fillRgn box 48 1 32 1 2 16 box 1 2 3 4;"
                        "fillRgn box 48 1 32 1 0x10000001 16 box 1 2 3 4;"
                        "fillRgn box 48 1 32 1 1 17 box 1 2 3 4;"
                        "fillRgn box 48 1 " ONE "1 2 3 x040000;"
                        "frameRgn box 31 1 1 1 box 0 0 0 x000000; clipRgn 0 1;"
                        "clipRgn 48 6 " ONE "1 2 3 4; clipRgn 0x7FFFFFFF 5"),
      "" },
    // A rectangle of the clip keeps its right edge inclusive.
    { "clipReplaced", shifted(CLIP_ONE "10 20 15 30" SQUARES),
      clip(1, clipRect(0, 0, 4, 10)) + rect(0, 0, 1, 1, DEFAULT_STYLE CLIPPED)
              + polygon("1,1", DEFAULT_STYLE CLIPPED) },
    // The clip starts from 10,20 with width 110 and height 70: what the header's corners say;
    // and so it does again when it has been removed.
    { "clipIntersected",
      shifted("clipRgn 48 1 " ONE "0 0 30 30; clipRgn 0 5; clipRgn 48 1 " ONE "0 0 900 900"),
      clip(1, clipRect(0, 0, 19, 10)) + clip(2, clipRect(0, 0, 109, 70)) },
    { "clipUnited", shifted(CLIP_ONE "10 20 20 30; clipRgn 48 2 " ONE "10 30 15 35"),
      clip(1, clipRect(0, 0, 9, 10)) + clip(2, clipRect(0, 0, 9, 10) + clipRect(0, 10, 4, 5)) },
    { "clipXored", shifted(CLIP_ONE "10 20 20 30; clipRgn 48 3 " ONE "10 20 15 30"),
      clip(1, clipRect(0, 0, 9, 10)) + clip(2, clipRect(5, 0, 4, 10)) },
    { "clipDifference", shifted(CLIP_ONE "10 20 20 30; clipRgn 48 4 " ONE "10 20 20 25"),
      clip(1, clipRect(0, 0, 9, 10)) + clip(2, clipRect(0, 5, 9, 5)) },
    { "clipPath",
      emf("beginPath;" TRIANGLE "endPath; clipPath 5; rect 0 0 1 1; polygon box 1 1 1;"
          "fillPath"),
      clip(1, "\n<path d = \"" + kTriangle + "\" />") + rect(0, 0, 1, 1, DEFAULT_STYLE CLIPPED)
              + polygon("1,1", DEFAULT_STYLE CLIPPED) + filled("") },
    { "bracketEndsTheClip", emf("clipPath 5; beginPath; endPath; rect 0 0 1 1; polygon box 1 1 1"),
      clip(1, "\n<path d = \"\" />") + rect(0, 0, 1, 1) + polygon("1,1", DEFAULT_STYLE) },
};
INSTANTIATE_CASES(Regions, kRegions);

constexpr quint32 kClipRegion = 75;
enum ClipMode { kAnd = 1, kOr, kXor, kDiff, kCopy };

// A clip of upright or lying bars.
QByteArray bars(ClipMode mode, int count, bool lying)
{
    ByteWriter data;
    data.u32s({ 32 + count * 16, mode, 32, 1, count, count * 16, 0, 0, 0, 0 });
    for (int i = 0; i < 2 * count; i += 2)
        lying ? data.u32s({ 0, i, 9999, i + 1 }) : data.u32s({ i, 0, i + 1, 9999 });
    return data.result();
}

qint64 clipCount(const EmfBuilder &file)
{
    return QByteArray::fromStdString(convert(file.build()).body()).count("<clipPath");
}

// Crossing bars cut each other into a number of rectangles that is the product of theirs, and a
// large region can be written again by a small record; neither may outgrow the file.
TEST(ClipRegions, DoNotMultiply)
{
    const EmfBuilder file = EmfBuilder().record(kClipRegion, bars(kCopy, 2000, false));
    EXPECT_EQ(clipCount(EmfBuilder(file).record(kClipRegion, bars(kXor, 2000, true))), 1);
    EmfBuilder again = file;
    for (int i = 0; i < 200; ++i)
        again.record(kClipRegion, bars(kOr, 0, false));
    EXPECT_LT(clipCount(again), 100);
    EXPECT_GT(clipCount(again), 20);
}

// What is refused for its size takes up what the file has left, or each further record could
// have as much work done for nothing.
TEST(ClipRegions, RefusedOnesAreNotTriedAgain)
{
    EmfBuilder file = EmfBuilder().record(kClipRegion, bars(kCopy, 400, false));
    EXPECT_EQ(clipCount(EmfBuilder(file).record(kClipRegion, bars(kCopy, 1, false))), 2);
    file.record(kClipRegion, bars(kAnd, 400, true));
    EXPECT_EQ(clipCount(file.record(kClipRegion, bars(kCopy, 1, false))), 1);
}

} // namespace
