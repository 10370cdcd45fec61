#pragma once

#include "core/records/MetafileFacts.h"
#include "picture/api/picture.hpp"

namespace svgtool {

/// Why records are not done whose drawing does not fit into the document.
inline constexpr char kBeyondLimit[] = "the document would get larger than it may";

/// What a caller is told of a metafile's records.
/// @param facts  of the metafile
/// @param tally  of the records that were played
PictureReport reportOf(const MetafileFacts &facts, const RecordTally &tally);

} // namespace svgtool
