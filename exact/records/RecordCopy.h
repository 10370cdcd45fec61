#pragma once

#include "core/base/Bytes.h"

#include <QtGlobal>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define SVGTOOL_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SVGTOOL_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef SVGTOOL_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace svgtool {

/// The writable copy of a record that its handler gets, one record at a time.
///
/// All records of a file share a block. What lies behind the record in it is nobody's: under the
/// address sanitizer a look at it is found.
class RecordCopy
{
public:
    /// Copies the record that @p bytes begin with.
    /// @param bytes  the record and all that follows it
    /// @param size   of the record; 1 or more, and no more than there are bytes
    /// @return the copy, good until the next one is made; null when there is no memory for it
    char *make(ByteView bytes, int64_t size)
    {
        if (size > m_room) {
            const int64_t room = std::max(size, kShort);
            m_room = 0;
            m_block.reset();
            m_block.reset(new (std::nothrow) char[size_t(room)]);
            if (m_block == nullptr)
                return nullptr;
            m_room = room;
        }
        allow(m_room);
        // Wide stores, which the loads of the fields need not wait for, and no call.
        if (size <= kShort && bytes.size >= kShort)
            std::memcpy(m_block.get(), bytes.data, size_t(kShort));
        else
            std::memcpy(m_block.get(), bytes.data, size_t(size));
        allow(size);
        return m_block.get();
    }

private:
    static constexpr int64_t kShort = 64;

    // Only so many bytes of the block may be touched.
    void allow([[maybe_unused]] int64_t size)
    {
#ifdef SVGTOOL_ADDRESS_SANITIZER
        ASAN_UNPOISON_MEMORY_REGION(m_block.get(), size_t(size));
        ASAN_POISON_MEMORY_REGION(m_block.get() + size, size_t(m_room - size));
#endif
    }

    std::unique_ptr<char[]> m_block;
    int64_t m_room = 0;
};

} // namespace svgtool
