#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

// Millimetres of a logical unit in the modes of physical units; y grows upwards there.
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

static int32_t roundedExtent(double extent)
{
    const int32_t rounded = truncateToInt32(extent + std::copysign(0.5, extent));
    // An extent never becomes nothing.
    return rounded != 0 ? rounded : extent < 0 ? -1 : 1;
}

bool DeviceContext::extentsCount() const
{
    return m_state.mapMode == MapMode::Isotropic || m_state.mapMode == MapMode::Anisotropic;
}

void DeviceContext::updateMapping()
{
    changePenLook();
    double x = 1, y = 1;
    if (const auto millimeters = millimetersOf(m_state.mapMode)) {
        x = *millimeters * m_device.pixelsX / m_device.millimetersX;
        y = -*millimeters * m_device.pixelsY / m_device.millimetersY;
    } else if (extentsCount()) {
        x = double(m_state.viewportExtent.x) / m_state.windowExtent.x;
        y = double(m_state.viewportExtent.y) / m_state.windowExtent.y;
    }
    const Affine page{ x,
                       0,
                       0,
                       y,
                       m_state.viewportOrigin.x - m_state.windowOrigin.x * x,
                       m_state.viewportOrigin.y - m_state.windowOrigin.y * y };
    m_state.toDevice = m_state.world.then(page);
    if ((m_state.layout & kRightToLeft) != 0) {
        // The middle of the picture stays where it is.
        const RectD view = deviceView();
        m_state.toDevice = m_state.toDevice.then({ -1, 0, 0, 1, view.left + view.right, 0 });
    }
}

RectD DeviceContext::deviceView() const
{
    const auto toDevice = m_device.toPicture.inverse();
    return toDevice ? mapBounds(*toDevice, m_device.view) : m_device.view;
}

// The extent of the viewport along which units would be longer gives way, for good: an extent that
// is set later goes out from what is left of it.
void DeviceContext::keepIsotropic()
{
    if (m_state.mapMode != MapMode::Isotropic)
        return;
    PointL &viewport = m_state.viewportExtent;
    const double x = std::abs(double(viewport.x) / m_state.windowExtent.x) * m_device.millimetersX
            / m_device.pixelsX;
    const double y = std::abs(double(viewport.y) / m_state.windowExtent.y) * m_device.millimetersY
            / m_device.pixelsY;
    if (x > y)
        viewport.x = roundedExtent(viewport.x * (y / x));
    else if (y > x)
        viewport.y = roundedExtent(viewport.y * (x / y));
}

Played DeviceContext::setMapMode(uint32_t number)
{
    if (number < uint32_t(MapMode::Text) || number > uint32_t(MapMode::Anisotropic))
        return notDone("there is no such map mode");
    const auto mode = MapMode(number);
    if (mode == m_state.mapMode)
        return kDone;
    m_state.mapMode = mode;
    if (mode == MapMode::Text) {
        m_state.windowExtent = m_state.viewportExtent = { 1, 1 };
    } else if (mode != MapMode::Anisotropic) {
        // Those of the device; isotropic units begin as tenths of a millimetre.
        const double unit = millimetersOf(mode).value_or(0.1);
        m_state.windowExtent = { roundedExtent(m_device.millimetersX / unit),
                                 roundedExtent(m_device.millimetersY / unit) };
        m_state.viewportExtent = { roundedExtent(m_device.pixelsX),
                                   roundedExtent(-m_device.pixelsY) };
        keepIsotropic();
    }
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

Played DeviceContext::setExtent(PointL State::*which, PointL extent)
{
    if (!extentsCount())
        return kNeutral; // the modes with units of their own take none
    if (extent.x == 0 || extent.y == 0)
        return notDone("its extent is nothing");
    m_state.*which = extent;
    keepIsotropic();
    updateMapping();
    return kDone;
}

Played DeviceContext::setWindowExtent(PointL extent)
{
    return setExtent(&State::windowExtent, extent);
}

Played DeviceContext::setViewportExtent(PointL extent)
{
    return setExtent(&State::viewportExtent, extent);
}

Played DeviceContext::scaleExtent(PointL State::*which, PointL numerator, PointL denominator)
{
    if (!extentsCount())
        return kNeutral;
    if (numerator.x == 0 || numerator.y == 0 || denominator.x == 0 || denominator.y == 0)
        return notDone("it scales by nothing");
    const auto scaled = [](int32_t extent, int32_t by, int32_t through) {
        const double result = std::trunc(double(extent) * by / through);
        return std::abs(result) < 2147483648.0 ? roundedExtent(result) : extent;
    };
    const PointL extent = m_state.*which;
    return setExtent(which,
                     { scaled(extent.x, numerator.x, denominator.x),
                       scaled(extent.y, numerator.y, denominator.y) });
}

Played DeviceContext::scaleWindowExtent(PointL numerator, PointL denominator)
{
    return scaleExtent(&State::windowExtent, numerator, denominator);
}

Played DeviceContext::scaleViewportExtent(PointL numerator, PointL denominator)
{
    return scaleExtent(&State::viewportExtent, numerator, denominator);
}

Played DeviceContext::setWorldTransform(const Affine &matrix)
{
    // Products of matrices may grow, and coordinates are to stay numbers.
    constexpr double kMost = 1e12, kLeastArea = 1e-30;
    for (const double value : { matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f })
        if (!(std::abs(value) <= kMost))
            return notDone("its matrix maps out of all bounds");
    if (!(std::abs(matrix.determinant()) >= kLeastArea))
        return notDone("its matrix leaves no area");
    m_state.world = matrix;
    updateMapping();
    return kDone;
}

Played DeviceContext::modifyWorldTransform(const Affine &matrix, uint32_t mode)
{
    // ModifyWorldTransformMode, [MS-EMF] 2.1.24.
    constexpr uint32_t kIdentity = 1, kLeftMultiply = 2, kRightMultiply = 3, kSet = 4;
    switch (mode) {
    case kIdentity:
        return setWorldTransform(Affine());
    case kLeftMultiply:
        return setWorldTransform(matrix.then(m_state.world));
    case kRightMultiply:
        return setWorldTransform(m_state.world.then(matrix));
    case kSet:
        return setWorldTransform(matrix);
    default:
        return notDone("there is no such way to change a matrix");
    }
}

Played DeviceContext::setLayout(uint32_t layout)
{
    m_state.layout = layout;
    updateMapping();
    return kDone;
}

} // namespace svgtool::picture
