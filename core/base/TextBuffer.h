#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace svgtool {

/// Text in UTF-8 that grows at its end.
///
/// Pieces are numbers, which are written in decimal, ASCII literals, texts in UTF-16, whose
/// unpaired surrogates become "?", and bytes that are UTF-8 already. Room for all pieces of one
/// call is made at once, and nothing is converted twice.
class TextBuffer
{
public:
    TextBuffer() = default;
    TextBuffer(const TextBuffer &) = delete;
    TextBuffer &operator=(const TextBuffer &) = delete;

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
    template<class Piece>
    TextBuffer &operator<<(const Piece &piece)
    {
        append(piece);
        return *this;
    }

    /// Makes room for @p size bytes in all, or leaves it as it is when there is no memory.
    void reserve(int64_t size) noexcept;
    /// Empties the text; the room stays.
    void clear() { m_end = m_begin; }
    int64_t size() const { return m_end - m_begin; }
    /// Drops what lies behind the first @p size bytes; there must be as many.
    void truncate(int64_t size) { m_end = m_begin + size; }
    /// The text, until it is changed.
    std::string_view view() const { return { m_begin, size_t(m_end - m_begin) }; }
    /// Hands the text over, without copying it, and is empty then.
    QByteArray take();

private:
    void grow(int64_t room);
    void resize(int64_t capacity);

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
    static int64_t room(const QByteArray &utf8) { return utf8.size(); }
    static char *put(char *out, const QByteArray &utf8)
    {
        return put(out, std::string_view(utf8.constData(), size_t(utf8.size())));
    }
    static int64_t room(QStringView text) { return 3 * int64_t(text.size()); }
    static char *put(char *out, QStringView text);

    QByteArray m_bytes; // the block that the pointers point into
    char *m_begin = nullptr;
    char *m_end = nullptr; // of the text
    char *m_limit = nullptr; // of the block
};

} // namespace svgtool
