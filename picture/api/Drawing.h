#pragma once

#include "core/base/Bytes.h"
#include "core/records/MetafileFacts.h"
#include "picture/api/picture.hpp"

#include <string_view>

namespace svgtool {

/// As drawMetafile, for callers within the project that know the facts already and count records
/// in a tally of their own. The report is filled as well.
/// @param facts       of the same bytes, from inspectMetafile
/// @param comment     UTF-8, for who reads the document's text; empty for none
/// @param[out] tally  what became of each record, and where their chain ended; untouched if there
///                    is an error
Picture drawInspected(ByteView metafile, const MetafileFacts &facts, const PictureOptions &options,
                      std::string_view comment, RecordTally &tally) noexcept;

} // namespace svgtool
