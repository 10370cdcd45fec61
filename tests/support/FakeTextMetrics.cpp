// Text metrics that need no font: every character is half as wide as the font is high, the cell
// reaches a quarter of that below the baseline, and a cell height has an eighth of leading. Glyph
// numbers are letters: 1 is "A".

#include "platform/PlatformDependent.h"

#include <algorithm>
#include <cstdlib>

namespace svgtool {

qint32 WIN_GetActualHeight(qint32 height, const QString & /*faceName*/, qint32 /*weight*/)
{
    return height - height / 8;
}

qint32 WIN_GetFontDescent(qint32 height, const QString & /*faceName*/, qint32 /*weight*/)
{
    return height / 4;
}

bool WIN32_GetTextDimensions(qint32 &textHeight, qint32 &textWidth, qint32 &descent,
                             const TextDescription &description)
{
    // No test needs larger ones, and products of these stay in range.
    const auto size = qint32(std::min<qint64>(std::abs(qint64(description.height)), 1000000));
    textHeight = (size + size / 4) * qint32(1 + description.text.count(QLatin1Char('\n')));
    textWidth = qint32(description.text.size()) * (size / 2);
    descent = size / 4;
    return true;
}

qint32 WIN_GetFontinPoints(qint32 pixels)
{
    return pixels * 72 / 96;
}

QString WIN_GetTextOfGlyphs(const QString &glyphs, const QString & /*faceName*/, qint32 /*weight*/)
{
    QString text;
    for (const QChar glyph : glyphs) {
        if (glyph.unicode() < 1 || glyph.unicode() > 26)
            return {};
        text += QChar(ushort('@' + glyph.unicode()));
    }
    return text;
}

} // namespace svgtool
