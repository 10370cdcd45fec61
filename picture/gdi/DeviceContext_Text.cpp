#include "core/fonts/FontEngine.h"
#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace svgtool::picture {

// Text alignment, [MS-EMF] 2.1.32 and the next.
static constexpr uint32_t kUpdatePosition = 1, kRight = 2, kCenter = 6, kBottom = 8, kBaseline = 24;
static constexpr uint32_t kOpaque = 2, kClipped = 4, kGlyphIndex = 0x10;

Played DeviceContext::textOut(std::u16string_view text, PointD reference, uint32_t options,
                              const RectD &box, std::span<const int32_t> advances)
{
    if ((options & kOpaque) != 0 && !m_state.clip.isEmpty && m_state.toDevice.keepsRectangles()
        && !box.isEmpty())
        fillBox(mapBounds(toPicture(), box), m_state.backgroundColor);
    if ((options & kGlyphIndex) != 0)
        return notDone("its values make no sense");
    const Font &font = *m_state.font;
    const bool usesPosition = (m_state.textAlign & kUpdatePosition) != 0;
    const PointD at = usesPosition ? m_state.current : reference;

    // The font's proportions, asked for at a size at which whole pixels are fine enough.
    constexpr int32_t kPixels = 2048;
    const FontMetrics metrics = fontMetrics(font.face, font.weight, -kPixels);
    const bool isKnown = metrics.height > 0;
    const double ascent = isKnown ? double(metrics.ascent) / kPixels : 0.9;
    const double cell = isKnown ? double(metrics.height) / kPixels : 1.15;
    const double height = font.height == 0 ? 16 : std::abs(double(font.height));
    const double em = font.height < 0 ? height : height / cell;
    const double width = advances.empty()
            ? em * textExtent(text, font.face, font.weight, -kPixels).width / kPixels
            : std::accumulate(advances.begin(), advances.end(), 0.0);
    const double turn = font.escapement / 10.0 * std::numbers::pi / 180;
    const PointD along{ std::cos(turn), -std::sin(turn) };
    const PointD down{ std::sin(turn), std::cos(turn) };
    const uint32_t horizontal = m_state.textAlign & kCenter;
    const uint32_t vertical = m_state.textAlign & kBaseline;
    const double back = horizontal == kCenter ? width / 2 : horizontal == kRight ? width : 0;
    const double fall = vertical == kBaseline ? 0
            : vertical == kBottom             ? em * (ascent - cell)
                                              : em * ascent;
    // Letters stay upright where the axes of a page are turned.
    const double upright = m_state.toDevice.d < 0 ? -1 : 1;
    const PointD baseline{ at.x - along.x * back + down.x * fall * upright,
                           at.y - along.y * back + down.y * fall * upright };
    if (usesPosition)
        m_state.current = { at.x + along.x * width, at.y + along.y * width };
    if (text.empty() || m_state.clip.isEmpty)
        return kDone;

    Text run;
    run.characters = text;
    const Affine map = toPicture();
    const double scale = map.scaleY();
    run.baseline = map.map(baseline);
    run.angle = font.escapement / 10.0;
    run.size = em * scale;
    for (const int32_t advance : advances)
        run.advances.push_back(advance * map.scaleX());
    run.face = font.face;
    run.weight = uint16_t(std::clamp(font.weight, 0, 1000));
    run.charSet = font.charSet;
    run.pitchAndFamily = font.pitchAndFamily;
    run.isItalic = font.isItalic;
    run.isUnderlined = font.isUnderlined;
    run.isStruckOut = font.isStruckOut;
    Node node = newNode();
    node.fill = m_builder.paint({ Paint::Kind::Solid, m_state.textColor, kNone });
    m_builder.add(node, std::move(run));
    return (options & kClipped) != 0 ? approximated("it looks different") : kDone;
}

} // namespace svgtool::picture
