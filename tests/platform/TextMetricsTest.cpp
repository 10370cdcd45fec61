// Text metrics against what GDI reported for the same fonts, and against numbers no font has.

#include "core/fonts/FontEngine.h"
#include "exact/platform/PlatformDependent.h"

#ifndef Q_OS_WIN
#include "core/fonts/FontScaling.h"

#include <fontconfig/fontconfig.h>
#endif

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <string>

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
            EXPECT_LE(WIN_GetActualHeight(fontHeight, name, weight), std::max(fontHeight, 0));
        }
}

// More names than are kept are neither mixed up nor remembered wrongly.
TEST(FontNames, OfNoFontAllGiveTheSubstituteAndEndAtAZeroUnit)
{
    const qint32 width = textExtent("Weight", "Arial", 400, -40).width;
    for (int i = 0; i < 300; ++i) {
        const QString unknown = QStringLiteral("No Such Face %1").arg(i % 150);
        ASSERT_EQ(textExtent("Weight", unknown, 400, -40).width, width) << i;
    }
    // Font records carry stray bytes behind the name.
    const QString mono = QStringLiteral("DejaVu Sans Mono");
    const QString stray = mono + QChar(u'\0') + QLatin1Char('#');
    EXPECT_EQ(textExtent("iW", stray, 400, -40).width, textExtent("iW", mono, 400, -40).width);
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
        for (const char *kind : { "Sans", "Serif", "Mono" })
            if (!isInstalled(std::string("Liberation ") + kind, 70123))
                GTEST_SKIP() << "no Liberation " << kind << " 1.07.4";
        for (const char *kind : { "Sans", "Serif", "Sans Mono" })
            if (!isInstalled(std::string("DejaVu ") + kind, 155320))
                GTEST_SKIP() << "no DejaVu " << kind << " 2.37";
        m_all = QJsonDocument::fromJson(file.readAll()).object();
    }

    /// The rows under @p key, of which there must be as many as were recorded.
    QJsonArray rows(const char *key, int count) const
    {
        const QJsonArray rows = m_all[QLatin1String(key)].toArray();
        EXPECT_EQ(rows.size(), count) << key;
        return rows;
    }

    QJsonObject m_all;
};

static const QString kReferenceFace = QStringLiteral("Liberation Sans");

static QJsonArray measuredExtent(const QString &text, const QString &face, qint32 weight,
                                 qint32 height)
{
    qint32 extent[2] = { -1, -1 };
    qint32 descent = -1;
    EXPECT_TRUE(
            WIN32_GetTextDimensions(extent[1], extent[0], descent, { text, face, weight, height }));
    return { extent[0], extent[1] };
}

TEST_F(ReferenceMetrics, FontRows)
{
    EXPECT_EQ(horizontalDpi(), m_all[QLatin1String("dpi")].toInt());
    const QJsonArray strings = rows("strings", 5);
    for (const QJsonValue row : rows("fonts", 168)) {
        const QJsonObject font = row.toObject();
        const auto number = [&](const char *key) { return font[QLatin1String(key)].toInt(); };
        const QString face = font[QLatin1String("face")].toString();
        const qint32 weight = number("weight");
        const qint32 height = number("height");
        const FontMetrics metrics = fontMetrics(face, weight, height);
        EXPECT_EQ(WIN_GetActualHeight(height, face, weight),
                  height - metrics.externalLeading - metrics.internalLeading);
        QJsonObject measured = font;
        measured[QLatin1String("tmHeight")] = metrics.height;
        measured[QLatin1String("tmAscent")] = metrics.ascent;
        measured[QLatin1String("tmDescent")] = WIN_GetFontDescent(height, face, weight);
        measured[QLatin1String("tmInternalLeading")] = metrics.internalLeading;
        measured[QLatin1String("tmExternalLeading")] = metrics.externalLeading;
        measured[QLatin1String("tmAveCharWidth")] = metrics.averageWidth;
        QJsonArray extents;
        for (const QJsonValue text : strings)
            extents += measuredExtent(text.toString(), face, weight, height);
        measured[QLatin1String("extents")] = extents;
        EXPECT_EQ(QJsonDocument(measured).toJson().toStdString(),
                  QJsonDocument(font).toJson().toStdString());
    }
}

TEST_F(ReferenceMetrics, EdgeStringsWeightsAndHeights)
{
    const QJsonArray edges =
            m_all[QLatin1String("edges")].toObject()[QLatin1String("extents")].toArray();
    ASSERT_EQ(edges.size(), 47);
    for (const QJsonValue row : edges) {
        const QJsonArray edge = row.toArray();
        EXPECT_EQ(measuredExtent(edge[0].toString(), kReferenceFace, 400, -16),
                  (QJsonArray{ edge[1], edge[2] }))
                << edge[0].toString().toStdString();
    }
    for (const QJsonValue row : rows("weights", 15))
        EXPECT_EQ(textExtent("Weight", kReferenceFace, row.toArray()[0].toInt(), -16).width,
                  row.toArray()[2].toInt());
    for (const QJsonValue row : rows("smallHeights", 19)) {
        const qint32 height = row.toArray()[0].toInt();
        const FontMetrics metrics = fontMetrics(kReferenceFace, 400, height);
        EXPECT_EQ((QJsonArray{ height, metrics.height, metrics.descent, metrics.internalLeading,
                               metrics.externalLeading }),
                  row.toArray());
    }
}

TEST_F(ReferenceMetrics, Substitutes)
{
    // The recording names "Arial" and the like as selected, for which these files stand.
    const std::map<QString, QString> files{
        { QStringLiteral("Times New Roman"), QStringLiteral("Liberation Serif") },
        { QStringLiteral("Courier New"), QStringLiteral("Liberation Mono") }
    };
    for (const QJsonValue row : rows("substitutes", 7)) {
        const QString asked = row.toArray()[0].toString();
        const auto file = files.find(row.toArray()[1].toString());
        const QString &face = file != files.end() ? file->second : kReferenceFace;
        for (const qint32 weight : { 400, 700 })
            EXPECT_EQ(textExtent("The quick brown fox", asked, weight, 100).width,
                      textExtent("The quick brown fox", face, weight, 100).width)
                    << asked.toStdString();
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
