#include "picture/scene/Images.h"

#include "core/base/Limits.h"
#include "core/raster/Mixture.h"

#include <cmath>
#include <map>
#include <tuple>

namespace svgtool::picture {

namespace {

    // Pixels of the picture that a length covers.
    int32_t wholePixels(double length, double unitsPerPixel)
    {
        const double pixels = std::floor(length / unitsPerPixel + 0.5);
        return pixels >= 1 && pixels <= double(limits::kEnlargedPixels) ? int32_t(pixels) : 0;
    }

} // namespace

void enlargeImages(Scene &scene)
{
    const double unitsPerPixel = scene.view.width() / scene.width;
    if (!(unitsPerPixel > 0))
        return;
    int64_t left = limits::kAllEnlargedPixels;
    std::map<std::tuple<Index, int32_t, int32_t>, Index> known; // image and size: its enlargement
    for (const Node &node : scene.nodes) {
        if (node.kind != Node::Kind::Image)
            continue;
        ImagePlace &place = scene.imagePlaces[node.geometry];
        const Image &image = scene.images[place.image];
        if (!place.isEnlarged || image.pixels.isNull())
            continue;
        const Affine map = node.transform != kNone ? scene.transforms[node.transform] : Affine();
        const IntSize size{ wholePixels(place.box.width() * map.scaleX(), unitsPerPixel),
                            wholePixels(place.box.height() * map.scaleY(), unitsPerPixel) };
        const int64_t pixels = int64_t(size.width) * size.height;
        if (pixels == 0 || pixels > limits::kEnlargedPixels || size == image.size)
            continue;
        const auto [entry, isNew] =
                known.try_emplace({ place.image, size.width, size.height }, kNone);
        if (isNew) {
            if (pixels > left)
                continue;
            left -= pixels;
            entry->second = Index(scene.images.size());
            Image larger;
            larger.pixels = resampled(image.pixels, size);
            larger.size = size;
            scene.images.push_back(std::move(larger));
        }
        if (entry->second != kNone)
            place.image = entry->second;
    }
}

} // namespace svgtool::picture
