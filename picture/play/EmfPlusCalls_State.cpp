#include "picture/play/EmfPlusCalls.h"

#include <algorithm>

namespace svgtool::picture::emfplus {

using plus::PlusFields;

Played header(Play &play, const PlusRecord &record)
{
    constexpr int64_t kDots = 8; // behind the version and its flags
    constexpr double kUsual = 96, kMost = 1e5;
    PlusFields fields(record.data);
    fields.skip(kDots);
    const auto dots = [&] {
        const double value = fields.dword();
        return value > 0 && value <= kMost ? value : kUsual;
    };
    const double x = dots();
    play.graphics.setResolution({ x, dots() });
    return kNeutral;
}

Played object(Play &play, const PlusRecord &record)
{
    const auto whole = play.parts.add(record.flags, record.data);
    if (!whole)
        return kDone;
    const uint32_t slot = record.flags & 0xFF, type = record.flags >> 8 & 0x7F;
    if (slot >= play.objects.size())
        return notDone("it names a slot that there is not");
    play.objects[slot] = plus::readObject(type, *whole);
    return plus::isEmpty(play.objects[slot]) ? kDamagedRecord : kDone;
}

plus::Unit unit(const PlusRecord &record, PlusFields &fields)
{
    // The description of containers has it in the high byte.
    const int low = record.flags & 0xFF, value = low != 0 ? low : record.flags >> 8;
    if (value > int(plus::Unit::Millimeter))
        fields.fail();
    return plus::Unit(std::min(value, int(plus::Unit::Millimeter)));
}

plus::CombineMode combineMode(const PlusRecord &record, PlusFields &fields)
{
    const int mode = record.flags >> 8 & 0xF;
    if (mode > int(plus::CombineMode::Complement))
        fields.fail();
    return plus::CombineMode(std::min(mode, int(plus::CombineMode::Complement)));
}

Played beginContainer(Graphics &graphics, const RectD &to, const RectD &from, uint32_t number,
                      plus::Unit unit)
{
    return graphics.beginContainer(to, from, unit, number);
}

Played beginContainerNoParams(Graphics &graphics, uint32_t number)
{
    return graphics.beginContainer(number);
}

Played setPageTransform(Graphics &graphics, double scale, plus::Unit unit)
{
    return graphics.setPageTransform(unit, scale);
}

// [MS-EMFPLUS] 2.3.8.2. What is left out has no effect worth drawing.
Played setTsGraphics(Play &play, const PlusRecord &record)
{
    constexpr uint8_t kPointFilter = 1, kNearest = 5;
    PlusFields fields(record.data);
    fields.skip(1); // smoothing
    const uint8_t hint = fields.byte(), compositing = fields.byte();
    fields.skip(1); // quality of compositing
    const PointD origin = fields.shortPoint();
    fields.skip(2); // contrast
    const uint8_t filter = fields.byte();
    fields.skip(1); // offset of pixels
    const Affine toDevice = fields.matrix();
    if (!fields.isSound())
        return kDamagedRecord;
    Graphics &graphics = play.graphics;
    graphics.setTextRenderingHint(hint);
    graphics.setCompositingMode(compositing);
    graphics.setRenderingOrigin(origin);
    graphics.setInterpolationMode(filter == kPointFilter ? kNearest : 0);
    graphics.setPageTransform(plus::Unit::Pixel, 1);
    return graphics.setWorldTransform(toDevice);
}

// [MS-EMFPLUS] 2.3.8.1: rectangles of device pixels by their edges.
Played setTsClip(Play &play, const PlusRecord &record)
{
    constexpr uint16_t kIsPacked = 0x8000, kCount = 0x7FFF;
    constexpr int64_t kRectangle = 8;
    if (record.has(kIsPacked))
        return notDone("its rectangles are packed in a way that is not documented");
    const size_t count = record.flags & kCount;
    PlusFields fields(record.data);
    PlusFields part(fields.part(int64_t(count) * kRectangle));
    if (!fields.isSound() || count == 0)
        return kDamagedRecord;
    plus::Region region;
    region.nodes.assign(count - 1, { plus::RegionNode::Kind::Union, {}, nullptr });
    for (size_t i = 0; i < count; ++i) {
        const double left = part.word(), top = part.word(), right = part.word();
        const RectD box{ left, top, right, double(part.word()) };
        region.nodes.push_back({ plus::RegionNode::Kind::Rectangle, box, nullptr });
    }
    Graphics &graphics = play.graphics;
    const GraphicsState before = graphics.state();
    graphics.setWorldTransform(Affine());
    graphics.setPageTransform(plus::Unit::Pixel, 1);
    const Played played = graphics.setClipRegion(region, plus::CombineMode::Replace);
    graphics.setPageTransform(before.pageUnit, before.pageScale);
    graphics.setWorldTransform(before.world);
    return played;
}

} // namespace svgtool::picture::emfplus
