#include "picture/svg/SvgParts.h"

#include "core/base/Base64.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

bool needsLinks(const SvgDocument &document)
{
    const Scene &scene = document.scene();
    return !scene.imagePlaces.empty() || !scene.patterns.empty()
            || std::ranges::any_of(document.definitions(), [](const auto &definition) {
                   return definition.kind == Defined::Glyph;
               });
}

ImageUses::ImageUses(SvgDocument &document)
    : m_document(document), m_isSeen(document.scene().images.size()),
      m_isTile(document.scene().images.size())
{
}

void ImageUses::add(std::vector<bool> &seen, Index image)
{
    if (seen[image])
        m_document.use(Defined::Image, image);
    seen[image] = true;
}

void ImageUses::addNode(const Node &node)
{
    if (node.kind == Node::Kind::Image)
        add(m_isSeen, m_document.scene().imagePlaces[node.geometry].image);
}

void ImageUses::addTiles(size_t first)
{
    const size_t count = m_document.definitions().size(); // without the images
    for (size_t i = first; i < count; ++i) {
        const auto [kind, resource] = m_document.definitions()[i];
        if (kind == Defined::Pattern)
            add(m_isTile, m_document.scene().patterns[resource].image);
    }
}

static RectD boxOf(const Image &image)
{
    return { 0, 0, double(image.size.width), double(image.size.height) };
}

// Place and size, and what is to be seen.
static void writeContents(SvgDocument &document, const Image &image, const RectD &box)
{
    writeBox(document, box);
    const double skew = box.width() * image.size.height - box.height() * image.size.width;
    if (std::abs(skew) > 1e-9 * box.width() * image.size.height)
        document.attribute("preserveAspectRatio", "none");
    document.put(" xlink:href=\"data:");
    if (image.pixels.isNull()) {
        document.put(image.mediaType, ";base64,");
        appendBase64(document.text(), { image.file.data(), int64_t(image.file.size()) });
    } else {
        document.put("image/png;base64,");
        appendBase64(document.text(), document.png().encode(image.pixels).view());
    }
    document.put('"');
}

// Each viewer knows one of the names: newer ones the second, which others leave out.
static constexpr std::string_view kSharp =
        "image-rendering:optimizeSpeed;image-rendering:pixelated";

// A tile beside its mirrored images is defined, and used so often, as is one of several patterns.
void usePattern(SvgDocument &document, Index number)
{
    const Pattern &pattern = document.scene().patterns[number];
    if (document.use(Defined::Pattern, number) && (pattern.mirrorsX || pattern.mirrorsY))
        document.use(Defined::Image, pattern.image);
}

static void writeTiles(SvgDocument &document, const Pattern &pattern)
{
    const Image &image = document.scene().images[pattern.image];
    const double width = pattern.tile.width() / image.size.width;
    const double height = pattern.tile.height() / image.size.height;
    for (const bool isBelow : { false, true }) {
        for (const bool isRight : { false, true }) {
            if ((isBelow && !pattern.mirrorsY) || (isRight && !pattern.mirrorsX))
                continue;
            document.put("<use");
            const Affine place{ isRight ? -width : width,
                                0,
                                0,
                                isBelow ? -height : height,
                                isRight ? 2 * pattern.tile.width() : 0,
                                isBelow ? 2 * pattern.tile.height() : 0 };
            if (!place.isIdentity())
                document.transform(place, boxOf(image));
            document.link(Defined::Image, pattern.image);
            if (!pattern.isSmooth)
                document.attribute("style", kSharp);
            document.put("/>");
        }
    }
}

void definePattern(SvgDocument &document, Index number)
{
    const Pattern &pattern = document.scene().patterns[number];
    const RectD &tile = pattern.tile;
    const RectD all{ tile.left, tile.top, tile.right + (pattern.mirrorsX ? tile.width() : 0),
                     tile.bottom + (pattern.mirrorsY ? tile.height() : 0) };
    beginPattern(document, Defined::Pattern, number, all, pattern.transform);
    if (document.isUsed(Defined::Image, pattern.image)) {
        writeTiles(document, pattern);
    } else {
        document.put("<image");
        writeContents(document, document.scene().images[pattern.image],
                      { 0, 0, tile.width(), tile.height() });
        if (!pattern.isSmooth)
            document.attribute("style", kSharp);
        document.put("/>");
    }
    document.put("</pattern>\n");
}

void defineImage(SvgDocument &document, Index number)
{
    const Image &image = document.scene().images[number];
    document.put("<image");
    document.id(Defined::Image, number);
    writeContents(document, image, boxOf(image));
    document.put("/>\n");
}

std::string_view imageStyle(const ImagePlace &place)
{
    return place.isEnlarged ? kSharp : std::string_view();
}

void writeImage(SvgDocument &document, const Node &node)
{
    const Scene &scene = document.scene();
    const ImagePlace &place = scene.imagePlaces[node.geometry];
    const Image &image = scene.images[place.image];
    const RectD &box = place.box;
    const Affine outer = node.transform != kNone ? scene.transforms[node.transform] : Affine();
    if (document.isUsed(Defined::Image, place.image)) {
        const Affine size{ box.width() / image.size.width,   0,        0,
                           box.height() / image.size.height, box.left, box.top };
        document.put("<use");
        if (size.a == 1 && size.d == 1 && node.transform == kNone) {
            writeCorner(document, box);
        } else {
            document.transform(size.then(outer), boxOf(image));
        }
        document.link(Defined::Image, place.image);
    } else {
        document.put("<image");
        writeContents(document, image, box);
        if (node.transform != kNone)
            document.transform(outer, box);
    }
}

} // namespace svgtool::picture
