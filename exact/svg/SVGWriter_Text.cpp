#include "exact/svg/SVGWriter.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"
#include "exact/platform/PlatformDependent.h"
#include "exact/style/XmlText.h"

#include <algorithm>
#include <cmath>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGWriter.cpp";

// Text alignment ([MS-WMF] 2.1.2.3).
static constexpr quint32 kUpdatePosition = 1;
static constexpr quint32 kHorizontalMask = 6;
static constexpr quint32 kRight = 2;
static constexpr quint32 kCenter = 6;
static constexpr quint32 kVerticalMask = 24;
static constexpr quint32 kBottom = 8;
static constexpr quint32 kBaseline = 24;

static constexpr qint32 kTransparent = 1;

// The text with other texts in place of the units that replacementOf(unit) gives one for.
// QString::replace would move all that follows for every thousand units that it finds.
template<class Function>
static QString replaced(const QString &text, Function replacementOf)
{
    const auto isReplaced = [&](QChar unit) { return replacementOf(unit.unicode()).size() > 0; };
    const QChar *done = text.constData();
    const QChar *const end = done + text.size();
    const QChar *next = std::find_if(done, end, isReplaced);
    if (next == end)
        return text;
    QString result;
    result.reserve(text.size() + text.size() / 4);
    for (; next != end; next = std::find_if(done, end, isReplaced)) {
        result.append(done, static_cast<decltype(text.size())>(next - done));
        result += replacementOf(next->unicode());
        done = next + 1;
    }
    result.append(done, static_cast<decltype(text.size())>(end - done));
    return result;
}

QString CMySVGWriter::ConvertToValidXML(const QString &text)
{
    SVGTOOL_TRACE("CMySVGWriter::ConvertToValidXML");
    return replaced(text, [](char16_t unit) {
        switch (unit) {
        case u'&':
            return QLatin1String("&amp;");
        case u'<':
            return QLatin1String("&lt;");
        case u'>':
            return QLatin1String("&gt;");
        default:
            return QLatin1String();
        }
    });
}

bool CMySVGWriter::SetTextAlign(quint32 mode)
{
    SVGTOOL_TRACE("CMySVGWriter::SetTextAlign");
    m_textAlign = mode;
    return true;
}

TextDimensions CMySVGWriter::GetTextDimensions(const QString &text) const
{
    SVGTOOL_TRACE("CMySVGWriter::GetTextDimensions");
    TextDescription description;
    // An ampersand is a prefix to what measures, and a character to what draws.
    description.text = replaced(text, [](char16_t unit) {
        return unit == u'&' ? QLatin1String("&&") : QLatin1String();
    });
    description.faceName = m_styles.fontFace();
    description.weight = m_styles.fontWeight();
    // The size is a character height, which a negative number means there.
    description.height = wrapSub(0, m_styles.fontSize());
    qint32 height = 0;
    TextDimensions extent;
    WIN32_GetTextDimensions(height, extent.width, extent.descent, description);
    // The cell is that of one line, however many the text has.
    qint32 noWidth = 0;
    description.text.clear();
    WIN32_GetTextDimensions(height, noWidth, extent.descent, description);
    extent.ascent = wrapSub(height, extent.descent);
    return extent;
}

// A move by dx, dy turned clockwise by whole degrees.
static POINTL turned(qint32 dx, qint32 dy, qint32 degrees)
{
    if (degrees == 0)
        return { dx, dy };
    const double radians = (degrees % 360) * std::acos(-1.0) / 180.0;
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    return { truncateToInt32(std::round(dx * cosine - dy * sine)),
             truncateToInt32(std::round(dx * sine + dy * cosine)) };
}

static POINTL moved(const POINTL &point, const POINTL &move)
{
    return { wrapAdd(point.x, move.x), wrapAdd(point.y, move.y) };
}

POINTL CMySVGWriter::GetPointOfReference(const POINTL &point, const TextDimensions &extent)
{
    SVGTOOL_TRACE("CMySVGWriter::GetPointOfReference");
    const bool updatesPosition = (m_textAlign & kUpdatePosition) != 0;
    const POINTL reference = updatesPosition ? m_current : point;
    qint32 dx = 0;
    qint32 advance = extent.width;
    if ((m_textAlign & kHorizontalMask) == kCenter) {
        dx = wrapSub(0, extent.width / 2);
        advance = 0;
    } else if ((m_textAlign & kHorizontalMask) == kRight) {
        dx = wrapSub(0, extent.width);
        advance = dx;
    }
    qint32 dy = extent.ascent;
    if ((m_textAlign & kVerticalMask) == kBaseline)
        dy = 0;
    else if ((m_textAlign & kVerticalMask) == kBottom)
        dy = wrapSub(0, extent.descent);
    const qint32 rotation = m_styles.textRotation();
    if (updatesPosition) {
        const POINTL behind = moved(reference, turned(advance, 0, rotation));
        MoveTo(behind.x, behind.y);
    }
    return moved(reference, turned(dx, dy, rotation));
}

RECTL CMySVGWriter::CalculateRect(const POINTL &baseline, const TextDimensions &extent) const
{
    SVGTOOL_TRACE("CMySVGWriter::CalculateRect");
    return { baseline.x, wrapSub(baseline.y, extent.ascent), wrapAdd(baseline.x, extent.width),
             wrapAdd(baseline.y, extent.descent) };
}

template<class... Piece>
void CMySVGWriter::writeText(const QString &text, qint32 x, qint32 y, const Piece &...attributes)
{
    const qint32 rotation = m_styles.textRotation();
    if (rotation != 0)
        m_document << "<g transform=\"rotate(" << rotation << " " << x << " " << y << ")\">";
    m_document << "<text x=\"" << x << "\" y=\"" << y << "\"";
    if (!m_suppressesTextStyle)
        (m_document << ... << attributes);
    writeLine(" >", ConvertToValidXML(text), "</text>");
    if (rotation != 0)
        m_document << "</g>";
}

bool CMySVGWriter::TextOut(const QString &text, qint32 x, qint32 y, const RECTL &background)
{
    SVGTOOL_TRACE("CMySVGWriter::TextOut");
    const QString shown = withoutForbiddenCharacters(text);
    if (shown.isEmpty())
        return true;
    if (m_backgroundMode != kTransparent) {
        const QString style = QLatin1String("fill=\"") + m_styles.backgroundColor()
                + QLatin1String("\" stroke=\"none\"fill-opacity=\"")
                + QString::number(m_styles.textFillOpacity()) + QLatin1String(kQ);
        DrawRect(background.left, background.top, wrapSub(background.right, background.left),
                 wrapSub(background.bottom, background.top), style, 0, 0);
    }
    writeText(shown, x, y, m_styles.GetCurrTextStyle(), " font-size=\"", m_styles.fontSize(), kQ);
    return true;
}

bool CMySVGWriter::SmallTextOut(const QString &text, qint32 x, qint32 y, const QString &style)
{
    SVGTOOL_TRACE("CMySVGWriter::SmallTextOut");
    const QString shown = withoutForbiddenCharacters(text);
    if (!shown.isEmpty())
        writeText(shown, x, y, style.isEmpty() ? m_textFallbackStyle : style);
    return true;
}

bool CMySVGWriter::SetTextStyleSuppression(bool suppresses)
{
    SVGTOOL_TRACE("CMySVGWriter::SetTextStyleSuppression");
    m_suppressesTextStyle = suppresses;
    return true;
}

} // namespace svgtool
