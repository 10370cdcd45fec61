#include "core/records/EmfPlusFields.h"

#include <cmath>

namespace svgtool::plus {

double PlusFields::real()
{
    const double value = m_fields.real();
    if (std::isfinite(value))
        return value;
    fail();
    return 0;
}

PointD PlusFields::point()
{
    const double x = real();
    return { x, real() };
}

PointD PlusFields::shortPoint()
{
    const double x = shortInt();
    return { x, double(shortInt()) };
}

static RectD boxOf(PointD corner, PointD size)
{
    return { corner.x, corner.y, corner.x + size.x, corner.y + size.y };
}

RectD PlusFields::rect()
{
    const PointD corner = point();
    return boxOf(corner, point());
}

RectD PlusFields::shortRect()
{
    const PointD corner = shortPoint();
    return boxOf(corner, shortPoint());
}

Affine PlusFields::matrix()
{
    Affine matrix;
    for (double *const value : { &matrix.a, &matrix.b, &matrix.c, &matrix.d, &matrix.e, &matrix.f })
        *value = real();
    return matrix;
}

bool PlusFields::has(uint32_t count, int64_t bytes)
{
    if (slice(m_bytes, m_fields.offset(), int64_t(count) * bytes))
        return true;
    fail();
    return false;
}

// One byte of 7 bits, or two of 15 bits with the higher one first ([MS-EMFPLUS] 2.2.2.21).
double PlusFields::packedInteger()
{
    constexpr uint8_t kIsLong = 0x80;
    const uint8_t first = byte();
    if ((first & kIsLong) == 0)
        return (first & 0x40) != 0 ? first - 0x80 : first;
    const int value = (first & 0x7F) << 8 | byte();
    return (value & 0x4000) != 0 ? value - 0x8000 : value;
}

std::vector<PointD> PlusFields::points(uint32_t count, PointForm form)
{
    constexpr int64_t kLeastBytes[] = { 8, 4, 2 };
    std::vector<PointD> points;
    if (!has(count, kLeastBytes[size_t(form)]))
        return points;
    points.reserve(count);
    PointD at;
    for (uint32_t i = 0; i < count; ++i) {
        if (form == PointForm::Relative) {
            at.x += packedInteger();
            at.y += packedInteger();
        } else {
            at = form == PointForm::Short ? shortPoint() : point();
        }
        points.push_back(at);
    }
    return points;
}

std::vector<double> PlusFields::reals(uint32_t count)
{
    std::vector<double> values;
    if (has(count, 4)) {
        values.reserve(count);
        for (uint32_t i = 0; i < count; ++i)
            values.push_back(real());
    }
    return values;
}

std::vector<uint32_t> PlusFields::dwords(uint32_t count)
{
    std::vector<uint32_t> values;
    if (has(count, 4)) {
        values.reserve(count);
        for (uint32_t i = 0; i < count; ++i)
            values.push_back(dword());
    }
    return values;
}

std::u16string PlusFields::text(uint32_t units)
{
    std::u16string text;
    if (has(units, 2)) {
        text.reserve(units);
        for (uint32_t i = 0; i < units; ++i)
            text += char16_t(word());
    }
    return text;
}

ByteView PlusFields::part(int64_t bytes)
{
    const auto part = slice(m_bytes, m_fields.offset(), bytes);
    if (!part)
        fail();
    else
        m_fields.skip(bytes);
    return part.value_or(ByteView{});
}

} // namespace svgtool::plus
