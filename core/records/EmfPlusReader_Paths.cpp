#include "core/records/EmfPlusParts.h"

#include <algorithm>
#include <span>

namespace svgtool::plus {

using PointForm = PlusFields::PointForm;

static constexpr uint32_t kRelative = 0x0800, kRunLengths = 0x1000, kWinding = 0x2000,
                          kShort = 0x4000;

// The type of each point ([MS-EMFPLUS] 2.2.2.31, 2.2.2.32).
static std::vector<uint8_t> readTypes(PlusFields &fields, size_t count, bool hasRuns)
{
    std::vector<uint8_t> types;
    if (!hasRuns) {
        const ByteView bytes = fields.part(int64_t(count));
        types.assign(bytes.data, bytes.data + bytes.size);
        return types;
    }
    constexpr uint8_t kIsRun = 0x40, kCount = 0x3F;
    types.reserve(count);
    while (types.size() < count && fields.rest().size > 0) {
        const uint8_t first = fields.byte();
        if ((first & kIsRun) == 0)
            types.push_back(first);
        else
            types.insert(types.end(), std::min(size_t(first & kCount), count - types.size()),
                         fields.byte());
    }
    if (types.size() < count)
        fields.fail();
    return types;
}

// Curves that lack points are left out.
static Path outlineOf(std::span<const PointD> points, std::span<const uint8_t> types)
{
    constexpr uint8_t kKind = 0x0F, kStart = 0, kBezier = 3, kClose = 0x80;
    Path path;
    for (size_t i = 0; i < points.size() && i < types.size(); ++i) {
        const int kind = types[i] & kKind;
        if (kind == kStart || i == 0) {
            path.moveTo(points[i]);
        } else if (kind != kBezier) {
            path.lineTo(points[i]);
        } else if (i + 2 < points.size()) {
            path.curveTo(points[i], points[i + 1], points[i + 2]);
            i += 2;
        }
        if ((types[i] & kClose) != 0)
            path.close();
    }
    return path;
}

PathObject readPath(PlusFields &fields)
{
    const uint32_t count = fields.dword(), flags = fields.dword();
    const PointForm form = (flags & kRelative) != 0 ? PointForm::Relative
            : (flags & kShort) != 0                 ? PointForm::Short
                                                    : PointForm::Real;
    const auto points = fields.points(count, form);
    // An older edition of the format has one flag for both, relative points and runs of types.
    const bool hasRuns = (flags & (kRelative | kRunLengths)) != 0;
    const auto types = readTypes(fields, points.size(), hasRuns);
    return { outlineOf(points, types), (flags & kWinding) != 0 };
}

PathObject readSizedPath(PlusFields &fields)
{
    PlusFields part(fields.part(fields.longInt()));
    part.skip(kVersionBytes);
    PathObject path = readPath(part);
    if (!part.isSound())
        fields.fail();
    return path;
}

} // namespace svgtool::plus
