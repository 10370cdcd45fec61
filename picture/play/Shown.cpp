#include "picture/play/Shown.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

Device Shown::everywhere() const
{
    constexpr double kReach = 1e12; // coordinates have 32 bits, and scales come to more
    Device all = device;
    all.view = { -kReach, -kReach, kReach, kReach };
    return all;
}

void Shown::moveHere(const RectD &drawn)
{
    constexpr double kTooSmall = 16; // times the size
    const RectD &view = device.view;
    const double fits = std::min(view.width() / drawn.width(), view.height() / drawn.height());
    const double scale = fits < 1 || fits > kTooSmall ? fits : 1;
    // From middle to middle, by whole units, so that what is sharp stays so.
    const double x = (view.left + view.right - scale * (drawn.left + drawn.right)) / 2;
    const double y = (view.top + view.bottom - scale * (drawn.top + drawn.bottom)) / 2;
    const Affine moved =
            device.toPicture.then({ scale, 0, 0, scale, std::floor(x + 0.5), std::floor(y + 0.5) });
    if (drawn.isEmpty() || !moved.isFinite() || !(scale > 0))
        return;
    device.toPicture = moved;
    guess = "nothing lies in it, so what is drawn elsewhere is moved there";
}

void Shown::leaveUnclipped(const RectD &drawn)
{
    device.isClipped = false;
    if (intersection(drawn, device.view).isEmpty())
        moveHere(drawn);
}

} // namespace svgtool::picture
