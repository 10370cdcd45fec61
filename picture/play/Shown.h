#pragma once

#include "picture/gdi/Device.h"

namespace svgtool::picture {

/// What a picture shows of its device, and how large.
struct Shown
{
    Device device;
    double width = 0, height = 0; ///< CSS pixels
    const char *guess = ""; ///< why the size is one; empty where the file tells it

    /// Shows all that can be reached, to find out where something is drawn.
    Device everywhere() const;
    /// Moves what lies elsewhere into the middle of what is shown; in its own size, unless it would
    /// not fit, or be too small to be looked at.
    /// @param drawn  the box around all of it, as it was shown everywhere()
    void moveHere(const RectD &drawn);
    /// Shows what clips would cut off.
    /// @param drawn  as above, without clips
    void leaveUnclipped(const RectD &drawn);
};

} // namespace svgtool::picture
