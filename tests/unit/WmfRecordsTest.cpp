#include "support/Cases.h"
#include "support/WmfBuilder.h"

#include <random>
#include <set>

namespace svgtool::test {
namespace {

    struct WmfCase
    {
        const char *name;
        WmfBuilder wmf;
        const char *body;
    };

    void PrintTo(const WmfCase &wmfCase, std::ostream *out)
    {
        *out << wmfCase.name;
    }

    class WmfBody : public testing::TestWithParam<WmfCase>
    {
    };

    // A picture of 100 by 50 pixels whose coordinates map to themselves.
    WmfBuilder plain()
    {
        return WmfBuilder().placeable(0, 0, 100, 50, 96).record(0x020B, { 0, 0 });
    }

    TEST_P(WmfBody, IsExact)
    {
        const Conversion conversion = convert(GetParam().wmf.build());
        EXPECT_EQ(conversion.result, 2);
        EXPECT_EQ(conversion.body(), GetParam().body);
    }

    constexpr int kWindowOrigin = 0x020B;
    constexpr int kWindowExtent = 0x020C;
    constexpr int kLineTo = 0x0213;
    constexpr int kMoveTo = 0x0214;
    constexpr int kRectangle = 0x041B;
    constexpr int kEllipse = 0x0418;

#define RECT(x, y, w, h, style)                                                                    \
    "<rect x=\"" x "\" y=\"" y "\" width=\"" w "\" height=\"" h "\" rx=\"0\" ry=\"0\" " style "/>" \
    "\n"
#define LINE(x1, y1, x2, y2)                                                                       \
    "<line x1=\"" x1 "\" y1 = \"" y1 "\" x2 =\"" x2 "\" y2=\"" y2 "\" " DEFAULT_STYLE "/>\n"

    const WmfCase kFigures[] = {
        { "rectangle", plain().record(kRectangle, { 40, 30, 20, 10 }),
          RECT("10", "20", "20", "20", DEFAULT_STYLE) },
        { "rectangleFromRightToLeft", plain().record(kRectangle, { 20, 10, 40, 30 }),
          RECT("30", "40", "-20", "-20", DEFAULT_STYLE) },
        { "shortRectangleReadsZeros", plain().record(kRectangle, { 20 }),
          RECT("0", "0", "0", "20", DEFAULT_STYLE) },
        { "ellipse", plain().record(kEllipse, { 11, 31, 2, 10 }),
          "<ellipse cx=\"20\" cy = \"6\" rx = \"10\" ry = \"4 \" " DEFAULT_STYLE "/>\n" },
        { "circleOfEqualHalves", plain().record(kEllipse, { 10, 11, 0, 0 }),
          "<circle cx=\"5\" cy = \"5\" r=\"5\" " DEFAULT_STYLE "/>\n" },
        { "lines",
          plain().record(kMoveTo, { 2, 1 }).record(kLineTo, { 4, 3 }).record(kLineTo, { 0, 9 }),
          LINE("1", "2", "3", "4") LINE("3", "4", "9", "0") },
        { "polygon", plain().record(0x0324, { 3, 1, 2, 3, 4, 5, 6 }),
          "<polygon points=\"1,2 3,4 5,6 \n\" " DEFAULT_STYLE "/>\n" },
        { "polyline", plain().record(0x0325, { 2, 1, 2, -3, -4 }),
          "<polyline points=\"1,2 -3,-4 \n\" " DEFAULT_PEN "/>\n" },
        { "polyPolygon", plain().record(0x0538, { 2, 3, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 }),
          "<path d=\" M1,2  L3,4  L5,6  Z M7,8  L9,10  Z\" fill-rule=\"evenodd\"" DEFAULT_STYLE
          "/>\n" },
        { "emptyPolygonsUseTheNextPoint", plain().record(0x0538, { 2, 0, 1, 1, 2 }),
          "<path d=\" M1,2  Z M1,2  Z\" fill-rule=\"evenodd\"" DEFAULT_STYLE "/>\n" },
        { "countsBeyondTheRecord",
          plain().record(0x0324, { 4, 1, 2, 3, 4, 5, 6 })
                  .record(0x0325, { -1, 1, 2 })
                  .record(0x0538, { 2, 3, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 })
                  .record(0x0538, { -1, 1 })
                  .record(0x0324, { 0 })
                  .record(0x0324)
                  .record(0x0538),
          "" },
        { "acceptedWithoutEffect",
          plain().record(0x0817, { 1, 2, 3, 4, 5, 6, 7, 8 })
                  .record(0x0103, { 8 })
                  .record(0x0102, { 1 }),
          "" },
    };
    INSTANTIATE_TEST_SUITE_P(Figures, WmfBody, testing::ValuesIn(kFigures),
                             testing::PrintToStringParamName());

    const WmfCase kMappings[] = {
        // Without a window origin the vertical one is 1.
        { "verticalOriginStartsAtOne",
          WmfBuilder().placeable(0, 0, 100, 50, 96).record(kLineTo, { 5, 5 }),
          LINE("0", "0", "5", "4") },
        { "windowOrigin", plain().record(kWindowOrigin, { 20, 10 }).record(kLineTo, { 22, 11 }),
          LINE("0", "0", "1", "2") },
        { "windowExtentScalesToThePicture",
          plain().record(kWindowExtent, { 100, 50 }).record(kLineTo, { 21, 11 }),
          LINE("0", "0", "22", "10") },
        { "extentOfZeroScalesByThePicture",
          plain().record(kWindowExtent, { 0, 50 }).record(kLineTo, { 3, 2 }),
          LINE("0", "0", "200", "150") },
        { "negativeExtentTurnsTheAxis",
          plain().record(kWindowExtent, { -50, 100 }).record(kLineTo, { 21, 11 }),
          LINE("0", "0", "11", "-21") },
        { "distanceWraps",
          plain().record(kWindowOrigin, { 0, -30000 }).record(kLineTo, { 0, 10000 }),
          LINE("0", "0", "-25536", "0") },
        { "scaledDistanceWraps",
          plain().record(kWindowExtent, { 50, 1 }).record(kLineTo, { 0, 700 }),
          LINE("0", "0", "4464", "0") },
        { "truncatedBeforeAndAfterScaling",
          WmfBuilder()
                  .placeable(0, 0, 1000, 500, 960)
                  .record(kWindowOrigin, { 0, 0 })
                  .record(kWindowExtent, { 500, 1500 })
                  .record(kLineTo, { -19, 79 }),
          LINE("0", "0", "4", "-1") },
    };
    INSTANTIATE_TEST_SUITE_P(Mappings, WmfBody, testing::ValuesIn(kMappings),
                             testing::PrintToStringParamName());

    TEST(WmfMapping, TwipsWithoutAPlaceableHeader)
    {
        const Conversion conversion =
                convert(WmfBuilder().record(kRectangle, { 151, 44, 16, -29 }).build());
        EXPECT_EQ(conversion.body(1024, 768), RECT("-1", "1", "3", "9", DEFAULT_STYLE));
    }

    constexpr int kSelect = 0x012D;
    constexpr int kDelete = 0x01F0;
    constexpr int kCreatePen = 0x02FA;
    constexpr int kCreateBrush = 0x02FC;

#define ROUND_ENDS "stroke-linecap = \"round\"stroke-linejoin = \"round\""

    WmfBuilder withRect(WmfBuilder wmf)
    {
        return wmf.record(kRectangle, { 1, 1, 0, 0 });
    }

    const WmfCase kObjects[] = {
        { "pen",
          withRect(plain().record(kCreatePen, { 2, 3, 0, 0x00FF, 0 }).record(kSelect, { 0 })),
          RECT("0", "0", "1", "1",
               " stroke=\"#ff0000\" stroke-width=\"3\" \n " ROUND_ENDS
               "stroke-dasharray=\"3 , 3\"  fill=\"white\"") },
        { "penWidthIsScaledButNeverVanishes",
          plain().record(kWindowExtent, { 500, -500 })
                  .record(kCreatePen, { 0x3300, 12, 0, 0, 0 })
                  .record(kCreatePen, { 0x3300, 1, 0, 0, 0 })
                  .record(kCreatePen, { 0x3300, 0, 0, 0, 0 })
                  .record(kSelect, { 0 })
                  .record(kRectangle, { 0, 0, 0, 0 })
                  .record(kSelect, { 1 })
                  .record(kRectangle, { 0, 0, 0, 0 })
                  .record(kSelect, { 2 })
                  .record(kRectangle, { 0, 0, 0, 0 }),
          RECT("0", "0", "0", "0", " stroke=\"black\" stroke-width=\"2\" \n fill=\"white\"")
                  RECT("0", "0", "0", "0", " stroke=\"black\" stroke-width=\"1\" \n fill=\"white\"")
                          RECT("0", "0", "0", "0",
                               " stroke=\"black\" stroke-width=\"0\" \n fill=\"white\"") },
        { "brush",
          withRect(plain().record(kCreateBrush, { 0, 0, 0x00FF, 0 }).record(kSelect, { 0 })),
          RECT("0", "0", "1", "1", "stroke=\"none\" stroke-width=\"1\"   fill=\"#0000ff\"\n") },
        // Kinds without a handler take no index.
        { "kindsWithoutAHandlerTakeNoIndex",
          withRect(plain().record(0x00F7, { 0x300, 0 })
                           .record(0x06FF, { 0 })
                           .record(0x01F9, { 0 })
                           .record(0x0142, { 0 })
                           .record(kCreateBrush, { 0, 0, 0x00FF, 0 })
                           .record(kSelect, { 0 })),
          RECT("0", "0", "1", "1", "stroke=\"none\" stroke-width=\"1\"   fill=\"#0000ff\"\n") },
        // A short record makes an object of zeros, and the next one keeps its number.
        { "shortCreationTakesAnIndex",
          withRect(plain().record(kCreatePen)
                           .record(kCreateBrush, { 0, 0, 0x00FF, 0 })
                           .record(kSelect, { 1 })),
          RECT("0", "0", "1", "1", "stroke=\"none\" stroke-width=\"1\"   fill=\"#0000ff\"\n") },
    };
    INSTANTIATE_TEST_SUITE_P(Objects, WmfBody, testing::ValuesIn(kObjects),
                             testing::PrintToStringParamName());

    // Brushes come and go at random; each is told by its colour. A plain list of slots says which
    // index every creation must take.
    TEST(WmfObjects, LowestFreeIndexIsUsedAgain)
    {
        std::mt19937 random(1);
        WmfBuilder wmf = plain();
        std::string expected;
        std::vector<bool> isUsed;
        for (int i = 0; i < 600; ++i) {
            if (random() % 3 != 0) {
                size_t index = 0;
                while (index < isUsed.size() && isUsed[index])
                    ++index;
                if (index == isUsed.size())
                    isUsed.push_back(true);
                isUsed[index] = true;
                wmf.record(kCreateBrush, { 0, i, 0, 0 }).record(kSelect, { int(index) });
                wmf.record(kRectangle, { 0, 0, 0, 0 });
                char colour[8];
                snprintf(colour, sizeof colour, "#%02x%02x00", unsigned(i & 0xFF),
                         unsigned(i >> 8));
                expected +=
                        std::string(
                                "<rect x=\"0\" y=\"0\" width=\"0\" height=\"0\" rx=\"0\" ry=\"0\" "
                                "stroke=\"none\" stroke-width=\"1\"   fill=\"")
                        + colour + "\"\n/>\n";
            } else {
                // Some of these were never given out, or are free already.
                const size_t index = random() % (isUsed.size() + 2);
                wmf.record(kDelete, { int(index) });
                if (index < isUsed.size())
                    isUsed[index] = false;
            }
        }
        EXPECT_EQ(convert(wmf.build()).body(), expected);
    }

} // namespace
} // namespace svgtool::test
