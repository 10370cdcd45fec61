#pragma once

#include "core/base/Bytes.h"

#include <array>
#include <cstdint>
#include <optional>

namespace svgtool {

/// The header of a device-independent bitmap, whichever of its forms it has, as far as pixels
/// depend on it. The fields have been checked: the size is at least 1 by 1 and at most INT_MAX on
/// either side, depth and compression go together.
struct DibHeader
{
    enum Compression : uint32_t {
        Plain = 0,
        RunLengths8 = 1,
        RunLengths4 = 2,
        BitFields = 3,
        Jpeg = 4,
        Png = 5,
        AlphaBitFields = 6,
    };

    int32_t width = 0;
    int32_t height = 0;
    uint16_t depth = 0; ///< bits per pixel
    uint32_t compression = Plain;
    bool isBottomUp = true;
    std::array<uint32_t, 4> masks{}; ///< red, green, blue, alpha; no alpha when it is 0
    int64_t imageBytes = 0; ///< of the bits, or of the file in their place; 0 when it is not told
    int64_t tableOffset = 0; ///< of the colour table, behind header and masks
    int64_t tableEntries = 0; ///< as many as the header announces
    int64_t tableEntryBytes = 4;

    /// Bytes of a line, which ends on a 32-bit border.
    int64_t stride() const { return (int64_t(width) * depth + 31) / 32 * 4; }
    bool isFile() const { return compression == Jpeg || compression == Png; }
    bool isRunLengths() const { return compression == RunLengths8 || compression == RunLengths4; }
};

/// Reads the header at the start of @p info.
/// @param usage  as in DibBytes
/// @return nothing when it is cut off, unknown or makes no sense
std::optional<DibHeader> readDibHeader(ByteView info, uint32_t usage);

} // namespace svgtool
