#pragma once

#include "core/base/Bytes.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define SVGTOOL_EXACT_RECORDS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SVGTOOL_EXACT_RECORDS 1
#endif
#endif

namespace svgtool {

/// The writable copy of a record that its handler gets, one record at a time.
///
/// All records of a file share a block. Under the address sanitizer each has one of its own of
/// exactly its size, so that a read behind the record is found.
class RecordCopy
{
public:
    /// Copies the record that @p bytes begin with.
    /// @param bytes  the record and all that follows it
    /// @param size   of the record; 1 or more, and no more than there are bytes
    /// @return the copy, good until the next one is made; null when there is no memory for it.
    ///         What lies behind the record in its block is nobody's.
    char *make(ByteView bytes, qint64 size)
    {
        if (kIsExact || size > m_room) {
            const qint64 room = kIsExact ? size : std::max(size, kShort);
            m_room = 0;
            m_block.reset();
            m_block.reset(new (std::nothrow) char[size_t(room)]);
            if (m_block == nullptr)
                return nullptr;
            m_room = room;
        }
        // Wide stores, which the loads of the fields need not wait for, and no call.
        if (!kIsExact && size <= kShort && bytes.size >= kShort)
            std::memcpy(m_block.get(), bytes.data, size_t(kShort));
        else
            std::memcpy(m_block.get(), bytes.data, size_t(size));
        return m_block.get();
    }

private:
#ifdef SVGTOOL_EXACT_RECORDS
    static constexpr bool kIsExact = true;
#else
    static constexpr bool kIsExact = false;
#endif
    static constexpr qint64 kShort = 64;

    std::unique_ptr<char[]> m_block;
    qint64 m_room = 0;
};

} // namespace svgtool

#undef SVGTOOL_EXACT_RECORDS
