#pragma once

#include "core/raster/Mixture.h"
#include "picture/gdi/Blit.h"
#include "picture/gdi/Device.h"
#include "picture/gdi/LetterOutlines.h"
#include "picture/gdi/Played.h"
#include "picture/gdi/State.h"
#include "picture/gdi/TextLayout.h"
#include "picture/scene/Grounds.h"
#include "picture/scene/SceneBuilder.h"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <queue>
#include <span>
#include <tuple>
#include <vector>

namespace svgtool::picture {

/// A device context of GDI that paints into a scene: one function a call.
///
/// Coordinates are logical, as the calls have them. Boxes are those of records: right and bottom
/// lie on the outline. What a call refuses leaves the state as it was.
/// @note One context belongs to one play on one thread. Memory that runs out is std::bad_alloc.
class DeviceContext
{
public:
    /// @param handles  slots of the object table; number 0 is none
    /// @param builder  of the scene, which others may paint in as well; outlives the context
    /// @param clip     of the scene, which all is cut to
    DeviceContext(const Device &device, size_t handles, SceneBuilder &builder, Index clip = kNone);

    /// The number of the record that is played, for the nodes that come of it.
    void setRecord(uint32_t number)
    {
        m_record = number;
        m_shortfall = kDone;
    }
    /// What the bitmaps of the record lack, beside what became of the call.
    const Played &shortfall() const { return m_shortfall; }
    /// Whether what the last record mixed inexactly may be taken back by one that comes yet.
    bool isProvisional(const Played &played) const;
    /// Whether anything is left of what record @p number mixed inexactly.
    bool isInexact(uint32_t number) const { return m_inexact.contains(number); }
    const Device &device() const { return m_device; }
    SceneBuilder &builder() { return m_builder; }
    Index outerClip() const { return m_outerClip; }
    /// Whether what is drawn is seen, or the state alone changes.
    void setPainting(bool isOn) { m_isPainting = isOn; }
    /// From now on letters are drawn by their outlines, as far as there are any.
    void drawOutlines() { m_drawsOutlines = true; }
    /// The character set of texts whose fonts leave it to the system.
    /// @param find  tells it, once, when it is first asked for
    void setSystemCharSet(std::function<uint8_t()> find) { m_findCharSet = std::move(find); }
    uint8_t systemCharSet();

    // State.
    Played saveState();
    /// @param which  a level counted from 1, or, negative, that many states back
    Played restoreState(int32_t which);
    Played setMapMode(uint32_t mode);
    Played setWindowOrigin(PointL origin);
    Played setWindowExtent(PointL extent);
    Played setViewportOrigin(PointL origin);
    Played setViewportExtent(PointL extent);
    Played scaleWindowExtent(PointL numerator, PointL denominator);
    Played scaleViewportExtent(PointL numerator, PointL denominator);
    Played setWorldTransform(const Affine &matrix);
    /// @param mode  1 identity, 2 matrix before, 3 after, 4 in place of the one in force
    Played modifyWorldTransform(const Affine &matrix, uint32_t mode);
    /// @param layout  LayoutMode, [MS-EMF] 2.1: kRightToLeft mirrors the picture's width
    Played setLayout(uint32_t layout);
    Played setBackgroundMode(uint32_t mode);
    Played setBackgroundColor(Color color);
    Played setTextColor(Color color);
    Played setTextAlign(uint32_t align);
    Played setPolygonFillMode(uint32_t mode);
    Played setRop2(uint32_t mode);
    Played setMiterLimit(double limit);
    Played setArcDirection(uint32_t direction);
    Played setBrushOrigin(PointL origin);
    Played setCharacterExtra(int32_t extra);
    /// @param extra  logical units to share among so many blanks
    Played setTextJustification(int32_t extra, int32_t count);
    Played setStretchMode(uint32_t mode);
    const State &state() const { return m_state; }

    // Objects.
    Played createObject(uint32_t handle, GdiObject object);
    /// In the lowest slot that is free; the table grows, up to the 16 bits that a WMF has.
    Played createInFreeSlot(GdiObject object);
    /// A region of the table; null if there is none.
    std::shared_ptr<const Region> region(uint32_t handle) const;
    /// To be asked before a region of the table is drawn, as often as it is.
    /// @return false if the regions drawn so far have taken up what a document has for them
    bool spendRegion(const Region &region);
    /// Adds to that what drawing a new region once takes.
    void grantRegion(const Region &region);
    /// @param handle  of the table, or 0x80000000 and the number of a stock object
    Played selectObject(uint32_t handle);
    Played deleteObject(uint32_t handle);
    Played selectPalette(uint32_t handle);
    /// In place of a handle in the two that follow.
    static constexpr uint32_t kSelectedPalette = 0xFFFFFFFF;
    Played setPaletteEntries(uint32_t handle, uint32_t first, const Palette &entries);
    Played resizePalette(uint32_t handle, uint32_t size);
    /// The colour of a COLORREF ([MS-WMF] 2.2.2.8), which may be one of the selected palette.
    Color colorOfReference(uint32_t reference) const;

    // Figures.
    Played moveTo(PointD point);
    Played lineTo(PointD point);
    Played polyline(std::span<const PointD> points);
    Played polylineTo(std::span<const PointD> points);
    Played polyBezier(std::span<const PointD> points);
    Played polyBezierTo(std::span<const PointD> points);
    Played polyDraw(std::span<const PointD> points, std::span<const uint8_t> types);
    Played polygon(std::span<const PointD> points);
    Played polyPolyline(std::span<const PointD> points, std::span<const uint32_t> counts);
    Played polyPolygon(std::span<const PointD> points, std::span<const uint32_t> counts);
    Played rectangle(const RectD &box);
    Played roundRectangle(const RectD &box, PointD corner);
    Played ellipse(const RectD &box);
    Played arc(const RectD &box, PointD start, PointD end);
    Played arcTo(const RectD &box, PointD start, PointD end);
    Played chord(const RectD &box, PointD start, PointD end);
    Played pie(const RectD &box, PointD start, PointD end);
    Played angleArc(PointD center, double radius, double startDegrees, double sweepDegrees);
    Played setPixel(PointD point, Color color);

    // Paths.
    Played beginPath();
    Played endPath();
    Played closeFigure();
    Played abortPath();
    Played fillPath();
    Played strokePath();
    Played strokeAndFillPath();
    Played flattenPath();
    Played widenPath();

    // Clips and regions.
    Played selectClipPath(uint32_t mode);
    Played selectClipRegion(Region region, uint32_t mode);
    /// @param region  of device units
    Played replaceClip(std::shared_ptr<const Region> region);
    Played resetClip();
    Played intersectClip(const RectD &box);
    Played excludeClip(const RectD &box);
    Played offsetClip(PointD offset);
    Played setMetaRegion();
    Played fillRegion(std::span<const RectI> rects, uint32_t brush);
    Played frameRegion(std::span<const RectI> rects, uint32_t brush, PointD edge);
    Played paintRegion(std::span<const RectI> rects);
    Played invertRegion(std::span<const RectI> rects);

    /// FloodFill and ExtFloodFill.
    /// @param mode  0 fills up to the colour, 1 what is of the colour
    Played floodFill(PointD from, Color color, uint32_t mode);

    // Bitmaps. Bits and headers are untrusted; what cannot be decoded is not done.
    // The two that follow count the lines from the bottom one, whichever comes first in the bits.
    Played stretchDibits(const BlitBox &to, const BlitBox &from, const DibBytes &dib,
                         uint32_t operation);
    /// @param firstLine, lines  of the whole bitmap, which the bits are
    Played setDibitsToDevice(PointL to, const BlitBox &from, const DibBytes &dib,
                             uint32_t firstLine, uint32_t lines);
    /// BitBlt, StretchBlt and PatBlt.
    /// @param source  null where the operation does not use it
    Played stretchBlt(const BlitBox &to, const BlitSource *source, uint32_t operation);
    /// @param mask        null where all of it is painted
    /// @param operations  bits 16 to 23 for pixels whose mask is 1, 24 to 31 for the others
    Played maskBlt(const BlitBox &to, const BlitSource *source, const BlitMask *mask,
                   uint32_t operations);
    /// @param corners  of the upper left, upper right and lower left pixel of the source
    Played plgBlt(std::span<const PointL, 3> corners, const BlitSource &source,
                  const BlitMask *mask);
    /// @param key  is left out
    Played transparentBlt(const BlitBox &to, const BlitSource &source, Color key);
    /// @param constant  alpha of the whole, 255 for an opaque one
    /// @param hasAlpha  pixels of 32 bits have one of their own, multiplied in
    Played alphaBlend(const BlitBox &to, const BlitSource &source, uint8_t constant, bool hasAlpha);
    /// @param indices  of vertices: two opposite corners of each rectangle, or three of a triangle
    /// @param mode     0 rectangles whose colour changes along x, 1 along y, 2 triangles
    Played gradientFill(std::span<const GradientVertex> vertices, std::span<const uint32_t> indices,
                        uint32_t mode);
    /// A brush of a bitmap's pixels; nothing where that makes no sense.
    /// @param isMono  of the colours of text and background when it is used
    std::optional<Brush> patternBrush(const BlitSource &source, bool isMono);

    // Text.
    Played textOut(const TextCall &call);
    /// Paints letters that have their places already, which the state has no say in.
    /// @param named    says how the letters are named and what lines they have
    /// @param axes     from where the letters lie, along the baseline and down, to the picture
    /// @param clip     of the scene
    /// @param options  of TextOption: glyphs, right to left
    Played paintLetters(std::vector<PlacedCharacter> characters, const Font &named,
                        const RealizedFont &font, const Affine &axes, Color color, Index clip,
                        uint32_t options);

private:
    // The mapping.
    void updateMapping();
    bool extentsCount() const;
    Played setExtent(PointL State::*which, PointL extent);
    Played scaleExtent(PointL State::*which, PointL numerator, PointL denominator);
    void keepIsotropic();
    RectD deviceView() const;
    PointD device(PointD point) const { return m_state.toDevice.map(point); }
    Affine toPicture() const { return m_state.toDevice.then(m_device.toPicture); }

    // Figures: DeviceContext_Figures.cpp, DeviceContext_Boxes.cpp.
    enum Parts : uint8_t {
        kFill = 1,
        kStroke = 2,
        kFramed = 4, ///< a pen inside the frame has shrunk the figure
    };
    /// Where a figure is put, in device units: the path of an open bracket, or one to paint.
    Path &beginFigure();
    /// The same, going on from the current position.
    Path &goOn();
    Played endFigure(uint8_t parts);
    void addLines(Path &path, std::span<const PointD> points) const;
    Played drawLines(std::span<const PointD> points, std::span<const uint32_t> counts,
                     bool isClosed);
    struct Sweep
    {
        double start, sweep;
    };
    Affine circleOf(const RectD &box) const;
    Sweep sweepOf(const RectD &box, PointD start, PointD end) const;
    Played drawArc(const RectD &box, PointD start, PointD end, bool toCenter, bool isClosed);
    Played drawEllipse(const RectD &box, uint8_t parts);
    RectD framed(const RectD &box) const;
    /// @return nothing, and nothing is done, where the box does not stay one
    std::optional<Played> paintBox(const RectD &box, PointD radii, uint8_t parts);

    // Painting: DeviceContext_Paint.cpp.
    bool isSeen() const;
    bool isHidden() const { return !m_isPainting || m_state.visible->isEmpty; }
    Node newNode();
    Index fillPaint();
    Paint brushPaint(const Brush &brush);
    Paint patternPaint(const Brush &brush);
    /// In the scene; kNone where there are too many pixels in the brushes of all colours.
    Index brushImage(const Brush &brush);
    /// The pixels of a brush, which it repeats; null for one of a colour.
    Bitmap brushTile(const Brush &brush) const;
    /// How many pixels of the picture a box has; nothing where it has none, or too many.
    std::optional<IntSize> pixelSize(const RectD &box) const;
    /// @return whether so many pixels are left for mixing
    bool spendPixels(IntSize size);
    /// The pixels of the brush in a place, as many as the picture has there; null as above.
    bool takeBrushPixels(const BlitPlace &place, Bitmap &pixels);
    Paint unshaped(Paint paint, const Affine &shape);
    /// @param path  in device units
    Played paint(const Path &path, uint8_t parts, bool isEvenOdd);
    void fillBox(const RectD &box, Color color);

    // Pens: DeviceContext_Pens.cpp.
    /// The end of a pen as it meets the picture.
    struct Nib
    {
        double width = 1; ///< in units of the picture, before the shape
        bool isThin = true; ///< of about one pixel
        Affine shape; ///< makes an ellipse of the round end where axes are scaled unequally
        PointD offset; ///< of its middle from the place of a point
    };
    bool hasPen() const { return m_state.pen.line != Pen::Line::Null; }
    Nib nib(uint8_t parts) const;
    Index penStroke(const Nib &nib, bool isClosed);
    /// A pen as it was used last.
    struct UsedPen
    {
        uint64_t look = 0; ///< of the state
        bool isFramed = false, isClosed = false;
        Nib nib;
        Index stroke = kNone;
    };
    /// The pen of the state.
    const UsedPen &usePen(uint8_t parts, bool isClosed);
    /// To be called where anything that usePen() goes by has changed.
    void changePenLook() { m_state.penLook = ++m_penLooks; }

    // Paths: DeviceContext_Paths.cpp.
    /// The path of the last bracket, which is gone then; null without one.
    std::shared_ptr<GdiPath> takePath();
    Played paintPath(uint8_t parts);
    bool spendPoints(size_t points);

    // Mixing with what lies beneath: DeviceContext_Mixing.cpp.
    struct BlendStep
    {
        Blend blend;
        Argb color;
    };
    /// Adds a node to the scene with its geometry.
    using AddNode = std::function<void(const Node &node)>;
    /// Adds a node as an operation of its paints and the ground leaves it, in parts if need be.
    Played addMixed(const Node &node, const AddNode &add, RasterOperation operation);
    /// By the operation of the pens and brushes.
    Played addMixed(const Node &node, const AddNode &add)
    {
        return addMixed(node, add, operationOfRop2(m_state.rop2));
    }
    /// @return whether it is exact
    bool addBlended(const Node &node, const AddNode &add, RasterOperation operation);
    static std::vector<BlendStep> blendsOf(PixelMixture mixture);
    std::optional<Paint> mixedHatch(const Paint &paint, RasterOperation operation,
                                    const Paint &ground);
    std::optional<Paint> mixedTile(const Paint &paint, RasterOperation operation,
                                   const Paint &ground, const RectD &area);
    std::optional<Paint> mixedPaint(const Paint &paint, RasterOperation operation,
                                    const Paint &ground, const RectD &area);
    bool mixPaints(Node &node, RasterOperation operation, const Paint &ground, const RectD &area);
    Index groundClip(Index clip, const Ground &ground);
    void takeBack(const SceneBuilder::Mark &mark);
    Played paintMixture(Mixture mixture, const BlitPlace &place);
    Played addMixture(Mixture mixture, const BlitPlace &place);
    bool spendOnGrounds(Mixture &mixture, const BlitPlace &place, std::span<const Ground> grounds);
    void addBlendedPixels(const Mixture &mixture, const Mixture::Kind &kind,
                          const BlitPlace &place);

    // What mixing twice takes back: DeviceContext_Inversions.cpp.
    struct Inverted
    {
        Node node; ///< as it was to be mixed
        RasterOperation operation;
        size_t first, end; ///< nodes of the scene that have come of it
        bool isExact;
    };
    static bool isOwnInverse(RasterOperation operation);
    std::optional<size_t> sameInversion(const Node &node, RasterOperation operation) const;
    void noteInversion(const Node &node, RasterOperation operation, size_t first, bool isExact);
    void forgetInversions(size_t first, size_t end);
    std::optional<std::vector<size_t>> shapesOver(const Inverted &before, const RectD &area);
    bool isMaskOf(size_t number, const RectD &area);
    std::optional<Paint> stippled(const Paint &paint, const Paint &mask);
    bool stippleInversion(size_t number, const RectD &area);
    bool takeInversionBack(size_t number, const AddNode &add, const RectD &area);

    // Bitmaps.
    std::optional<DecodedBitmap> decode(const DibBytes &dib);
    std::optional<DecodedBitmap> decode(const BlitSource &source);
    std::optional<BlitPlace> place(const BlitBox &to, const RectD &from, IntSize size) const;
    Played blit(const BlitBox &to, const RectD &from, DecodedBitmap bitmap,
                RasterOperation operation);
    Played paintPixels(Bitmap pixels, const BlitPlace &place, double opacity);
    Played paintFile(const DecodedBitmap &bitmap, const BlitPlace &place);
    Argb patternColour() const;
    Played fillBlit(const BlitBox &to, RasterOperation operation);

    // Gradients: DeviceContext_Gradients.cpp.
    using Triangle3 = std::array<const GradientVertex *, 3>;
    Paint gradientPaint(PointD from, PointD to, Color first, Color last);
    void fillGradientRect(const GradientVertex &first, const GradientVertex &second,
                          bool isUpright);
    Played fillTriangles(std::span<const Triangle3> triangles);
    Played fillTriangleImage(std::span<const Triangle3> triangles);

    // Regions.
    Played paintRects(std::span<const RectI> rects, const Brush &brush, RasterOperation operation);

    // Clips.
    struct ClipPath
    {
        Index before; ///< of those that it is cut to; kNone for none
        Path path; ///< in device units
        bool isEvenOdd;
        bool leavesNothing; ///< of the picture, with those before
        Index inScene;
    };
    /// @param region  null is the whole picture
    std::optional<Region> combined(const Region *region, const Region &with, Region::Mode mode);
    Played changeClip(ClipState clip);
    Played intersectPath(Path path, bool isEvenOdd);
    Played combinePath(const Path &path, bool isEvenOdd, Region::Mode mode);
    std::optional<Region> regionOf(const ClipState &clip);
    std::optional<Region> regionOf(const Path &path, bool isEvenOdd);
    bool addPath(Index &paths, Path path, bool isEvenOdd);
    bool isCutOff(const RectD &ink) const;
    Index visibleClip();
    RectI wholePicture() const;

    // Text. Axes are from where letters lie, along the baseline and down, to the picture.
    using Placed = std::span<const PlacedCharacter>;
    const std::optional<RealizedFont> &realizedFont(bool isAdvanced);
    void moveBehind(double width, const RealizedFont &font, const Affine &axes);
    Affine textAxes(const TextCall &call, const RealizedFont &font, double width) const;
    Index textClip(const TextCall &call, const RectD &ink, const Affine &axes);
    void fillTextBox(const TextCall &call, const RectD &box, const Affine &axes, Color color);
    /// Where the letters have too many points, the first ones are in.
    Played addToPath(Placed characters, const RealizedFont &font, const Affine &axes);
    /// In the way that is asked for.
    Played drawLetters(Placed characters, const TextCall &call, const RealizedFont &font,
                       const Affine &axes, Index clip);
    void drawText(Placed characters, const TextCall &call, const RealizedFont &font,
                  const Affine &axes, Index clip);
    std::optional<std::vector<Index>> glyphsOf(const LetterOutlines &outlines);
    /// @return false, and nothing is drawn, where the letters have too many points
    bool drawGlyphs(Placed characters, const LetterOutlines &outlines, const RealizedFont &font,
                    const Affine &axes, Index clip);
    /// Whether lines under and through letters are told with them, for the letters are a viewer's
    /// to place.
    bool leavesLines(Placed characters) const;
    /// @param left  of the baseline's beginning
    void drawLines(const TextCall &call, PointD left, double width, const RealizedFont &font,
                   const Affine &axes);

    const GdiObject *object(uint32_t handle) const;
    Palette *palette(uint32_t handle);
    /// The one in force.
    const Palette &palette() const;

    Device m_device;
    SceneBuilder &m_builder;
    Allowances &m_left; ///< of the document
    Index m_outerClip; ///< in the scene
    bool m_isPainting = true;
    State m_state;
    std::vector<State> m_saved;
    uint64_t m_unsaved = 0; ///< states on top of those, for which there was no room
    std::vector<GdiObject> m_objects;
    /// Slots whose object was deleted, the lowest on top: where an object goes that names none.
    std::priority_queue<uint32_t, std::vector<uint32_t>, std::greater<>> m_freed;
    uint32_t m_record = 0;
    bool m_drawsOutlines = false;
    std::function<uint8_t()> m_findCharSet;
    std::optional<uint8_t> m_systemCharSet; ///< once it was asked for
    std::vector<ClipPath> m_clipPaths;
    Played m_shortfall; ///< of the record
    /// Brushes of bitmaps by what they show: theirs, and the colours where those are not.
    using ShownBrush = std::tuple<std::shared_ptr<const DecodedBitmap>, Argb, Argb>;
    using BrushImages = std::map<ShownBrush, Index>;
    BrushImages m_brushImages; ///< in the scene
    std::multimap<Index, BrushImages::iterator> m_brushesByImage; ///< the same, to take them back
    Grounds m_grounds;

    /// The last transfer that was mixed, for the next one may go on from it.
    struct Transferred
    {
        std::optional<Mixture> mixture;
        BlitPlace place;
        Index clip = kNone;
        SceneBuilder::Mark mark; ///< before it
        size_t end = 0; ///< nodes there were behind it

        bool isSame(const BlitPlace &other, Index otherClip) const;
    };
    Transferred m_transferred;
    std::vector<Inverted> m_inverted; ///< in the order of their nodes
    std::map<uint32_t, size_t> m_inexact; ///< by record: its inexact figures, not taken back

    /// A font with all that its letters depend on.
    struct Realized
    {
        std::shared_ptr<const Font> font;
        Affine toDevice, world;
        bool isAdvanced = false;
        std::optional<RealizedFont> realized;
    };
    Realized m_realized;
    FontStyle m_textStyle; ///< the one at hand, kept for its memory

    UsedPen m_usedPen;
    uint64_t m_penLooks = 0;

    Path m_figure; ///< the one at hand, kept for its memory
    bool m_isInPath = false;
    Path m_path; ///< of the open bracket, in device units
};

} // namespace svgtool::picture
