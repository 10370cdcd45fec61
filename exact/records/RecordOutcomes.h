#pragma once

#include "core/records/RecordResult.h"
#include "core/records/RecordTally.h"
#include "core/records/RecordType.h"

#include <QtGlobal>

#include <algorithm>
#include <optional>
#include <span>

namespace svgtool {

/// The outcome that all successes of a record type have, where it is not Drawn.
struct TypeOutcome
{
    quint32 type;
    RecordOutcome outcome;
};

/// What became of a record.
/// @param types      the list of its format
/// @param exceptions the types that do not simply succeed, by number
/// @param type       its type, which may be unknown
/// @param result     what its handler returned; none where nothing was done with it
inline RecordOutcome recordOutcome(std::span<const RecordType> types,
                                   std::span<const TypeOutcome> exceptions, quint32 type,
                                   std::optional<qint32> result)
{
    if (!result) {
        const RecordType *const known = findRecordType(types, type);
        return known != nullptr && known->loss == Loss::Hint ? RecordOutcome::Neutral
                                                             : RecordOutcome::Skipped;
    }
    if (*result == RecordFailed)
        return RecordOutcome::Skipped;
    const auto exception = std::ranges::lower_bound(exceptions, type, {}, &TypeOutcome::type);
    if (exception != exceptions.end() && exception->type == type)
        return exception->outcome;
    return *result == RecordApproximated ? RecordOutcome::Approximated : RecordOutcome::Drawn;
}

} // namespace svgtool
