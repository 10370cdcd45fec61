#pragma once

#include "core/records/RecordTally.h"

namespace svgtool::picture {

/// What became of a call, and of the record that made it.
struct Played
{
    RecordOutcome outcome = RecordOutcome::Drawn;
    /// What the picture lacks, in a few words that complete "not done, because"; a literal, empty
    /// for what is done.
    const char *why = "";

    bool isDone() const { return outcome == RecordOutcome::Drawn; }
};

/// It painted, or its state is in force.
inline constexpr Played kDone{};
/// Nothing was done, and nothing is missing.
inline constexpr Played kNeutral{ RecordOutcome::Neutral, "" };

/// Painted, but known to look different.
constexpr Played approximated(const char *why)
{
    return { RecordOutcome::Approximated, why };
}

/// Nothing was done, and the state is as it was: the arguments make no sense, or a bound was
/// reached.
constexpr Played notDone(const char *why)
{
    return { RecordOutcome::Skipped, why };
}

} // namespace svgtool::picture
