#pragma once

#include "core/base/Bytes.h"
#include "core/records/RecordRecovery.h"
#include "picture/gdi/DeviceContext.h"

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

/// The character set of a font's 8-bit texts, for the one that its record names; that of the system
/// stays CharSet::kDefault.
uint8_t textCharSet(const Font &font);

/// Text of 8-bit characters as the selected font reads it.
/// @param text  with one advance for each byte, or none; its units are replaced
void decodeCharacters(TextCharacters &text, ByteView bytes, DeviceContext &dc);

/// The name of a face in bytes, of which a font's character set does not always tell.
std::u16string decodeFace(ByteView bytes, uint8_t charSet);

/// The character set of the system that a file was made on, by its fonts; CharSet::kAnsi where
/// those do not tell.
uint8_t systemCharSet(RecordRecovery records, MetafileFormat format);

} // namespace svgtool::picture
