#pragma once

#include "core/geometry/Outline.h"
#include "core/raster/Bitmap.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace svgtool::picture {

// What a picture is made of: a flat list of nodes in the order of painting, and the resources that
// they name by index. Plain data, which knows neither where it came from nor what is written of it.
// Lengths are in the units of Scene::view, y grows downwards.

using Index = uint32_t;
inline constexpr Index kNone = 0xFFFFFFFF;

struct Color
{
    uint8_t red = 0, green = 0, blue = 0;
    uint8_t alpha = 255;

    bool operator==(const Color &) const = default;
};

constexpr Color colorOf(Argb pixel)
{
    return { redOf(pixel), greenOf(pixel), blueOf(pixel), alphaOf(pixel) };
}

constexpr Argb argbOf(const Color &color)
{
    return argb(color.red, color.green, color.blue, color.alpha);
}

/// A tile of lines on nothing or on a ground, repeated from its origin.
struct Hatch
{
    double tile = 0; ///< width and height
    PointD origin;
    Path lines;
    double lineWidth = 0; ///< 0: they are areas
    Color color;
    std::optional<Color> ground;
    Affine transform; ///< of the tile and its repetitions

    bool operator==(const Hatch &) const = default;
};

/// Pixels, or a whole PNG or JPEG file.
struct Image
{
    Bitmap pixels; ///< upright; may be borrowed of the metafile; null when the image is a file
    std::string file;
    const char *mediaType = "image/png"; ///< of the file
    IntSize size;
};

/// A tile of pixels, repeated from one of its places.
struct Pattern
{
    Index image = kNone; ///< in Scene::images
    RectD tile;
    Affine transform; ///< of the tile and its repetitions
    /// Every other tile is mirrored, along a row or along a column.
    bool mirrorsX = false, mirrorsY = false;
    bool isSmooth = false; ///< pixels that are enlarged need not stay squares

    bool operator==(const Pattern &) const = default;
};

/// A colour that changes along a line from one place to another, or from a focus to the unit
/// circle.
struct Gradient
{
    struct Stop
    {
        double offset = 0; ///< rising from 0 to 1
        Color color;

        bool operator==(const Stop &) const = default;
    };
    /// What lies behind the ends.
    enum class Spread : uint8_t { Pad, Reflect, Repeat };

    PointD from; ///< where the first stop is: of a circle the focus, within it
    PointD to; ///< of a line
    std::vector<Stop> stops;
    Spread spread = Spread::Pad;
    bool isRadial = false;
    Affine transform; ///< of the unit circle and the focus

    bool operator==(const Gradient &) const = default;
};

/// What fills an area or a stroke.
struct Paint
{
    enum class Kind : uint8_t { Solid, Hatch, Pattern, Gradient };

    Kind kind = Kind::Solid;
    Color color; ///< of Solid
    Index resource =
            kNone; ///< of Hatch, in Scene::hatches; of Pattern, in Scene::patterns, and so on

    bool operator==(const Paint &) const = default;
};

struct Stroke
{
    Paint paint;
    double width = 1;
    Cap cap = Cap::Butt;
    Join join = Join::Miter;
    double miterLimit = 10;
    std::vector<double> dashes; ///< line, gap, line ...; empty for a whole line
    double dashOffset = 0; ///< how much of the dashes lies before the start
    std::optional<Color> ground; ///< of the gaps; what is written has none any more

    bool operator==(const Stroke &) const = default;
};

/// A path that all is cut to which names the clip, and so on with its parent.
struct Clip
{
    Index parent = kNone;
    Path path;
    bool isEvenOdd = false;
    bool isWithinParent = false; ///< nothing of the path lies outside, so that it does alone

    bool isWhole() const { return parent == kNone || isWithinParent; }
    bool operator==(const Clip &) const = default;
};

/// A path in the scene's blocks of verbs and points.
struct PathRange
{
    uint32_t firstVerb = 0, verbs = 0;
    uint32_t firstPoint = 0, points = 0;
};

/// What letters look like. Names are tried in their order, the generic family at last.
struct FontStyle
{
    enum class Generic : uint8_t { SansSerif, Serif, Monospace, Cursive, Fantasy };

    std::vector<std::u16string> families;
    Generic generic = Generic::SansSerif;
    double size = 0; ///< of the em
    uint16_t weight = 400; ///< 100 to 900
    bool isItalic = false;
    bool isUnderlined = false;
    bool isStruckOut = false;

    bool operator==(const FontStyle &) const = default;
};

/// A run of characters on one baseline.
struct Text
{
    enum class Order : uint8_t {
        Natural, ///< from left to right, but for what is written the other way by its nature
        RightToLeft, ///< what has no direction of its own goes from right to left
        AsItStands, ///< from left to right whatever the characters are
    };

    /// Characters that follow one another as a viewer has it, up to the next piece.
    struct Piece
    {
        uint32_t first = 0; ///< UTF-16 unit; of the first piece it is 0
        double x = 0, y = 0; ///< where that stands, from the left end along the baseline and down
    };

    std::u16string characters; ///< as XML allows them; surrogates in pairs
    PointD baseline; ///< left end, before the turn
    double turn = 0; ///< degrees against the clock, around that
    std::vector<Piece> pieces; ///< one or more
    double farthest = 0; ///< the largest x or y of them, either way
    /// Of each piece, in Scene::glyphs, the letter that is drawn in the place of its characters;
    /// empty where the characters are written.
    std::vector<Index> glyphs;
    double width = 0; ///< of the whole run
    Order order = Order::Natural;
    Index font = kNone; ///< in Scene::fonts
};

struct Rect
{
    RectD box;
    double rx = 0, ry = 0;
};

struct Ellipse
{
    PointD center;
    PointD radii;
};

/// An image in its place.
struct ImagePlace
{
    Index image = kNone; ///< in Scene::images
    RectD box; ///< which it fills
    /// Its pixels are larger than those of the picture, and are to stay squares.
    bool isEnlarged = false;
};

/// How a node meets what lies beneath it: the modes of [CSS compositing] 10.
enum class Blend : uint8_t {
    Normal,
    Multiply,
    Screen,
    Overlay,
    Darken,
    Lighten,
    Difference,
    Exclusion,
};

/// One thing that is painted.
struct Node
{
    enum class Kind : uint8_t { Path, Rect, Ellipse, Text, Image };

    Kind kind = Kind::Path;
    bool isEvenOdd = true; ///< how a path is filled
    Blend blend = Blend::Normal;
    bool isExact = false; ///< its ends lie where they are to be seen, and no other line goes on
    float opacity = 1; ///< of the whole node, from 0 to 1
    Index geometry = kNone; ///< in the list of its kind
    Index fill = kNone; ///< in Scene::paints
    Index stroke = kNone; ///< in Scene::strokes
    Index clip = kNone; ///< in Scene::clips
    Index transform = kNone; ///< in Scene::transforms; applied to geometry and stroke, not the clip
    Index group = kNone; ///< in Scene::groups
    uint32_t record = 0; ///< number of the record that it comes from
};

/// Nodes that belong together for who made the picture. Those of a group follow one another, but
/// for what lies in groups within it.
struct NodeGroup
{
    Index parent = kNone;
    std::u16string title; ///< may be empty
};

struct Scene
{
    RectD view; ///< what the picture shows
    double width = 0, height = 0; ///< of the picture in CSS pixels, 96 an inch
    std::u16string title, description;
    std::string comment; ///< UTF-8; what a reader of the document's text is to know

    std::vector<Node> nodes;
    std::vector<NodeGroup> groups; ///< behind their parents
    std::vector<Path::Verb> verbs; ///< of all paths, one after the other
    std::vector<PointD> points;
    std::vector<PathRange> paths;
    std::vector<Rect> rects;
    std::vector<Ellipse> ellipses;
    std::vector<Text> texts;
    std::vector<ImagePlace> imagePlaces;

    std::span<const Path::Verb> verbsOf(const Node &path) const
    {
        const PathRange &range = paths[path.geometry];
        return { verbs.data() + range.firstVerb, range.verbs };
    }
    std::span<const PointD> pointsOf(const Node &path) const
    {
        const PathRange &range = paths[path.geometry];
        return { points.data() + range.firstPoint, range.points };
    }

    std::vector<Paint> paints;
    std::vector<Stroke> strokes;
    std::vector<Hatch> hatches;
    std::vector<Image> images;
    std::vector<Pattern> patterns;
    std::vector<Gradient> gradients;
    std::vector<Clip> clips;
    std::vector<Affine> transforms;
    std::vector<FontStyle> fonts;
    std::vector<Path> glyphs; ///< letters around their origins
};

/// Where a piece of a text stands, before the turn.
inline PointD placeOf(const Text &text, const Text::Piece &piece)
{
    return { text.baseline.x + piece.x, text.baseline.y + piece.y };
}

/// What Text::farthest is for these. It is kept, for a file may have a text looked at again and
/// again.
inline double farthestOf(std::span<const Text::Piece> pieces)
{
    double farthest = 0;
    for (const Text::Piece &piece : pieces)
        farthest = std::fmax(farthest, std::fmax(std::fabs(piece.x), std::fabs(piece.y)));
    return farthest;
}

/// No letter of a text reaches further from its left end than this, in its own units.
inline double reachOf(const Scene &scene, const Text &text)
{
    constexpr double kWide = 3; // ems: no letter is wider, nor far off the baseline
    return text.farthest + text.width + kWide * scene.fonts[text.font].size;
}

} // namespace svgtool::picture
