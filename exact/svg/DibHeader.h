#pragma once

#include "exact/records/Bytes.h"

#include <array>
#include <optional>

namespace svgtool {

/// The header of a device-independent bitmap, whichever of its forms it has, as far as pixels
/// depend on it. The fields have been checked: the size is at least 1 by 1 and at most INT_MAX on
/// either side, depth and compression go together.
struct DibHeader
{
    enum Compression : quint32 {
        Plain = 0,
        RunLengths8 = 1,
        RunLengths4 = 2,
        BitFields = 3,
        Jpeg = 4,
        Png = 5,
        AlphaBitFields = 6,
    };

    qint32 width = 0;
    qint32 height = 0;
    quint16 depth = 0; ///< bits per pixel
    quint32 compression = Plain;
    bool isBottomUp = true;
    std::array<quint32, 4> masks{}; ///< red, green, blue, alpha; no alpha when it is 0
    qint64 imageBytes = 0; ///< of the bits, or of the file in their place; 0 when it is not told
    qint64 tableOffset = 0; ///< of the colour table, behind header and masks
    qint64 tableEntries = 0; ///< as many as the header announces
    qint64 tableEntryBytes = 4;

    /// Bytes of a line, which ends on a 32-bit border.
    qint64 stride() const { return (qint64(width) * depth + 31) / 32 * 4; }
    bool isFile() const { return compression == Jpeg || compression == Png; }
    bool isRunLengths() const { return compression == RunLengths8 || compression == RunLengths4; }
};

/// Reads the header at the start of @p info.
/// @param usage  as in DibBytes
/// @return nothing when it is cut off, unknown or makes no sense
std::optional<DibHeader> readDibHeader(ByteView info, quint32 usage);

} // namespace svgtool
