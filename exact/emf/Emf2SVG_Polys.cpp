#include "exact/emf/Emf2SVG.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

namespace {

    using Points = std::vector<POINTL>;

    // The points packed in bytes, widened to 32 bits.
    template<class Point>
    Points pointsIn(ByteView bytes)
    {
        Points points(size_t(bytes.size / qint64(sizeof(Point))));
        for (size_t i = 0; i < points.size(); ++i) {
            const auto point = elementAt<Point>(bytes, qint64(i));
            points[i] = { point.x, point.y };
        }
        return points;
    }

    // Quirk: in a path, a figure of no points begins at the point that stands in its place. Readers
    // leave that point, which no count counts, in the file's byte order.
    template<class Point>
    void addUncounted(Points &points, ByteView record, qint64 offset)
    {
        if (const auto bytes = slice(record, offset, sizeof(Point))) {
            const auto point = elementAt<Point>(*bytes, 0);
            points.push_back({ qFromLittleEndian(point.x), qFromLittleEndian(point.y) });
        }
    }

    // The points of a point-list record; nothing at all unless every one lies inside the record.
    template<class Point, class Record>
    std::optional<Points> readPoints(char *record, quint32 size, bool (*read)(Record *))
    {
        const ByteView all{ record, size };
        // The count stands at one place in the records of both widths.
        const auto count = qFromLittleEndian(readPadded<EMRPOLYLINE>(all).cptl);
        const auto points = slice(all, sizeof(Record), qint64(count) * qint64(sizeof(Point)));
        if (!points)
            return std::nullopt;
        read(overlay<Record>(record));
        return pointsIn<Point>(*points);
    }

    // The points of one figure, and how many are meant: with none, one may stand there
    // nevertheless.
    struct Figure
    {
        quint32 count;
        Points points;
    };

    template<class Point, class Record>
    std::optional<Figure> readFigure(char *record, quint32 size, bool (*read)(Record *))
    {
        auto points = readPoints<Point>(record, size, read);
        if (!points)
            return std::nullopt;
        Figure figure{ quint32(points->size()), std::move(*points) };
        if (figure.count == 0)
            addUncounted<Point>(figure.points, { record, size }, sizeof(Record));
        return figure;
    }

    // The figures of a poly-poly record, and the points that they share out.
    struct Figures
    {
        std::vector<quint32> counts;
        Points points;
    };

    template<class Point, class Record>
    std::optional<Figures> readFigures(char *record, quint32 size,
                                       bool (*read)(Record *, const Record *))
    {
        const ByteView all{ record, size };
        const auto head = readPadded<EMRPOLYPOLYLINE>(all);
        const qint64 figureCount = qFromLittleEndian(head.nPolys);
        const qint64 pointCount = qFromLittleEndian(head.cptl);
        const qint64 headSize = sizeof(Record);
        const auto counts = slice(all, headSize, figureCount * 4);
        if (!counts || !slice(all, headSize + figureCount * 4, pointCount * qint64(sizeof(Point))))
            return std::nullopt;
        Figures figures;
        qint64 shared = 0;
        for (qint64 i = 0; i < figureCount; ++i) {
            figures.counts.push_back(qFromLittleEndian(elementAt<quint32>(*counts, i)));
            shared += figures.counts.back();
        }
        if (shared > pointCount)
            return std::nullopt;

        // A reader that fills the copy itself puts the points behind as many words as there are
        // points, not behind the counts.
        std::vector<char> copy(size_t(headSize + std::max(figureCount, pointCount) * 4
                                      + pointCount * qint64(sizeof(Point))));
        const bool isInCopy = read(overlay<Record>(copy.data()), overlay<Record>(record));
        const ByteView whole = isInCopy ? ByteView{ copy.data(), qint64(copy.size()) } : all;
        const qint64 pointsAt = headSize + (isInCopy ? pointCount : figureCount) * 4;
        figures.points =
                pointsIn<Point>(slice(whole, pointsAt, shared * qint64(sizeof(Point))).value());
        if (figureCount > 0 && figures.counts.back() == 0)
            addUncounted<Point>(figures.points, all,
                                headSize + figureCount * 4 + shared * qint64(sizeof(Point)));
        return figures;
    }

} // namespace

// Quirk: 32-bit points go to the document as they stand in the record, unmapped (OnPolyBezier
// alone maps them), and with an empty style; hosts compare documents byte by byte.

qint32 Emf2SvgConverter::OnPolygon(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolygon");
    const auto figure = readFigure<POINTL>(record, size, &InitEMRPOLYGON);
    return figure ? drawPoints(figure->points, figure->count, kPolygon, {}) : 0;
}

qint32 Emf2SvgConverter::OnPolyLine(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyLine");
    const auto figure = readFigure<POINTL>(record, size, &InitEMRPOLYGON);
    return figure ? drawPoints(figure->points, figure->count, kPolyLine, {}) : 0;
}

qint32 Emf2SvgConverter::OnPolyLineTo(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyLineTo");
    const auto figure = readFigure<POINTL>(record, size, &InitEMRPOLYGON);
    return figure ? drawPoints(figure->points, figure->count, kPolyLineTo, {}) : 0;
}

qint32 Emf2SvgConverter::OnPolygon16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolygon16");
    auto figure = readFigure<POINTS>(record, size, &InitEMRPOLYGON16);
    return figure ? drawPoints(mapPoints(std::move(figure->points)), figure->count, kPolygon,
                               m_writer.currentStyle())
                  : 0;
}

qint32 Emf2SvgConverter::OnPolyLine16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyLine16");
    auto figure = readFigure<POINTS>(record, size, &InitEMRPOLYGON16);
    return figure ? drawPoints(mapPoints(std::move(figure->points)), figure->count, kPolyLine,
                               m_writer.currentStyle())
                  : 0;
}

qint32 Emf2SvgConverter::OnPolyLineTo16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyLineTo16");
    auto figure = readFigure<POINTS>(record, size, &InitEMRPOLYGON16);
    return figure ? drawPoints(mapPoints(std::move(figure->points)), figure->count, kPolyLineTo,
                               m_writer.currentStyle())
                  : 0;
}

qint32 Emf2SvgConverter::drawPoints(std::span<const POINTL> points, quint32 count,
                                    PointListKind kind, const StyleText &style)
{
    m_writer.DrawPolyLine(points, count, kind == kPolygon, kind == kPolyLineTo, style);
    return 1;
}

qint32 Emf2SvgConverter::drawFigures(std::span<const POINTL> points,
                                     std::span<const quint32> counts, PointListKind kind,
                                     const StyleText &style)
{
    for (const quint32 count : counts) {
        drawPoints(points, count, kind, style);
        points = points.subspan(count);
    }
    return 1;
}

qint32 Emf2SvgConverter::OnPolyPolyLine(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyPolyLine");
    const auto figures = readFigures<POINTL>(record, size, &InitEMRPOLYPOLYGON);
    return figures ? drawFigures(figures->points, figures->counts, kPolyLine, {}) : 0;
}

qint32 Emf2SvgConverter::OnPolyPolygon(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyPolygon");
    const auto figures = readFigures<POINTL>(record, size, &InitEMRPOLYPOLYGON);
    return figures ? drawFigures(figures->points, figures->counts, kPolygon, {}) : 0;
}

qint32 Emf2SvgConverter::OnPolyPolyLine16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyPolyLine16");
    auto figures = readFigures<POINTS>(record, size, &InitEMRPOLYPOLYGON16);
    return figures ? drawFigures(mapPoints(std::move(figures->points)), figures->counts, kPolyLine,
                                 m_writer.currentStyle())
                   : 0;
}

qint32 Emf2SvgConverter::OnPolyPolygon16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyPolygon16");
    auto figures = readFigures<POINTS>(record, size, &InitEMRPOLYPOLYGON16);
    return figures ? drawFigures(mapPoints(std::move(figures->points)), figures->counts, kPolygon,
                                 m_writer.currentStyle())
                   : 0;
}

qint32 Emf2SvgConverter::OnPolyBezier(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyBezier");
    auto points = readPoints<POINTL>(record, size, &InitEMRPOLYGON);
    if (!points)
        return 0;
    m_writer.DrawPolyBeziers(mapPoints(std::move(*points)), false);
    return 1;
}

qint32 Emf2SvgConverter::OnPolyBezierTo(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyBezierTo");
    const auto points = readPoints<POINTL>(record, size, &InitEMRPOLYGON);
    if (!points)
        return 0;
    m_writer.DrawPolyBeziers(*points, true);
    return 1;
}

qint32 Emf2SvgConverter::OnPolyBezier16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyBezier16");
    auto points = readPoints<POINTS>(record, size, &InitEMRPOLYGON16);
    if (!points)
        return 0;
    m_writer.DrawPolyBeziers(mapPoints(std::move(*points)), false);
    return 1;
}

qint32 Emf2SvgConverter::OnPolyBezierTo16(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyBezierTo16");
    auto points = readPoints<POINTS>(record, size, &InitEMRPOLYGON16);
    if (!points)
        return 0;
    m_writer.DrawPolyBeziers(mapPoints(std::move(*points)), true);
    return 1;
}

qint32 Emf2SvgConverter::OnPolyDraw(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnPolyDraw");
    const ByteView all{ record, size };
    const qint64 count = qFromLittleEndian(readPadded<EMRPOLYDRAW16>(all).cpts);
    const qint64 typesAt = qint64(sizeof(EMRPOLYDRAW16)) + count * qint64(sizeof(POINTS));
    const auto types = slice(all, typesAt, count);
    if (!types)
        return 0;
    auto points = readPoints<POINTS>(record, size, &InitEMRPOLYDRAW16);
    if (!points)
        return 0;
    return m_writer.DrawMixedPoly(mapPoints(std::move(*points)), *types) ? 1 : 0;
}

} // namespace svgtool
