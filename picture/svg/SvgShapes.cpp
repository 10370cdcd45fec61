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

void writeRect(SvgDocument &document, const Rect &rect)
{
    document.put("<rect");
    if (rect.box.left != 0)
        document.attribute("x", rect.box.left);
    if (rect.box.top != 0)
        document.attribute("y", rect.box.top);
    document.attribute("width", rect.box.width());
    document.attribute("height", rect.box.height());
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
