#pragma once

#include "core/geometry/Areas.h"
#include "core/records/EmfPlusObjects.h"
#include "picture/gdi/Device.h"
#include "picture/gdi/Played.h"
#include "picture/gdiplus/GraphicsState.h"
#include "picture/scene/SceneBuilder.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace svgtool::picture {

/// What GDI+ paints on, as a part of a scene: one function a call.
///
/// Coordinates are world units, angles degrees from the x axis towards y. Boxes have their right
/// and bottom edge where they are seen. Objects are those of core/records; an image is kept as long
/// as there is a use of it. What a call refuses leaves the state as it was.
/// @note One belongs to one play on one thread. Memory that runs out is std::bad_alloc.
class Graphics
{
public:
    using Image = std::shared_ptr<const plus::Image>;
    using Points = std::span<const PointD>;

    /// @param builder  of the scene, which others may paint as well; lives longer
    /// @param clip     of the scene, which all is cut to
    Graphics(const Device &device, SceneBuilder &builder, Index clip = kNone);

    /// The number of the record that is played, for the nodes that come of it.
    void setRecord(uint32_t number) { m_record = number; }
    /// Lets objects of so many more bytes be used; bounds hold for what is used again and again.
    void grant(size_t bytes);
    /// @param dots  an inch has of device units, for units that are lengths; above 0
    void setResolution(PointD dots);

    // State: Graphics_State.cpp. Numbers of saved states are the file's own.
    Played save(uint32_t number);
    /// Gives up the states saved after it, too.
    Played restore(uint32_t number);
    /// @param from  in @p unit, falls on @p to, in world units; kept inside is what is clipped now
    Played beginContainer(const RectD &to, const RectD &from, plus::Unit unit, uint32_t number);
    Played beginContainer(uint32_t number);
    Played endContainer(uint32_t number) { return restore(number); }
    /// Whether a matrix comes before the one in force, or after it.
    enum class Order : uint8_t { Prepend, Append };
    Played setWorldTransform(const Affine &matrix);
    Played resetWorldTransform() { return setWorldTransform(Affine()); }
    Played multiplyWorldTransform(const Affine &matrix, Order order);
    Played translateWorldTransform(PointD by, Order order);
    Played scaleWorldTransform(PointD by, Order order);
    Played rotateWorldTransform(double degrees, Order order);
    Played setPageTransform(plus::Unit unit, double scale);
    Played setRenderingOrigin(PointD origin);
    /// @param mode  CompositingMode, [MS-EMFPLUS] 2.1.1.5
    Played setCompositingMode(uint8_t mode);
    Played setInterpolationMode(uint8_t mode);
    Played setPixelOffsetMode(uint8_t mode);
    Played setTextRenderingHint(uint8_t hint);
    const GraphicsState &state() const { return m_state; }
    /// A length in a unit, as the page has it, in world units of the page alone.
    double lengthInWorld(double length, plus::Unit unit) const;
    /// World units to those of the picture.
    const Affine &toPicture() const { return m_state.toPicture; }

    // Clips: Graphics_Clips.cpp.
    Played resetClip();
    Played setClipRectangle(const RectD &box, plus::CombineMode mode);
    Played setClipPath(const plus::PathObject &path, plus::CombineMode mode);
    Played setClipRegion(const plus::Region &region, plus::CombineMode mode);
    Played offsetClip(PointD by);
    /// The clip in force, in the scene.
    Index clip() const;
    /// The same, cut to an area in units of the picture.
    Index clipTo(const Area &area);
    /// Nothing that is painted can be seen.
    bool isClippedAway() const;

    // Figures: Graphics_Figures.cpp.
    Played clear(plus::Argb color);
    Played fillRectangles(const plus::Brush &brush, std::span<const RectD> boxes);
    Played fillPolygon(const plus::Brush &brush, Points points);
    Played fillEllipse(const plus::Brush &brush, const RectD &box);
    Played fillPie(const plus::Brush &brush, const RectD &box, double start, double sweep);
    Played fillClosedCurve(const plus::Brush &brush, Points points, double tension, bool isWinding);
    Played fillPath(const plus::Brush &brush, const plus::PathObject &path);
    Played fillRegion(const plus::Brush &brush, const plus::Region &region);
    Played drawRectangles(const plus::Pen &pen, std::span<const RectD> boxes);
    Played drawLines(const plus::Pen &pen, Points points, bool isClosed);
    Played drawEllipse(const plus::Pen &pen, const RectD &box);
    Played drawPie(const plus::Pen &pen, const RectD &box, double start, double sweep);
    Played drawArc(const plus::Pen &pen, const RectD &box, double start, double sweep);
    Played drawClosedCurve(const plus::Pen &pen, Points points, double tension);
    /// @param first, segments  the part of the curve that is drawn
    Played drawCurve(const plus::Pen &pen, Points points, double tension, size_t first,
                     size_t segments);
    /// @param points  a start, and three for each curve
    Played drawBeziers(const plus::Pen &pen, Points points);
    Played drawPath(const plus::Pen &pen, const plus::PathObject &path);

    // Images: Graphics_Images.cpp. Those that are metafiles are not done here.
    /// @param attributes  null for none
    /// @param source      pixels of the image
    Played drawImage(const Image &image, const plus::ImageAttributes *attributes,
                     const RectD &source, const RectD &to);
    /// @param corners  of the upper left, upper right and lower left corner of the source
    Played drawImagePoints(const Image &image, const plus::ImageAttributes *attributes,
                           const RectD &source, std::span<const PointD, 3> corners);

    // For what is drawn elsewhere: text, and the metafiles that images are.
    /// A node with clip and record, that others fill.
    Node newNode() const;

private:
    // A figure to be painted: what of it is known in simple terms is kept.
    struct Figure
    {
        enum class Kind : uint8_t { Path, Box, Ellipse };

        Kind kind = Kind::Path;
        RectD box; ///< of Box and Ellipse
        Path path; ///< of Path
        bool isEvenOdd = true;
    };

    static Figure boxFigure(const RectD &box);
    static Figure ellipseFigure(const RectD &box);
    static Figure pathFigure(Path path, bool isEvenOdd);
    static Path pathOf(const Figure &figure);
    /// Takes work from what is left: objects that are used again and again.
    bool spend(size_t points) { return picture::spend(m_left.pointsUsedAgain, points); }

    // State.
    void updateTransform();
    PointD pixelsOf(plus::Unit unit) const;
    void enterContainer(const Affine &toOuter);

    // Clips.
    struct ClipPart
    {
        Index before; ///< of those that it is cut to; kNone for none
        Area area; ///< in units of the picture
        bool leavesNothing; ///< of the picture, with those before
        Index inScene;
    };
    Played combineClip(Area area, plus::CombineMode mode);
    Index addClip(Index before, Area area);
    std::optional<Area> clipArea(Index clip);
    std::optional<Area> areaOf(const plus::Region &region);
    Area everything() const;
    Index clipTo(const Figure &figure);

    // Painting: Graphics_Paint.cpp.
    struct KnownImage
    {
        Index number = kNone; ///< in the scene; kNone for what cannot be read
        IntSize size;
    };
    Played fill(const plus::Brush &brush, const Figure &figure);
    Played fillOnce(const plus::TextureBrush &brush, const Figure &figure);
    void addFigure(Node node, const Figure &figure);
    bool hasStops(const plus::Brush &brush);
    /// @param figure  in world units, where it is known what is painted
    Paint paintOf(const plus::Brush &brush, const Affine &toNode, const Path *figure);
    Paint hatchPaint(const plus::HatchBrush &brush);
    Paint linearPaint(const plus::LinearGradientBrush &brush, const Affine &toNode,
                      const Path *figure);
    std::optional<Paint> patternPaint(const KnownImage &image, plus::WrapMode wrapMode,
                                      const Affine &place);

    // Gradients of paths: Graphics_PathGradients.cpp.
    std::optional<Paint> radialPaint(const plus::PathGradientBrush &brush, const Affine &toNode);
    Played fillPathGradient(const plus::PathGradientBrush &brush, const Figure &figure);
    Played fillFlat(const plus::PathGradientBrush &brush, const Figure &figure);
    bool fillTile(const plus::PathGradientBrush &brush, const Affine &place, Index clip);

    // Pens: Graphics_Pens.cpp, Graphics_PenParts.cpp.
    /// The end of a pen as it meets the picture.
    struct Tip
    {
        double width = 1; ///< in units of the picture, before the shape
        Affine shape; ///< makes an ellipse of the round end
        bool isThin = false; ///< of about one pixel
    };
    class StrokeParts;
    Played stroke(const plus::Pen &pen, const Figure &figure);
    Tip tipOf(const plus::Pen &pen) const;
    Stroke strokeOf(const plus::Pen &pen, const Tip &tip, const Path *figure);
    Played strokeParts(const plus::Pen &pen, const Tip &tip, const Figure &figure,
                       const Path &inWorld, bool isMesh);
    /// @return false where there were too many stripes
    bool addBody(Node node, const plus::Pen &pen, const Path &body, const Stroke &whole);
    Played fillStroke(const plus::PathGradientBrush &brush, const StrokeParts &parts,
                      const Stroke &stroke, const Tip &tip);

    // Images.
    std::optional<KnownImage> imageOf(const Image &image);
    bool keepsPixels() const;
    PointD sampleOffset(const Affine &place) const;
    void fillAround(const KnownImage &image, const plus::ImageAttributes &attributes,
                    const Affine &place, const RectD &source);
    std::optional<Index> cutTo(const RectD &part, const Affine &place);

    Device m_device;
    SceneBuilder &m_builder;
    Allowances &m_left; ///< of the document
    Index m_outerClip; ///< in the scene
    PointD m_dots{ 96, 96 };
    GraphicsState m_state;
    std::vector<std::pair<uint32_t, GraphicsState>> m_saved;
    std::vector<ClipPart> m_clips;
    std::map<Image, KnownImage> m_images; ///< kept, so that no other takes the place of one
    uint32_t m_record = 0;
};

} // namespace svgtool::picture
