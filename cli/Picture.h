#pragma once

#include "cli/Options.h"
#include "cli/Results.h"

namespace svgtool {

/// The picture of a metafile as a document: the tool's one way to the picture path.
/// @param comment  put before the picture; empty for none
/// @param result   its facts are those of the metafile; records and size are filled in
/// @note Throws Failure, and std::bad_alloc where memory ends.
QByteArray drawPicture(const QByteArray &metafile, const Options &options,
                       const QByteArray &comment, FileResult &result);

} // namespace svgtool
