#pragma once

#include "core/base/Bytes.h"
#include "core/records/EmfRecords.h"
#include "core/records/RecordTally.h"
#include "core/records/RecordType.h"
#include "exact/emf/Axis.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/RecordDump.h"
#include "exact/svg/SVGWriter.h"

#include <QRegion>
#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace svgtool {

struct BitmapRange;

/// Converts one enhanced metafile ([MS-EMF]) into an SVG document.
///
/// Walks the records, maps their coordinates and has the writer it owns print one figure a
/// record. A record that fails draws nothing and does not end the conversion.
/// @note One converter serves one conversion on one thread.
class Emf2SvgConverter
{
public:
    Emf2SvgConverter();

    /// 1 when @p header carries the EMF signature, -2 when not; no other field is asked.
    qint32 IsValidEMFFile(ENHMETAHEADER header) const;
    /// Converts the whole file @p data.
    /// @param dump  lists the records that have no handler; may be null
    /// @return 1 on success, 0 on bad data or exhausted memory, -1 on a caught exception
    qint32 ConvertEMFToSVG(ByteView data, RecordDump *dump);
    /// Counts into @p tally what becomes of the records; null, as it is at first, counts nothing.
    /// The tally outlives the conversion.
    void setTally(RecordTally *tally) { m_tally = tally; }
    /// Hands over the document written so far, in UTF-8.
    QByteArray takeDocument() { return m_writer.takeDocument(); }

    /// An arc of an ellipse, in output units.
    struct Arc
    {
        POINTL start, end, center;
        qint32 rx, ry; ///< half axes
        bool isLarge; ///< the way from start to end is more than half a turn
    };

private:
    /// Handles the private copy of one record, its head included: non-zero for success.
    using Handler = qint32 (Emf2SvgConverter::*)(char *record, quint32 size);

    // Emf2SVG.cpp: the frame
    void InitEMFText();
    qint32 InitEMFRecHandlers();
    void initFrame(const ENHMETAHEADER &header);
    qint32 convertRecords(ByteView data, RecordDump *dump);
    bool walkRecords(ByteView records, quint32 count, RecordDump *dump);
    Handler findHandler(quint32 type, RecordDump *dump) const;
    qint32 handle(Handler handler, char *record, quint32 size);
    qint32 HandleEnhMetaRecordData(char *record, quint32 size, RecordDump *dump);
    bool endAt(StopReason reason);
    qint32 OnAcceptAndIgnore(char *record, quint32 size);
    qint32 OnDoNothing(char *record, quint32 size);

    // Emf2SVG_Tally.cpp
    qint32 handleAndNote(Handler handler, char *record, quint32 size);

    // Emf2SVG_Mapping.cpp: coordinates
    void updateAxes();
    qint32 MapX(qint32 x, bool isPoint) const;
    qint32 MapY(qint32 y, bool isPoint) const;
    // Traced, each coordinate is a call of its own; else the level is asked once for all of them.
    POINTL mapPoint(POINTL point) const
    {
        if (isTracing()) [[unlikely]]
            return mapTracedPoint(point);
        return { m_axisX.position(point.x), m_axisY.position(point.y) };
    }
    SIZEL mapSize(SIZEL size) const
    {
        if (isTracing()) [[unlikely]]
            return mapTracedSize(size);
        return { m_axisX.length(size.cx), m_axisY.length(size.cy) };
    }
    POINTL mapTracedPoint(POINTL point) const;
    SIZEL mapTracedSize(SIZEL size) const;
    std::vector<POINTL> mapPoints(std::vector<POINTL> points) const;
    qint32 setWorldTransform(const XFORM &xform);
    qint32 OnSetMapMode(char *record, quint32 size);
    qint32 OnSetWindowOrgEx(char *record, quint32 size);
    qint32 OnSetWindowsExt(char *record, quint32 size);
    qint32 OnSetViewPortEx(char *record, quint32 size);
    qint32 OnSetViewPortOrgEx(char *record, quint32 size);
    qint32 OnSetWorldTransform(char *record, quint32 size);
    qint32 OnModifyWorldTransform(char *record, quint32 size);

    // Emf2SVG_Drawing.cpp: figures
    void drawBox(RECTL box, qint32 rx, qint32 ry);
    qint32 OnEllipse(char *record, quint32 size);
    qint32 OnRectangle(char *record, quint32 size);
    qint32 OnRoundedRect(char *record, quint32 size);
    qint32 OnLineTo(char *record, quint32 size);
    qint32 OnMoveToEx(char *record, quint32 size);

    // Emf2SVG_Arcs.cpp: arcs, chords and pies
    Arc readArc(const char *record, quint32 size) const;
    void drawArcTo(const Arc &arc, qint32 sweepFlag);
    void drawTurnTo(const Arc &arc, qint32 sweepFlag);
    qint32 OnArc(char *record, quint32 size);
    qint32 OnArcTo(char *record, quint32 size);
    qint32 OnChord(char *record, quint32 size);
    qint32 OnPie(char *record, quint32 size);
    qint32 OnAngleArc(char *record, quint32 size);

    // Emf2SVG_Polys.cpp: figures of many points
    enum PointListKind { kPolyLine, kPolyLineTo, kPolygon };
    qint32 drawPoints(std::span<const POINTL> points, quint32 count, PointListKind kind,
                      const StyleText &style);
    qint32 drawFigures(std::span<const POINTL> points, std::span<const quint32> counts,
                       PointListKind kind, const StyleText &style);
    qint32 OnPolygon(char *record, quint32 size);
    qint32 OnPolygon16(char *record, quint32 size);
    qint32 OnPolyLine(char *record, quint32 size);
    qint32 OnPolyLine16(char *record, quint32 size);
    qint32 OnPolyLineTo(char *record, quint32 size);
    qint32 OnPolyLineTo16(char *record, quint32 size);
    qint32 OnPolyPolyLine(char *record, quint32 size);
    qint32 OnPolyPolyLine16(char *record, quint32 size);
    qint32 OnPolyPolygon(char *record, quint32 size);
    qint32 OnPolyPolygon16(char *record, quint32 size);
    qint32 OnPolyBezierTo(char *record, quint32 size);
    qint32 OnPolyBezierTo16(char *record, quint32 size);
    qint32 OnPolyBezier(char *record, quint32 size);
    qint32 OnPolyBezier16(char *record, quint32 size);
    qint32 OnPolyDraw(char *record, quint32 size);

    // Emf2SVG_Regions.cpp
    std::vector<RECTL> mapRects(std::vector<RECTL> rects) const;
    std::optional<QRegion> combinedClip(std::span<const RECTL> rects, quint32 mode) const;
    qint32 OnExtSetClipRgn(char *record, quint32 size);
    qint32 OnFillRgn(char *record, quint32 size);
    qint32 OnFrameRgn(char *record, quint32 size);
    qint32 OnSelectClipPath(char *record, quint32 size);

    // Emf2SVG_Objects.cpp: objects, state and path brackets
    qint32 OnSetBkColor(char *record, quint32 size);
    qint32 OnCreatePen(char *record, quint32 size);
    qint32 OnCreateBrushIndirect(char *record, quint32 size);
    qint32 OnCreatePenEx(char *record, quint32 size);
    qint32 OnSelectObject(char *record, quint32 size);
    qint32 OnSetTextColor(char *record, quint32 size);
    qint32 OnExtCreateFontIndirect(char *record, quint32 size);
    qint32 OnDeleteObject(char *record, quint32 size);
    qint32 OnSetBkMode(char *record, quint32 size);
    qint32 OnBeginPath(char *record, quint32 size);
    qint32 OnEndPath(char *record, quint32 size);
    qint32 OnStrokePath(char *record, quint32 size);
    qint32 OnFillPath(char *record, quint32 size);
    qint32 OnCloseFigure(char *record, quint32 size);
    qint32 OnAbortPath(char *record, quint32 size);

    // Emf2SVG_Text.cpp
    QString shownText(const QString &text, quint32 options) const;
    qint32 OnExtTextOutW(char *record, quint32 size);
    qint32 OnSmallTextOut(char *record, quint32 size);
    qint32 OnSetTextAlign(char *record, quint32 size);

    // Emf2SVG_Raster.cpp: bitmaps
    RECTL mapCorners(qint32 x, qint32 y, qint32 width, qint32 height) const;
    /// Draws the bitmap in @p range of the record; without one, what the operation does alone.
    BitmapTransfer transferOf(const EMRBITBLT &blt, qint32 sourceWidth, qint32 sourceHeight) const;
    qint32 drawBitmap(BitmapTransfer transfer, ByteView record, const BitmapRange &range);
    qint32 OnBitBlt(char *record, quint32 size);
    qint32 OnStretchDIB(char *record, quint32 size);
    qint32 OnTransparentBlt(char *record, quint32 size);
    qint32 OnMaskBlt(char *record, quint32 size);
    qint32 OnStretchBlt(char *record, quint32 size);

    std::span<const Handler> m_handlers; ///< by record type; null where there is none
    CMySVGWriter m_writer;
    RecordTally *m_tally = nullptr; ///< somebody else's
    QRegion m_deviceRegion; ///< of the header
    QRegion m_clipRegion;
    qint64 m_clipRectsLeft = 0; ///< how many rectangles clips may still read and write
    std::span<const RecordType> m_recordTypes; ///< for the dump
    XFORM m_worldTransform{};
    bool m_hasWorldTransform = false; ///< until then, the identity is meant
    qint32 m_originX = 0;
    qint32 m_originY = 0;
    Axis m_axisX; ///< made of the members below, to be updated with them
    Axis m_axisY;
    float m_scaleX = 1.0F; ///< frame units (0.01 mm) per logical unit
    float m_scaleY = 1.0F;
    float m_modeScaleX = 1.0F;
    float m_modeScaleY = 1.0F;
    bool m_isAnisotropic = false;
    SIZEL m_viewportExtent{};
    SIZEL m_windowExtent{};
    POINTL m_windowOrigin{};
    POINTL m_viewportOrigin{};
};

} // namespace svgtool
