#include "support/Cases.h"
#include "support/EmfRecords.h"

namespace svgtool::test {
namespace {

    constexpr quint32 kBeginPath = 59;
    constexpr quint32 kEndPath = 60;
    constexpr quint32 kCloseFigure = 61;
    constexpr quint32 kFillPath = 62;
    constexpr quint32 kStrokePath = 64;
    constexpr quint32 kSelectClipPath = 67;
    constexpr quint32 kAbortPath = 68;
    constexpr quint32 kMoveTo = 27;
    constexpr quint32 kLineTo = 54;
    constexpr quint32 kRectangle = 43;
    constexpr quint32 kPolyline16 = 87;

    EmfBuilder inPath()
    {
        return EmfBuilder().record(kBeginPath);
    }

    EmfBuilder filled(EmfBuilder emf)
    {
        return emf.record(kEndPath).record(kFillPath);
    }

    const QByteArray kTriangle = pointList16({ { 0, 0 }, { 10, 0 }, { 0, 10 } });
    const QByteArray kCurve = pointList16({ { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 } });

#define FILL "\" fill=\"white\" stroke=\"none\" stroke-width=\"0\" />\n"

    const EmfCase kPaths[] = {
        { "filled", filled(inPath().record(kPolyline16, kTriangle)),
          "\n<path d = \" M0,0  L10,0  L0,10  Z" FILL },
        { "stroked", inPath().record(kPolyline16, kTriangle).record(kEndPath).record(kStrokePath),
          "\n<path d = \" M0,0  L10,0  L0,10  Z\"" DEFAULT_PEN "/>\n" },
        { "emptiedByDrawing",
          filled(inPath().record(kPolyline16, kTriangle).record(kStrokePath).record(kCloseFigure)),
          "\n<path d = \" M0,0  L10,0  L0,10  Z\"" DEFAULT_PEN "/>\n\n<path d = \" L0,0 " FILL },
        { "keptByASecondBracket",
          filled(inPath().record(kPolyline16, pointList16({ { 1, 1 } }))
                         .record(kEndPath)
                         .record(kBeginPath)
                         .record(3, pointList({ { 2, 2 } }))),
          "\n<path d = \" M1,1  Z M2,2  Z" FILL },
        { "aborted",
          filled(inPath().record(kPolyline16, kTriangle)
                         .record(kAbortPath)
                         .record(kPolyline16, pointList16({ { 1, 1 } }))),
          "<polyline points=\"1,1 \n\" " DEFAULT_PEN "/>\n\n<path d = \"" FILL },
        { "curvesStayOpen",
          filled(inPath().record(85, kCurve)
                         .record(92, mixedFigure({ { 1, 1 }, { 2, 2 } }, QByteArray("\6\2")))),
          "\n<path d = \" M1,2  C3,4 5,6 7,8  M1,1  L2,2 " FILL },
        { "otherFiguresStayElements",
          filled(inPath().record(kLineTo, { 1, 2 }).record(kRectangle, { 0, 0, 3, 4 })),
          "<line x1=\"0\" y1 = \"0\" x2 =\"1\" y2=\"2\" " DEFAULT_STYLE "/>\n"
          "<rect x=\"0\" y=\"0\" width=\"3\" height=\"4\" rx=\"0\" ry=\"0\" " DEFAULT_STYLE "/>\n"
          "\n<path d = \"" FILL },
        { "closesToAMoveInTheBracket",
          filled(inPath().record(kMoveTo, { 3, 4 }).record(kCloseFigure).record(kCloseFigure)),
          "\n<path d = \" L3,4  L0,4 " FILL },
        { "notToAMoveBefore",
          filled(EmfBuilder().record(kMoveTo, { 3, 4 }).record(kBeginPath).record(kCloseFigure)),
          "\n<path d = \" L0,0 " FILL },
        { "notToTheEndOfALine", filled(inPath().record(kLineTo, { 3, 4 }).record(kCloseFigure)),
          "<line x1=\"0\" y1 = \"0\" x2 =\"3\" y2=\"4\" " DEFAULT_STYLE
          "/>\n\n<path d = \" L0,0 " FILL },
        { "closesToTheFirstPointOfACurve", filled(inPath().record(85, kCurve).record(kCloseFigure)),
          "\n<path d = \" M1,2  C3,4 5,6 7,8  L1,2 " FILL },
        { "closesToTheCurrentPositionOfACurveTo",
          filled(EmfBuilder()
                         .record(kMoveTo, { 9, 8 })
                         .record(kBeginPath)
                         .record(88, kTriangle)
                         .record(kCloseFigure)),
          "\n<path d = \" M9,8  C0,0 10,0 0,10  L9,8 " FILL },
        { "bracketTakesTheStyleForFallback",
          EmfBuilder()
                  .record(37, { 0x80000004 })
                  .record(3, pointList({ { 1, 1 } }))
                  .record(kBeginPath)
                  .record(kEndPath)
                  .record(3, pointList({ { 1, 1 } })),
          "<polygon points=\"1,1 \n\" " FALLBACK_STYLE "/>\n"
          "<polygon points=\"1,1 \n\" stroke=\"none\" stroke-width=\"1\"   fill=\"black\" />\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Paths, EmfBody, testing::ValuesIn(kPaths),
                             testing::PrintToStringParamName());

#define ROUND_ENDS "stroke-linecap = \"round\"stroke-linejoin = \"round\""

    EmfBuilder withRect(EmfBuilder emf)
    {
        return emf.record(kRectangle, { 0, 0, 1, 1 });
    }

// The unit square in a given style.
#define SQUARE(style)                                                                              \
    "<rect x=\"0\" y=\"0\" width=\"1\" height=\"1\" rx=\"0\" ry=\"0\" " style "/>\n"

    constexpr quint32 kSelect = 37;
    constexpr quint32 kCreatePen = 38;
    constexpr quint32 kCreateBrush = 39;
    constexpr quint32 kDelete = 40;
    constexpr quint32 kExtCreatePen = 95;

    // Width, style, brush style, colour, hatch and dash entries of an extended pen.
    QByteArray extendedPen(quint32 style, int width, qint64 entryCount,
                           std::initializer_list<qint64> entries)
    {
        ByteWriter body;
        body.u32s({ 1, 0, 0, 0, 0 });
        body.u32s({ style, width, 0, 0x0000FF, 0, entryCount });
        for (const qint64 entry : entries)
            body.u32(entry);
        return body.result();
    }

    // Lengths are divided by 10 across and by 5 down.
    EmfBuilder scaled()
    {
        return EmfBuilder().record(17, { 8 }).record(9, { 10, 5 }).record(11, { 1, 1 });
    }

    const EmfCase kObjects[] = {
        { "penWidthIsALength",
          scaled().record(kCreatePen, { 1, 0, 25, 99, 0x0000FF })
                  .record(kSelect, { 1 })
                  .record(kRectangle, { 0, 0, 10, 5 }),
          SQUARE(" stroke=\"#ff0000\" stroke-width=\"3\" \n " ROUND_ENDS " fill=\"white\"") },
        { "nullPenIsWrittenAsAnyOther",
          withRect(EmfBuilder().record(kCreatePen, { 1, 5, 1, 0, 0 }).record(kSelect, { 1 })),
          SQUARE(" stroke=\"black\" stroke-width=\"1\" \n " ROUND_ENDS " fill=\"white\"") },
        { "extendedPen",
          scaled().record(kExtCreatePen, extendedPen(0x12207, 20, 2, { 5, 3 }))
                  .record(kSelect, { 1 })
                  .record(kRectangle, { 0, 0, 10, 5 }),
          SQUARE(" stroke=\"#ff0000\" stroke-width=\"2\" \n stroke-linecap = \"butt\""
                 "stroke-linejoin = \"miter\"stroke-dasharray=\"5,3\"  fill=\"white\"") },
        { "dashesBeyondTheRecord",
          withRect(EmfBuilder()
                           .record(kExtCreatePen, extendedPen(7, 2, 0xFFFFFFFF, { 5, 3 }))
                           .record(kSelect, { 1 })),
          SQUARE(" stroke=\"#ff0000\" stroke-width=\"2\" \n " ROUND_ENDS
                 "stroke-dasharray=\"5,3\"  fill=\"white\"") },
        { "deletedAndMadeAgain",
          withRect(EmfBuilder()
                           .record(kCreateBrush, { 1, 0, 0x0000FF, 0 })
                           .record(kSelect, { 1 })
                           .record(kDelete, { 1 })
                           .record(kCreateBrush, { 1, 0, 0x00FF00, 0 })
                           .record(kSelect, { 1 })),
          SQUARE("stroke=\"none\" stroke-width=\"1\"   fill=\"#00ff00\"\n") },
        { "stockPens",
          withRect(EmfBuilder()
                           .record(kCreatePen, { 1, 0x3300, 2, 0, 0x0000FF })
                           .record(kSelect, { 1 })
                           .record(kSelect, { 0x80000006 })),
          SQUARE("  stroke-width=\"2\" \n  stroke=\"white\" ") },
        { "hatchTakesTheBackgroundOfItsTime",
          EmfBuilder()
                  .record(25, { 0x0000FF })
                  .record(kCreateBrush, { 1, 2, 0xFF0000, 0 })
                  .record(25, { 0x00FF00 })
                  .record(kSelect, { 1 })
                  .record(kRectangle, { 0, 0, 1, 1 }),
          "<defs> \t\t<polygon id=\"BACKGROUND\" fill=\"#ff0000\" stroke=\"white\" points=\"0 0, 8 "
          "0, "
          "8 8, 0 8, 0 0\" /> \t\t<path id=\"HATCH_HORIZONTAL\" stroke-width=\"1.0\" "
          "fill=\"#000000\" stroke=\"#0000ff\" fill-opacity=\"1.0\" d=\"m0,8 l8,0\" /> "
          "\t\t<pattern id=\"BRUSH_1\" width=\"8\" height=\"8\" patternUnits=\"userSpaceOnUse\" > "
          "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
          "xlink:href=\"#HATCH_HORIZONTAL\"/> \t\t</g></g></pattern></defs>\n" SQUARE(
                  "stroke=\"none\" stroke-width=\"1\"   fill=\"url(#BRUSH_1)\" \n") },
    };
    INSTANTIATE_TEST_SUITE_P(Objects, EmfBody, testing::ValuesIn(kObjects),
                             testing::PrintToStringParamName());

    constexpr quint32 kFillRegion = 71;
    constexpr quint32 kFrameRegion = 72;
    constexpr quint32 kClipRegion = 75;
    enum ClipMode { kAnd = 1, kOr, kXor, kDiff, kCopy };

    using Rects = std::initializer_list<std::array<int, 4>>;

    QByteArray regionData(Rects rects, qint64 count = -1)
    {
        ByteWriter data;
        data.u32(32).u32(1).u32(count >= 0 ? count : qint64(rects.size()));
        data.u32(qint64(rects.size()) * 16).u32s({ 0, 0, 0, 0 });
        for (const auto &rect : rects)
            for (const int edge : rect)
                data.u32(edge);
        return data.result();
    }

    QByteArray fillRegion(quint32 brush, const QByteArray &region)
    {
        return ByteWriter().u32s({ 0, 0, 0, 0, region.size(), brush }).bytes(region).result();
    }

    QByteArray frameRegion(quint32 brush, int width, int height, const QByteArray &region)
    {
        return ByteWriter()
                .u32s({ 0, 0, 0, 0, region.size(), brush, width, height })
                .bytes(region)
                .result();
    }

    QByteArray clipRegion(quint32 mode, const QByteArray &region)
    {
        return ByteWriter().u32(region.size()).u32(mode).bytes(region).result();
    }

#define FILLED_RECT(x, y, w, h, fill)                                                              \
    "<rect x=\"" x "\" y=\"" y "\" width=\"" w "\" height=\"" h                                    \
    "\" rx=\"0\" ry=\"0\" stroke=\"none\" stroke-width=\"1\" " fill "/>\n"

#define CLIP(id, rects) "\n<defs><clipPath id= \"ClPath" id "\">" rects "</clipPath></defs>"
#define CLIP_RECT(x, y, w, h)                                                                      \
    "<rect x=\"" x "\" y=\"" y "\" width=\"" w "\" height=\"" h                                    \
    "\" rx=\"0\" ry=\"0\" stroke=\"none\" fill=\"none\" stroke-width=\"1\" />\n"

#define EDGE(x1, y1, x2, y2)                                                                       \
    "<line x1=\"" x1 "\" y1 = \"" y1 "\" x2 =\"" x2 "\" y2=\"" y2                                  \
    "\" stroke=\"#ff0000\"\n fill=\"none\" stroke-width=\"2\" />\n"

    // A file whose coordinates come out less 10 and less 20, with a red brush as object 1.
    EmfBuilder shifted()
    {
        return EmfBuilder()
                .bounds(10, 20, 110, 70)
                .frame(1000, 2000, 11000, 7000)
                .record(kCreateBrush, { 1, 0, 0x0000FF, 0 });
    }

    const EmfCase kRegions[] = {
        { "filledRegion",
          shifted().record(kFillRegion,
                           fillRegion(1, regionData({ { 10, 20, 15, 30 }, { 30, 40, 20, 41 } }))),
          FILLED_RECT("0", "0", "5", "10", "fill=\"#ff0000\"\n")
                  FILLED_RECT("20", "20", "-10", "1", "fill=\"#ff0000\"\n") },
        { "withoutABrush",
          shifted()
                  .record(kFillRegion, fillRegion(9, regionData({ { 10, 20, 15, 30 } })))
                  .record(kFillRegion, fillRegion(0x80000004, regionData({ { 10, 20, 15, 30 } }))),
          FILLED_RECT("0", "0", "5", "10", "") FILLED_RECT("0", "0", "5", "10", "") },
        { "framedRegion",
          shifted().record(
                  kFrameRegion,
                  frameRegion(1, 1, 2, regionData({ { 10, 20, 20, 25 }, { 15, 25, 25, 30 } }))),
          EDGE("0", "0", "10", "0") EDGE("5", "10", "15", "10") EDGE("0", "5", "5", "5")
                  EDGE("10", "5", "15", "5") EDGE("0", "0", "0", "5") EDGE("10", "0", "10", "5")
                          EDGE("5", "5", "5", "10") EDGE("15", "5", "15", "10") },
        { "frameIsAtLeastOneWide",
          EmfBuilder()
                  .record(kFrameRegion, frameRegion(1, 0, -3, regionData({ { 0, 0, 0, 0 } })))
                  .record(kFrameRegion, QByteArray(32, '\0')),
          "<line x1=\"0\" y1 = \"0\" x2 =\"0\" y2=\"0\" fill=\"none\" stroke-width=\"1\" />\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"0\" y2=\"0\" fill=\"none\" stroke-width=\"1\" />\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"0\" y2=\"0\" fill=\"none\" stroke-width=\"1\" />\n"
          "<line x1=\"0\" y1 = \"0\" x2 =\"0\" y2=\"0\" fill=\"none\" stroke-width=\"1\" />\n" },
        { "malformedRegions",
          shifted()
                  .record(kFillRegion, fillRegion(1, regionData({ { 1, 2, 3, 4 } }, 2)))
                  .record(kFillRegion, fillRegion(1, regionData({ { 1, 2, 3, 4 } }, 0x10000001)))
                  .record(kFillRegion, fillRegion(1, regionData({ { 1, 2, 3, 4 } })).chopped(1))
                  .record(kFrameRegion, frameRegion(1, 1, 1, QByteArray(31, '\0')))
                  .record(kClipRegion, clipRegion(kAnd, {}))
                  .record(kClipRegion, clipRegion(6, regionData({ { 1, 2, 3, 4 } })))
                  .record(kClipRegion, QByteArray("\xFF\xFF\xFF\x7F\x05\0\0\0", 8)),
          "" },
        // A rectangle of the clip keeps its right edge inclusive.
        { "clipReplaced",
          shifted()
                  .record(kClipRegion, clipRegion(kCopy, regionData({ { 10, 20, 15, 30 } })))
                  .record(kRectangle, { 10, 20, 11, 21 })
                  .record(3, pointList({ { 1, 1 } })),
          CLIP("1", CLIP_RECT("0", "0", "4", "10"))
                  SQUARE(DEFAULT_STYLE
                         "clip-path=\"url(#ClPath1)\"") "<polygon points=\"1,1 \n\" " DEFAULT_STYLE
                                                        "clip-path=\"url(#ClPath1)\"/>\n" },
        { "clipRemoved",
          shifted()
                  .record(kClipRegion, clipRegion(kCopy, regionData({ { 10, 20, 15, 30 } })))
                  .record(kClipRegion, clipRegion(kCopy, {}))
                  .record(kRectangle, { 10, 20, 11, 21 })
                  .record(3, pointList({ { 1, 1 } })),
          CLIP("1", CLIP_RECT("0", "0", "4", "10"))
                  SQUARE(DEFAULT_STYLE) "<polygon points=\"1,1 \n\" " DEFAULT_STYLE "/>\n" },
        // The clip starts from 10,20 with width 110 and height 70: what the header's corners say.
        { "clipIntersected",
          shifted().record(kClipRegion, clipRegion(kAnd, regionData({ { 0, 0, 30, 30 } }))),
          CLIP("1", CLIP_RECT("0", "0", "19", "10")) },
        { "clipUnited",
          shifted()
                  .record(kClipRegion, clipRegion(kCopy, regionData({ { 10, 20, 20, 30 } })))
                  .record(kClipRegion, clipRegion(kOr, regionData({ { 10, 30, 15, 35 } }))),
          CLIP("1", CLIP_RECT("0", "0", "9", "10"))
                  CLIP("2", CLIP_RECT("0", "0", "9", "10") CLIP_RECT("0", "10", "4", "5")) },
        { "clipXored",
          shifted()
                  .record(kClipRegion, clipRegion(kCopy, regionData({ { 10, 20, 20, 30 } })))
                  .record(kClipRegion, clipRegion(kXor, regionData({ { 10, 20, 15, 30 } }))),
          CLIP("1", CLIP_RECT("0", "0", "9", "10")) CLIP("2", CLIP_RECT("5", "0", "4", "10")) },
        { "clipDifference",
          shifted()
                  .record(kClipRegion, clipRegion(kCopy, regionData({ { 10, 20, 20, 30 } })))
                  .record(kClipRegion, clipRegion(kDiff, regionData({ { 10, 20, 20, 25 } }))),
          CLIP("1", CLIP_RECT("0", "0", "9", "10")) CLIP("2", CLIP_RECT("0", "5", "9", "5")) },
        { "emptyClip", shifted().record(kClipRegion, clipRegion(kCopy, regionData({}))),
          CLIP("1", "") },
        { "clipPath",
          inPath().record(kPolyline16, kTriangle)
                  .record(kEndPath)
                  .record(kSelectClipPath, { 5 })
                  .record(kRectangle, { 0, 0, 1, 1 })
                  .record(3, pointList({ { 1, 1 } }))
                  .record(kFillPath),
          "\n<defs><clipPath id= \"ClPath1\">\n<path d = \" M0,0  L10,0  L0,10  Z\" "
          "/></clipPath></defs>" SQUARE(
                  DEFAULT_STYLE
                  "clip-path=\"url(#ClPath1)\"") "<polygon points=\"1,1 \n\" " DEFAULT_STYLE
                                                 "clip-path=\"url(#ClPath1)\"/>\n"
                                                 "\n<path d = \"" FILL },
        { "bracketEndsTheClip",
          EmfBuilder()
                  .record(kSelectClipPath, { 5 })
                  .record(kBeginPath)
                  .record(kEndPath)
                  .record(kRectangle, { 0, 0, 1, 1 })
                  .record(3, pointList({ { 1, 1 } })),
          "\n<defs><clipPath id= \"ClPath1\">\n<path d = \"\" /></clipPath></defs>" SQUARE(
                  DEFAULT_STYLE) "<polygon points=\"1,1 \n\" " DEFAULT_STYLE "/>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Regions, EmfBody, testing::ValuesIn(kRegions),
                             testing::PrintToStringParamName());

    size_t clipCount(const EmfBuilder &emf)
    {
        return size_t(QByteArray::fromStdString(convert(emf.build()).body()).count("<clipPath"));
    }

    // Crossing bars cut each other into a number of rectangles that is the product of theirs, and a
    // large region can be written again by a small record; neither may outgrow the file.
    TEST(ClipRegions, DoNotMultiply)
    {
        ByteWriter upright;
        ByteWriter lying;
        constexpr int kBars = 2000;
        for (ByteWriter *data : { &upright, &lying })
            data->u32(32).u32s({ 1, kBars, kBars * 16, 0, 0, 0, 0 });
        for (int i = 0; i < 2 * kBars; i += 2) {
            upright.u32s({ i, 0, i + 1, 2 * kBars });
            lying.u32s({ 0, i, 2 * kBars, i + 1 });
        }
        EmfBuilder emf;
        emf.record(kClipRegion, clipRegion(kCopy, upright.result()));
        EXPECT_EQ(clipCount(EmfBuilder(emf).record(kClipRegion, clipRegion(kXor, lying.result()))),
                  1U);
        const QByteArray nothing = regionData({});
        for (int i = 0; i < 200; ++i)
            emf.record(kClipRegion, clipRegion(kOr, nothing));
        EXPECT_LT(clipCount(emf), 100U);
        EXPECT_GT(clipCount(emf), 20U);
    }

    // What is refused for its size takes up what the file has left, or each further record could
    // have as much work done for nothing.
    TEST(ClipRegions, RefusedOnesAreNotTriedAgain)
    {
        constexpr int kBars = 400;
        QByteArray bars[2];
        for (int lying = 0; lying < 2; ++lying) {
            ByteWriter data;
            data.u32(32).u32s({ 1, kBars, kBars * 16, 0, 0, 0, 0 });
            for (int i = 0; i < 2 * kBars; i += 2)
                lying != 0 ? data.u32s({ 0, i, 9999, i + 1 }) : data.u32s({ i, 0, i + 1, 9999 });
            bars[lying] = data.result();
        }
        const QByteArray small = regionData({ { 1, 2, 3, 4 } });
        EmfBuilder emf;
        emf.record(kClipRegion, clipRegion(kCopy, bars[0]));
        EXPECT_EQ(clipCount(EmfBuilder(emf).record(kClipRegion, clipRegion(kCopy, small))), 2U);
        emf.record(kClipRegion, clipRegion(kAnd, bars[1]));
        EXPECT_EQ(clipCount(emf.record(kClipRegion, clipRegion(kCopy, small))), 1U);
    }

} // namespace
} // namespace svgtool::test
