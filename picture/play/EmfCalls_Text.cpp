#include "picture/play/EmfCalls.h"

namespace svgtool::picture::emf {

Played extTextOut(DeviceContext &dc, ByteView record)
{
    constexpr uint32_t kPairs = 0x2000; // ETO_PDY: the advances are pairs
    Fields fields(record, kBody + kBounds);
    fields.skip(12); // graphics mode and scale
    const PointD reference = takePoint(fields);
    const uint32_t count = fields.dword(), offset = fields.dword(), options = fields.dword();
    const RectD box = takeBox(fields);
    const uint32_t advancesAt = fields.dword();
    if (!slice(record, offset, int64_t(count) * 2))
        return notDone("it names more characters than it has");
    std::u16string characters;
    Fields units(record, offset);
    for (uint32_t i = 0; i < count; ++i)
        characters += char16_t(units.word());
    const int64_t stride = (options & kPairs) != 0 ? 8 : 4;
    std::vector<int32_t> advances;
    if (advancesAt != 0 && slice(record, advancesAt, int64_t(count) * stride)) {
        for (int64_t i = 0; i < int64_t(count); ++i)
            advances.push_back(Fields(record, advancesAt + i * stride).longInt());
    }
    return dc.textOut(characters, reference, options, box, advances);
}

} // namespace svgtool::picture::emf
