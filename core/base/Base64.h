#pragma once

#include "core/base/Bytes.h"
#include "core/base/TextBuffer.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace svgtool {

/// Writes @p bytes in base64 ([RFC 4648] 4), padded with "=", which takes four characters for each
/// three bytes begun.
/// @return where the text ends
char *putBase64(char *out, ByteView bytes);

/// Appends @p bytes in base64.
/// @throws std::bad_alloc  when there is no room for them
template<class Block>
void appendBase64(BasicTextBuffer<Block> &text, ByteView bytes)
{
    // A piece at a time, whose text stays in the first cache until it is appended.
    constexpr int64_t kPiece = 3 << 10;
    std::array<char, kPiece / 3 * 4> piece;
    for (int64_t start = 0; start < bytes.size; start += kPiece) {
        const int64_t size = std::min(bytes.size - start, kPiece);
        const char *end = putBase64(piece.data(), { bytes.data + start, size });
        text << std::string_view(piece.data(), size_t(end - piece.data()));
    }
}

} // namespace svgtool
