#include "picture/gdiplus/Graphics.h"

#include "core/base/Limits.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace svgtool::picture {

static constexpr Played kNoNumbers = notDone("its numbers make no sense");

Graphics::Graphics(const Device &device, SceneBuilder &builder, Index clip)
    : m_device(device), m_builder(builder), m_left(builder.allowances()), m_outerClip(clip)
{
    m_state.base = device.toPicture;
    updateTransform();
}

void Graphics::setResolution(PointD dots)
{
    m_dots = dots;
    updateTransform();
}

// Device units of a unit, along both axes.
PointD Graphics::pixelsOf(plus::Unit unit) const
{
    constexpr double kPoints = 72, kDocuments = 300, kMillimeters = 25.4;
    switch (unit) {
    case plus::Unit::World:
    case plus::Unit::Display:
    case plus::Unit::Pixel:
        break;
    case plus::Unit::Point:
        return { m_dots.x / kPoints, m_dots.y / kPoints };
    case plus::Unit::Inch:
        return m_dots;
    case plus::Unit::Document:
        return { m_dots.x / kDocuments, m_dots.y / kDocuments };
    case plus::Unit::Millimeter:
        return { m_dots.x / kMillimeters, m_dots.y / kMillimeters };
    }
    return { 1, 1 };
}

double Graphics::lengthInWorld(double length, plus::Unit unit) const
{
    if (unit == plus::Unit::World)
        return length;
    return length * pixelsOf(unit).y / (pixelsOf(m_state.pageUnit).y * m_state.pageScale);
}

void Graphics::updateTransform()
{
    const PointD unit = pixelsOf(m_state.pageUnit);
    m_state.toPicture =
            m_state.world
                    .then(Affine::scale(unit.x * m_state.pageScale, unit.y * m_state.pageScale))
                    .then(m_state.base);
}

Played Graphics::save(uint32_t number)
{
    if (m_saved.size() == limits::kSavedStates)
        return notDone("too many states are saved");
    m_saved.emplace_back(number, m_state);
    return kDone;
}

Played Graphics::restore(uint32_t number)
{
    const auto found = std::ranges::find(m_saved.rbegin(), m_saved.rend(), number,
                                         &std::pair<uint32_t, GraphicsState>::first);
    if (found == m_saved.rend())
        return notDone("no such state was saved");
    m_state = found->second;
    m_saved.erase(found.base() - 1, m_saved.end());
    return kDone;
}

// What is drawn in a container begins with a state of its own, but for the clip around.
void Graphics::enterContainer(const Affine &toOuter)
{
    GraphicsState inner;
    inner.base = toOuter.then(m_state.toPicture);
    inner.clip = inner.outerClip = m_state.clip;
    m_state = inner;
    updateTransform();
}

Played Graphics::beginContainer(uint32_t number)
{
    const Played played = save(number);
    if (played.isDone())
        enterContainer(Affine());
    return played;
}

Played Graphics::beginContainer(const RectD &to, const RectD &from, plus::Unit unit,
                                uint32_t number)
{
    const PointD pixels = pixelsOf(unit);
    const double x = to.width() / (from.width() * pixels.x);
    const double y = to.height() / (from.height() * pixels.y);
    const Affine toOuter{
        x, 0, 0, y, to.left - from.left * pixels.x * x, to.top - from.top * pixels.y * y
    };
    if (!toOuter.isFinite())
        return kNoNumbers;
    const Played played = save(number);
    if (played.isDone())
        enterContainer(toOuter);
    return played;
}

Played Graphics::setWorldTransform(const Affine &matrix)
{
    if (!matrix.isFinite())
        return kNoNumbers;
    m_state.world = matrix;
    updateTransform();
    return kDone;
}

Played Graphics::multiplyWorldTransform(const Affine &matrix, Order order)
{
    return setWorldTransform(order == Order::Append ? m_state.world.then(matrix)
                                                    : matrix.then(m_state.world));
}

Played Graphics::translateWorldTransform(PointD by, Order order)
{
    return multiplyWorldTransform(Affine::translation(by.x, by.y), order);
}

Played Graphics::scaleWorldTransform(PointD by, Order order)
{
    return multiplyWorldTransform(Affine::scale(by.x, by.y), order);
}

Played Graphics::rotateWorldTransform(double degrees, Order order)
{
    const double angle = std::fmod(degrees, 360) * std::numbers::pi / 180;
    const double sine = std::sin(angle), cosine = std::cos(angle);
    return multiplyWorldTransform({ cosine, sine, -sine, cosine, 0, 0 }, order);
}

Played Graphics::setPageTransform(plus::Unit unit, double scale)
{
    if (!std::isfinite(scale) || unit == plus::Unit::World)
        return kNoNumbers;
    m_state.pageUnit = unit;
    m_state.pageScale = scale;
    updateTransform();
    return kDone;
}

Played Graphics::setRenderingOrigin(PointD origin)
{
    m_state.renderingOrigin = origin;
    return kDone;
}

Played Graphics::setCompositingMode(uint8_t mode)
{
    constexpr uint8_t kCopy = 1;
    if (mode > kCopy)
        return notDone("there is no such mode");
    m_state.isCopying = mode == kCopy;
    return kDone;
}

Played Graphics::setInterpolationMode(uint8_t mode)
{
    m_state.interpolation = mode;
    return kDone;
}

Played Graphics::setPixelOffsetMode(uint8_t mode)
{
    m_state.pixelOffset = mode;
    return kDone;
}

Played Graphics::setTextRenderingHint(uint8_t hint)
{
    m_state.textRenderingHint = hint;
    return kDone;
}

} // namespace svgtool::picture
