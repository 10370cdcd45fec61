#pragma once

#include "core/base/Hash.h"
#include "picture/svg/SvgDocument.h"

#include <array>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace svgtool::picture {

/// What elements can share by standing in a group, in the order in which it is written.
enum class Property : uint8_t {
    ClipPath, ///< not inherited, like the next; it comes before any transform
    Transform,
    Fill, ///< with its opacity
    FillRule,
    Stroke, ///< with its opacity
    StrokeWidth,
    StrokeLinecap,
    StrokeLinejoin,
    StrokeMiterlimit,
    StrokeDasharray,
    FontFamily,
    FontSize,
    FontWeight,
    FontStyle,
};
inline constexpr size_t kProperties = 14;

/// The value of each property, by number: equal values have one.
using Style = std::array<Index, kProperties>;

inline Index &valueOf(Style &style, Property property)
{
    return style[size_t(property)];
}

/// Values as the attributes that say them, such as ` fill="none"`.
class SvgStyles
{
public:
    static constexpr Index kAny = 0; ///< the element looks the same with every value
    static constexpr Index kDefault = 1; ///< no attribute
    static constexpr Index kOwn = 2; ///< the element says it itself, in its own way

    /// @param document  its definitions must be numbered; it lives longer
    explicit SvgStyles(SvgDocument &document);

    Style styleOf(const Node &node);
    std::string_view text(Index value) const { return m_texts[value]; }
    /// The length of the attribute of each value.
    std::vector<uint32_t> costs() const;

private:
    struct StrokeValues
    {
        Index paint = kAny, width = kAny, cap = kAny, join = kAny, miterLimit = kAny, dashes = kAny;
    };

    /// Takes what is behind the first @p start bytes of the document for the text of a value.
    Index take(int64_t start);
    Index fill(Index paint);
    Index clip(Index number);
    Index transform(Index number);
    Index fillRule(bool isEvenOdd);
    const StrokeValues &stroke(Index stroke);
    void addStroke(Style &style, const Node &node);
    void addFont(Style &style, Index font);

    SvgDocument &m_document;
    std::vector<std::string> m_texts;
    std::map<HashedBytes, Index> m_known;
    std::vector<Index> m_fills; // by paint
    std::vector<StrokeValues> m_strokes;
    std::vector<Index> m_clips, m_transforms; // by number, kAny while it is not asked for
    std::vector<std::array<Index, 4>> m_fonts; // by font: the last properties
    Index m_evenOdd = kAny;
    std::vector<RectD> m_shown; // by transform, around all that it is applied to
};

} // namespace svgtool::picture
