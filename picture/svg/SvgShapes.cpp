#include "picture/svg/SvgParts.h"

#include <algorithm>

namespace svgtool::picture {

// Relative commands from place to place on the grid, so that no error adds up.
void writePathData(SvgDocument &document, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points)
{
    struct Place
    {
        int64_t x, y;
    };
    const Numbers &grid = document.grid();
    const auto place = [&](PointD p) { return Place{ grid.steps(p.x), grid.steps(p.y) }; };
    Place current{ 0, 0 }, start{ 0, 0 };
    char last = 0;
    const auto command = [&](char letter) {
        if (letter != last)
            document.put(letter);
        last = letter;
    };
    const auto value = [&](int64_t steps) {
        const char before = document.text().view().back();
        const bool isDigit = (before >= '0' && before <= '9') || before == '.';
        if (isDigit && steps >= 0)
            document.put(' ');
        grid.append(document.text(), steps);
    };
    size_t next = 0;
    for (const Path::Verb verb : verbs) {
        switch (verb) {
        case Path::Verb::Move:
            current = start = place(points[next++]);
            last = 0;
            command('M');
            value(current.x);
            value(current.y);
            last = 0;
            break;
        case Path::Verb::Line: {
            const Place to = place(points[next++]);
            const int64_t dx = to.x - current.x, dy = to.y - current.y;
            if (dy == 0) {
                command('h');
                value(dx);
            } else if (dx == 0) {
                command('v');
                value(dy);
            } else {
                command('l');
                value(dx);
                value(dy);
            }
            current = to;
            break;
        }
        case Path::Verb::Curve: {
            command('c');
            Place to = current;
            for (int i = 0; i < 3; ++i) {
                to = place(points[next++]);
                value(to.x - current.x);
                value(to.y - current.y);
            }
            current = to;
            break;
        }
        case Path::Verb::Close:
            document.put('z');
            last = 0;
            current = start;
            break;
        }
    }
}

void writePath(SvgDocument &document, const Node &node)
{
    const Scene &scene = document.scene();
    const PathRange &range = scene.paths[node.geometry];
    const std::span verbs(scene.verbs.data() + range.firstVerb, range.verbs);
    const std::span points(scene.points.data() + range.firstPoint, range.points);
    document.put("<path d=\"");
    writePathData(document, verbs, points);
    document.put('"');
    const auto figures = std::count(verbs.begin(), verbs.end(), Path::Verb::Move);
    if (node.fill != kNone && node.isEvenOdd && figures + std::ptrdiff_t(verbs.size()) > 4)
        document.put(" fill-rule=\"evenodd\"");
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
