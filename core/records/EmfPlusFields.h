#pragma once

#include "core/records/EmfPlusBrushes.h"
#include "core/records/Fields.h"

#include <vector>

namespace svgtool::plus {

/// Takes the fields of an EMF+ object or record one after the other ([MS-EMFPLUS] 2.2.2).
///
/// What the bytes are too short for reads as zero, but arrays, texts and parts are there as a whole
/// or not at all. Numbers that are not finite read as zero, too; of both, and of whatever the
/// caller finds, isSound() tells at the end.
class PlusFields
{
public:
    explicit PlusFields(ByteView bytes) : m_bytes(bytes), m_fields(bytes) { }

    uint8_t byte() { return m_fields.byte(); }
    uint16_t word() { return m_fields.word(); }
    int16_t shortInt() { return m_fields.shortInt(); }
    uint32_t dword() { return m_fields.dword(); }
    int32_t longInt() { return m_fields.longInt(); }
    double real();
    /// An enumeration whose values go from 0 to @p last; its default in the place of another one.
    template<class E>
    E choice(E last, E otherwise)
    {
        const uint32_t value = dword();
        return value <= uint32_t(last) ? E(value) : otherwise;
    }
    PlusFields &skip(int64_t bytes)
    {
        m_fields.skip(bytes);
        return *this;
    }

    PointD point(); ///< of real numbers
    PointD shortPoint(); ///< of 16 bits each
    /// By its edges: right lies left of left where the width is negative.
    RectD rect();
    RectD shortRect();
    Affine matrix();

    /// How points are packed.
    enum class PointForm : uint8_t { Real, Short, Relative };
    std::vector<PointD> points(uint32_t count, PointForm form);
    std::vector<double> reals(uint32_t count);
    std::vector<uint32_t> dwords(uint32_t count);
    std::u16string text(uint32_t units);
    /// The next bytes; none unless there are so many.
    ByteView part(int64_t bytes);
    /// All bytes behind those that were taken.
    ByteView rest() const { return tail(m_bytes, m_fields.offset()); }

    bool isSound() const { return m_isSound; }
    void fail() { m_isSound = false; }

private:
    /// @return whether there are @p count times @p bytes; fails otherwise
    bool has(uint32_t count, int64_t bytes);
    double packedInteger();

    ByteView m_bytes;
    Fields m_fields;
    bool m_isSound = true;
};

} // namespace svgtool::plus
