#pragma once

#include "core/records/MetafileFacts.h"
#include "picture/api/picture.hpp"

namespace svgtool {

/// What a caller is told of a metafile's records.
/// @param facts  of the metafile
/// @param tally  of the records that were played
PictureReport reportOf(const MetafileFacts &facts, const RecordTally &tally);

} // namespace svgtool
