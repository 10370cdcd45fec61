#pragma once

#include "core/base/Limits.h"
#include "core/base/Numeric.h"
#include "core/geometry/Path.h"

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
    bool contains(const RectI &other) const
    {
        return left <= other.left && top <= other.top && other.right <= right
                && other.bottom <= bottom;
    }
    bool operator==(const RectI &) const = default;
};

/// The same in numbers of another kind.
inline RectD boxOf(const RectI &rect)
{
    return { double(rect.left), double(rect.top), double(rect.right), double(rect.bottom) };
}

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
    static std::optional<Region> of(std::vector<RectI> rects);
    /// @return nothing when the result would have more than kMostRects rectangles
    static std::optional<Region> combined(const Region &a, const Region &b, Mode mode);

    /// The units whose centres lie in a path, as far as they lie in @p within, too.
    /// @param[in,out] crossings  of lines and rows: how many there may be, and how many are left
    /// @return nothing when there are more, or as many lines, or too many rectangles
    static std::optional<Region> ofPath(const Path &path, bool isEvenOdd, const RectI &within,
                                        size_t &crossings);

    /// What moves out of the range of numbers is cut off.
    Region moved(int32_t dx, int32_t dy) const;
    /// The same area as closed figures of upright and level lines, clockwise as y grows downwards
    /// and holes the other way round, so that both rules of filling give it.
    Path outline() const;

    bool isEmpty() const { return m_rects.empty(); }
    std::span<const RectI> rects() const { return m_rects; }
    RectI bounds() const;
    bool operator==(const Region &) const = default;

private:
    static std::optional<Region> together(std::span<const RectI> rects);

    std::vector<RectI> m_rects;
};

} // namespace svgtool
