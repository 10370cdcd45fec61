#include "exact/style/StyleMgr.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"
#include "exact/platform/PlatformDependent.h"
#include "exact/style/HatchTemplates.h"
#include "exact/style/XmlText.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\StyleMgr.cpp";

QString CStyleManager::GetColorString(quint32 colour)
{
    SVGTOOL_TRACE("CStyleManager::GetColorString");
    static constexpr char kDigits[] = "0123456789abcdef";
    char text[7] = { '#' };
    for (int channel = 0; channel < 3; ++channel) {
        const quint32 value = (colour >> (8 * channel)) & 0xFF;
        text[1 + 2 * channel] = kDigits[value >> 4];
        text[2 + 2 * channel] = kDigits[value & 0x0F];
    }
    return QString::fromLatin1(text, sizeof text);
}

// The dash lengths of a cosmetic line style, in multiples of the pen width.
static std::span<const qint32> dashMultiples(quint32 lineStyle)
{
    static constexpr qint32 kDash[] = { 4, 2 };
    static constexpr qint32 kDot[] = { 1, 1 };
    static constexpr qint32 kDashDot[] = { 4, 2, 1, 2 };
    static constexpr qint32 kDashDotDot[] = { 4, 2, 1, 2, 1, 2 };
    switch (lineStyle) {
    case 1: // PS_DASH
        return kDash;
    case 2: // PS_DOT
        return kDot;
    case 3: // PS_DASHDOT
        return kDashDot;
    case 4: // PS_DASHDOTDOT
        return kDashDotDot;
    default:
        return {};
    }
}

static const char *endCapText(quint32 style)
{
    switch (style & 0x0F00) {
    case 0x000: // PS_ENDCAP_ROUND
        return "stroke-linecap = \"round\"";
    case 0x100: // PS_ENDCAP_SQUARE
        return "stroke-linecap = \"square\"";
    case 0x200: // PS_ENDCAP_FLAT
        return "stroke-linecap = \"butt\"";
    default:
        return "";
    }
}

static const char *joinText(quint32 style)
{
    switch (style & 0xF000) {
    case 0x0000: // PS_JOIN_ROUND
        return "stroke-linejoin = \"round\"";
    case 0x1000: // PS_JOIN_BEVEL
        return "stroke-linejoin = \"bevel\"";
    case 0x2000: // PS_JOIN_MITER
        return "stroke-linejoin = \"miter\"";
    default:
        return "";
    }
}

QString CStyleManager::GetDashArray(quint32 style, qint32 width, std::span<const quint32> entries)
{
    SVGTOOL_TRACE("CStyleManager::GetDashArray");
    constexpr quint32 kUserStyle = 7;
    // GDI's own limit; it also keeps one record from making every later element huge.
    constexpr size_t kMaxEntries = 16;

    // Quirk: no blank stands between the cap and the join; hosts compare documents byte by byte.
    QString text = QLatin1String(endCapText(style)) + QLatin1String(joinText(style));
    const quint32 lineStyle = style & 0x0F;
    QStringList lengths;
    if (lineStyle == kUserStyle) {
        for (const quint32 entry : entries.first(std::min(entries.size(), kMaxEntries)))
            lengths += QString::number(entry);
    } else {
        for (const qint32 multiple : dashMultiples(lineStyle))
            lengths += QString::number(wrapMul(multiple, width));
    }
    if (!lengths.isEmpty()) {
        const QLatin1String separator(lineStyle == kUserStyle ? "," : " , ");
        text += QLatin1String("stroke-dasharray=\"") + lengths.join(separator)
                + QLatin1String("\" ");
    }
    return text;
}

QString CStyleManager::GetCurrPenStyle() const
{
    SVGTOOL_TRACE("CStyleManager::GetCurrPenStyle");
    return m_penStyle + QLatin1String(" fill=\"none\" ") + m_extraAttributes;
}

QString CStyleManager::GetCurrBrushStyle() const
{
    SVGTOOL_TRACE("CStyleManager::GetCurrBrushStyle");
    // Quirk: the leading quote closes the path data that the writer leaves open before it.
    return QLatin1String("\" ") + m_brushStyle
            + QLatin1String(" stroke=\"none\" stroke-width=\"0\" ");
}

QString CStyleManager::GetCurrTextStyle() const
{
    SVGTOOL_TRACE("CStyleManager::GetCurrTextStyle");
    return m_textStyle + QLatin1String(" fill=\"") + m_textColor + QLatin1String("\" ");
}

// A face name comes from the file: escaped, it cannot add attributes or elements of its own, and
// without the characters that XML forbids it cannot break the document.
static QString fontFamilyText(const QString &faceName)
{
    return QLatin1String(" font-family=\"") + withoutForbiddenCharacters(faceName).toHtmlEscaped()
            + QLatin1String("\" ");
}

static QString decorationText(bool underline, bool strikeOut)
{
    if (underline && strikeOut)
        return QStringLiteral(" text-decoration=\"underline line-through\"");
    if (strikeOut)
        return QStringLiteral(" text-decoration=\"line-through\"");
    if (underline)
        return QStringLiteral(" text-decoration=\"underline\"");
    return {};
}

static QString weightText(qint32 weight)
{
    if (weight == 0)
        return {};
    return QLatin1String(" font-weight=\"") + QString::number(weight) + QLatin1String("\" \n");
}

static QString italicText(bool italic)
{
    return italic ? QStringLiteral(" font-style=\"italic\"") : QString();
}

void CStyleManager::EmfCreateFont(quint32 index, const LOGFONTW &font)
{
    SVGTOOL_TRACE("CStyleManager::EmfCreateFont");
    const auto *nameEnd = std::find(std::begin(font.lfFaceName), std::end(font.lfFaceName), 0);
    QString faceName;
    for (const auto *unit = font.lfFaceName; unit != nameEnd; ++unit)
        faceName += QChar(*unit);
    if (faceName.isEmpty())
        faceName = QStringLiteral("Arial");

    Font entry;
    entry.faceName = faceName;
    entry.weight = font.lfWeight;
    entry.cellHeight = font.lfHeight;
    if (font.lfHeight < 0)
        entry.size = wrapSub(0, font.lfHeight);
    entry.italic = font.lfItalic != 0;
    entry.underline = font.lfUnderline != 0;
    entry.charSet = font.lfCharSet;

    m_textRotation = -(font.lfEscapement / 10);
    m_lastFontIndex = index;
    // Quirk: the size is not part of this text, as it is for WMF fonts; the writer adds it.
    addFont(index, entry,
            fontFamilyText(faceName) + italicText(entry.italic)
                    + decorationText(entry.underline, font.lfStrikeOut != 0)
                    + weightText(entry.weight));
}

void CStyleManager::MetaCreateFont(quint32 index, const FONTSPEC &font, ByteView faceName)
{
    SVGTOOL_TRACE("CStyleManager::MetaCreateFont");
    Font entry;
    entry.faceName = QString::fromLatin1(
            faceName.data,
            int(std::find(faceName.data, faceName.data + faceName.size, '\0') - faceName.data));
    // Quirk: a negative height counts as its unsigned 16-bit pattern, -12 as 65524; the font size
    // in documents of hosts depends on it.
    const qint32 size = static_cast<quint16>(font.lfHeight);
    entry.size = size;
    entry.weight = static_cast<quint16>(font.lfWeight);
    entry.italic = font.lfItalic != 0;
    entry.underline = font.lfUnderline != 0;
    entry.charSet = font.lfCharSet;
    addFont(index, entry,
            fontFamilyText(entry.faceName) + QLatin1String("font-size=\"") + QString::number(size)
                    + QLatin1String("\" ") + italicText(entry.italic)
                    + decorationText(entry.underline, false) + weightText(entry.weight));
}

qint32 CStyleManager::fontSize() const
{
    if (!m_font.size)
        m_font.size = WIN_GetActualHeight(m_font.cellHeight, m_font.faceName, m_font.weight);
    return *m_font.size;
}

qint32 CStyleManager::fontDescent() const
{
    if (!m_font.descent)
        m_font.descent = WIN_GetFontDescent(fontSize(), m_font.faceName, m_font.weight);
    return *m_font.descent;
}

void CStyleManager::addFont(quint32 index, const Font &font, const QString &style)
{
    m_fonts[index] = font;
    m_objects[index] = { Kind::Font, style };
}

QString CStyleManager::GetPattern(quint32 brushIndex, quint32 hatch, quint32 colour)
{
    SVGTOOL_TRACE("CStyleManager::GetPattern");
    const QString colourText = GetColorString(colour);
    if (hatch < std::size(kHatchTemplates)) {
        ++m_patternCount;
        m_patterns[brushIndex] =
                QString::fromLatin1(kHatchTemplates[hatch])
                        .arg(m_backgroundColor, colourText, QString::number(m_patternCount))
                + QLatin1Char('\n');
    }
    // Quirk: a brush of an unknown hatch style refers to the latest pattern made, or to BRUSH_0.
    return QLatin1String(" fill=\"url(#BRUSH_") + QString::number(m_patternCount)
            + QLatin1String(")\" \n");
}

} // namespace svgtool
