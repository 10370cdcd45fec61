#pragma once

#include "support/ByteWriter.h"

#include <initializer_list>
#include <vector>

namespace svgtool::test {

/// Builds an EMF byte by byte. As it stands its device has one pixel a millimetre, and its frame
/// gives a document of 100 by 50 whose origin is 0,0, so that coordinates map to themselves.
class EmfBuilder
{
public:
    using Words = std::initializer_list<qint64>;

    EmfBuilder &bounds(int left, int top, int right, int bottom)
    {
        return set(m_bounds, { left, top, right, bottom });
    }
    EmfBuilder &frame(int left, int top, int right, int bottom)
    {
        return set(m_frame, { left, top, right, bottom });
    }
    EmfBuilder &device(int pixelsX, int pixelsY, int millimetersX, int millimetersY)
    {
        return set(m_device, { pixelsX, pixelsY, millimetersX, millimetersY });
    }
    /// Bytes between the fixed header and the records.
    EmfBuilder &headerExtra(const QByteArray &bytes) { return set(m_headerExtra, bytes); }
    EmfBuilder &headerType(quint32 type) { return set(m_headerType, type); }
    /// The header's record count in place of the right one.
    EmfBuilder &recordCount(quint32 count) { return set(m_recordCount, qint64(count)); }
    EmfBuilder &withoutEnd() { return set(m_hasEnd, false); }
    EmfBuilder &raw(const QByteArray &bytes)
    {
        m_records += bytes;
        ++m_count;
        return *this;
    }
    EmfBuilder &record(quint32 type, const QByteArray &body)
    {
        return raw(ByteWriter().u32(type).u32(8 + body.size()).bytes(body).result());
    }
    /// A record of 32-bit parameters.
    EmfBuilder &record(quint32 type, Words words = {})
    {
        return record(type, ByteWriter().u32s(words).result());
    }

    QByteArray build() const
    {
        QByteArray records = m_records;
        if (m_hasEnd)
            records += ByteWriter().u32s({ 14, 20, 0, 16, 20 }).result();
        const int headerSize = 88 + int(m_headerExtra.size());
        ByteWriter header;
        header.u32(m_headerType).u32(headerSize);
        for (const auto &group : { m_bounds, m_frame })
            for (const int value : group)
                header.u32(value);
        header.u32s({ 0x464D4520, 0x10000, headerSize + records.size() });
        header.u32(m_recordCount >= 0 ? m_recordCount : 1 + m_count + (m_hasEnd ? 1 : 0));
        header.u16(1).u16(0).u32s({ 0, 0, 0 });
        for (const int value : m_device)
            header.u32(value);
        return header.bytes(m_headerExtra).bytes(records).result();
    }

private:
    template<class Member>
    EmfBuilder &set(Member &member, const Member &value)
    {
        member = value;
        return *this;
    }

    std::vector<int> m_bounds{ 0, 0, 100, 50 };
    std::vector<int> m_frame{ 0, 0, 10000, 5000 };
    std::vector<int> m_device{ 1000, 1000, 1000, 1000 };
    QByteArray m_headerExtra;
    QByteArray m_records;
    quint32 m_headerType = 1;
    qint64 m_recordCount = -1;
    int m_count = 0;
    bool m_hasEnd = true;
};

} // namespace svgtool::test
