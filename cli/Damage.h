#pragma once

#include "core/records/MetafileFacts.h"

#include <QString>

namespace svgtool {

/// What a damaged metafile lacks.
struct Damage
{
    QString text; ///< empty for a whole file
    bool isIncomplete = false; ///< records are missing, not only the header wrong
};

/// What is wrong with a metafile of which all is drawn that can be read.
/// @param file  the whole file of @p facts
Damage damageOf(ByteView file, const MetafileFacts &facts);

} // namespace svgtool
