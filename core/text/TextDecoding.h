#pragma once

#include "core/base/Bytes.h"

#include <QString>

#include <cstdint>

namespace svgtool {

/// Decodes the 8-bit characters of a metafile's text.
/// @param charSet  of the font that draws them ([MS-WMF] 2.1.1.5); one that is not known counts as
///                 ANSI. Characters of symbol fonts go to the private-use range U+F000 to U+F0FF.
QString decodeText(ByteView bytes, uint8_t charSet);

} // namespace svgtool
