#pragma once

#include "core/base/Bytes.h"

#include <string>

namespace svgtool {

/// What an EMF header tells in words ([MS-EMF] 2.2.9, its description); both may be empty.
struct EmfDescription
{
    std::u16string program; ///< that made the file; as title, UTF-16 as it comes
    std::u16string title; ///< of the picture
};

/// Reads two strings that each end in a zero; what does not lie in the header counts as empty.
/// @param header  all bytes in front of the first record
EmfDescription readDescription(ByteView header);

} // namespace svgtool
