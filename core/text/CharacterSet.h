#pragma once

#include "core/base/Bytes.h"

#include <cstdint>
#include <string>

namespace svgtool {

/// Decodes the 8-bit characters of a metafile's text.
///
/// What is no character becomes U+FFFD, or U+001A in Shift-JIS; half a character at the end is left
/// out. Where the system lacks the encoding, the text is read as Latin-1.
/// @param charSet  of the font that draws them ([MS-WMF] 2.1.1.5); one that is not known counts as
///                 ANSI. Characters of symbol fonts go to the private-use range U+F000 to U+F0FF.
/// @throws std::bad_alloc
/// @note May be called from any thread; one decodes at a time, but for texts in ASCII.
std::u16string decodeText(ByteView bytes, uint8_t charSet);

/// The same as GDI shows them: with the sets that decodeText counts as ANSI, OEM and Johab, and
/// with U+FFFD for whatever is no character, a half one at the end among them; where Big5 leaves
/// pairs to makers of fonts, as these show them.
/// @return one unit for each of what characterLength tells apart
std::u16string decodeAsGdi(ByteView bytes, uint8_t charSet);

/// How many of the bytes, 1 or 2, are the first character. There must be one.
int64_t characterLength(ByteView bytes, uint8_t charSet);

} // namespace svgtool
