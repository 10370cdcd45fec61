#pragma once

#include "core/records/EmfPlusFields.h"
#include "picture/gdiplus/Graphics.h"

#include <cstdint>
#include <vector>

namespace svgtool::picture::emfplus {

/// A record without its head.
struct PlusRecord
{
    uint16_t flags;
    ByteView data;

    bool has(uint16_t flag) const { return (flags & flag) != 0; }
};

// Bits of flags that mean the same in many records.

/// A brush is a colour; an object goes on in the next record.
inline constexpr uint16_t kIsColor = 0x8000;
/// Coordinates have 16 bits.
inline constexpr uint16_t kIsShort = 0x4000;
/// What a record may do in two ways is done in the less usual one.
inline constexpr uint16_t kIsSet = 0x2000;
/// Points are differences from those before.
inline constexpr uint16_t kIsRelative = 0x0800;

// Takers of arguments, from the fields or the flags of a record.

inline double real(const PlusRecord &, plus::PlusFields &fields)
{
    return fields.real();
}

inline uint32_t number(const PlusRecord &, plus::PlusFields &fields)
{
    return fields.dword();
}

inline PointD point(const PlusRecord &, plus::PlusFields &fields)
{
    return fields.point();
}

inline PointD wholePoint(const PlusRecord &, plus::PlusFields &fields)
{
    const double x = fields.longInt();
    return { x, double(fields.longInt()) };
}

inline Affine matrix(const PlusRecord &, plus::PlusFields &fields)
{
    return fields.matrix();
}

/// Of real numbers whatever the flags say.
inline RectD realBox(const PlusRecord &, plus::PlusFields &fields)
{
    return fields.rect();
}

inline RectD box(const PlusRecord &record, plus::PlusFields &fields)
{
    return record.has(kIsShort) ? fields.shortRect() : fields.rect();
}

inline bool isSet(const PlusRecord &record, plus::PlusFields &)
{
    return record.has(kIsSet);
}

inline Graphics::Order order(const PlusRecord &record, plus::PlusFields &)
{
    return record.has(kIsSet) ? Graphics::Order::Append : Graphics::Order::Prepend;
}

inline uint8_t lowByte(const PlusRecord &record, plus::PlusFields &)
{
    return uint8_t(record.flags);
}

/// As many as are counted.
std::vector<RectD> boxes(const PlusRecord &record, plus::PlusFields &fields);
std::vector<PointD> points(const PlusRecord &record, plus::PlusFields &fields);
/// So many points, which are packed as the flags say.
std::vector<PointD> takePoints(const PlusRecord &record, plus::PlusFields &fields, uint32_t count);
/// A page unit that the low byte of the flags is; that of a container may be the high one.
plus::CombineMode combineMode(const PlusRecord &record, plus::PlusFields &fields);
plus::Unit unit(const PlusRecord &record, plus::PlusFields &fields);

} // namespace svgtool::picture::emfplus
