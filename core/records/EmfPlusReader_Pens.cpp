#include "core/records/EmfPlusParts.h"

#include <algorithm>
#include <cmath>

namespace svgtool::plus {

static LineCap lineCap(uint32_t value)
{
    const bool isKnown = value <= uint32_t(LineCap::Triangle)
            || (value >= uint32_t(LineCap::NoAnchor) && value <= uint32_t(LineCap::ArrowAnchor));
    return isKnown ? LineCap(value) : LineCap::Flat;
}

static DashCap dashCap(uint32_t value)
{
    return value == 2 || value == 3 ? DashCap(value) : DashCap::Flat;
}

static PathCap readPathCap(PlusFields &fields)
{
    constexpr uint32_t kFillPath = 1, kLinePath = 2;
    constexpr int64_t kHotSpots = 16;
    PathCap cap;
    const uint32_t flags = fields.dword();
    cap.baseCap = lineCap(fields.dword());
    cap.baseInset = fields.real();
    cap.startCap = lineCap(fields.dword());
    cap.endCap = lineCap(fields.dword());
    cap.join = fields.choice(LineJoin::MiterClipped, LineJoin::Miter);
    cap.miterLimit = fields.real();
    cap.widthScale = fields.real();
    fields.skip(kHotSpots);
    if ((flags & kFillPath) != 0)
        cap.fill = readSizedPath(fields);
    if ((flags & kLinePath) != 0)
        cap.line = readSizedPath(fields);
    return cap;
}

static ArrowCap readArrowCap(PlusFields &fields)
{
    ArrowCap cap;
    cap.width = fields.real();
    cap.height = fields.real();
    cap.middleInset = fields.real();
    cap.isFilled = fields.dword() != 0;
    cap.startCap = lineCap(fields.dword());
    cap.endCap = lineCap(fields.dword());
    cap.join = fields.choice(LineJoin::MiterClipped, LineJoin::Miter);
    cap.miterLimit = fields.real();
    cap.widthScale = fields.real();
    return cap;
}

CustomLineCap readCustomLineCap(PlusFields &fields)
{
    constexpr uint32_t kFigures = 0, kArrow = 1;
    const uint32_t type = fields.dword();
    if (type == kArrow)
        return readArrowCap(fields);
    if (type != kFigures)
        fields.fail();
    return readPathCap(fields);
}

static std::shared_ptr<const CustomLineCap> readSizedCap(PlusFields &fields)
{
    PlusFields part(fields.part(fields.longInt()));
    part.skip(kVersionBytes);
    auto cap = std::make_shared<const CustomLineCap>(readCustomLineCap(part));
    return part.isSound() ? cap : nullptr; // the pen is of use without it
}

// What GDI+ itself does not let a pen have is not there.
static std::vector<double> soundDashes(std::vector<double> dashes)
{
    const bool isSound = std::ranges::all_of(dashes, [](double length) { return length >= 0; })
            && std::ranges::any_of(dashes, [](double length) { return length > 0; });
    return isSound ? dashes : std::vector<double>{};
}

static std::vector<double> soundStripes(std::vector<double> edges)
{
    const bool isSound = edges.size() % 2 == 0 && std::ranges::is_sorted(edges) && !edges.empty()
            && edges.front() >= 0 && edges.back() <= 1;
    return isSound ? edges : std::vector<double>{};
}

// The optional fields of a pen ([MS-EMFPLUS] 2.2.2.33), in the order of their bits.
static void readPenFields(PlusFields &fields, uint32_t flags, Pen &pen)
{
    // clang-format off
    enum : uint32_t {
        Transform = 1, StartCap = 2, EndCap = 4, Join = 8, MiterLimit = 0x10, LineStyle = 0x20,
        DashedLineCap = 0x40, DashOffset = 0x80, DashedLine = 0x100, NonCenter = 0x200,
        CompoundLine = 0x400, CustomStartCap = 0x800, CustomEndCap = 0x1000,
    };
    // clang-format on
    if ((flags & Transform) != 0)
        pen.transform = fields.matrix();
    if ((flags & StartCap) != 0)
        pen.startCap = lineCap(fields.dword());
    if ((flags & EndCap) != 0)
        pen.endCap = lineCap(fields.dword());
    if ((flags & Join) != 0)
        pen.join = fields.choice(LineJoin::MiterClipped, LineJoin::Miter);
    if ((flags & MiterLimit) != 0)
        pen.miterLimit = fields.real();
    if ((flags & LineStyle) != 0)
        pen.dashStyle = fields.choice(DashStyle::Custom, DashStyle::Solid);
    if ((flags & DashedLineCap) != 0)
        pen.dashCap = dashCap(fields.dword());
    if ((flags & DashOffset) != 0)
        pen.dashOffset = fields.real();
    if ((flags & DashedLine) != 0)
        pen.dashes = soundDashes(fields.reals(fields.dword()));
    if ((flags & NonCenter) != 0)
        pen.alignment = fields.choice(PenAlignment::Right, PenAlignment::Center);
    if ((flags & CompoundLine) != 0)
        pen.stripes = soundStripes(fields.reals(fields.dword()));
    if ((flags & CustomStartCap) != 0)
        pen.customStartCap = readSizedCap(fields);
    if ((flags & CustomEndCap) != 0)
        pen.customEndCap = readSizedCap(fields);
}

Pen readPen(PlusFields &fields)
{
    Pen pen;
    fields.skip(4); // a type, which is 0
    const uint32_t flags = fields.dword();
    pen.unit = fields.choice(Unit::Millimeter, Unit::World);
    pen.width = std::abs(fields.real());
    readPenFields(fields, flags, pen);
    if (!pen.dashes.empty())
        pen.dashStyle = DashStyle::Custom; // files have the lengths without the style, too
    else if (pen.dashStyle == DashStyle::Custom)
        pen.dashStyle = DashStyle::Solid;
    fields.skip(kVersionBytes);
    pen.brush = readBrush(fields);
    return pen;
}

} // namespace svgtool::plus
