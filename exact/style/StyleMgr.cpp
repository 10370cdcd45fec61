#include "exact/style/StyleMgr.h"

#include "exact/logging/TraceScope.h"

#include <iterator>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\StyleMgr.cpp";

// The stock index that stands for the last font made.
static constexpr quint32 kDeviceDefaultFont = 0x8000000E;

CStyleManager::CStyleManager()
    : m_penStyle(QStringLiteral("stroke=\"none\" stroke-width=\"1\" ")),
      m_brushStyle(QStringLiteral("fill=\"white\"")), m_backgroundColor(QStringLiteral("none")),
      m_textColor(QStringLiteral("black")), m_textStyle(QStringLiteral("  ")),
      m_combinedStyle(QStringLiteral("stroke=\"black\" stroke-width=\"1\" fill=\"none\" "))
{
    SVGTOOL_TRACE("CStyleManager::CStyleManager");
    m_font.size = 14;
    m_font.descent = 3;
}

void CStyleManager::EmfCreatePen(quint32 index, quint32 style, qint32 width, quint32 colour,
                                 std::span<const quint32> entries)
{
    SVGTOOL_TRACE("CStyleManager::EmfCreatePen");
    const QString dashes = GetDashArray(style, width, entries);
    const QString colourText = colour == 0 ? QStringLiteral("black") : GetColorString(colour);
    QString text = QLatin1String(" stroke=\"") + colourText + QLatin1String("\" stroke-width=\"")
            + QString::number(static_cast<quint32>(width)) + QLatin1String("\" \n");
    if (!dashes.isEmpty())
        text += QLatin1Char(' ') + dashes;
    m_objects[index] = { Kind::Pen, text };
}

void CStyleManager::EmfCreateBrush(quint32 index, quint32 style, quint32 colour, quint32 hatch)
{
    SVGTOOL_TRACE("CStyleManager::EmfCreateBrush");
    constexpr quint32 kSolid = 0;
    constexpr quint32 kHatched = 2;
    QString text;
    if (style == kSolid)
        text = QLatin1String(" fill=\"") + GetColorString(colour) + QLatin1String("\"\n");
    else if (style == kHatched)
        text = GetPattern(index, hatch, colour);
    m_objects[index] = { Kind::Brush, text };
}

void CStyleManager::EmfSelectObject(quint32 index)
{
    SVGTOOL_TRACE("CStyleManager::EmfSelectObject");
    if (index == kDeviceDefaultFont)
        index = m_lastFontIndex;
    // An index that was never created gets an entry of no kind, which stays.
    const Object &object = m_objects[index];
    switch (object.kind) {
    case Kind::Pen:
        m_penStyle = object.style;
        break;
    case Kind::Brush:
        m_brushStyle = object.style.isEmpty() ? QStringLiteral(" fill=\"none\" ") : object.style;
        break;
    case Kind::Font:
        m_textStyle = object.style;
        m_font = m_fonts[index];
        break;
    case Kind::Nothing:
        selectStockObject(index);
        break;
    }
    rebuildCombinedStyle();
}

void CStyleManager::selectStockObject(quint32 index)
{
    struct StockObject
    {
        const char *text;
        QString CStyleManager::*slot;
    };
    // Quirk: the white and the black pen go into the brush slot, where they put a stroke colour on
    // top of the current pen and clear the fill; documents of hosts look that way.
    static constexpr StockObject kStockObjects[] = {
        { " fill=\"white\" ", &CStyleManager::m_brushStyle }, // WHITE_BRUSH
        { " fill=\"lightgray\" ", &CStyleManager::m_brushStyle }, // LTGRAY_BRUSH
        { " fill=\"gray\" ", &CStyleManager::m_brushStyle }, // GRAY_BRUSH
        { " fill=\"darkgray\" ", &CStyleManager::m_brushStyle }, // DKGRAY_BRUSH
        { " fill=\"black\" ", &CStyleManager::m_brushStyle }, // BLACK_BRUSH
        { " fill=\"none\" ", &CStyleManager::m_brushStyle }, // NULL_BRUSH
        { " stroke=\"white\" ", &CStyleManager::m_brushStyle }, // WHITE_PEN
        { " stroke=\"black\" ", &CStyleManager::m_brushStyle }, // BLACK_PEN
        { " stroke=\"none\" ", &CStyleManager::m_penStyle }, // NULL_PEN
    };
    const quint32 number = index - 0x80000000U;
    if (number < std::size(kStockObjects))
        this->*kStockObjects[number].slot = QLatin1String(kStockObjects[number].text);
}

void CStyleManager::rebuildCombinedStyle()
{
    const QLatin1String fill("fill=");
    const QLatin1String stroke("stroke=");
    const QLatin1Char quote('"');
    m_shapeStyle.reset();
    m_combinedStyle = m_penStyle + QLatin1Char(' ');
    if (m_brushStyle.contains(fill) && m_combinedStyle.contains(fill)) {
        // Quirk: a form feed stands where the "f" of "fill" is meant. It is never found, so the
        // positions count from the end of the text. No pen text holds a fill, so it never comes to
        // it.
        const auto start = m_combinedStyle.indexOf(QLatin1String("\fill"));
        const auto first = m_combinedStyle.indexOf(quote, start);
        const auto second = m_combinedStyle.indexOf(quote, first + 1);
        m_combinedStyle.remove(start, second - start);
    }
    if (m_brushStyle.contains(stroke) && m_combinedStyle.contains(stroke)) {
        const auto start = m_combinedStyle.indexOf(QLatin1String("stroke"));
        const auto first = m_combinedStyle.indexOf(quote, start);
        const auto second = m_combinedStyle.indexOf(quote, first + 1);
        m_combinedStyle.remove(start, second - start + 1);
    }
    m_combinedStyle += m_brushStyle;
    m_combinedStyle += m_extraAttributes;
}

void CStyleManager::EmfDeleteObject(quint32 index)
{
    SVGTOOL_TRACE("CStyleManager::EmfDeleteObject");
    m_objects.erase(index);
    // Quirk: deleting any object, not only a font, ends the rotation of text; the placement of
    // later text depends on it.
    m_textRotation = 0;
}

QString CStyleManager::EmfGetBrush(quint32 index)
{
    SVGTOOL_TRACE("CStyleManager::EmfGetBrush");
    const Object &object = m_objects[index];
    if (object.kind != Kind::Brush)
        return {};
    return object.style.mid(object.style.indexOf(QLatin1Char('=')));
}

QString CStyleManager::brushPaint() const
{
    SVGTOOL_TRACE("CStyleManager::brushPaint");
    const QLatin1String opening("fill=\"");
    const auto start = m_brushStyle.indexOf(opening);
    if (start < 0)
        return {};
    const auto paint = start + opening.size();
    return m_brushStyle.mid(paint, m_brushStyle.indexOf(QLatin1Char('"'), paint) - paint);
}

QString CStyleManager::GetBrushPattern(quint32 index)
{
    return m_patterns[index];
}

QString CStyleManager::SetBkgColor(quint32 colour)
{
    SVGTOOL_TRACE("CStyleManager::SetBkgColor");
    m_backgroundColor = GetColorString(colour);
    return m_backgroundColor;
}

QString CStyleManager::SetTextColor(quint32 colour)
{
    SVGTOOL_TRACE("CStyleManager::SetTextColor");
    m_textColor = GetColorString(colour);
    return m_textColor;
}

bool CStyleManager::ExtSetClipRgn(const QString &clipId)
{
    SVGTOOL_TRACE("CStyleManager::ExtSetClipRgn");
    if (!m_extraAttributes.isEmpty())
        m_combinedStyle.remove(m_extraAttributes, Qt::CaseInsensitive);
    m_extraAttributes.clear();
    if (!clipId.isEmpty())
        m_extraAttributes = QLatin1String("clip-path=\"url(#") + clipId + QLatin1String(")\"");
    m_combinedStyle += m_extraAttributes;
    m_shapeStyle.reset();
    return true;
}

} // namespace svgtool
