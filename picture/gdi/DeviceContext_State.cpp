#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

DeviceContext::DeviceContext(const Device &device, size_t handles, SceneBuilder &builder,
                             Index clip)
    : m_device(device), m_builder(builder), m_left(builder.allowances()), m_outerClip(clip)
{
    m_objects.resize(std::max<size_t>(handles, 1));
    m_state.font = std::make_shared<const Font>();
    updateMapping();
}

uint8_t DeviceContext::systemCharSet()
{
    if (!m_systemCharSet)
        m_systemCharSet = m_findCharSet();
    return *m_systemCharSet;
}

Played DeviceContext::saveState()
{
    if (m_saved.size() == limits::kSavedStates) {
        ++m_unsaved;
        return notDone("as many states are saved as there is room for");
    }
    m_saved.push_back(m_state);
    return kDone;
}

Played DeviceContext::restoreState(int32_t which)
{
    // States that had no room would be the last ones.
    if (which < 0 && m_unsaved > 0) {
        const auto back = uint64_t(-int64_t(which));
        const uint64_t lost = std::min(back, m_unsaved);
        m_unsaved -= lost;
        if (lost == back)
            return notDone("there was no room to save that state");
        which += int32_t(lost);
    }
    const auto depth = static_cast<int64_t>(m_saved.size());
    const int64_t level = which < 0 ? depth + which : int64_t(which) - 1;
    if (which == 0 || level < 0 || level >= depth)
        return notDone("it names a state that was not saved");
    m_state = std::move(m_saved[size_t(level)]);
    m_saved.resize(size_t(level));
    m_unsaved = 0;
    return kDone;
}

Played DeviceContext::setBackgroundMode(uint32_t mode)
{
    constexpr uint32_t kTransparent = 1, kOpaque = 2;
    if (mode != kTransparent && mode != kOpaque)
        return notDone("there is no such background mode");
    m_state.isOpaque = mode == kOpaque;
    changePenLook();
    return kDone;
}

Played DeviceContext::setBackgroundColor(Color color)
{
    m_state.backgroundColor = color;
    changePenLook();
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
    constexpr uint32_t kAlternate = 1, kWinding = 2;
    if (mode != kAlternate && mode != kWinding)
        return notDone("there is no such fill mode");
    m_state.isWinding = mode == kWinding;
    return kDone;
}

Played DeviceContext::setRop2(uint32_t mode)
{
    if (mode < 1 || mode > 16)
        return notDone("there is no such mix mode");
    m_state.rop2 = mode;
    changePenLook();
    return kDone;
}

Played DeviceContext::setMiterLimit(double limit)
{
    if (!(limit >= 1) || !std::isfinite(limit))
        return notDone("no miter has such a limit");
    m_state.miterLimit = limit;
    changePenLook();
    return kDone;
}

Played DeviceContext::setArcDirection(uint32_t direction)
{
    constexpr uint32_t kCounterclockwise = 1, kClockwise = 2;
    if (direction != kCounterclockwise && direction != kClockwise)
        return notDone("there is no such direction");
    m_state.isClockwise = direction == kClockwise;
    return kDone;
}

Played DeviceContext::setBrushOrigin(PointL origin)
{
    m_state.brushOrigin = origin;
    return kDone;
}

Played DeviceContext::setCharacterExtra(int32_t extra)
{
    m_state.characterExtra = extra;
    return kDone;
}

Played DeviceContext::setTextJustification(int32_t extra, int32_t count)
{
    m_state.breakExtra = extra;
    m_state.breakCount = count;
    return kDone;
}

Played DeviceContext::setStretchMode(uint32_t mode)
{
    constexpr uint32_t kModes = 4; // StretchMode, [MS-EMF] 2.1.32
    if (mode < 1 || mode > kModes)
        return notDone("there is no such stretch mode");
    m_state.stretchMode = mode;
    return kDone;
}

} // namespace svgtool::picture
