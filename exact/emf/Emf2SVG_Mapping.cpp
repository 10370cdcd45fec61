#include "exact/emf/Emf2SVG.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <cmath>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

static constexpr XFORM kIdentity{ 1.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F };

void Emf2SvgConverter::updateAxes()
{
    // Quirk: the window origin counts as an unsigned number, so a negative one puts everything far
    // outside; every position depends on it.
    const auto unsignedFloat = [](qint32 value) {
        return static_cast<float>(static_cast<quint32>(value));
    };
    m_axisX = { m_isAnisotropic ? m_scaleX : m_modeScaleX, unsignedFloat(m_windowOrigin.x),
                static_cast<float>(m_originX) };
    m_axisY = { m_isAnisotropic ? m_scaleY : m_modeScaleY, unsignedFloat(m_windowOrigin.y),
                static_cast<float>(m_originY) };
}

qint32 Emf2SvgConverter::MapX(qint32 x, bool isPoint) const
{
    SVGTOOL_TRACE("Emf2SvgConverter::MapX");
    return isPoint ? m_axisX.position(x) : m_axisX.length(x);
}

qint32 Emf2SvgConverter::MapY(qint32 y, bool isPoint) const
{
    SVGTOOL_TRACE("Emf2SvgConverter::MapY");
    return isPoint ? m_axisY.position(y) : m_axisY.length(y);
}

POINTL Emf2SvgConverter::mapTracedPoint(POINTL point) const
{
    return { MapX(point.x, true), MapY(point.y, true) };
}

SIZEL Emf2SvgConverter::mapTracedSize(SIZEL size) const
{
    return { MapX(size.cx, false), MapY(size.cy, false) };
}

std::vector<POINTL> Emf2SvgConverter::mapPoints(std::vector<POINTL> points) const
{
    if (isTracing()) {
        for (POINTL &point : points)
            point = mapTracedPoint(point);
        return points;
    }
    for (POINTL &point : points)
        point = { m_axisX.position(point.x), m_axisY.position(point.y) };
    return points;
}

qint32 Emf2SvgConverter::OnSetMapMode(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetMapMode");
    constexpr quint32 kText = 1; // MM_TEXT
    constexpr quint32 kAnisotropic = 8; // MM_ANISOTROPIC
    const auto mode = readRecord({ record, size }, &InitEMRMAPMODE);
    // Quirk: no later mode clears the flag; the scaling lasts for the rest of the file.
    if (mode.iMode == kAnisotropic)
        m_isAnisotropic = true;
    updateAxes();
    const bool isKnown = mode.iMode == kAnisotropic || (mode.iMode == kText && !m_isAnisotropic);
    return isKnown ? RecordHandled : RecordApproximated;
}

qint32 Emf2SvgConverter::OnSetWindowOrgEx(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetWindowOrgEx");
    const auto origin = readRecord({ record, size }, &InitEMRORIGIN);
    m_windowOrigin = origin.ptlOrigin;
    updateAxes();
    return 1;
}

qint32 Emf2SvgConverter::OnSetWindowsExt(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetWindowsExt");
    const auto extent = readRecord({ record, size }, &InitEMREXT);
    // Quirk: only a viewport extent makes new scales, so one that came before this stays in force.
    m_windowExtent = extent.szlExtent;
    return 1;
}

// The scale of one axis from its extents, which count as unsigned; none when either is 0.
static void updateScale(qint32 windowExtent, qint32 viewportExtent, float &scale, float &modeScale)
{
    if (windowExtent == 0 || viewportExtent == 0)
        return;
    scale = static_cast<float>(static_cast<quint32>(windowExtent))
            / static_cast<float>(static_cast<quint32>(viewportExtent));
    modeScale = scale;
}

qint32 Emf2SvgConverter::OnSetViewPortEx(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetViewPortEx");
    const auto extent = readRecord({ record, size }, &InitEMREXT);
    m_viewportExtent = extent.szlExtent;
    if (m_isAnisotropic) {
        updateScale(m_windowExtent.cx, m_viewportExtent.cx, m_scaleX, m_modeScaleX);
        updateScale(m_windowExtent.cy, m_viewportExtent.cy, m_scaleY, m_modeScaleY);
        updateAxes();
    }
    return 1;
}

qint32 Emf2SvgConverter::OnSetViewPortOrgEx(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetViewPortOrgEx");
    // Quirk: kept, but no coordinate is moved by it.
    m_viewportOrigin = readPadded<EMRSETVIEWPORTORGEX>({ record, size }).ptlOrigin;
    return 1;
}

static bool isFinite(const XFORM &xform)
{
    return std::isfinite(xform.eM11) && std::isfinite(xform.eM12) && std::isfinite(xform.eM21)
            && std::isfinite(xform.eM22) && std::isfinite(xform.eDx) && std::isfinite(xform.eDy);
}

// The transform that applies first and then second ([MS-EMF] 2.2.28: points are row vectors).
static XFORM product(const XFORM &first, const XFORM &second)
{
    const auto sum = [](float a, float b, float c, float d) {
        const float left = a * b;
        const float right = c * d;
        return left + right;
    };
    XFORM result{};
    result.eM11 = sum(first.eM11, second.eM11, first.eM12, second.eM21);
    result.eM12 = sum(first.eM11, second.eM12, first.eM12, second.eM22);
    result.eM21 = sum(first.eM21, second.eM11, first.eM22, second.eM21);
    result.eM22 = sum(first.eM21, second.eM12, first.eM22, second.eM22);
    result.eDx = sum(first.eDx, second.eM11, first.eDy, second.eM21) + second.eDx;
    result.eDy = sum(first.eDx, second.eM12, first.eDy, second.eM22) + second.eDy;
    return result;
}

qint32 Emf2SvgConverter::setWorldTransform(const XFORM &xform)
{
    if (!isFinite(xform))
        return 0;
    m_worldTransform = xform;
    m_hasWorldTransform = true;
    m_writer.SetWorldTransform(xform);
    return 1;
}

qint32 Emf2SvgConverter::OnSetWorldTransform(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetWorldTransform");
    if (record == nullptr || size == 0)
        return 0;
    return setWorldTransform(readPadded<EMRSETWORLDTRANSFORM>({ record, size }).xform);
}

qint32 Emf2SvgConverter::OnModifyWorldTransform(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnModifyWorldTransform");
    if (record == nullptr || size == 0)
        return 0;
    const auto change = readPadded<EMRMODIFYWORLDTRANSFORM>({ record, size });
    const XFORM &current = m_hasWorldTransform ? m_worldTransform : kIdentity;
    switch (change.iMode) { // [MS-EMF] 2.3.12.1
    case 1: // MWT_IDENTITY
        return setWorldTransform(kIdentity);
    case 2: // MWT_LEFTMULTIPLY
        return setWorldTransform(product(change.xform, current));
    case 3: // MWT_RIGHTMULTIPLY
        return setWorldTransform(product(current, change.xform));
    case 4: // MWT_SET
        return setWorldTransform(change.xform);
    default:
        return 1;
    }
}

} // namespace svgtool
