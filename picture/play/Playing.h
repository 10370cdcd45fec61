#pragma once

#include "core/base/Limits.h"

#include <cstdint>

namespace svgtool::picture {

/// What all players of a document share: those of metafiles within metafiles, too.
struct Playing
{
    bool prefersEmf; ///< to EMF+ records of the same picture
    bool drawsOutlines; ///< in the place of text
    int depth = 0; ///< of the one that is played
    int64_t bytes; ///< of metafiles that may still be played

    /// @param fileBytes  of the whole file
    Playing(int64_t fileBytes, bool isOfEmf, bool isOutlined)
        : prefersEmf(isOfEmf), drawsOutlines(isOutlined),
          bytes(fileBytes + (isOutlined ? limits::kNestedBytesOfOutlines : limits::kNestedBytes))
    {
    }

    /// Whether so many bytes were left.
    bool spend(int64_t cost)
    {
        if (cost > bytes)
            return false;
        bytes -= cost;
        return true;
    }
};

} // namespace svgtool::picture
