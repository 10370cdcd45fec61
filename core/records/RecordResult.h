#pragma once

#include <cstdint>

namespace svgtool {

/// What a record handler returns; all but 0 is success.
enum RecordResult : int32_t {
    RecordFailed = 0, ///< nothing was drawn: the record is damaged or asks for the impossible
    RecordHandled = 1,
    RecordApproximated = 2, ///< drawn, but known to look different from the original
};

} // namespace svgtool
