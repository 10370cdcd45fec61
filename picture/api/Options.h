#pragma once

#include "core/base/Bytes.h"
#include "picture/api/picture.hpp"

namespace svgtool {

/// Whether they are as PictureOptions says.
bool isValid(const PictureOptions &options);

struct PictureSize
{
    double width, height; ///< CSS pixels
};

/// The size of the document.
/// @param natural  whatever a metafile's header says
/// @param options  valid ones
PictureSize sizeOf(PictureSize natural, const PictureOptions &options);

/// Begins the ids of a document: six letters and digits of ASCII, the first one a letter. It is the
/// 64-bit FNV-1a hash of the metafile's bytes (http://www.isthe.com/chongo/tech/comp/fnv), its
/// lowest digit to the base 52 and the next five to the base 62, so that a thousand metafiles on
/// one page clash once in 100,000 pages.
std::string idPrefixOf(ByteView metafile);

} // namespace svgtool
