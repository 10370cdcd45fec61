#pragma once

#include "core/base/Bytes.h"
#include "core/base/TextBuffer.h"

namespace svgtool {

/// Appends @p bytes in base64 ([RFC 4648] 4), padded with "=".
/// @throws std::bad_alloc  when there is no room for them
void appendBase64(TextBuffer &text, ByteView bytes);

} // namespace svgtool
