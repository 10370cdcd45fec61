#pragma once

#include "core/base/Bytes.h"

#include <string>

namespace svgtool {

/// Whether @p file begins as one that gzip has packed ([RFC 1952] 2.3): a .emz or .wmz.
bool isGzip(ByteView file);

enum class Unpacking {
    Done,
    Damaged, ///< they are no bytes that gzip wrote, or not all of them, or their checksum is wrong
    TooLarge, ///< there is more in it than is taken
};

/// Unpacks what gzip has packed, as far as it is no more than 32 MiB, or 32 times @p file if that
/// is more, and 1 GiB. Bytes behind its end are ignored.
/// @param file        one for which isGzip() holds
/// @param[out] bytes  what was packed; of no use unless done
/// @note May throw std::bad_alloc.
Unpacking unpackGzip(ByteView file, std::string &bytes);

/// Packs bytes, without a name or a time. May throw std::bad_alloc.
std::string packGzip(ByteView bytes);

} // namespace svgtool
