#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace svgtool::picture {

// RegionMode, [MS-EMF] 2.1.29.
static constexpr uint32_t kAnd = 1, kOr = 2, kXor = 3, kDiff = 4, kCopy = 5;

// The pixels that the picture shows, and one around them.
static RectI shownPixels(const Device &device)
{
    const auto toDevice = device.toPicture.inverse();
    const RectD view = mapBounds(toDevice.value_or(Affine()), device.view);
    return { truncateToInt32(view.left - 1), truncateToInt32(view.top - 1),
             truncateToInt32(view.right + 1), truncateToInt32(view.bottom + 1) };
}

Path DeviceContext::regionPath(const Region &region) const
{
    // Viewers draw nothing right that lies very far away.
    const Region view(shownPixels(m_device));
    const Region shown = Region::combined(region, view, Region::Mode::And).value_or(region);
    Path path;
    for (const RectI &rect : shown.rects())
        path.addRect(
                { double(rect.left), double(rect.top), double(rect.right), double(rect.bottom) });
    path.transform(m_device.toPicture);
    return path;
}

void DeviceContext::updateClip()
{
    ClipState &clip = m_state.clip;
    clip.inScene = kNone;
    clip.isEmpty = clip.region && clip.region->isEmpty();
    const auto narrow = [&](const Path &path, bool isEvenOdd) {
        clip.inScene = m_builder.clip({ clip.inScene, path, isEvenOdd });
    };
    for (const ClipState *part : { m_state.meta.get(), &std::as_const(clip) }) {
        if (part == nullptr)
            continue;
        clip.isEmpty = clip.isEmpty || part->isEmpty;
        if (part->region) {
            const RectI bounds = part->region->bounds();
            const RectD box{ double(bounds.left), double(bounds.top), double(bounds.right),
                             double(bounds.bottom) };
            const bool coversAll = part->region->rects().size() == 1
                    && mapBounds(m_device.toPicture, box).contains(m_device.view);
            if (!coversAll)
                narrow(regionPath(*part->region), false);
        }
        for (const ClipTerm &term : part->terms)
            narrow(term.path, term.isEvenOdd);
    }
}

Played DeviceContext::intersectTerm(ClipTerm term)
{
    m_state.clip.terms.push_back(std::move(term));
    updateClip();
    return kDone;
}

Played DeviceContext::resetClip()
{
    m_state.clip = {};
    updateClip();
    return kDone;
}

// All that the device has, around the picture too.
static RectI everything()
{
    constexpr int32_t kFar = 1 << 26;
    return { -kFar, -kFar, kFar, kFar };
}

Played DeviceContext::selectClipRegion(const Region &region, uint32_t mode)
{
    ClipState &clip = m_state.clip;
    if (mode == kCopy) {
        clip = {};
        clip.region = region;
        updateClip();
        return kDone;
    }
    static constexpr Region::Mode kModes[] = { Region::Mode::And, Region::Mode::Or,
                                               Region::Mode::Xor, Region::Mode::Difference };
    if (mode < kAnd || mode > kDiff)
        return notDone("its values make no sense");
    const bool isExact = clip.terms.empty() || mode == kAnd || mode == kDiff;
    const auto combined = Region::combined(clip.region.value_or(Region(everything())), region,
                                           kModes[mode - kAnd]);
    if (!combined)
        return notDone("its values make no sense");
    clip.region = *combined;
    updateClip();
    return isExact ? kDone : approximated("it looks different");
}

Played DeviceContext::selectClipPath(uint32_t mode)
{
    const auto path = takePath();
    if (!path)
        return notDone("there is no path");
    ClipTerm term{ path->path, !m_state.isWinding && !path->isWidened };
    term.path.transform(m_device.toPicture);
    if (mode == kCopy)
        m_state.clip = {};
    else if (mode == kDiff || mode == kXor) {
        // What lies around a figure, by the even-odd rule.
        term.path.addRect(m_device.view);
        term.isEvenOdd = true;
    }
    intersectTerm(std::move(term));
    return mode == kCopy || mode == kAnd || mode == kDiff ? kDone
                                                          : approximated("it looks different");
}

static std::optional<RectI> pixelBox(const RectD &box)
{
    constexpr double kFar = 1 << 26;
    const auto whole = [kFar](double value) {
        return int32_t(std::floor(std::clamp(value, -kFar, kFar) + 0.5));
    };
    return RectI{ whole(box.left), whole(box.top), whole(box.right), whole(box.bottom) };
}

Played DeviceContext::intersectClip(const RectD &box)
{
    if (m_state.toDevice.keepsRectangles()) {
        const auto pixels = pixelBox(mapBounds(m_state.toDevice, box));
        return selectClipRegion(Region(*pixels), kAnd);
    }
    Path path;
    path.addRect(box);
    path.transform(toPicture());
    return intersectTerm({ path, false });
}

Played DeviceContext::excludeClip(const RectD &box)
{
    if (m_state.toDevice.keepsRectangles()) {
        const auto pixels = pixelBox(mapBounds(m_state.toDevice, box));
        return selectClipRegion(Region(*pixels), kDiff);
    }
    Path path;
    path.addRect(box);
    path.transform(toPicture());
    path.addRect(m_device.view);
    return intersectTerm({ path, true });
}

Played DeviceContext::offsetClip(PointD offset)
{
    const PointD by = m_state.toDevice.mapVector(offset);
    ClipState &clip = m_state.clip;
    if (clip.region) {
        std::vector<RectI> moved(clip.region->rects().begin(), clip.region->rects().end());
        const int32_t dx = truncateToInt32(std::floor(by.x + 0.5));
        const int32_t dy = truncateToInt32(std::floor(by.y + 0.5));
        for (RectI &rect : moved)
            rect = { wrapAdd(rect.left, dx), wrapAdd(rect.top, dy), wrapAdd(rect.right, dx),
                     wrapAdd(rect.bottom, dy) };
        const auto region = Region::of(moved);
        if (!region)
            return notDone("its values make no sense");
        clip.region = *region;
    }
    const PointD shown = m_device.toPicture.mapVector(by);
    for (ClipTerm &term : clip.terms)
        term.path.transform(Affine::translation(shown.x, shown.y));
    updateClip();
    return kDone;
}

Played DeviceContext::setMetaRegion()
{
    auto meta = std::make_shared<ClipState>();
    if (m_state.meta)
        *meta = *m_state.meta;
    if (m_state.clip.region) {
        const auto region = Region::combined(meta->region.value_or(Region(everything())),
                                             *m_state.clip.region, Region::Mode::And);
        if (!region)
            return notDone("its values make no sense");
        meta->region = *region;
    }
    meta->terms.insert(meta->terms.end(), m_state.clip.terms.begin(), m_state.clip.terms.end());
    meta->isEmpty = meta->region && meta->region->isEmpty();
    m_state.meta = meta;
    m_state.clip = {};
    updateClip();
    return kDone;
}

} // namespace svgtool::picture
