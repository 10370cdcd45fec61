#pragma once

#include "core/base/Bytes.h"
#include "picture/gdi/State.h"

#include <cstdint>
#include <string>
#include <vector>

namespace svgtool::picture {

/// A text with its advances, of each unit of UTF-16.
struct TextCharacters
{
    std::u16string units;
    std::vector<int32_t> advances; ///< empty where the record has none
    std::vector<int32_t> rises; ///< likewise
};

/// Text of 8-bit characters as the font reads it.
/// @param text  with one advance for each byte, or none; its units are replaced
void decodeCharacters(TextCharacters &text, ByteView bytes, const Font &font);

} // namespace svgtool::picture
