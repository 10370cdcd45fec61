#include "picture/gdi/DeviceContext.h"

#include "picture/scene/Extents.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace svgtool::picture {

// RegionMode, [MS-EMF] 2.1.29.
static constexpr uint32_t kCopy = 5;

static std::optional<Region::Mode> regionMode(uint32_t mode)
{
    static constexpr Region::Mode kModes[] = { Region::Mode::And, Region::Mode::Or,
                                               Region::Mode::Xor, Region::Mode::Difference };
    return mode >= 1 && mode < kCopy ? std::optional(kModes[mode - 1]) : std::nullopt;
}

static constexpr Played kNoMode = notDone("there is no such way to combine clips");
static constexpr Played kTooLarge = notDone("its clip has too many parts");

static int32_t wholeUnit(double value)
{
    constexpr double kFar = 1 << 30; // sums of two stay in range
    return int32_t(std::fmin(std::fmax(value, -kFar), kFar));
}

// The device units that the picture shows at least a part of.
RectI DeviceContext::wholePicture() const
{
    const RectD view = deviceView();
    return { wholeUnit(std::floor(view.left)), wholeUnit(std::floor(view.top)),
             wholeUnit(std::ceil(view.right)), wholeUnit(std::ceil(view.bottom)) };
}

std::optional<Region> DeviceContext::combined(const Region *region, const Region &with,
                                              Region::Mode mode)
{
    const Region whole(wholePicture());
    const Region &first = region != nullptr ? *region : whole;
    if (!spend(m_left.clipWork, first.rects().size() + with.rects().size()))
        return std::nullopt;
    return Region::combined(first, with, mode);
}

// Puts a clip in force, with what it leaves to be seen.
Played DeviceContext::changeClip(ClipState clip)
{
    if (!m_device.isClipped)
        return notDone("it would leave nothing of the picture");
    Visible visible;
    std::shared_ptr<const Region> shown = clip.region ? clip.region : m_state.meta.region;
    if (clip.region && m_state.meta.region) {
        auto both = combined(clip.region.get(), *m_state.meta.region, Region::Mode::And);
        if (!both)
            return kTooLarge;
        shown = std::make_shared<Region>(std::move(*both));
    }
    if (shown) {
        const Region whole(wholePicture());
        auto part = combined(shown.get(), whole, Region::Mode::And);
        if (!part)
            return kTooLarge;
        visible.isEmpty = part->isEmpty();
        if (*part != whole) {
            visible.box = mapBounds(m_device.toPicture, boxOf(part->bounds()));
            visible.region = std::make_shared<Region>(std::move(*part));
        }
    }
    if (clip.paths != kNone && m_clipPaths[clip.paths].leavesNothing)
        visible.isEmpty = true;
    m_state.clip = std::move(clip);
    m_state.visible = std::make_shared<Visible>(std::move(visible));
    return kDone;
}

// Whether the clip surely hides what is painted in a box of the picture. What it hides is dropped
// from the scene anyway; but many clips show nothing, and are not to be made then. How large the
// pixels will be is not known yet, into which a viewer may smooth edges.
bool DeviceContext::isCutOff(const RectD &ink) const
{
    constexpr double kLeastPixels = 64; // that a picture has along a side, unless it is an icon
    const Visible &visible = *m_state.visible;
    const double margin = std::fmax(m_device.view.width(), m_device.view.height()) / kLeastPixels;
    return visible.region && intersection(grown(ink, margin), visible.box).isEmpty();
}

Index DeviceContext::visibleClip()
{
    Visible &visible = *m_state.visible;
    if (!visible.clip) {
        const Index paths = m_state.clip.paths;
        visible.clip = paths != kNone ? m_clipPaths[paths].inScene : m_outerClip;
        if (visible.region) {
            Path outline = visible.region->outline();
            outline.transform(m_device.toPicture);
            visible.clip = m_builder.clip({ *visible.clip, std::move(outline), false });
        }
    }
    return *visible.clip;
}

// Cuts a chain to one more path.
bool DeviceContext::addPath(Index &paths, Path path, bool isEvenOdd)
{
    if (!spend(m_left.clipWork, path.points().size()))
        return false;
    if (paths != kNone && m_clipPaths[paths].path == path
        && m_clipPaths[paths].isEvenOdd == isEvenOdd)
        return true; // the last one over again
    Path shown = path;
    shown.transform(m_device.toPicture);
    bool leavesNothing = intersection(shown.bounds(), m_device.view).isEmpty();
    Index parent = m_outerClip;
    if (paths != kNone) {
        leavesNothing = leavesNothing || m_clipPaths[paths].leavesNothing;
        parent = m_clipPaths[paths].inScene;
    }
    const Index inScene = m_builder.clip({ parent, std::move(shown), isEvenOdd });
    m_clipPaths.push_back({ paths, std::move(path), isEvenOdd, leavesNothing, inScene });
    paths = Index(m_clipPaths.size() - 1);
    return true;
}

// The pixels of an upright rectangle, which is what paths for clips mostly are.
static std::optional<RectI> pixelsOf(const Path &path)
{
    const auto box = rectOf(path.verbs(), path.points());
    if (!box)
        return std::nullopt;
    // A pixel counts if its centre is inside.
    return RectI{ wholeUnit(std::ceil(box->left - 0.5)), wholeUnit(std::ceil(box->top - 0.5)),
                  wholeUnit(std::ceil(box->right - 0.5)), wholeUnit(std::ceil(box->bottom - 0.5)) };
}

std::optional<Region> DeviceContext::regionOf(const Path &path, bool isEvenOdd)
{
    const size_t most =
            std::min(m_left.clipWork / limits::kClipCrossingWork, limits::kClipCrossings);
    size_t left = most;
    auto region = Region::ofPath(path, isEvenOdd, wholePicture(), left);
    m_left.clipWork -= (most - left) * limits::kClipCrossingWork;
    return region;
}

// The pixels of a clip, without those that the meta one takes away.
std::optional<Region> DeviceContext::regionOf(const ClipState &clip)
{
    if (clip.region && !spend(m_left.clipWork, clip.region->rects().size()))
        return std::nullopt;
    auto region = clip.region ? *clip.region : Region(wholePicture());
    for (Index at = clip.paths; at != m_state.meta.paths; at = m_clipPaths[at].before) {
        const auto pixels = regionOf(m_clipPaths[at].path, m_clipPaths[at].isEvenOdd);
        auto both = pixels ? combined(&region, *pixels, Region::Mode::And) : std::nullopt;
        if (!both)
            return std::nullopt;
        region = std::move(*both);
    }
    return region;
}

Played DeviceContext::resetClip()
{
    return changeClip({ m_state.meta.paths, nullptr });
}

Played DeviceContext::replaceClip(std::shared_ptr<const Region> region)
{
    return changeClip({ m_state.meta.paths, std::move(region) });
}

Played DeviceContext::selectClipRegion(Region region, uint32_t number)
{
    if (number == kCopy)
        return replaceClip(std::make_shared<Region>(std::move(region)));
    const auto mode = regionMode(number);
    if (!mode)
        return kNoMode;
    ClipState clip = m_state.clip;
    // What only takes away leaves paths as they are.
    if (*mode != Region::Mode::And && *mode != Region::Mode::Difference
        && clip.paths != m_state.meta.paths) {
        auto pixels = regionOf(clip);
        if (!pixels)
            return kTooLarge;
        clip = { m_state.meta.paths, std::make_shared<Region>(std::move(*pixels)) };
    }
    auto result = combined(clip.region.get(), region, *mode);
    if (!result)
        return kTooLarge;
    clip.region = std::make_shared<Region>(std::move(*result));
    return changeClip(std::move(clip));
}

Played DeviceContext::intersectPath(Path path, bool isEvenOdd)
{
    if (const auto pixels = pixelsOf(path))
        return selectClipRegion(Region(*pixels), 1);
    ClipState clip = m_state.clip;
    if (!addPath(clip.paths, std::move(path), isEvenOdd))
        return kTooLarge;
    return changeClip(std::move(clip));
}

// Ways to combine that paths have no words for are done on pixels, as GDI does all of them.
Played DeviceContext::combinePath(const Path &path, bool isEvenOdd, Region::Mode mode)
{
    const auto earlier = regionOf(m_state.clip);
    const auto pixels = regionOf(path, isEvenOdd);
    auto result = earlier && pixels ? combined(&*earlier, *pixels, mode) : std::nullopt;
    if (!result)
        return kTooLarge;
    return changeClip({ m_state.meta.paths, std::make_shared<Region>(std::move(*result)) });
}

Played DeviceContext::selectClipPath(uint32_t number)
{
    const auto mode = regionMode(number);
    if (!mode && number != kCopy)
        return kNoMode;
    const auto taken = takePath();
    if (!taken || taken->path.isEmpty())
        return notDone("there is no path");
    Path path = taken->path;
    const bool isEvenOdd = !m_state.isWinding && !taken->isWidened;
    if (!mode) {
        const State before = m_state;
        m_state.clip = { m_state.meta.paths, nullptr };
        const Played played = intersectPath(std::move(path), isEvenOdd);
        if (!played.isDone())
            m_state = before;
        return played;
    }
    if (*mode == Region::Mode::And)
        return intersectPath(std::move(path), isEvenOdd);
    if (*mode == Region::Mode::Difference && isEvenOdd) {
        // What lies around a figure, by the even-odd rule.
        path.addRect(deviceView());
        return intersectPath(std::move(path), true);
    }
    return combinePath(path, isEvenOdd, *mode);
}

static RectI roundedBox(const RectD &box)
{
    const auto whole = [](double value) { return wholeUnit(std::floor(value + 0.5)); };
    return { whole(box.left), whole(box.top), whole(box.right), whole(box.bottom) };
}

Played DeviceContext::intersectClip(const RectD &box)
{
    if (m_state.toDevice.keepsRectangles())
        return selectClipRegion(Region(roundedBox(mapBounds(m_state.toDevice, box))), 1);
    Path path;
    path.addRect(box);
    path.transform(m_state.toDevice);
    return intersectPath(std::move(path), false);
}

Played DeviceContext::excludeClip(const RectD &box)
{
    constexpr uint32_t kDifference = 4;
    if (m_state.toDevice.keepsRectangles())
        return selectClipRegion(Region(roundedBox(mapBounds(m_state.toDevice, box))), kDifference);
    Path path;
    path.addRect(box);
    path.transform(m_state.toDevice);
    path.addRect(deviceView());
    return intersectPath(std::move(path), true);
}

Played DeviceContext::offsetClip(PointD offset)
{
    const PointD by = m_state.toDevice.mapVector(offset);
    const int32_t dx = wholeUnit(std::floor(by.x + 0.5)), dy = wholeUnit(std::floor(by.y + 0.5));
    ClipState clip{ m_state.meta.paths, nullptr };
    std::vector<Index> chain;
    size_t work = 0; // of all, since many short ones are much as well
    for (Index at = m_state.clip.paths; at != clip.paths; at = m_clipPaths[at].before) {
        chain.push_back(at);
        work += limits::kClipPathWork + m_clipPaths[at].path.points().size();
        if (work > m_left.clipWork)
            break;
    }
    if (!spend(m_left.clipWork, work)) {
        m_left.clipWork = 0;
        return kTooLarge;
    }
    for (; !chain.empty(); chain.pop_back()) {
        Path path = m_clipPaths[chain.back()].path;
        path.transform(Affine::translation(dx, dy));
        if (!addPath(clip.paths, std::move(path), m_clipPaths[chain.back()].isEvenOdd))
            return kTooLarge;
    }
    if (m_state.clip.region) {
        if (!spend(m_left.clipWork, m_state.clip.region->rects().size()))
            return kTooLarge;
        clip.region = std::make_shared<Region>(m_state.clip.region->moved(dx, dy));
    }
    return changeClip(std::move(clip));
}

Played DeviceContext::setMetaRegion()
{
    ClipState meta = m_state.clip;
    if (meta.region && m_state.meta.region) {
        auto both = combined(meta.region.get(), *m_state.meta.region, Region::Mode::And);
        if (!both)
            return kTooLarge;
        meta.region = std::make_shared<Region>(std::move(*both));
    } else if (!meta.region) {
        meta.region = m_state.meta.region;
    }
    m_state.meta = meta;
    return resetClip();
}

} // namespace svgtool::picture
