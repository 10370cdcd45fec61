#include "picture/gdiplus/Brushes.h"

#include "core/geometry/Region.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>

namespace svgtool::picture {

Color onPaper(Color color)
{
    const double alpha = color.alpha / 255.0;
    const Color shown =
            mixed({ 255, 255, 255, 255 }, { color.red, color.green, color.blue, 255 }, alpha);
    return shown;
}

Color mixed(Color first, Color second, double part)
{
    const auto mix = [part](uint8_t a, uint8_t b) {
        return uint8_t(std::clamp(std::floor(a + (b - a) * part + 0.5), 0.0, 255.0));
    };
    return { mix(first.red, second.red), mix(first.green, second.green),
             mix(first.blue, second.blue), mix(first.alpha, second.alpha) };
}

static bool isWhole(plus::Argb color)
{
    return color >= 0xFF000000;
}

static bool areWhole(const std::vector<plus::BlendColor> &colors)
{
    return std::ranges::all_of(colors, isWhole, &plus::BlendColor::color);
}

bool isOpaque(const plus::Brush &brush)
{
    return std::visit(
            [](const auto &kind) {
                using Kind = std::decay_t<decltype(kind)>;
                if constexpr (std::is_same_v<Kind, plus::SolidBrush>)
                    return isWhole(kind.color);
                else if constexpr (std::is_same_v<Kind, plus::HatchBrush>)
                    return isWhole(kind.foreColor) && isWhole(kind.backColor);
                else if constexpr (std::is_same_v<Kind, plus::LinearGradientBrush>)
                    return kind.colors.empty() ? isWhole(kind.startColor) && isWhole(kind.endColor)
                                               : areWhole(kind.colors);
                else if constexpr (std::is_same_v<Kind, plus::PathGradientBrush>)
                    return kind.colors.empty() ? isWhole(kind.centerColor)
                                    && std::ranges::all_of(kind.surroundColors, isWhole)
                                               : areWhole(kind.colors);
                else
                    return false; // nobody has looked at the pixels
            },
            brush);
}

static Color middleOf(const std::vector<Gradient::Stop> &stops)
{
    return stops[stops.size() / 2].color;
}

Color averageOf(const plus::Brush &brush)
{
    if (const auto *const solid = std::get_if<plus::SolidBrush>(&brush))
        return colorOf(solid->color);
    if (const auto *const hatch = std::get_if<plus::HatchBrush>(&brush))
        return mixed(colorOf(hatch->foreColor), colorOf(hatch->backColor), 0.5);
    if (const auto *const linear = std::get_if<plus::LinearGradientBrush>(&brush))
        return middleOf(stopsOf(*linear));
    if (const auto *const path = std::get_if<plus::PathGradientBrush>(&brush)) {
        const plus::Argb surround =
                path->surroundColors.empty() ? path->centerColor : path->surroundColors.front();
        const auto stops = stopsOf(*path, colorOf(surround));
        return mixed(stops.front().color, stops.back().color, 0.5);
    }
    return { 128, 128, 128, 255 };
}

// Rows from the top; the highest bit is the left pixel.
static constexpr std::array<uint8_t, 8> kHatches[] = {
    { 0xFF, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00 }, // Horizontal
    { 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80 }, // Vertical
    { 0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01 }, // ForwardDiagonal
    { 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80 }, // BackwardDiagonal
    { 0xFF, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80 }, // LargeGrid
    { 0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81 }, // DiagonalCross
    { 0x80, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00 }, // 05Percent
    { 0x80, 0x00, 0x08, 0x00, 0x80, 0x00, 0x08, 0x00 }, // 10Percent
    { 0x88, 0x00, 0x22, 0x00, 0x88, 0x00, 0x22, 0x00 }, // 20Percent
    { 0x88, 0x22, 0x88, 0x22, 0x88, 0x22, 0x88, 0x22 }, // 25Percent
    { 0xAA, 0x44, 0xAA, 0x11, 0xAA, 0x44, 0xAA, 0x11 }, // 30Percent
    { 0xAA, 0x55, 0xAA, 0x51, 0xAA, 0x55, 0xAA, 0x15 }, // 40Percent
    { 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55, 0xAA, 0x55 }, // 50Percent
    { 0xEE, 0x55, 0xBB, 0x55, 0xEE, 0x55, 0xBB, 0x55 }, // 60Percent
    { 0x77, 0xDD, 0x77, 0xDD, 0x77, 0xDD, 0x77, 0xDD }, // 70Percent
    { 0x77, 0xFF, 0xDD, 0xFF, 0x77, 0xFF, 0xDD, 0xFF }, // 75Percent
    { 0xEF, 0xFF, 0xFE, 0xFF, 0xEF, 0xFF, 0xFE, 0xFF }, // 80Percent
    { 0xFF, 0xFF, 0xFF, 0xF7, 0xFF, 0xFF, 0xFF, 0x7F }, // 90Percent
    { 0x88, 0x44, 0x22, 0x11, 0x88, 0x44, 0x22, 0x11 }, // LightDownwardDiagonal
    { 0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88 }, // LightUpwardDiagonal
    { 0xCC, 0x66, 0x33, 0x99, 0xCC, 0x66, 0x33, 0x99 }, // DarkDownwardDiagonal
    { 0x33, 0x66, 0xCC, 0x99, 0x33, 0x66, 0xCC, 0x99 }, // DarkUpwardDiagonal
    { 0xC1, 0xE0, 0x70, 0x38, 0x1C, 0x0E, 0x07, 0x83 }, // WideDownwardDiagonal
    { 0x83, 0x07, 0x0E, 0x1C, 0x38, 0x70, 0xE0, 0xC1 }, // WideUpwardDiagonal
    { 0x88, 0x88, 0x88, 0x88, 0x88, 0x88, 0x88, 0x88 }, // LightVertical
    { 0xFF, 0x00, 0x00, 0x00, 0xFF, 0x00, 0x00, 0x00 }, // LightHorizontal
    { 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55 }, // NarrowVertical
    { 0xFF, 0x00, 0xFF, 0x00, 0xFF, 0x00, 0xFF, 0x00 }, // NarrowHorizontal
    { 0xCC, 0xCC, 0xCC, 0xCC, 0xCC, 0xCC, 0xCC, 0xCC }, // DarkVertical
    { 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00 }, // DarkHorizontal
    { 0x00, 0x00, 0x88, 0x44, 0x22, 0x11, 0x00, 0x00 }, // DashedDownwardDiagonal
    { 0x00, 0x00, 0x11, 0x22, 0x44, 0x88, 0x00, 0x00 }, // DashedUpwardDiagonal
    { 0xF0, 0x00, 0x00, 0x00, 0x0F, 0x00, 0x00, 0x00 }, // DashedHorizontal
    { 0x80, 0x80, 0x80, 0x80, 0x08, 0x08, 0x08, 0x08 }, // DashedVertical
    { 0x80, 0x08, 0x40, 0x02, 0x10, 0x01, 0x20, 0x04 }, // SmallConfetti
    { 0xB1, 0x30, 0x03, 0x1B, 0xD8, 0xC0, 0x0C, 0x8D }, // LargeConfetti
    { 0x81, 0x42, 0x24, 0x18, 0x81, 0x42, 0x24, 0x18 }, // ZigZag
    { 0x00, 0x18, 0x25, 0xC0, 0x00, 0x18, 0x25, 0xC0 }, // Wave
    { 0x01, 0x02, 0x04, 0x08, 0x18, 0x24, 0x42, 0x81 }, // DiagonalBrick
    { 0xFF, 0x80, 0x80, 0x80, 0xFF, 0x08, 0x08, 0x08 }, // HorizontalBrick
    { 0x88, 0x54, 0x22, 0x45, 0x88, 0x14, 0x22, 0x51 }, // Weave
    { 0xAA, 0x55, 0xAA, 0x55, 0xF0, 0xF0, 0xF0, 0xF0 }, // Plaid
    { 0x00, 0x10, 0x08, 0x10, 0x00, 0x80, 0x01, 0x80 }, // Divot
    { 0xAA, 0x00, 0x80, 0x00, 0x80, 0x00, 0x80, 0x00 }, // DottedGrid
    { 0x80, 0x00, 0x22, 0x00, 0x08, 0x00, 0x22, 0x00 }, // DottedDiamond
    { 0x03, 0x84, 0x48, 0x30, 0x0C, 0x02, 0x01, 0x01 }, // Shingle
    { 0xFF, 0x66, 0xFF, 0x99, 0xFF, 0x66, 0xFF, 0x99 }, // Trellis
    { 0x77, 0x89, 0x8F, 0x8F, 0x77, 0x98, 0xF8, 0xF8 }, // Sphere
    { 0xFF, 0x88, 0x88, 0x88, 0xFF, 0x88, 0x88, 0x88 }, // SmallGrid
    { 0x99, 0x66, 0x66, 0x99, 0x99, 0x66, 0x66, 0x99 }, // SmallCheckerBoard
    { 0xF0, 0xF0, 0xF0, 0xF0, 0x0F, 0x0F, 0x0F, 0x0F }, // LargeCheckerBoard
    { 0x82, 0x44, 0x28, 0x10, 0x28, 0x44, 0x82, 0x01 }, // OutlinedDiamond
    { 0x10, 0x38, 0x7C, 0xFE, 0x7C, 0x38, 0x10, 0x00 }, // SolidDiamond
};
static_assert(std::size(kHatches) == 53);

// The lines of those diagonals that are drawn smooth go through the corners of the tile, and are so
// wide that they have the ink of a pixel and a quarter of the ones beside it.
static HatchLines diagonals(bool isForward, bool isBackward)
{
    constexpr double kTile = 8, kBeyond = 1;
    HatchLines lines;
    lines.width = 1.06;
    const auto line = [&lines](PointD from, PointD to) {
        lines.path.moveTo(from);
        lines.path.lineTo(to);
    };
    // They go on in the corners of the tiles around.
    if (isForward) {
        line({ -kBeyond, -kBeyond }, { kTile + kBeyond, kTile + kBeyond });
        line({ -kBeyond, kTile - kBeyond }, { kBeyond, kTile + kBeyond });
        line({ kTile - kBeyond, -kBeyond }, { kTile + kBeyond, kBeyond });
    }
    if (isBackward) {
        line({ -kBeyond, kTile + kBeyond }, { kTile + kBeyond, -kBeyond });
        line({ -kBeyond, kBeyond }, { kBeyond, -kBeyond });
        line({ kTile - kBeyond, kTile + kBeyond }, { kTile + kBeyond, kTile - kBeyond });
    }
    return lines;
}

HatchLines hatchLines(uint8_t style)
{
    constexpr uint8_t kForward = 2, kBackward = 3, kDiagonalCross = 5;
    if (style == kForward || style == kBackward || style == kDiagonalCross)
        return diagonals(style != kBackward, style != kForward);
    std::vector<RectI> pixels;
    const auto &rows = kHatches[std::min<size_t>(style, std::size(kHatches) - 1)];
    for (int32_t y = 0; y < 8; ++y) {
        for (int32_t x = 0; x < 8; ++x) {
            if ((rows[size_t(y)] >> (7 - x) & 1) != 0)
                pixels.push_back({ x, y, x + 1, y + 1 });
        }
    }
    HatchLines lines;
    if (const auto region = Region::of(pixels))
        lines.path = region->outline();
    return lines;
}

// As between them in linear light, by so many steps that it cannot be told.
static std::vector<Gradient::Stop> inLinearLight(const std::vector<Gradient::Stop> &stops)
{
    constexpr int kSteps = 8;
    constexpr double kGamma = 2.2;
    std::vector<Gradient::Stop> result;
    for (size_t i = 0; i + 1 < stops.size(); ++i) {
        const Gradient::Stop &from = stops[i], &to = stops[i + 1];
        for (int step = 0; step < kSteps; ++step) {
            const double part = double(step) / kSteps;
            const auto mix = [part](uint8_t a, uint8_t b) {
                const double first = std::pow(a / 255.0, kGamma);
                const double light = first + (std::pow(b / 255.0, kGamma) - first) * part;
                return uint8_t(std::floor(std::pow(light, 1 / kGamma) * 255 + 0.5));
            };
            Color color = mixed(from.color, to.color, part);
            color.red = mix(from.color.red, to.color.red);
            color.green = mix(from.color.green, to.color.green);
            color.blue = mix(from.color.blue, to.color.blue);
            result.push_back({ from.offset + (to.offset - from.offset) * part, color });
        }
    }
    result.push_back(stops.back());
    return result;
}

template<class Brush>
static std::vector<Gradient::Stop> stopsOf(const Brush &brush, Color first, Color last)
{
    std::vector<Gradient::Stop> stops;
    for (const plus::BlendColor &color : brush.colors)
        stops.push_back({ color.position, colorOf(color.color) });
    if (stops.empty()) {
        for (const plus::BlendFactor &factor : brush.factors)
            stops.push_back({ factor.position, mixed(first, last, factor.factor) });
    }
    if (stops.empty())
        stops = { { 0, first }, { 1, last } };
    return brush.isGammaCorrected ? inLinearLight(stops) : stops;
}

std::vector<Gradient::Stop> stopsOf(const plus::LinearGradientBrush &brush)
{
    return stopsOf(brush, colorOf(brush.startColor), colorOf(brush.endColor));
}

std::vector<Gradient::Stop> stopsOf(const plus::PathGradientBrush &brush, Color surround)
{
    return stopsOf(brush, surround, colorOf(brush.centerColor));
}

std::optional<Ramp> Ramp::mapped(const Affine &map) const
{
    const auto back = map.inverse();
    if (!back)
        return std::nullopt;
    Ramp result;
    result.slope = { slope.x * back->a + slope.y * back->b, slope.x * back->c + slope.y * back->d };
    result.atOrigin = at({ back->e, back->f });
    return result;
}

Gradient gradientOf(const Ramp &ramp, std::vector<Gradient::Stop> stops)
{
    const PointD &slope = ramp.slope;
    const double squared = slope.x * slope.x + slope.y * slope.y;
    Gradient gradient;
    gradient.from = { -ramp.atOrigin * slope.x / squared, -ramp.atOrigin * slope.y / squared };
    gradient.to = { gradient.from.x + slope.x / squared, gradient.from.y + slope.y / squared };
    gradient.stops = std::move(stops);
    return gradient;
}

} // namespace svgtool::picture
