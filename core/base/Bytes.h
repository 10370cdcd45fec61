#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

namespace svgtool {

/// Bytes that somebody else owns.
struct ByteView
{
    const char *data = nullptr;
    int64_t size = 0;
};

/// Bytes [offset, offset + length) of @p all, or nothing unless all of them lie inside.
inline std::optional<ByteView> slice(ByteView all, int64_t offset, int64_t length)
{
    if (offset < 0 || length < 0 || offset > all.size || length > all.size - offset)
        return std::nullopt;
    return ByteView{ all.data + offset, length };
}

/// The bytes of @p all from @p offset on; none when the offset lies past the end.
inline ByteView tail(ByteView all, int64_t offset)
{
    if (offset < 0 || offset > all.size)
        return {};
    return { all.data + offset, all.size - offset };
}

/// The same as readPadded for bytes that may be too few; apart from it, since they rarely are.
template<class T>
[[gnu::cold, gnu::noinline]] T readShort(ByteView bytes)
{
    T value{};
    if (bytes.size > 0)
        std::memcpy(&value, bytes.data, std::min(sizeof value, size_t(bytes.size)));
    return value;
}

/// A T over the start of @p bytes; what they do not cover reads as zero.
template<class T>
T readPadded(ByteView bytes)
{
    static_assert(std::is_trivially_copyable_v<T>);
    if (bytes.size < int64_t(sizeof(T))) [[unlikely]]
        return readShort<T>(bytes);
    T value;
    std::memcpy(&value, bytes.data, sizeof value); // of fixed size, so it takes no call
    return value;
}

/// Element @p index of the T values packed in @p bytes; it must lie inside.
template<class T>
T elementAt(ByteView bytes, int64_t index)
{
    return readPadded<T>({ bytes.data + index * int64_t(sizeof(T)), int64_t(sizeof(T)) });
}

/// The T that lies at the start of @p bytes, to be read and changed where it is.
///
/// For the few structures that are followed by an array in the same block. The block must be
/// writable, aligned for T and at least sizeof(T) long, as a record's private copy is.
template<class T>
T *overlay(char *bytes)
{
    static_assert(std::is_trivially_copyable_v<T>);
    // Moving the bytes onto themselves begins the life of a T there.
    return static_cast<T *>(std::memmove(bytes, bytes, sizeof(T)));
}

} // namespace svgtool
