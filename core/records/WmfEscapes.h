#pragma once

#include "core/base/Bytes.h"
#include "core/records/MetafileFacts.h"

#include <string>

namespace svgtool {

/// Numbers of META_ESCAPE's functions, [MS-WMF] 2.1.1.17.
namespace WmfEscape {
    // clang-format off
    enum : uint16_t {
        PassThrough = 0x0013, PostScriptData = 0x0025, PostScriptIgnore = 0x0026,
        Comment = 0x000F, PostScriptPassThrough = 0x1013, EncapsulatedPostScript = 0x1014,
    };
    // clang-format on
} // namespace WmfEscape

/// Whether a record is a part of an EMF: META_ESCAPE_ENHANCED_METAFILE, [MS-WMF] 2.3.6.
bool isPartOfEmf(ByteView record);

/// What a WMF says in its escapes, which GDI does not play.
struct WmfEscapes
{
    /// The same picture as an enhanced metafile, put together from comments; as much as is there.
    std::string emf;
    /// That is not the whole of one, or not right.
    bool isEmfDamaged = false;
    /// Passages for other printers stand in for those in PostScript.
    bool replacesPostScript = false;
};

/// @note Takes time and memory in proportion to the file. May throw std::bad_alloc.
WmfEscapes readEscapes(ByteView file, const MetafileFacts &facts);

} // namespace svgtool
