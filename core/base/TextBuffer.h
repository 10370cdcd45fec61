#pragma once

#include "core/base/Utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>

namespace svgtool {

/// Texts and bytes of other libraries that are pieces too, known by what they offer: those of Qt.
template<class Text>
concept Utf16Text = requires(const Text &text)
{
    {
        *text.utf16()
        } -> std::convertible_to<char16_t>;
    {
        text.size()
        } -> std::convertible_to<int64_t>;
};
template<class Text>
concept Utf8Text = requires(const Text &text)
{
    {
        text.constData()
        } -> std::same_as<const char *>;
    {
        text.size()
        } -> std::convertible_to<int64_t>;
};

/// Text in UTF-8 that grows at its end.
///
/// Pieces are numbers, which are written in decimal, ASCII literals, texts in UTF-16, whose
/// unpaired surrogates become "?", and bytes that are UTF-8 already. Room for all pieces of one
/// call is made at once, and nothing is converted twice.
/// @tparam Block  what the text is handed over as, such as std::string: it has resize, data, size
template<class Block>
class BasicTextBuffer
{
public:
    BasicTextBuffer() = default;
    BasicTextBuffer(const BasicTextBuffer &) = delete;
    BasicTextBuffer &operator=(const BasicTextBuffer &) = delete;

    /// Appends the pieces one after the other.
    /// @throws std::bad_alloc  when there is no room for them
    template<class... Piece>
    void append(const Piece &...pieces)
    {
        const int64_t most = (room(pieces) + ...);
        if (m_limit - m_end < most) [[unlikely]]
            grow(most);
        char *end = m_end;
        ((end = put(end, pieces)), ...);
        m_end = end;
    }
    /// Appends what a function writes to a place with room for @p most bytes; it returns the end.
    template<class Write>
    void write(int64_t most, Write write)
    {
        if (m_limit - m_end < most) [[unlikely]]
            grow(most);
        m_end = write(m_end);
    }
    template<class Piece>
    BasicTextBuffer &operator<<(const Piece &piece)
    {
        append(piece);
        return *this;
    }

    /// Makes room for @p size bytes in all, or leaves it as it is when there is no memory.
    void reserve(int64_t size) noexcept
    {
        if (size <= capacity() || size > kMost)
            return;
        try {
            makeRoom(size);
        } catch (...) {
            // Less may do.
        }
    }
    /// Empties the text; the room stays.
    void clear() { m_end = m_begin; }
    int64_t size() const { return m_end - m_begin; }
    /// Drops what lies behind the first @p size bytes; there must be as many.
    void truncate(int64_t size) { m_end = m_begin + size; }
    /// The text, until it is changed.
    std::string_view view() const { return { m_begin, size_t(m_end - m_begin) }; }
    /// Hands the text over, without copying it, and is empty then.
    Block take()
    {
        if (m_end == m_begin)
            return {}; // resize may make a block for no bytes
        m_block.resize(static_cast<Size>(m_end - m_begin));
        m_begin = m_end = m_limit = nullptr;
        return std::exchange(m_block, {});
    }

private:
    using Size = decltype(Block().size());
    // Half of what the block can count, which may be 32 bits, and of what is counted with here.
    static constexpr auto kMost = static_cast<int64_t>(std::min<uint64_t>(
            std::numeric_limits<Size>::max() / 2, std::numeric_limits<int64_t>::max() / 2));

    int64_t capacity() const { return static_cast<int64_t>(m_block.capacity()); }
    // The same text in a block for more of it.
    void makeRoom(int64_t capacity)
    {
        m_block.reserve(static_cast<Size>(capacity));
        use(m_limit - m_begin);
    }
    // Blocks fill with zeros what they are resized by, and memory that nobody has touched is not
    // taken yet: so no more of one is used than is about to be written.
    void use(int64_t bytes)
    {
        const int64_t size = m_end - m_begin;
        m_block.resize(static_cast<Size>(bytes));
        m_begin = m_block.data();
        m_end = m_begin + size;
        m_limit = m_begin + bytes;
    }
    [[gnu::noinline]] void grow(int64_t room)
    {
        constexpr int64_t kFirst = 4096;
        const int64_t size = m_end - m_begin;
        if (room > kMost - size)
            throw std::bad_alloc();
        // Each step copies all of the text, so they are few while the room that is left over is
        // little.
        constexpr int64_t kSmall = 1 << 20;
        const int64_t before = capacity();
        const int64_t larger = std::min((before < kSmall ? 4 : 2) * before, kMost);
        if (size + room > before)
            makeRoom(std::max({ larger, size + room, kFirst }));
        constexpr int64_t kStep = 1 << 16;
        use(std::max(size + room, std::min(size + kStep, capacity())));
    }

    // How long a piece can become at most, and the piece itself at a place with that much room;
    // the result is where it ends.
    template<std::integral Number>
    static constexpr int64_t room(Number)
    {
        return std::numeric_limits<Number>::digits10 + 2;
    }
    template<std::integral Number>
    static char *put(char *out, Number value)
    {
        if constexpr (std::same_as<Number, int32_t> && std::endian::native == std::endian::little) {
            if (value > -10000 && value < 10000) [[likely]]
                return putShort(out, value);
        }
        return std::to_chars(out, out + room(value), value).ptr;
    }
    // The digits of the numbers below 100, the first in the low byte.
    static constexpr auto kPairs = [] {
        std::array<uint16_t, 100> pairs{};
        for (unsigned i = 0; i < pairs.size(); ++i)
            pairs[i] = static_cast<uint16_t>(i / 10 + i % 10 * 256);
        return pairs;
    }();
    // A number of up to four digits. Coordinates mostly have as many, and how many cannot be
    // foreseen, so it is found without branches: all four are made in one word, the first in its
    // lowest byte, and leading zeros shifted out.
    static char *putShort(char *out, int32_t value)
    {
        *out = '-';
        out += value < 0 ? 1 : 0;
        const auto number = static_cast<uint32_t>(value < 0 ? -value : value);
        const uint32_t high = number / 100;
        const uint32_t digits = kPairs[high] | uint32_t(kPairs[number - high * 100]) << 16;
        constexpr uint32_t kLast = 0x01000000; // is written though it be zero
        const auto zeros = static_cast<unsigned>(std::countr_zero(digits | kLast)) / 8;
        const uint32_t shifted = (digits + 0x30303030) >> (zeros * 8);
        std::memcpy(out, &shifted, sizeof shifted);
        return out + (4 - zeros);
    }
    static constexpr int64_t room(char) { return 1; }
    static char *put(char *out, char character)
    {
        *out = character;
        return out + 1;
    }
    template<size_t N>
    static constexpr int64_t room(const char (&)[N])
    {
        return N - 1;
    }
    template<size_t N>
    static char *put(char *out, const char (&literal)[N])
    {
        std::memcpy(out, literal, N - 1);
        return out + N - 1;
    }
    static int64_t room(std::string_view utf8) { return int64_t(utf8.size()); }
    static char *put(char *out, std::string_view utf8)
    {
        if (!utf8.empty())
            std::memcpy(out, utf8.data(), utf8.size());
        return out + utf8.size();
    }
    static int64_t room(std::u16string_view text) { return kUtf8PerUnit * int64_t(text.size()); }
    static char *put(char *out, std::u16string_view text)
    {
        return putUtf8(out, text.data(), int64_t(text.size()));
    }
    template<Utf16Text Text>
    static int64_t room(const Text &text)
    {
        return kUtf8PerUnit * int64_t{ text.size() };
    }
    template<Utf16Text Text>
    static char *put(char *out, const Text &text)
    {
        return putUtf8(out, text.utf16(), int64_t{ text.size() });
    }
    template<Utf8Text Text>
    static int64_t room(const Text &text)
    {
        return text.size();
    }
    template<Utf8Text Text>
    static char *put(char *out, const Text &text)
    {
        return put(out, std::string_view(text.constData(), size_t(text.size())));
    }

    Block m_block; // that the pointers point into
    char *m_begin = nullptr;
    char *m_end = nullptr; // of the text
    char *m_limit = nullptr; // of the block
};

using TextBuffer = BasicTextBuffer<std::string>;

} // namespace svgtool
