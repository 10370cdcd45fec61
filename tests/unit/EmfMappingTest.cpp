#include "support/Cases.h"
#include "support/EmfRecords.h"

#include <limits>

namespace svgtool::test {
namespace {

// One rectangle shows how positions (x, y) and lengths (width, height) are mapped.
#define RECT(x, y, width, height)                                                                  \
    "<rect x=\"" x "\" y=\"" y "\" width=\"" width "\" height=\"" height                           \
    "\" rx=\"0\" ry=\"0\" " DEFAULT_STYLE "/>\n"

    constexpr quint32 kWindowExtent = 9;
    constexpr quint32 kWindowOrigin = 10;
    constexpr quint32 kViewportExtent = 11;
    constexpr quint32 kViewportOrigin = 12;
    constexpr quint32 kMapMode = 17;
    constexpr quint32 kRectangle = 43;
    constexpr qint64 kText = 1;
    constexpr qint64 kIsotropic = 7;
    constexpr qint64 kAnisotropic = 8;

    // A frame of 100 by 50 mm over bounds of 200 by 25: 50 and 200 frame units per logical unit.
    EmfBuilder unequal()
    {
        return EmfBuilder().bounds(0, 0, 200, 25);
    }

    // Scales of window extent by viewport extent, as the records that follow one another set them.
    EmfBuilder scaled(qint64 windowX, qint64 windowY, qint64 viewportX, qint64 viewportY)
    {
        return EmfBuilder()
                .record(kMapMode, { kAnisotropic })
                .record(kWindowExtent, { windowX, windowY })
                .record(kViewportExtent, { viewportX, viewportY });
    }

    const EmfCase kMappings[] = {
        { "originIsTheBoundsCorner",
          EmfBuilder()
                  .bounds(-7, 3, 93, 53)
                  .frame(-700, 300, 9300, 5300)
                  .record(kRectangle, { 0, 0, 8, 9 }),
          RECT("7", "-3", "8", "9") },
        { "nearInOneAxisIsEnough",
          EmfBuilder()
                  .bounds(10, 20, 110, 70)
                  .frame(1099, 9900, 11099, 14900)
                  .record(kRectangle, { 10, 20, 11, 21 }),
          RECT("0", "0", "1", "1") },
        { "elseTheFrameCornerInMillimetres",
          EmfBuilder()
                  .bounds(10, 20, 110, 70)
                  .frame(1250, -2370, 11250, 2630)
                  .record(kRectangle, { 12, -23, 13, -22 }),
          RECT("0", "0", "1", "1") },
        { "oneUnitAwayIsNotNear",
          EmfBuilder()
                  .bounds(10, 20, 110, 70)
                  .frame(1100, 2100, 11100, 7100)
                  .record(kRectangle, { 11, 21, 12, 22 }),
          RECT("0", "0", "1", "1") },
        { "otherModesDoNotScale",
          unequal().record(kMapMode, { kIsotropic }).record(kRectangle, { 100, 100, 300, 500 }),
          RECT("100", "100", "200", "400") },
        { "anisotropicDividesByTheFrame",
          unequal().record(kMapMode, { kAnisotropic }).record(kRectangle, { 100, 100, 300, 500 }),
          RECT("2", "0", "4", "2") },
        { "modeLastsForTheRestOfTheFile",
          unequal()
                  .record(kMapMode, { kAnisotropic })
                  .record(kMapMode, { kText })
                  .record(kRectangle, { 100, 100, 300, 500 }),
          RECT("2", "0", "4", "2") },
        { "positionsTruncateAndLengthsRoundHalfUp",
          scaled(10, 10, 1, 1)
                  .record(kRectangle, { 109, -109, 109 + 105, -109 - 105 })
                  .record(kRectangle, { 0, 0, 25, -25 })
                  .record(kRectangle, { 0, 0, 24, -26 })
                  .record(kRectangle, { 0, 0, -30, 4 }),
          RECT("10", "-10", "11", "-10") RECT("0", "0", "3", "-2") RECT("0", "0", "2", "-3")
                  RECT("0", "0", "-3", "0") },
        { "viewportExtentWithoutTheMode",
          EmfBuilder()
                  .record(kWindowExtent, { 10, 10 })
                  .record(kViewportExtent, { 1, 1 })
                  .record(kRectangle, { 50, 50, 60, 70 }),
          RECT("50", "50", "10", "20") },
        { "windowExtentDoesNotRescale",
          scaled(10, 10, 5, 2)
                  .record(kWindowExtent, { 7, 7 })
                  .record(kRectangle, { 20, 20, 60, 60 }),
          RECT("10", "4", "20", "8") },
        { "extentOfZeroKeepsTheAxis",
          scaled(10, 10, 5, 2)
                  .record(kViewportExtent, { 0, 10 })
                  .record(kRectangle, { 20, 20, 60, 60 }),
          RECT("10", "20", "20", "40") },
        { "negativeExtentsCountAsHuge",
          scaled(-10, 10, 5, 10).record(kRectangle, { 20, 20, 60, 60 }),
          RECT("0", "20", "0", "40") },
        { "negativeExtentsOnBothSidesCancel",
          scaled(-10, -10, -10, -10).record(kRectangle, { 20, 20, 60, 60 }),
          RECT("20", "20", "40", "40") },
        { "windowOriginMovesPositionsOnly",
          EmfBuilder().record(kWindowOrigin, { 5, 6 }).record(kRectangle, { 20, 20, 60, 60 }),
          RECT("15", "14", "40", "40") },
        // 2^32 - 5 in single precision is 2^32; what does not fit comes out as the lowest number.
        { "negativeWindowOriginIsFarOutside",
          EmfBuilder().record(kWindowOrigin, { -5, 0 }).record(kRectangle, { 20, 20, 60, 60 }),
          RECT("-2147483648", "20", "40", "40") },
        { "viewportOriginIsIgnored",
          EmfBuilder().record(kViewportOrigin, { 5, 6 }).record(kRectangle, { 20, 20, 60, 60 }),
          RECT("20", "20", "40", "40") },
        { "singlePrecision",
          EmfBuilder().record(kRectangle, { 16777217, 0, 16777217 + 16777219, 1 }),
          RECT("16777216", "0", "16777220", "1") },
        { "emptyBoundsGiveNoScale",
          EmfBuilder()
                  .bounds(0, 0, 0, 0)
                  .record(kMapMode, { kAnisotropic })
                  .record(kRectangle, { 20, 20, 60, 60 }),
          RECT("0", "0", "0", "0") },
        { "emptyFrameAndBounds",
          EmfBuilder()
                  .bounds(0, 0, 0, 0)
                  .frame(0, 0, 0, 0)
                  .device(100, 50, 1, 1)
                  .record(kMapMode, { kAnisotropic })
                  .record(kRectangle, { 1, 1, 2, 2 }),
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg width=\"0\" height=\" 0\" "
          "version=\"1.1\" "
          "xmlns=\"http://www.w3.org/2000/svg\" xml:space=\"preserve\" >\n" RECT(
                  "-2147483648", "-2147483648", "-2147483648", "-2147483648") "</svg>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Mappings, EmfBody, testing::ValuesIn(kMappings),
                             testing::PrintToStringParamName());

    constexpr quint32 kLineTo = 54;
    constexpr quint32 kSetTransform = 35;
    constexpr quint32 kModifyTransform = 36;
    constexpr float kHuge = 0x1p127F;
    constexpr float kInfinity = std::numeric_limits<float>::infinity();

#define LINE(x1, y1, x2, y2)                                                                       \
    "<line x1=\"" x1 "\" y1 = \"" y1 "\" x2 =\"" x2 "\" y2=\"" y2 "\" " DEFAULT_STYLE "/>\n"

    const QByteArray kScale = transform({ 2, 0, 0, 3, 4, 5 });
    const QByteArray kShift = transform({ 1, 0, 0, 1, 10, 20 });

    const EmfCase kTransforms[] = {
        { "groupLastsUntilTheNext",
          EmfBuilder()
                  .record(kLineTo, { 1, 1 })
                  .record(kSetTransform, kScale)
                  .record(kLineTo, { 2, 2 })
                  .record(kSetTransform, transform({ 0.1F, -1.5F, 1e-7F, 1e9F, 0, 0.333333343F }))
                  .record(kLineTo, { 3, 3 })
                  .record(kSetTransform, transform({ 1, 0, 0, 1, 0, 0 }))
                  .record(kLineTo, { 4, 4 }),
          LINE("0", "0", "1", "1") "<g transform=\"matrix(2 0 0 3 4 5)\">\n" LINE(
                  "1", "1", "2", "2") "</g>\n"
                                      "<g transform=\"matrix(0.1 -1.5 0.0000001 1000000000 0 "
                                      "0.33333334)\">\n" LINE("2", "2", "3", "3") "</g>\n" LINE(
                                              "3", "3", "4", "4") },
        { "openGroupEndsBeforeTheDocument", EmfBuilder().record(kSetTransform, kScale),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n" },
        { "identity",
          EmfBuilder()
                  .record(kSetTransform, kScale)
                  .record(kModifyTransform, transform({ 9, 9, 9, 9, 9, 9 }, 1)),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n" },
        // The record's transform first, then the one in force: 10 * 2 + 4, 20 * 3 + 5.
        { "leftMultiply",
          EmfBuilder()
                  .record(kSetTransform, kScale)
                  .record(kModifyTransform, transform({ 1, 0, 0, 1, 10, 20 }, 2)),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n<g transform=\"matrix(2 0 0 3 24 "
          "65)\">\n</g>\n" },
        { "rightMultiply",
          EmfBuilder()
                  .record(kSetTransform, kScale)
                  .record(kModifyTransform, transform({ 1, 0, 0, 1, 10, 20 }, 3)),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n<g transform=\"matrix(2 0 0 3 14 "
          "25)\">\n</g>\n" },
        // A quarter turn (1,0 becomes 0,1), then the scaling.
        { "leftMultiplyRotation",
          EmfBuilder()
                  .record(kSetTransform, kScale)
                  .record(kModifyTransform, transform({ 0, 1, -1, 0, 0, 0 }, 2)),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n<g transform=\"matrix(0 3 -2 0 4 "
          "5)\">\n</g>\n" },
        { "set",
          EmfBuilder()
                  .record(kSetTransform, kScale)
                  .record(kModifyTransform, transform({ 1, 0, 0, 1, 10, 20 }, 4)),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n<g transform=\"matrix(1 0 0 1 10 "
          "20)\">\n</g>\n" },
        { "neverSetCountsAsIdentity",
          EmfBuilder().record(kModifyTransform, transform({ 2, 0, 0, 3, 4, 5 }, 2)),
          "<g transform=\"matrix(2 0 0 3 4 5)\">\n</g>\n" },
        { "unknownModeChangesNothing",
          EmfBuilder().record(kModifyTransform, transform({ 2, 0, 0, 3, 4, 5 }, 5)), "" },
        { "noNumbersAreRefused",
          EmfBuilder()
                  .record(kSetTransform, kShift)
                  .record(kSetTransform, transform({ 1, 0, 0, kInfinity, 0, 0 }))
                  .record(kModifyTransform,
                          transform({ std::numeric_limits<float>::quiet_NaN(), 0, 0, 1, 0, 0 }, 4))
                  .record(kModifyTransform, transform({ kHuge, 0, 0, 1, kHuge, 0 }, 2))
                  .record(kModifyTransform, transform({ kHuge, 0, 0, 1, 0, 0 }, 3)),
          "<g transform=\"matrix(1 0 0 1 10 20)\">\n</g>\n"
          "<g transform=\"matrix(170141183460469231731687303715884105728 0 0 1 "
          "170141183460469231731687303715884105728 20)\">\n</g>\n" },
    };
    INSTANTIATE_TEST_SUITE_P(Transforms, EmfBody, testing::ValuesIn(kTransforms),
                             testing::PrintToStringParamName());

} // namespace
} // namespace svgtool::test
