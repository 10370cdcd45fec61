#include "exact/svg/SVGWriter.h"

#include "exact/logging/TraceScope.h"

#include <algorithm>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGWriter.cpp";

CMySVGWriter::CMySVGWriter()
    : m_fallbackStyle(QStringLiteral(" stroke=\"black\" stroke-width=\"1\" fill=\"none\"")),
      m_textFallbackStyle(QStringLiteral(" fill=\"black\""))
{
    SVGTOOL_TRACE("CMySVGWriter::CMySVGWriter");
}

void CMySVGWriter::makeRoom(qint64 size)
{
    // As much as most drawings make of each byte, so that the text need not be moved as it grows;
    // for large ones only so much that what is left over stays in proportion.
    constexpr qint64 kSmall = 4 << 20;
    m_document.reserve(std::max(2 * size, std::min(8 * size, kSmall)));
}

bool CMySVGWriter::CreateXML(qint32 width, qint32 height)
{
    SVGTOOL_TRACE("CMySVGWriter::CreateXML");
    // Quirk: the height begins with a blank, and no xlink namespace is declared although images
    // and hatch patterns refer to it; hosts compare documents byte by byte.
    writeLine("<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg width=\"", width, "\" height=\" ",
              height, "\" version=\"1.1\" xmlns=\"http://www.w3.org/2000/svg\"",
              " xml:space=\"preserve\" >");
    return true;
}

bool CMySVGWriter::Close()
{
    SVGTOOL_TRACE("CMySVGWriter::Close");
    writeLine("</svg>");
    m_clipCounter = 1;
    return true;
}

bool CMySVGWriter::DrawRect(qint32 x, qint32 y, qint32 width, qint32 height, const StyleText &style,
                            qint32 rx, qint32 ry)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawRect");
    const StyleText &chosen = chosenStyle(style);
    const auto write = [&](const auto &...rest) {
        if (rx == 0 && ry == 0) // as nearly all boxes are
            writeLine("<rect x=\"", x, "\" y=\"", y, "\" width=\"", width, "\" height=\"", height,
                      "\" rx=\"0\" ry=\"0\" ", chosen.view(), rest...);
        else
            writeLine("<rect x=\"", x, "\" y=\"", y, "\" width=\"", width, "\" height=\"", height,
                      "\" rx=\"", rx, "\" ry=\"", ry, kQ, chosen.view(), rest...);
    };
    // Quirk: the clip reference follows the style with no blank between them.
    if (m_clipActive && !chosen.refersToClip()) [[unlikely]]
        write(m_styles.clipReference().toUtf8(), "/>");
    else
        write("/>");
    return true;
}

bool CMySVGWriter::DrawEllipse(qint32 cx, qint32 cy, qint32 rx, qint32 ry, const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawEllipse");
    // Quirk: the ry value ends in a blank inside its quotes; golden files depend on it.
    writeLine("<ellipse cx=\"", cx, kQ, "cy = \"", cy, kQ, "rx = \"", rx, kQ, "ry = \"", ry, " \" ",
              styleOrFallback(style), "/>");
    return true;
}

bool CMySVGWriter::DrawCircle(qint32 cx, qint32 cy, qint32 r, const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawCircle");
    writeLine("<circle cx=\"", cx, kQ, "cy = \"", cy, kQ, "r=\"", r, kQ, styleOrFallback(style),
              "/>");
    return true;
}

bool CMySVGWriter::DrawLine(qint32 x1, qint32 y1, qint32 x2, qint32 y2, const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawLine");
    addLine({ x1, y1 }, { x2, y2 }, style);
    return true;
}

void CMySVGWriter::addLine(POINTL from, POINTL to, const StyleText &style)
{
    writeLine("<line x1=\"", from.x, "\" y1 = \"", from.y, "\" x2 =\"", to.x, "\" y2=\"", to.y, kQ,
              styleOrFallback(style), "/>");
}

bool CMySVGWriter::MoveTo(qint32 x, qint32 y)
{
    SVGTOOL_TRACE("CMySVGWriter::MoveTo");
    m_current = { x, y };
    return true;
}

bool CMySVGWriter::DrawLineTo(qint32 x, qint32 y, const StyleText &style)
{
    // Traced, each step is a call of its own.
    if (isTracing()) {
        SVGTOOL_TRACE("CMySVGWriter::DrawLineTo");
        DrawLine(m_current.x, m_current.y, x, y, style);
        return MoveTo(x, y);
    }
    addLine(m_current, { x, y }, style);
    m_current = { x, y };
    return true;
}

void CMySVGWriter::GetPointsString(std::span<const POINTL> points, DocumentText &text) const
{
    SVGTOOL_TRACE("CMySVGWriter::GetPointsString");
    for (const POINTL &point : points)
        text.append(point.x, ',', point.y, ' ');
    text.append('\n');
}

bool CMySVGWriter::CreatePen(quint32 index, quint32 style, qint32 width, quint32 colour,
                             std::span<const quint32> entries)
{
    SVGTOOL_TRACE("CMySVGWriter::CreatePen");
    m_styles.EmfCreatePen(index, style, width, colour, entries);
    return true;
}

bool CMySVGWriter::CreateBrushI(quint32 index, const LOGBRUSH &brush)
{
    SVGTOOL_TRACE("CMySVGWriter::CreateBrushI");
    const quint32 patternsBefore = m_styles.patternCount();
    m_styles.EmfCreateBrush(index, brush.lbStyle, brush.lbColor, brush.lbHatch);
    // An index keeps its last pattern when a brush of another kind takes it; only a pattern that
    // this creation made goes into the document.
    if (m_styles.patternCount() != patternsBefore)
        m_document << m_styles.GetBrushPattern(index);
    return true;
}

bool CMySVGWriter::CreateFont(quint32 index, const LOGFONTW &font)
{
    SVGTOOL_TRACE("CMySVGWriter::CreateFont");
    m_styles.EmfCreateFont(index, font);
    return true;
}

bool CMySVGWriter::MetaCreateFont(quint32 index, const FONTSPEC &font, ByteView faceName)
{
    SVGTOOL_TRACE("CMySVGWriter::MetaCreateFont");
    m_styles.MetaCreateFont(index, font, faceName);
    return true;
}

bool CMySVGWriter::SelectObject(quint32 index)
{
    SVGTOOL_TRACE("CMySVGWriter::SelectObject");
    m_styles.EmfSelectObject(index);
    return true;
}

bool CMySVGWriter::DeleteObject(quint32 index)
{
    SVGTOOL_TRACE("CMySVGWriter::DeleteObject");
    m_styles.EmfDeleteObject(index);
    return true;
}

bool CMySVGWriter::SetBkgColor(quint32 colour)
{
    SVGTOOL_TRACE("CMySVGWriter::SetBkgColor");
    m_styles.SetBkgColor(colour);
    return true;
}

bool CMySVGWriter::SetTextColor(quint32 colour)
{
    SVGTOOL_TRACE("CMySVGWriter::SetTextColor");
    m_styles.SetTextColor(colour);
    return true;
}

bool CMySVGWriter::SetBkMode(qint32 mode)
{
    SVGTOOL_TRACE("CMySVGWriter::SetBkMode");
    m_backgroundMode = mode;
    return true;
}

} // namespace svgtool
