#include "picture/play/EmfPlusCalls.h"

namespace svgtool::picture::emfplus {

using plus::PlusFields;

std::shared_ptr<const plus::Brush> takeBrush(const Play &play, const PlusRecord &record,
                                             PlusFields &fields)
{
    const uint32_t value = fields.dword();
    if (record.has(kIsColor))
        return std::make_shared<const plus::Brush>(plus::SolidBrush{ value });
    return plus::objectAt<plus::Brush>(play.objects, value);
}

std::vector<RectD> boxes(const PlusRecord &record, PlusFields &fields)
{
    constexpr int64_t kShortBox = 8, kRealBox = 16;
    const uint32_t count = fields.dword();
    PlusFields part(fields.part(count * (record.has(kIsShort) ? kShortBox : kRealBox)));
    std::vector<RectD> all;
    for (uint32_t i = 0; fields.isSound() && i < count; ++i)
        all.push_back(box(record, part));
    if (!part.isSound())
        fields.fail();
    return all;
}

std::vector<PointD> takePoints(const PlusRecord &record, PlusFields &fields, uint32_t count)
{
    using enum PlusFields::PointForm;
    return fields.points(count,
                         record.has(kIsRelative)        ? Relative
                                 : record.has(kIsShort) ? Short
                                                        : Real);
}

std::vector<PointD> points(const PlusRecord &record, PlusFields &fields)
{
    return takePoints(record, fields, fields.dword());
}

Played fillPie(Graphics &graphics, const plus::Brush &brush, double start, double sweep,
               const RectD &box)
{
    return graphics.fillPie(brush, box, start, sweep);
}

Played fillClosedCurve(Graphics &graphics, const plus::Brush &brush, double tension,
                       const std::vector<PointD> &points, bool isWinding)
{
    return graphics.fillClosedCurve(brush, points, tension, isWinding);
}

Played drawPie(Graphics &graphics, const plus::Pen &pen, double start, double sweep,
               const RectD &box)
{
    return graphics.drawPie(pen, box, start, sweep);
}

Played drawArc(Graphics &graphics, const plus::Pen &pen, double start, double sweep,
               const RectD &box)
{
    return graphics.drawArc(pen, box, start, sweep);
}

Played drawClosedCurve(Graphics &graphics, const plus::Pen &pen, double tension,
                       const std::vector<PointD> &points)
{
    return graphics.drawClosedCurve(pen, points, tension);
}

Played drawCurve(Graphics &graphics, const plus::Pen &pen, double tension, uint32_t first,
                 uint32_t segments, const std::vector<PointD> &points)
{
    return graphics.drawCurve(pen, points, tension, first, segments);
}

Played drawPath(Play &play, const PlusRecord &record)
{
    PlusFields fields(record.data);
    const auto pen = plus::objectAt<plus::Pen>(play.objects, fields.dword());
    const auto path = objectOf<plus::PathObject>(play, record);
    return pen != nullptr && path != nullptr ? play.graphics.drawPath(*pen, *path) : kNoObject;
}

} // namespace svgtool::picture::emfplus
