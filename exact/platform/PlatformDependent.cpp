#include "exact/platform/PlatformDependent.h"

#include "core/fonts/FontEngine.h"
#include "exact/logging/TraceScope.h"
#include "exact/platform/QtText.h"

#include <algorithm>
#include <limits>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\PlatformDependent.cpp";

qint32 WIN_GetActualHeight(qint32 height, const QString &faceName, qint32 weight)
{
    SVGTOOL_TRACE("WIN_GetActualHeight");
    const FontMetrics metrics = fontMetrics(unitsOf(faceName), weight, height);
    using Limits = std::numeric_limits<qint32>;
    const qint64 result = qint64{ height } - metrics.externalLeading - metrics.internalLeading;
    return static_cast<qint32>(std::clamp<qint64>(result, Limits::min(), Limits::max()));
}

qint32 WIN_GetFontDescent(qint32 height, const QString &faceName, qint32 weight)
{
    SVGTOOL_TRACE("WIN_GetFontDescent");
    return fontMetrics(unitsOf(faceName), weight, height).descent;
}

bool WIN32_GetTextDimensions(qint32 &textHeight, qint32 &textWidth, qint32 &descent,
                             const TextDescription &description)
{
    SVGTOOL_TRACE("WIN32_GetTextDimensions");
    const TextExtent extent = textExtent(unitsOf(description.text), unitsOf(description.faceName),
                                         description.weight, description.height);
    textHeight = extent.height;
    textWidth = extent.width;
    descent = extent.font.descent;
    return true;
}

qint32 WIN_GetFontinPoints(qint32 pixels)
{
    SVGTOOL_TRACE("WIN_GetFontinPoints");
    // Quirk: the product wraps in 32 bits; the points of more than 29826161 pixels depend on it.
    const auto product = static_cast<qint32>(static_cast<quint32>(pixels) * 72u);
    return product / horizontalDpi();
}

QString WIN_GetTextOfGlyphs(const QString &glyphs, const QString &faceName, qint32 weight)
{
    SVGTOOL_TRACE("WIN_GetTextOfGlyphs");
    return toQString(textOfGlyphs(unitsOf(glyphs), unitsOf(faceName), weight));
}

} // namespace svgtool
