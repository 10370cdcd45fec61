#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

DeviceContext::DeviceContext(const Device &device, size_t handles) : m_device(device)
{
    m_objects.resize(std::max<size_t>(handles, 1));
    m_state.font = std::make_shared<const Font>();
    m_builder.scene().view = device.view;
    updateMapping();
}

Played DeviceContext::saveState()
{
    if (m_saved.size() == kSavedStates)
        return notDone("its values make no sense");
    m_saved.push_back(m_state);
    return kDone;
}

Played DeviceContext::restoreState(int32_t which)
{
    const auto depth = static_cast<int64_t>(m_saved.size());
    const int64_t level = which < 0 ? depth + which : int64_t(which) - 1;
    if (which == 0 || level < 0 || level >= depth)
        return notDone("it names a state that was not saved");
    m_state = std::move(m_saved[size_t(level)]);
    m_saved.resize(size_t(level));
    return kDone;
}

// Device units of a logical unit in the modes of physical units; y grows upwards there.
static std::optional<double> millimetersOf(MapMode mode)
{
    switch (mode) {
    case MapMode::LowMetric:
        return 0.1;
    case MapMode::HighMetric:
        return 0.01;
    case MapMode::LowEnglish:
        return 0.254;
    case MapMode::HighEnglish:
        return 0.0254;
    case MapMode::Twips:
        return 25.4 / 1440;
    default:
        return std::nullopt;
    }
}

void DeviceContext::updateMapping()
{
    const double perMillimeterX = m_device.pixelsX / m_device.millimetersX;
    const double perMillimeterY = m_device.pixelsY / m_device.millimetersY;
    double x = 1, y = 1;
    if (const auto millimeters = millimetersOf(m_state.mapMode)) {
        x = perMillimeterX * *millimeters;
        y = -perMillimeterY * *millimeters;
    } else if (m_state.mapMode != MapMode::Text) {
        x = double(m_state.viewportExtent.x) / m_state.windowExtent.x;
        y = double(m_state.viewportExtent.y) / m_state.windowExtent.y;
        if (m_state.mapMode == MapMode::Isotropic) {
            // The axis whose units would be longer on the device gives way.
            const double lengthX = std::abs(x) / perMillimeterX;
            const double lengthY = std::abs(y) / perMillimeterY;
            const double length = std::min(lengthX, lengthY);
            x = std::copysign(length * perMillimeterX, x);
            y = std::copysign(length * perMillimeterY, y);
        }
    }
    const Affine page{ x,
                       0,
                       0,
                       y,
                       m_state.viewportOrigin.x - m_state.windowOrigin.x * x,
                       m_state.viewportOrigin.y - m_state.windowOrigin.y * y };
    m_state.toDevice = m_state.world.then(page);
}

Played DeviceContext::setMapMode(uint32_t mode)
{
    if (mode < uint32_t(MapMode::Text) || mode > uint32_t(MapMode::Anisotropic))
        return notDone("its values make no sense");
    m_state.mapMode = MapMode(mode);
    updateMapping();
    return kDone;
}

Played DeviceContext::setWindowOrigin(PointL origin)
{
    m_state.windowOrigin = origin;
    updateMapping();
    return kDone;
}

Played DeviceContext::setViewportOrigin(PointL origin)
{
    m_state.viewportOrigin = origin;
    updateMapping();
    return kDone;
}

Played DeviceContext::setWindowExtent(PointL extent)
{
    if (extent.x == 0 || extent.y == 0)
        return notDone("its values make no sense");
    m_state.windowExtent = extent;
    updateMapping();
    return kDone;
}

Played DeviceContext::setViewportExtent(PointL extent)
{
    if (extent.x == 0 || extent.y == 0)
        return notDone("its values make no sense");
    m_state.viewportExtent = extent;
    updateMapping();
    return kDone;
}

static std::optional<PointL> scaled(PointL extent, PointL numerator, PointL denominator)
{
    if (numerator.x == 0 || numerator.y == 0 || denominator.x == 0 || denominator.y == 0)
        return std::nullopt;
    const auto one = [](int32_t value, int32_t by, int32_t through) {
        return truncateToInt32(double(value) * by / through);
    };
    const PointL result{ one(extent.x, numerator.x, denominator.x),
                         one(extent.y, numerator.y, denominator.y) };
    if (result.x == 0 || result.y == 0)
        return std::nullopt;
    return result;
}

Played DeviceContext::scaleWindowExtent(PointL numerator, PointL denominator)
{
    const auto extent = scaled(m_state.windowExtent, numerator, denominator);
    return extent ? setWindowExtent(*extent) : notDone("its values make no sense");
}

Played DeviceContext::scaleViewportExtent(PointL numerator, PointL denominator)
{
    const auto extent = scaled(m_state.viewportExtent, numerator, denominator);
    return extent ? setViewportExtent(*extent) : notDone("its values make no sense");
}

Played DeviceContext::setWorldTransform(const Affine &matrix)
{
    if (!matrix.isFinite() || matrix.determinant() == 0)
        return notDone("its values make no sense");
    m_state.world = matrix;
    updateMapping();
    return kDone;
}

Played DeviceContext::modifyWorldTransform(const Affine &matrix, uint32_t mode)
{
    switch (mode) {
    case 1:
        return setWorldTransform(Affine());
    case 2:
        return setWorldTransform(matrix.then(m_state.world));
    case 3:
        return setWorldTransform(m_state.world.then(matrix));
    case 4:
        return setWorldTransform(matrix);
    default:
        return notDone("its values make no sense");
    }
}

Played DeviceContext::setBackgroundMode(uint32_t mode)
{
    m_state.isOpaque = mode == 2;
    return mode == 1 || mode == 2 ? kDone : notDone("its values make no sense");
}

Played DeviceContext::setBackgroundColor(Color color)
{
    m_state.backgroundColor = color;
    return kDone;
}

Played DeviceContext::setTextColor(Color color)
{
    m_state.textColor = color;
    return kDone;
}

Played DeviceContext::setTextAlign(uint32_t align)
{
    m_state.textAlign = align;
    return kDone;
}

Played DeviceContext::setPolygonFillMode(uint32_t mode)
{
    m_state.isWinding = mode == 2;
    return mode == 1 || mode == 2 ? kDone : notDone("its values make no sense");
}

Played DeviceContext::setRop2(uint32_t mode)
{
    if (mode < 1 || mode > 16)
        return notDone("its values make no sense");
    m_state.rop2 = mode;
    return kDone;
}

Played DeviceContext::setMiterLimit(double limit)
{
    if (!(limit >= 1))
        return notDone("its values make no sense");
    m_state.miterLimit = limit;
    return kDone;
}

Played DeviceContext::setArcDirection(uint32_t direction)
{
    m_state.isClockwise = direction == 2;
    return direction == 1 || direction == 2 ? kDone : notDone("its values make no sense");
}

Played DeviceContext::setBrushOrigin(PointL origin)
{
    m_state.brushOrigin = origin;
    return kDone;
}

// Stock objects, [MS-EMF] 2.1.31.
static GdiObject stockObject(uint32_t number)
{
    const auto grey = [](uint8_t level) { return Color{ level, level, level, 255 }; };
    const auto pen = [](Pen::Line line, Color color) {
        Pen made;
        made.line = line;
        made.color = color;
        return made;
    };
    switch (number) {
    case 0:
        return Brush{ Brush::Kind::Solid, 0, grey(255) };
    case 1:
        return Brush{ Brush::Kind::Solid, 0, grey(192) };
    case 2:
        return Brush{ Brush::Kind::Solid, 0, grey(128) };
    case 3:
        return Brush{ Brush::Kind::Solid, 0, grey(64) };
    case 4:
        return Brush{ Brush::Kind::Solid, 0, grey(0) };
    case 5:
        return Brush{ Brush::Kind::Null, 0, {} };
    case 6:
        return pen(Pen::Line::Solid, grey(255));
    case 7:
    case 19: // DC_PEN
        return pen(Pen::Line::Solid, grey(0));
    case 8:
        return pen(Pen::Line::Null, grey(0));
    case 18: // DC_BRUSH
        return Brush{ Brush::Kind::Solid, 0, grey(255) };
    case 15:
        return Other{};
    default:
        break;
    }
    if (number >= 10 && number <= 17)
        return Font{};
    return {};
}

const GdiObject *DeviceContext::object(uint32_t handle) const
{
    if (handle == 0 || handle >= m_objects.size())
        return nullptr;
    return &m_objects[handle];
}

Played DeviceContext::createObject(uint32_t handle, GdiObject object)
{
    if (handle == 0 || handle >= m_objects.size())
        return notDone("its values make no sense");
    m_objects[handle] = std::move(object);
    return kDone;
}

Played DeviceContext::selectObject(uint32_t handle)
{
    constexpr uint32_t kStock = 0x80000000;
    GdiObject stock;
    const GdiObject *chosen = object(handle);
    if ((handle & kStock) != 0) {
        stock = stockObject(handle & ~kStock);
        chosen = &stock;
    }
    if (chosen == nullptr || std::holds_alternative<std::monostate>(*chosen))
        return notDone("its values make no sense");
    // What is selected is a copy: that it is deleted while selected changes nothing.
    if (const auto *pen = std::get_if<Pen>(chosen))
        m_state.pen = *pen;
    else if (const auto *brush = std::get_if<Brush>(chosen))
        m_state.brush = *brush;
    else if (const auto *font = std::get_if<Font>(chosen))
        m_state.font = std::make_shared<const Font>(*font);
    return kDone;
}

Played DeviceContext::deleteObject(uint32_t handle)
{
    if (handle == 0 || handle >= m_objects.size())
        return notDone("its values make no sense");
    m_objects[handle] = std::monostate();
    return kDone;
}

} // namespace svgtool::picture
