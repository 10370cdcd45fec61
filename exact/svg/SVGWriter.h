#pragma once

#include "core/raster/BitmapTransfer.h"
#include "core/raster/Png.h"
#include "core/raster/RasterOperation.h"
#include "core/records/RecordResult.h"
#include "exact/style/StyleMgr.h"
#include "exact/svg/DocumentText.h"

#include <QString>

#include <optional>
#include <span>
#include <vector>

namespace svgtool {

/// The size of a text in output units, along its own axes.
struct TextDimensions
{
    qint32 width = 0;
    qint32 ascent = 0; ///< from the top of the cell to the baseline
    qint32 descent = 0; ///< from the baseline to the bottom of the cell
};

/// Writes one SVG document, an element a line.
///
/// The interpreters map coordinates and choose figures; the writer only prints. All numbers are
/// integers in output units. The style argument of a figure is inserted as it stands; an empty one
/// gives way to the writer's fallback style. Operations return true unless they say otherwise.
///
/// Quirk: the blanks around "=" differ from element to element, as they do in the documents that
/// hosts compare byte by byte.
/// @note One writer belongs to one conversion on one thread.
class CMySVGWriter
{
public:
    CMySVGWriter();

    /// Writes the document head; called once, first.
    bool CreateXML(qint32 width, qint32 height);
    /// Writes the document tail; called once, last.
    bool Close();
    /// Makes room for the document of a metafile of @p size bytes, before anything is written.
    void makeRoom(qint64 size);
    /// Hands over the text written so far, in UTF-8; what is written next begins a new one.
    QByteArray takeDocument() { return m_document.take(); }

    bool DrawRect(qint32 x, qint32 y, qint32 width, qint32 height, const StyleText &style,
                  qint32 rx, qint32 ry);
    bool DrawEllipse(qint32 cx, qint32 cy, qint32 rx, qint32 ry, const StyleText &style);
    bool DrawCircle(qint32 cx, qint32 cy, qint32 r, const StyleText &style);
    bool DrawLine(qint32 x1, qint32 y1, qint32 x2, qint32 y2, const StyleText &style);
    /// Sets the current position.
    bool MoveTo(qint32 x, qint32 y);
    /// Draws a line from the current position and moves it to the line's end.
    bool DrawLineTo(qint32 x, qint32 y, const StyleText &style);
    /// Makes the current position the point that CloseFigure draws back to, in a path bracket.
    bool BeginFigure();
    /// Wraps the elements that follow in a group with this transform, until the next one.
    bool SetWorldTransform(const XFORM &xform);
    /// Ends the group of the transform in force; the interpreter does it before Close.
    bool EndWorldTransform();
    /// Appends the points as the value of a "points" attribute, line feed included.
    void GetPointsString(std::span<const POINTL> points, DocumentText &text) const;

    /// An elliptic arc from start to end.
    /// @param rotation  of the ellipse's x axis, in degrees
    /// @param largeArc, sweep  SVG's flags, 0 or 1
    bool DrawArc(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                 qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY, const StyleText &style);
    /// An arc, a line to its start from the current position, and the position at its end.
    bool DrawArcTo(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                   qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY, const StyleText &style);
    /// An arc closed by a line from end to start.
    bool DrawChord(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                   qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY, const StyleText &style);
    /// An arc closed by lines through the centre.
    bool DrawPie(qint32 startX, qint32 startY, qint32 rx, qint32 ry, qint32 rotation,
                 qint32 largeArc, qint32 sweep, qint32 endX, qint32 endY, qint32 centerX,
                 qint32 centerY, const StyleText &style);

    /// Opens a path bracket: point lists, Béziers and mixed figures are collected until EndPath.
    /// Ends clipping and takes the current style as fallback style.
    bool StartPath();
    /// Closes the path bracket; the text collected stays.
    bool EndPath();
    /// Writes the text collected as a stroked path and empties it.
    bool StrokePath();
    /// Writes the text collected as a filled path and empties it.
    bool FillPath();
    /// Closes the path bracket and drops the text collected.
    bool AbortPath();
    /// Appends path data of one closed figure of the first @p count points. The first point is used
    /// even when the count is 0; where there is none, it is 0,0.
    void GetPathString(std::span<const POINTL> points, quint32 count, DocumentText &text) const;
    /// Collects a closed figure, made as GetPathString does.
    bool AddToPath(std::span<const POINTL> points, quint32 count);
    /// Collects path data as they stand.
    bool AddToPath(std::string_view pathData);
    /// Collects a line to the start of the figure.
    bool CloseFigure();
    /// Writes polygons that share out @p points as one path, filled by the even-odd rule. Points
    /// beyond those of the counts serve figures of no points.
    bool DrawPolyPolygon(std::span<const POINTL> points, std::span<const quint16> counts,
                         const StyleText &style);
    /// Writes a polygon or polyline, or collects it as a closed figure inside a path bracket.
    /// @param points  @p count of them or more
    /// @param isFromCurrent  adds a line from the current position to the first point and moves
    ///                       the position to the last one, if there are points
    bool DrawPolyLine(std::span<const POINTL> points, quint32 count, bool isPolygon,
                      bool isFromCurrent, const StyleText &style);
    /// Writes or collects Bézier curves: a first point and three for each curve, or with
    /// @p isFromCurrent three for each, from the current position and moving it to the end.
    /// Points beyond the last whole curve are ignored.
    bool DrawPolyBeziers(std::span<const POINTL> points, bool isFromCurrent);
    /// Writes or collects a figure of moves, lines and Bézier curves and moves the current
    /// position to its end.
    /// @param types  a byte for each point ([MS-EMF] 2.1.26)
    /// @return false, and nothing is drawn, when a type is unknown or a curve is incomplete
    bool DrawMixedPoly(std::span<const POINTL> points, ByteView types);

    /// Defines a clipping path of rectangles and clips every later shape by it.
    bool SetExtClipRgn(std::span<const RECTL> rects);
    /// Defines a clipping path of the path text collected, empties it, and clips by it.
    bool SetClipPath();
    /// Ends clipping.
    bool ResetClip();
    /// Fills rectangles with a brush; a stock brush or none writes no fill.
    bool FillRgn(std::span<const RECTL> rects, quint32 brushIndex);
    /// Draws the outline of a region with a brush.
    /// @param frameWidth, frameHeight  of the frame's edges; the larger is the stroke's width
    bool FrameRgn(std::span<const RECTL> rects, quint32 brushIndex, qint32 frameWidth,
                  qint32 frameHeight);

    /// @p text with "&", "<" and ">" replaced by entities.
    static QString ConvertToValidXML(const QString &text);
    /// Sets the alignment of texts to their reference points ([MS-WMF] 2.1.2.3).
    bool SetTextAlign(quint32 mode);
    /// Measures @p text in the current font.
    TextDimensions GetTextDimensions(const QString &text) const;
    /// The left end of the baseline of a text whose reference point is @p point, or the current
    /// position where the alignment says so, which then moves behind the text.
    POINTL GetPointOfReference(const POINTL &point, const TextDimensions &extent);
    /// The cell of a text, as it lies before it is rotated.
    RECTL CalculateRect(const POINTL &baseline, const TextDimensions &extent) const;
    /// Writes a text over its background, unless that is transparent.
    /// @param x, y  the left end of the baseline
    bool TextOut(const QString &text, qint32 x, qint32 y, const RECTL &background);
    /// Writes a text in the given style, or in the text fallback style when that is empty.
    bool SmallTextOut(const QString &text, qint32 x, qint32 y, const QString &style);
    /// Leaves the style and the size out of the texts that follow.
    bool SetTextStyleSuppression(bool suppresses);

    /// Decodes a bitmap, within the allowance that all bitmaps of the document share.
    std::optional<DecodedBitmap> decode(const DibBytes &dib);
    /// Draws a bitmap: cuts its source out, mirrors it, and calls the next two.
    RecordResult DrawBitmap(BitmapTransfer transfer);
    /// Turns the pixels into what a raster operation leaves to be seen, with the current brush as
    /// pattern. A hatched brush counts as white.
    RecordResult OnRasterOperation(Bitmap &bitmap, RasterOperation operation) const;
    /// Writes the bitmap into the rectangle as an "image" element with a base64 "data:" URL.
    bool WriteBlt(const DecodedBitmap &bitmap, const RECTL &box);
    /// Fills a rectangle as an operation without a source does, with the current brush as pattern.
    /// @param corners  of the rectangle, in any order
    RecordResult PatBlt(const RECTL &corners, RasterOperation operation);

    /// The object operations forward to the style manager. CreateBrushI also writes the pattern
    /// definitions that the creation made.
    bool CreatePen(quint32 index, quint32 style, qint32 width, quint32 colour,
                   std::span<const quint32> entries = {});
    bool CreateBrushI(quint32 index, const LOGBRUSH &brush);
    bool CreateFont(quint32 index, const LOGFONTW &font);
    bool MetaCreateFont(quint32 index, const FONTSPEC &font, ByteView faceName);
    bool SelectObject(quint32 index);
    bool DeleteObject(quint32 index);
    bool SetBkgColor(quint32 colour);
    bool SetTextColor(quint32 colour);
    /// Sets the background mode: 1 transparent, 2 opaque.
    bool SetBkMode(qint32 mode);

    /// The style text for shapes.
    const StyleText &currentStyle() const { return m_styles.shapeStyle(); }
    const CStyleManager &styles() const { return m_styles; }

private:
    static constexpr char kQ[] = "\" "; ///< closes an attribute value

    /// Writes @p pieces, as DocumentText takes them, one after the other, then a line feed.
    template<class... Piece>
    void writeLine(const Piece &...pieces)
    {
        m_document.append(pieces..., '\n');
    }
    void addLine(POINTL from, POINTL to, const StyleText &style);
    void writeOrCollect(std::string_view pathData);
    void writeElement(const DecodedBitmap &bitmap, const RECTL &box, const QString &clip);
    RecordResult drawFile(const BitmapTransfer &transfer, const BitmapPlacement &place);
    RecordResult drawOperation(Bitmap bitmap, const RECTL &box, RasterOperation operation);
    RecordResult applyMask(Bitmap &bitmap, const BitmapTransfer &transfer,
                           const BitmapPlacement &place) const;
    void writePixels(Bitmap bitmap, const RECTL &box);
    void noteTransfer(const RECTL &box, qint64 start, RasterOperation operation, Bitmap bitmap);
    std::optional<Bitmap> mergeTransfers(const RECTL &box, RasterOperation operation,
                                         const Bitmap &bitmap);
    void fillBox(const RECTL &box, const QString &paint);
    void drawRects(std::span<const RECTL> rects, const StyleText &style);
    void useClip();
    template<class... Piece>
    void writeText(const QString &text, qint32 x, qint32 y, const Piece &...attributes);
    const StyleText &chosenStyle(const StyleText &style) const
    {
        return style.isEmpty() ? m_fallbackStyle : style;
    }
    std::string_view styleOrFallback(const StyleText &style) const
    {
        return chosenStyle(style).view();
    }

    StyleText m_fallbackStyle;
    DocumentText m_document;
    POINTL m_current{}; ///< current position
    POINTL m_figureStart{};
    DocumentText m_path; ///< path data collected
    DocumentText m_figure; ///< path data of one figure while it is made; kept for its room
    bool m_isInPath = false;
    bool m_isInTransform = false; ///< a transform's group is open
    bool m_clipActive = false;
    qint32 m_clipCounter = 1;
    qint32 m_backgroundMode = -1;
    quint32 m_textAlign = 0;
    bool m_suppressesTextStyle = false;
    QString m_textFallbackStyle;
    /// A mask, or an XOR before it, that the next transfer to the same place may make whole.
    struct OpenTransfer
    {
        RECTL box;
        qint64 start; ///< where the document was before it
        qint64 end;
        RasterOperation operation;
        Bitmap bitmap;
        QString clip; ///< its clip reference; one under another clip is another picture
    };
    std::vector<OpenTransfer> m_openTransfers;
    int64_t m_runLengthPixels = kRunLengthPixels;
    PngEncoder m_pngEncoder;
    CStyleManager m_styles;
};

} // namespace svgtool
