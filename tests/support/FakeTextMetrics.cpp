// Text metrics that need no font: every character is half as wide as the font is high, the cell
// reaches a quarter of that below the baseline, and a cell height has an eighth of leading. Glyph
// numbers are letters: 1 is "A".

#include "core/base/Numeric.h"
#include "exact/platform/PlatformDependent.h"

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
    const qint32 height = description.height;
    const qint32 size = height < 0 ? wrapSub(0, height) : height;
    const auto lines = qint32(1 + description.text.count(QLatin1Char('\n')));
    textHeight = wrapMul(wrapAdd(size, size / 4), lines);
    textWidth = wrapMul(qint32(description.text.size()), size / 2);
    descent = size / 4;
    return true;
}

qint32 WIN_GetFontinPoints(qint32 pixels)
{
    return static_cast<qint32>(qint64(pixels) * 72 / 96);
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
