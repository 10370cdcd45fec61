#pragma once

#include "core/base/Limits.h"
#include "core/base/Numeric.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace svgtool {

/// A rectangle of whole units; right and bottom are outside.
struct RectI
{
    int32_t left = 0, top = 0, right = 0, bottom = 0;

    bool isEmpty() const { return left >= right || top >= bottom; }
    bool operator==(const RectI &) const = default;
};

/// An area of rectangles in bands: from the top, each from the left, none touching the next one of
/// its band, and no two bands that could be one.
class Region
{
public:
    enum class Mode { And, Or, Xor, Difference };
    /// Combinations with more rectangles than this are refused.
    static constexpr size_t kMostRects = limits::kRegionRects;

    Region() = default;
    explicit Region(const RectI &rect);
    /// The area that the rectangles cover together; nothing when it would have too many.
    static std::optional<Region> of(std::span<const RectI> rects);
    /// @return nothing when the result would have more than kMostRects rectangles
    static std::optional<Region> combined(const Region &a, const Region &b, Mode mode);

    bool isEmpty() const { return m_rects.empty(); }
    std::span<const RectI> rects() const { return m_rects; }
    RectI bounds() const;
    bool operator==(const Region &) const = default;

private:
    std::vector<RectI> m_rects;
};

} // namespace svgtool
