#include "exact/svg/SVGWriter.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"

#include <charconv>
#include <iterator>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGWriter.cpp";

bool CMySVGWriter::DrawArc(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                           qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY,
                           const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawArc");
    writeLine("<path d=\"M", startX, ",", startY, " a", rx, ",", ry, " ", rotation, " ", largeArc,
              ",", sweep, " ", wrapSub(endX, startX), ",", wrapSub(endY, startY), kQ,
              styleOrFallback(style), "/>");
    return true;
}

bool CMySVGWriter::DrawArcTo(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                             qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY,
                             const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawArcTo");
    DrawArc(startX, startY, rx, ry, rotation, largeArc, sweep, endX, endY, style);
    DrawLineTo(startX, startY, QString());
    return MoveTo(endX, endY);
}

bool CMySVGWriter::DrawChord(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                             qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY,
                             const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawChord");
    // Quirk: no blank before the arc command, as for pies and unlike arcs.
    writeLine("<path d=\"M", startX, ",", startY, "a", rx, ",", ry, " ", rotation, " ", largeArc,
              ",", sweep, " ", wrapSub(endX, startX), ",", wrapSub(endY, startY), " z \" ",
              styleOrFallback(style), "/>");
    return true;
}

bool CMySVGWriter::DrawPie(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                           qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY, qint32 centerX,
                           qint32 centerY, const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawPie");
    writeLine("<path d=\"M", startX, ",", startY, "a", rx, ",", ry, " ", rotation, " ", largeArc,
              ",", sweep, " ", wrapSub(endX, startX), ",", wrapSub(endY, startY), "l",
              wrapSub(centerX, endX), ",", wrapSub(centerY, endY), " z \" ", styleOrFallback(style),
              "/>");
    return true;
}

bool CMySVGWriter::StartPath()
{
    SVGTOOL_TRACE("CMySVGWriter::StartPath");
    m_isInPath = true;
    m_clipActive = false;
    m_styles.ExtSetClipRgn(QString());
    // Quirk: the path text is not emptied; what an earlier bracket left is drawn with this one.
    m_fallbackStyle = m_styles.shapeStyle();
    return true;
}

bool CMySVGWriter::EndPath()
{
    SVGTOOL_TRACE("CMySVGWriter::EndPath");
    m_isInPath = false;
    return true;
}

bool CMySVGWriter::StrokePath()
{
    SVGTOOL_TRACE("CMySVGWriter::StrokePath");
    writeLine("\n<path d = \"", m_path.view(), "\"", m_styles.GetCurrPenStyle(), "/>");
    m_path.clear();
    return true;
}

bool CMySVGWriter::FillPath()
{
    SVGTOOL_TRACE("CMySVGWriter::FillPath");
    // Quirk: the quote that closes the path data is the first character of the brush style.
    writeLine("\n<path d = \"", m_path.view(), m_styles.GetCurrBrushStyle(), "/>");
    m_path.clear();
    return true;
}

// One step of path data: a letter and a point.
static void addStep(DocumentText &text, char letter, const POINTL &point)
{
    text.append(' ', letter, point.x, ',', point.y, ' ');
}

// A curve of path data: its three points.
static void addCurve(DocumentText &text, std::span<const POINTL, 3> points)
{
    text.append(" C", points[0].x, ',', points[0].y, ' ', points[1].x, ',', points[1].y, ' ',
                points[2].x, ',', points[2].y, ' ');
}

void CMySVGWriter::GetPathString(std::span<const POINTL> points, quint32 count,
                                 DocumentText &text) const
{
    SVGTOOL_TRACE("CMySVGWriter::GetPathString");
    // Quirk: a figure of no points takes what stands in their place.
    addStep(text, 'M', points.empty() ? POINTL{} : points.front());
    for (size_t i = 1; i < count; ++i)
        addStep(text, 'L', points[i]);
    // Quirk: every figure is closed, also one that came from a polyline.
    text.append(" Z");
}

bool CMySVGWriter::AddToPath(std::span<const POINTL> points, quint32 count)
{
    SVGTOOL_TRACE("CMySVGWriter::AddToPath");
    GetPathString(points, count, m_path);
    return true;
}

bool CMySVGWriter::AddToPath(std::string_view pathData)
{
    SVGTOOL_TRACE("CMySVGWriter::AddToPath");
    m_path.append(pathData);
    return true;
}

bool CMySVGWriter::BeginFigure()
{
    SVGTOOL_TRACE("CMySVGWriter::BeginFigure");
    if (m_isInPath)
        m_figureStart = m_current;
    return true;
}

bool CMySVGWriter::CloseFigure()
{
    SVGTOOL_TRACE("CMySVGWriter::CloseFigure");
    m_figure.clear();
    addStep(m_figure, 'L', m_figureStart);
    AddToPath(m_figure.view());
    // Quirk: only the x goes back to 0; a second close without a new figure depends on it.
    m_figureStart.x = 0;
    return true;
}

bool CMySVGWriter::DrawPolyPolygon(std::span<const POINTL> points, std::span<const quint16> counts,
                                   const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawPolyPolygon");
    m_document.append("<path d=\"");
    for (const quint16 count : counts) {
        GetPathString(points, count, m_document);
        points = points.subspan(count);
    }
    // Quirk: the even-odd rule is written always, and no blank follows it.
    writeLine(kQ, "fill-rule=\"evenodd\"", styleOrFallback(style), "/>");
    return true;
}

bool CMySVGWriter::DrawPolyLine(std::span<const POINTL> points, quint32 count, bool isPolygon,
                                bool isFromCurrent, const StyleText &style)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawPolyLine");
    if (m_isInPath)
        return AddToPath(points, count);
    points = points.first(count);
    if (isPolygon) {
        m_document.append("<polygon points=\"");
        GetPointsString(points, m_document);
        writeLine(kQ, styleOrFallback(style), "/>");
    } else {
        const QString penStyle = m_styles.GetCurrPenStyle();
        m_document.append("<polyline points=\"");
        GetPointsString(points, m_document);
        writeLine(kQ, penStyle, "/>");
    }
    if (isFromCurrent && !points.empty()) {
        DrawLine(m_current.x, m_current.y, points.front().x, points.front().y, QString());
        MoveTo(points.back().x, points.back().y);
    }
    return true;
}

void CMySVGWriter::writeOrCollect(std::string_view pathData)
{
    if (m_isInPath)
        AddToPath(pathData);
    else
        writeLine("<path d=\"", pathData, kQ, m_styles.GetCurrPenStyle(), "/>");
}

bool CMySVGWriter::DrawPolyBeziers(std::span<const POINTL> points, bool isFromCurrent)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawPolyBeziers");
    if (points.empty())
        return true;
    const POINTL start = isFromCurrent ? m_current : points.front();
    auto curves = points.subspan(isFromCurrent ? 0 : 1);
    if (curves.size() < 3)
        return true;
    m_figure.clear();
    addStep(m_figure, 'M', start);
    POINTL end = start;
    for (; curves.size() >= 3; curves = curves.subspan(3)) {
        addCurve(m_figure, curves.first<3>());
        end = curves[2];
    }
    if (m_isInPath)
        m_figureStart = start;
    writeOrCollect(m_figure.view());
    return isFromCurrent ? MoveTo(end.x, end.y) : true;
}

namespace {

    // Types of the points of a mixed figure ([MS-EMF] 2.1.26); the last two may close the figure.
    enum PointType { kLineTo = 2, kBezierTo = 4, kMoveTo = 6 };
    constexpr int kCloseFigure = 1;

    // How many points the step at the front of types takes; none when there is no such step.
    size_t stepLength(std::span<const char> types)
    {
        const int type = static_cast<unsigned char>(types.front());
        if (type == kMoveTo || (type & ~kCloseFigure) == kLineTo)
            return 1;
        const auto isCurvePoint = [](int each) { return (each & ~kCloseFigure) == kBezierTo; };
        const bool isCurve = types.size() >= 3 && isCurvePoint(types[0]) && isCurvePoint(types[1])
                && isCurvePoint(types[2]);
        return isCurve ? 3 : 0;
    }

} // namespace

bool CMySVGWriter::DrawMixedPoly(std::span<const POINTL> points, ByteView types)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawMixedPoly");
    std::span<const char> rest(types.data, size_t(types.size));
    if (rest.empty())
        return true;
    m_figure.clear();
    POINTL position = m_current;
    POINTL figureStart = rest.front() == kMoveTo ? points.front() : m_current;
    bool needsMove = true;
    while (!rest.empty()) {
        const size_t length = stepLength(rest);
        if (length == 0)
            return false;
        if (rest.front() != kMoveTo && needsMove)
            addStep(m_figure, 'M', position);
        needsMove = false;
        if (length == 3)
            addCurve(m_figure, points.first<3>());
        else
            addStep(m_figure, rest.front() == kMoveTo ? 'M' : 'L', points.front());
        if (rest.front() == kMoveTo)
            figureStart = points.front();
        position = points[length - 1];
        if ((rest[length - 1] & kCloseFigure) != 0) {
            m_figure.append(" Z");
            needsMove = true;
        }
        rest = rest.subspan(length);
        points = points.subspan(length);
    }
    if (m_isInPath)
        m_figureStart = figureStart;
    writeOrCollect(m_figure.view());
    return MoveTo(position.x, position.y);
}

// The shortest text that reads back to the same number, never with an exponent.
static QString shortest(float value)
{
    char text[256];
    const auto end =
            std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed);
    return QString::fromLatin1(text, int(end.ptr - text));
}

bool CMySVGWriter::SetWorldTransform(const XFORM &xform)
{
    SVGTOOL_TRACE("CMySVGWriter::SetWorldTransform");
    EndWorldTransform();
    const bool isIdentity = xform.eM11 == 1.0F && xform.eM12 == 0.0F && xform.eM21 == 0.0F
            && xform.eM22 == 1.0F && xform.eDx == 0.0F && xform.eDy == 0.0F;
    if (isIdentity)
        return true;
    writeLine("<g transform=\"matrix(", shortest(xform.eM11), " ", shortest(xform.eM12), " ",
              shortest(xform.eM21), " ", shortest(xform.eM22), " ", shortest(xform.eDx), " ",
              shortest(xform.eDy), ")\">");
    m_isInTransform = true;
    return true;
}

bool CMySVGWriter::EndWorldTransform()
{
    SVGTOOL_TRACE("CMySVGWriter::EndWorldTransform");
    if (m_isInTransform)
        writeLine("</g>");
    m_isInTransform = false;
    return true;
}

} // namespace svgtool
