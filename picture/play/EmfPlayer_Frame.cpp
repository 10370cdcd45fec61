#include "picture/play/EmfPlayer.h"

#include "core/base/Limits.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

static constexpr double kMillimetersPerInch = 25.4, kPixelsPerInch = 96;

static RectD boxOf(const HeaderBox &box)
{
    return { double(box.left), double(box.top), double(box.right), double(box.bottom) };
}

// Along one axis; nothing where it makes no sense. Micrometres, which some headers have too, do not
// count: recorders work the frame out with whole millimetres.
static std::optional<double> pixelsPerMillimeter(int32_t pixels, int32_t millimeters)
{
    constexpr double kLeast = 0.1, kMost = 1000; // of any device there is
    const double density = millimeters > 0 ? double(pixels) / millimeters : 0;
    return density >= kLeast && density <= kMost ? std::optional(density) : std::nullopt;
}

// What a header shows of its device, in device units. A frame of less than a part of a pixel shows
// nothing.
static std::optional<RectD> viewOf(const MetafileFacts &facts, const Device &device)
{
    constexpr double kHundredths = 100, kLeast = 0.5;
    const double perX = device.pixelsX / device.millimetersX / kHundredths;
    const double perY = device.pixelsY / device.millimetersY / kHundredths;
    const RectD frame = boxOf(facts.frame);
    const RectD view{ frame.left * perX, frame.top * perY, frame.right * perX,
                      frame.bottom * perY };
    return view.width() >= kLeast && view.height() >= kLeast ? std::optional(view) : std::nullopt;
}

Shown EmfPlayer::shownOf(const MetafileFacts &facts)
{
    Shown picture;
    Device &device = picture.device;
    double density[2] = {};
    for (size_t i = 0; i < 2; ++i) {
        const auto known = pixelsPerMillimeter(facts.devicePixels[i], facts.deviceMillimeters[i]);
        density[i] = known.value_or(0);
        if (!known)
            picture.guess = "the header's device makes no sense";
    }
    // One axis goes by the other, or both by a screen.
    const double usual = std::max(density[0], density[1]) > 0
            ? std::max(density[0], density[1])
            : kPixelsPerInch / kMillimetersPerInch;
    device.pixelsX = facts.devicePixels[0] > 0 ? facts.devicePixels[0] : device.pixelsX;
    device.pixelsY = facts.devicePixels[1] > 0 ? facts.devicePixels[1] : device.pixelsY;
    device.millimetersX = device.pixelsX / (density[0] > 0 ? density[0] : usual);
    device.millimetersY = device.pixelsY / (density[1] > 0 ? density[1] : usual);

    const double perX = device.pixelsX / device.millimetersX;
    const double perY = device.pixelsY / device.millimetersY;
    constexpr double kAlmostSquare = 0.002;
    device.toPicture =
            Affine::scale(1, std::abs(perX / perY - 1) < kAlmostSquare ? 1 : perX / perY);
    const auto view = viewOf(facts, device);
    if (!view)
        picture.guess = "the header's frame is empty, so its bounds are shown";
    device.view = view.value_or(RectD());
    if (!view) {
        // Bounds name the last pixels that are painted.
        const RectD bounds = boxOf(facts.bounds);
        device.view = { bounds.left, bounds.top, bounds.right + 1, bounds.bottom + 1 };
        if (device.view.isEmpty())
            device.view = { 0, 0, device.pixelsX, device.pixelsY };
    }
    device.view = mapBounds(device.toPicture, device.view);

    // CSS pixels of a device unit. A device of about 96 dots an inch is a screen, whose pixels are
    // to stay whole.
    constexpr double kAlmostScreen = 0.005;
    double scale = kPixelsPerInch / kMillimetersPerInch / perX;
    if (std::abs(scale - 1) < kAlmostScreen) {
        scale = 1;
        RectD &whole = device.view;
        whole = { std::floor(whole.left + 0.5), std::floor(whole.top + 0.5),
                  std::floor(whole.right + 0.5), std::floor(whole.bottom + 0.5) };
    }
    picture.width = device.view.width() * scale;
    picture.height = device.view.height() * scale;
    const double longer = std::max(picture.width, picture.height);
    device.unitsPerPixel = std::max(1.0, longer / limits::kViewedSide) / scale;
    return picture;
}

} // namespace svgtool::picture
