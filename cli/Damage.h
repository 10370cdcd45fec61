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

/// What is wrong with a metafile of which all was read that can be.
/// @param stop           where its records ended when they were read
/// @param isHeaderWrong  they were read in spite of what the header says
Damage damageOf(const MetafileFacts &facts, const RecordTally::Stop &stop, bool isHeaderWrong);

} // namespace svgtool
