#include "picture/svg/SvgParts.h"

#include <algorithm>

namespace svgtool::picture {

void writePath(SvgDocument &document, const Node &node)
{
    const Scene &scene = document.scene();
    document.put("<path d=\"");
    writePathData(document, scene.verbsOf(node), scene.pointsOf(node));
    document.put('"');
}

void writeCorner(SvgDocument &document, const RectD &box)
{
    if (box.left != 0)
        document.attribute("x", box.left);
    if (box.top != 0)
        document.attribute("y", box.top);
}

void writeBox(SvgDocument &document, const RectD &box)
{
    writeCorner(document, box);
    document.attribute("width", box.width());
    document.attribute("height", box.height());
}

void writeRect(SvgDocument &document, const Rect &rect)
{
    document.put("<rect");
    writeBox(document, rect.box);
    if (rect.rx > 0)
        document.attribute("rx", rect.rx);
    if (rect.ry > 0 && rect.ry != rect.rx)
        document.attribute("ry", rect.ry);
}

void writeEllipse(SvgDocument &document, const Ellipse &ellipse)
{
    const bool isCircle = ellipse.radii.x == ellipse.radii.y;
    document.put(isCircle ? std::string_view("<circle") : "<ellipse");
    document.attribute("cx", ellipse.center.x);
    document.attribute("cy", ellipse.center.y);
    document.attribute(isCircle ? "r" : "rx", ellipse.radii.x);
    if (!isCircle)
        document.attribute("ry", ellipse.radii.y);
}

} // namespace svgtool::picture
