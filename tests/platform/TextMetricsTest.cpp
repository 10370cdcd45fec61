// Text metrics for numbers no font has; ../windows/metrics.py compares those that GDI reported.

#include "core/fonts/FontEngine.h"
#include "exact/platform/PlatformDependent.h"
#include "exact/platform/QtText.h"

#ifndef Q_OS_WIN
#include "core/fonts/FontScaling.h"
#endif

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace svgtool {

static constexpr qint32 kMin = std::numeric_limits<qint32>::min();
static constexpr qint32 kMax = std::numeric_limits<qint32>::max();

TEST(FontinPoints, At96Dpi)
{
    if (horizontalDpi() != 96)
        GTEST_SKIP() << "the screen has " << horizontalDpi() << " dots per inch";
    // 29826161 is the last before it wraps.
    static constexpr qint32 kCases[][2] = { { 96, 72 },  { 1, 0 },
                                            { -1, 0 },   { -3, -2 },
                                            { kMax, 0 }, { 29826161, 22369620 },
                                            { kMin, 0 }, { 29826162, -22369621 } };
    for (const auto &[pixels, points] : kCases)
        EXPECT_EQ(WIN_GetFontinPoints(pixels), points) << pixels;
}

// Any file may ask for these.
TEST(HostileFont, JustReturns)
{
    // 100000 units: line breaks, prefixes, halves of surrogate pairs and what no font has.
    static constexpr char16_t kUnits[] = { 0xD83D, u'&', 0xDE00, u'\r', 0,      u'\n', 0xFFFF,
                                           u'A',   u'&', u'&',   u'\t', 0xFFFE, u'\n', u'\r' };
    QString text;
    for (size_t i = 0; text.size() < 100000; ++i)
        text += QChar(kUnits[i * i % std::size(kUnits)]);
    for (const qint32 fontHeight : { kMin, kMax, 12, -12, 0 })
        for (const auto &[weight, nameLength] :
             { std::pair{ kMin, 5 }, { kMax, 5 }, { 400, 0 }, { 400, 1000000 } }) {
            SCOPED_TRACE(testing::Message() << fontHeight << " high, " << weight << " heavy");
            const QString name(nameLength, QChar(u'\xD800'));
            qint32 height = -1, width = -1, descent = -1;
            EXPECT_TRUE(WIN32_GetTextDimensions(height, width, descent,
                                                { text, name, weight, fontHeight }));
            EXPECT_TRUE(height >= 0 && width >= 0 && descent >= 0);
            EXPECT_EQ(descent, WIN_GetFontDescent(fontHeight, name, weight));
            const FontMetrics metrics = fontMetrics(unitsOf(name), weight, fontHeight);
            EXPECT_EQ(WIN_GetActualHeight(fontHeight, name, weight),
                      std::max(qint64{ kMin },
                               qint64{ fontHeight } - metrics.internalLeading
                                       - metrics.externalLeading));
        }
}

// More names than are kept are neither mixed up nor remembered wrongly.
TEST(FontNames, OfNoFontAllGiveTheSubstituteAndEndAtAZeroUnit)
{
    const qint32 width = textExtent(u"Weight", u"Arial", 400, -40).width;
    for (int i = 0; i < 300; ++i) {
        const QString unknown = QStringLiteral("No Such Face %1").arg(i % 150);
        ASSERT_EQ(textExtent(u"Weight", unitsOf(unknown), 400, -40).width, width) << i;
    }
    // Font records carry stray bytes behind the name.
    using namespace std::string_view_literals;
    EXPECT_EQ(textExtent(u"iW", u"DejaVu Sans Mono\0#"sv, 400, -40).width,
              textExtent(u"iW", u"DejaVu Sans Mono", 400, -40).width);
}

#ifndef Q_OS_WIN

// The tables of Liberation Sans, so that these hold without the font.
static constexpr FontTables kSans{ 2048, 1854, 434, 1854, -434, 67, 1208 };

TEST(FontScaling, PixelsAndMetrics)
{
    static constexpr qint32 kCases[][2] = { { -16, 16 },    { 16, 14 },
                                            { 0, 14 },      { 100, 89 },
                                            { 1, 1 },       { 3, 3 },
                                            { kMin, kMax }, { kMax, 1922223125 } };
    for (const auto &[height, pixels] : kCases)
        EXPECT_EQ(pixelsPerEm(kSans, height), pixels) << height;
    EXPECT_EQ(pixelsPerEm({ 65535, 1, 0, 0, 0, 0, 0 }, kMax), kMax);
    // Each number is scaled by itself.
    const FontMetrics metrics = scaledMetrics(kSans, 24);
    EXPECT_EQ(metrics.height, 27);
    EXPECT_EQ(metrics.internalLeading, 3);
    EXPECT_EQ(metrics.externalLeading, 1);
    EXPECT_EQ(metrics.averageWidth, 14);
}

TEST(FontScaling, HalvesGoUpwardAndExtremesAreClamped)
{
    EXPECT_EQ(roundedQuotient(5, 2), 3);
    EXPECT_EQ(roundedQuotient(-5, 2), -2);
    EXPECT_EQ(roundedQuotient(-11, 4), -3);
    // 31/64 pixel and a little rounds to 1/2 first, and that to a pixel.
    EXPECT_EQ(scaledAdvance(1017, fixedScale(kSans, 1)), 1);
    EXPECT_EQ(scaledAdvance(1007, fixedScale(kSans, 1)), 0);
    constexpr FontTables kTiny{ 1, 65535, 65535, 32767, -32768, 32767, -32768 };
    const FontMetrics metrics = scaledMetrics(kTiny, kMax);
    EXPECT_EQ(metrics.height, kMax);
    EXPECT_EQ(metrics.internalLeading, kMax);
    EXPECT_EQ(metrics.externalLeading, 0);
    EXPECT_EQ(metrics.averageWidth, kMin);
    EXPECT_EQ(scaledAdvance(65535, fixedScale(kTiny, kMax)), kMax);
}

#endif

} // namespace svgtool
