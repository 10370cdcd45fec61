#include "picture/gdi/DeviceContext.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

// The middle of a pen: an odd number of pixels lies around the centre of a pixel, an even one
// around its edge.
static double middleOf(double pixels)
{
    return int64_t(std::floor(std::fmin(pixels, 1e6) + 0.5)) % 2 != 0 ? 0.5 : 0;
}

DeviceContext::Nib DeviceContext::nib(uint8_t parts) const
{
    const Pen &pen = m_state.pen;
    const double pixel = m_device.unitsPerPixel;
    const Affine map = toPicture();
    Nib nib;
    double across = pixel, down = pixel;
    if (pen.isGeometric) {
        const Stretch stretch = stretchOf(map);
        const double most = pen.width * stretch.most;
        const double least = std::max(pen.width * stretch.least, pixel);
        // Ends that are a quarter of a pixel from round are drawn round.
        if (most - least > std::max(pixel / 4, most / 500)) {
            nib.shape = squeezed(stretch.along, least / most);
            nib.width = most;
        } else {
            nib.width = most > pixel ? std::sqrt(most * least) : pixel;
        }
        across = nib.width * std::hypot(nib.shape.a, nib.shape.c);
        down = nib.width * std::hypot(nib.shape.b, nib.shape.d);
    } else if (!pen.isExtended) {
        across = down = nib.width = std::max(pen.width * map.scaleX(), pixel);
    } else {
        nib.width = pixel;
    }
    nib.isThin = nib.width < 1.5 * pixel; // one pixel to the nearest, as GDI counts
    nib.offset = { middleOf(across / pixel) * pixel, middleOf(down / pixel) * pixel };
    if ((parts & kFramed) != 0 && pen.line == Pen::Line::InsideFrame)
        nib.offset = { pixel / 2, pixel / 2 };
    return nib;
}

// Lengths of lines and gaps, of pens without a width in pixels and of others in widths.
static std::vector<double> usualDashes(const Pen &pen, double width, bool isThin)
{
    static const std::vector<double> kInPixels[] = {
        { 18, 6 }, { 3, 3 }, { 9, 6, 3, 6 }, { 9, 3, 3, 3, 3, 3 }
    };
    static const std::vector<double> kInWidths[] = {
        { 3, 1 }, { 1, 1 }, { 3, 1, 1, 1 }, { 3, 1, 1, 1, 1, 1 }
    };
    if (!pen.isExtended && !isThin)
        return {}; // CreatePen's wide lines are whole
    const size_t row = size_t(pen.line) - size_t(Pen::Line::Dash);
    std::vector<double> dashes = pen.isGeometric ? kInWidths[row] : kInPixels[row];
    // A line's length counts with its caps. Dots keep a hundredth: of those without a length some
    // viewers leave out a few.
    constexpr double kDot = 0.01;
    const double caps = pen.isGeometric && !isThin && pen.cap != Cap::Butt ? 1 : 0;
    for (size_t i = 0; i < dashes.size(); i += 2) {
        const double line = std::max(dashes[i] - caps, kDot);
        dashes[i + 1] = (dashes[i + 1] + dashes[i] - line) * width;
        dashes[i] = line * width;
    }
    return dashes;
}

static std::vector<double> userDashes(const Pen &pen, double unit)
{
    std::vector<double> dashes;
    double sum = 0;
    for (const uint32_t dash : pen.dashes) {
        dashes.push_back(dash * unit);
        sum += dashes.back();
    }
    return sum > 0 ? dashes : std::vector<double>();
}

/// @param isClosed  the figure has no ends that could be moved to the edges of pixels
Index DeviceContext::penStroke(const Nib &nib, bool isClosed)
{
    constexpr double kStyleUnit = 3; // pixels, as the lengths of the usual styles have it
    const Pen &pen = m_state.pen;
    const double pixel = m_device.unitsPerPixel;
    Stroke stroke;
    stroke.paint = unshaped(brushPaint(pen.brush), nib.shape);
    stroke.width = nib.width;
    stroke.cap = nib.isThin ? Cap::Butt : pen.cap;
    stroke.join = nib.isThin ? Join::Miter : pen.join;
    stroke.miterLimit = nib.isThin ? 4 : m_state.miterLimit; // a thin line shows no miter
    switch (pen.line) {
    case Pen::Line::Dash:
    case Pen::Line::Dot:
    case Pen::Line::DashDot:
    case Pen::Line::DashDotDot:
        stroke.dashes = usualDashes(pen, pen.isGeometric ? nib.width : pixel, nib.isThin);
        break;
    case Pen::Line::User:
        stroke.dashes =
                userDashes(pen, pen.isGeometric ? stretchOf(toPicture()).most : kStyleUnit * pixel);
        break;
    case Pen::Line::Alternate:
        stroke.dashes = { nib.width, nib.width };
        break;
    default:
        break;
    }
    if (isClosed && !stroke.dashes.empty() && stroke.cap == Cap::Butt)
        stroke.dashOffset = nib.offset.x;
    constexpr uint32_t kCopyPen = 13;
    if (!pen.isExtended && !stroke.dashes.empty() && m_state.isOpaque && m_state.rop2 == kCopyPen)
        stroke.ground = m_state.backgroundColor;
    return m_builder.stroke(stroke);
}

const DeviceContext::UsedPen &DeviceContext::usePen(uint8_t parts, bool isClosed)
{
    const bool isFramed = (parts & kFramed) != 0;
    const bool isSame = m_usedPen.look == m_state.penLook && m_usedPen.isFramed == isFramed
            && m_usedPen.isClosed == isClosed;
    // Other brushes depend on more, and on images that may be taken back.
    if (!isSame || m_state.pen.brush.kind != Brush::Kind::Solid) {
        const Nib nib = this->nib(parts);
        m_usedPen = { m_state.penLook, isFramed, isClosed, nib, penStroke(nib, isClosed) };
    }
    return m_usedPen;
}

} // namespace svgtool::picture
