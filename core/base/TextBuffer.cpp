#include "core/base/TextBuffer.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace svgtool {

// What a text is made of stands below the functions that the trace lists, as a QString does, so it
// writes no trace lines.

using Size = decltype(QByteArray().size()); // 32 bits wide in Qt 5
static constexpr int64_t kMost = std::numeric_limits<Size>::max() / 2;

void TextBuffer::resize(int64_t capacity)
{
    const int64_t size = m_end - m_begin;
    m_bytes.resize(static_cast<Size>(capacity));
    m_begin = m_bytes.data();
    m_end = m_begin + size;
    m_limit = m_begin + capacity;
}

void TextBuffer::grow(int64_t room)
{
    constexpr int64_t kFirst = 4096;
    const int64_t size = m_end - m_begin;
    if (room > kMost - size)
        throw std::bad_alloc();
    // Each step copies all of the text, so they are few while the room that is left over is little.
    constexpr int64_t kSmall = 1 << 20;
    const int64_t before = m_limit - m_begin;
    const int64_t larger = std::min((before < kSmall ? 4 : 2) * before, kMost);
    resize(std::max({ larger, size + room, kFirst }));
}

void TextBuffer::reserve(int64_t size) noexcept
{
    if (size <= m_limit - m_begin || size > kMost)
        return;
    try {
        resize(size);
    } catch (...) {
        // Less may do.
    }
}

QByteArray TextBuffer::take()
{
    // Qt 5 would make a block for no bytes.
    if (m_end == m_begin)
        return {};
    m_bytes.resize(static_cast<Size>(m_end - m_begin));
    m_begin = m_end = m_limit = nullptr;
    return std::exchange(m_bytes, {});
}

char *TextBuffer::put(char *out, QStringView text)
{
    const auto *units = text.utf16();
    const int64_t size = text.size();
    char16_t seen = 0;
    for (int64_t i = 0; i < size; ++i) {
        seen = static_cast<char16_t>(seen | units[i]);
        out[i] = static_cast<char>(units[i]);
    }
    if (seen < 0x80)
        return out + size;
    return put(out, text.toUtf8());
}

} // namespace svgtool
