// Text metrics against what GDI reported for the same fonts, and against numbers no font has.

#include "platform/FontEngine.h"
#include "platform/PlatformDependent.h"

#ifndef Q_OS_WIN
#include "platform/FontScaling.h"

#include <fontconfig/fontconfig.h>
#endif

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

namespace svgtool {

static constexpr qint32 kMin = std::numeric_limits<qint32>::min();
static constexpr qint32 kMax = std::numeric_limits<qint32>::max();

TEST(FontinPoints, At96Dpi)
{
    if (horizontalDpi() != 96)
        GTEST_SKIP() << "the screen has " << horizontalDpi() << " dots per inch";
    static constexpr qint32 kCases[][2] = {
        { 96, 72 },
        { 1, 0 },
        { -1, 0 },
        { -3, -2 }, // -2.25
        { 29826161, 22369620 }, // the last before it wraps: 2147483592 / 96
        { 29826162, -22369621 }, // (2147483664 - 2^32) / 96 = -22369621.16
        { kMax, 0 }, // 72 (2^31 - 1) = -72 modulo 2^32
        { kMin, 0 }, // 72 * 2^31 = 0 modulo 2^32
    };
    for (const auto &[pixels, points] : kCases)
        EXPECT_EQ(WIN_GetFontinPoints(pixels), points) << pixels;
}

// 100000 units: line breaks, prefixes, halves of surrogate pairs and what no font has.
static QString oddText()
{
    static constexpr char16_t kUnits[] = { 0xD83D, u'&', 0xDE00, u'\r', 0,      u'\n', 0xFFFF,
                                           u'A',   u'&', u'&',   u'\t', 0xFFFE, u'\n', u'\r' };
    QString text;
    for (size_t i = 0; text.size() < 100000; ++i)
        text += QChar(kUnits[i * i % std::size(kUnits)]);
    return text;
}

// Any file may ask for these.
TEST(HostileFont, JustReturns)
{
    static constexpr struct
    {
        qint32 height, weight;
        int nameLength;
    } kCases[] = { { kMin, 400, 5 }, { kMax, 700, 5 }, { 12, kMin, 5 },
                   { -12, kMax, 5 }, { 0, 0, 0 },      { 16, 400, 1000000 } };
    for (const auto &[fontHeight, weight, nameLength] : kCases) {
        SCOPED_TRACE(testing::Message() << fontHeight << " high, " << weight << " heavy");
        const QString name(nameLength, QChar(u'\xD800'));
        qint32 height = -1;
        qint32 width = -1;
        qint32 descent = -1;
        EXPECT_TRUE(WIN32_GetTextDimensions(height, width, descent,
                                            { oddText(), name, weight, fontHeight }));
        EXPECT_GE(height, 0);
        EXPECT_GE(width, 0);
        EXPECT_EQ(descent, WIN_GetFontDescent(fontHeight, name, weight));
        EXPECT_GE(descent, 0);
        EXPECT_LE(WIN_GetActualHeight(fontHeight, name, weight), std::max(fontHeight, 0));
    }
}

// More names than are kept are neither mixed up nor remembered wrongly.
TEST(FontNames, UnknownOnesAllGiveTheSubstitute)
{
    const TextDescription arial{ "Weight", "Arial", 400, -40 };
    for (int i = 0; i < 300; ++i) {
        TextDescription unknown = arial;
        unknown.faceName = QStringLiteral("No Such Face %1").arg(i % 150);
        qint32 expected[3] = {};
        qint32 actual[3] = {};
        WIN32_GetTextDimensions(expected[0], expected[1], expected[2], arial);
        WIN32_GetTextDimensions(actual[0], actual[1], actual[2], unknown);
        ASSERT_TRUE(std::equal(std::begin(expected), std::end(expected), actual)) << i;
    }
}

// Font records carry stray bytes behind the name.
TEST(FontNames, EndAtAZeroUnit)
{
    const QString mono = QStringLiteral("DejaVu Sans Mono");
    const QString stray = mono + QChar(u'\0') + QStringLiteral("###");
    EXPECT_EQ(textExtent("iiiiiWWWWW", stray, 400, -40).width,
              textExtent("iiiiiWWWWW", mono, 400, -40).width);
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

// The recorded numbers hold for these files only: Liberation 1.07.4 and DejaVu 2.37.
static bool isInstalled(const std::string &family, int version)
{
    const std::unique_ptr<FcConfig, void (*)(FcConfig *)> config(FcInitLoadConfigAndFonts(),
                                                                 FcConfigDestroy);
    const std::unique_ptr<FcPattern, void (*)(FcPattern *)> pattern(
            FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, family.c_str(), FC_FONTVERSION,
                           FcTypeInteger, version, nullptr),
            FcPatternDestroy);
    const std::unique_ptr<FcObjectSet, void (*)(FcObjectSet *)> objects(
            FcObjectSetBuild(FC_FILE, nullptr), FcObjectSetDestroy);
    const std::unique_ptr<FcFontSet, void (*)(FcFontSet *)> fonts(
            FcFontList(config.get(), pattern.get(), objects.get()), FcFontSetDestroy);
    constexpr int kFilesOfAFamily = 4;
    return fonts && fonts->nfont >= kFilesOfAFamily;
}

class ReferenceMetrics : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString folder =
                qEnvironmentVariable("SVGTOOL_SHARED_DIR", QStringLiteral(SVGTOOL_SHARED_DIR));
        QFile file(folder + QStringLiteral("/reference/text-metrics.json"));
        if (!file.open(QIODevice::ReadOnly))
            GTEST_SKIP() << "no " << file.fileName().toStdString();
        for (const char *kind : { " Sans", " Serif", " Mono" }) {
            if (!isInstalled(std::string("Liberation") + kind, 70123))
                GTEST_SKIP() << "no Liberation" << kind << " 1.07.4";
        }
        for (const char *kind : { " Sans", " Serif", " Sans Mono" }) {
            if (!isInstalled(std::string("DejaVu") + kind, 155320))
                GTEST_SKIP() << "no DejaVu" << kind << " 2.37";
        }
        m_all = QJsonDocument::fromJson(file.readAll()).object();
    }

    QJsonArray rows(const char *key) const { return m_all[QLatin1String(key)].toArray(); }

    QJsonObject m_all;
};

static const QString kReferenceFace = QStringLiteral("Liberation Sans");

static void expectExtent(const QString &text, const QJsonArray &expected, const QString &face,
                         qint32 weight, qint32 height)
{
    qint32 actual[3] = { -1, -1, -1 };
    EXPECT_TRUE(WIN32_GetTextDimensions(actual[0], actual[1], actual[2],
                                        { text, face, weight, height }));
    EXPECT_EQ(actual[1], expected[0].toInt()) << "width of " << text.toStdString();
    EXPECT_EQ(actual[0], expected[1].toInt()) << "height of " << text.toStdString();
}

TEST_F(ReferenceMetrics, FontRows)
{
    EXPECT_EQ(horizontalDpi(), m_all[QLatin1String("dpi")].toInt());
    const QJsonArray strings = rows("strings");
    ASSERT_EQ(rows("fonts").size(), 168);
    for (const QJsonValue row : rows("fonts")) {
        const QJsonObject font = row.toObject();
        const auto number = [&](const char *key) { return font[QLatin1String(key)].toInt(); };
        const QString face = font[QLatin1String("face")].toString();
        const qint32 weight = number("weight");
        const qint32 height = number("height");
        SCOPED_TRACE(testing::Message() << face.toStdString() << " " << weight << " at " << height);

        EXPECT_EQ(WIN_GetActualHeight(height, face, weight),
                  height - number("tmExternalLeading") - number("tmInternalLeading"));
        EXPECT_EQ(WIN_GetFontDescent(height, face, weight), number("tmDescent"));
        const FontMetrics metrics = fontMetrics(face, weight, height);
        EXPECT_EQ(metrics.height, number("tmHeight"));
        EXPECT_EQ(metrics.ascent, number("tmAscent"));
        EXPECT_EQ(metrics.internalLeading, number("tmInternalLeading"));
        EXPECT_EQ(metrics.externalLeading, number("tmExternalLeading"));
        EXPECT_EQ(metrics.averageWidth, number("tmAveCharWidth"));
        const QJsonArray extents = font[QLatin1String("extents")].toArray();
        ASSERT_EQ(extents.size(), strings.size());
        for (auto i = extents.size(); i-- > 0;)
            expectExtent(strings[i].toString(), extents[i].toArray(), face, weight, height);
    }
}

TEST_F(ReferenceMetrics, EdgeStrings)
{
    const QJsonArray extents =
            m_all[QLatin1String("edges")].toObject()[QLatin1String("extents")].toArray();
    ASSERT_EQ(extents.size(), 47);
    for (const QJsonValue row : extents) {
        const QJsonArray edge = row.toArray();
        expectExtent(edge[0].toString(), { edge[1], edge[2] }, kReferenceFace, 400, -16);
    }
}

TEST_F(ReferenceMetrics, WeightsAndHeights)
{
    ASSERT_EQ(rows("weights").size(), 15);
    for (const QJsonValue row : rows("weights")) {
        const QJsonArray weight = row.toArray();
        EXPECT_EQ(textExtent("Weight", kReferenceFace, weight[0].toInt(), -16).width,
                  weight[2].toInt())
                << weight[0].toInt();
    }
    ASSERT_EQ(rows("smallHeights").size(), 19);
    for (const QJsonValue row : rows("smallHeights")) {
        const QJsonArray expected = row.toArray();
        const FontMetrics metrics = fontMetrics(kReferenceFace, 400, expected[0].toInt());
        const QJsonArray actual{ expected[0], metrics.height, metrics.descent,
                                 metrics.internalLeading, metrics.externalLeading };
        for (int i = 0; i < actual.size(); ++i)
            EXPECT_EQ(actual[i].toInt(), expected[i].toInt()) << expected[0].toInt() << ", " << i;
    }
}

TEST_F(ReferenceMetrics, Substitutes)
{
    // The recording names "Arial" and the like as selected, for which these files stand.
    const auto file = [](const QString &selected) {
        if (selected == QLatin1String("Times New Roman"))
            return QStringLiteral("Liberation Serif");
        if (selected == QLatin1String("Courier New"))
            return QStringLiteral("Liberation Mono");
        return kReferenceFace;
    };
    ASSERT_EQ(rows("substitutes").size(), 7);
    for (const QJsonValue row : rows("substitutes")) {
        const QString asked = row.toArray()[0].toString();
        const QString selected = file(row.toArray()[1].toString());
        for (const qint32 weight : { 400, 700 }) {
            EXPECT_EQ(textExtent("The quick brown fox", asked, weight, 100).width,
                      textExtent("The quick brown fox", selected, weight, 100).width)
                    << asked.toStdString();
        }
    }
}

TEST_F(ReferenceMetrics, GlyphNumbersToText)
{
    // Glyph 3 is the blank's and the no-break space's; the letters follow in ASCII's order.
    EXPECT_EQ(WIN_GetTextOfGlyphs(QStringLiteral("\x24\x03\x44"), kReferenceFace, 400), "A a");
    EXPECT_EQ(WIN_GetTextOfGlyphs(QString(QChar(36)) + QChar(0), kReferenceFace, 400), "");
    EXPECT_EQ(WIN_GetTextOfGlyphs(QStringLiteral("\x24\uFFFF"), kReferenceFace, 400), "");
    EXPECT_EQ(WIN_GetTextOfGlyphs({}, kReferenceFace, 400), "");
}

#endif

} // namespace svgtool
