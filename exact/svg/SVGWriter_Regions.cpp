#include "exact/svg/SVGWriter.h"

#include "core/base/Numeric.h"
#include "exact/geometry/RgnPathUtil.h"
#include "exact/logging/TraceScope.h"

#include <algorithm>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGWriter.cpp";

bool CMySVGWriter::SetExtClipRgn(std::span<const RECTL> rects)
{
    SVGTOOL_TRACE("CMySVGWriter::SetExtClipRgn");
    m_document << "\n<defs><clipPath id= \"ClPath" << m_clipCounter << "\">";
    drawRects(rects, QStringLiteral("stroke=\"none\" fill=\"none\" stroke-width=\"1\" "));
    m_document << "</clipPath></defs>";
    useClip();
    return true;
}

bool CMySVGWriter::SetClipPath()
{
    SVGTOOL_TRACE("CMySVGWriter::SetClipPath");
    m_document << "\n<defs><clipPath id= \"ClPath" << m_clipCounter << "\">"
               << "\n<path d = \"" << m_path.view() << kQ << "/>"
               << "</clipPath></defs>";
    m_clipActive = true;
    m_path.clear();
    useClip();
    return true;
}

void CMySVGWriter::useClip()
{
    m_styles.ExtSetClipRgn(QStringLiteral("ClPath%1").arg(m_clipCounter));
    m_fallbackStyle = m_styles.shapeStyle();
    m_clipCounter = wrapAdd(m_clipCounter, 1);
}

bool CMySVGWriter::ResetClip()
{
    SVGTOOL_TRACE("CMySVGWriter::ResetClip");
    m_styles.ExtSetClipRgn(QString());
    m_fallbackStyle = m_styles.shapeStyle();
    return true;
}

bool CMySVGWriter::AbortPath()
{
    SVGTOOL_TRACE("CMySVGWriter::AbortPath");
    m_isInPath = false;
    m_path.clear();
    return true;
}

void CMySVGWriter::drawRects(std::span<const RECTL> rects, const StyleText &style)
{
    for (const RECTL &rect : rects)
        DrawRect(rect.left, rect.top, wrapSub(rect.right, rect.left),
                 wrapSub(rect.bottom, rect.top), style, 0, 0);
}

bool CMySVGWriter::FillRgn(std::span<const RECTL> rects, quint32 brushIndex)
{
    SVGTOOL_TRACE("CMySVGWriter::FillRgn");
    QString style = QStringLiteral("stroke=\"none\" stroke-width=\"1\" ");
    const QString brush = m_styles.EmfGetBrush(brushIndex);
    if (!brush.isEmpty())
        style += QLatin1String("fill") + brush;
    drawRects(rects, style);
    return true;
}

bool CMySVGWriter::FrameRgn(std::span<const RECTL> rects, quint32 brushIndex, qint32 frameWidth,
                            qint32 frameHeight)
{
    SVGTOOL_TRACE("CMySVGWriter::FrameRgn");
    const QString brush = m_styles.EmfGetBrush(brushIndex);
    QString style;
    if (!brush.isEmpty())
        style = QLatin1String("stroke") + brush + QLatin1Char(' ');
    style += QLatin1String("fill=\"none\" stroke-width=\"")
            + QString::number(std::max({ frameWidth, frameHeight, 1 })) + QLatin1String("\" ");
    const StyleText text(style);
    std::list<CLine> edges;
    ConvertRgnDataToPath(rects, edges);
    for (const CLine &edge : edges)
        DrawLine(edge.x1, edge.y1, edge.x2, edge.y2, text);
    return true;
}

} // namespace svgtool
