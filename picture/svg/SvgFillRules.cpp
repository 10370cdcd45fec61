#include "picture/scene/Extents.h"
#include "picture/svg/SvgParts.h"

#include <algorithm>
#include <vector>

namespace svgtool::picture {

namespace {

    // Along one axis a figure goes there and back: no line across it meets it more than twice, so
    // that all fill rules agree. Where the control points of a curve do so, it does.
    template<double PointD::*part>
    bool goesThereAndBack(std::span<const PointD> points)
    {
        int turns = 0;
        double way = points.front().*part - points.back().*part;
        for (size_t i = 1; i < points.size(); ++i) {
            const double next = points[i].*part - points[i - 1].*part;
            if (next == 0)
                continue;
            turns += way * next < 0 || way == 0 ? 1 : 0;
            if (turns > 2)
                return false;
            way = next;
        }
        return true;
    }

    bool isSimple(std::span<const PointD> figure)
    {
        constexpr size_t kSimple = 4; // points; a fifth can make a star
        return figure.size() <= kSimple || goesThereAndBack<&PointD::x>(figure)
                || goesThereAndBack<&PointD::y>(figure);
    }

} // namespace

bool needsFillRule(std::span<const Path::Verb> verbs, std::span<const PointD> points)
{
    // More figures are not looked at, so that the work stays in proportion.
    constexpr std::ptrdiff_t kMostFigures = 64;
    const auto figures = std::ranges::count(verbs, Path::Verb::Move);
    if (figures <= 1 || figures > kMostFigures)
        return figures > 1 || !isSimple(points);
    std::vector<RectD> boxes;
    size_t begin = 0, end = 0; // of a figure's points
    const auto agrees = [&] {
        const auto figure = points.subspan(begin, end - begin);
        begin = end;
        if (figure.empty())
            return true;
        boxes.push_back(boundsOf(figure));
        return isSimple(figure)
                && std::all_of(boxes.begin(), boxes.end() - 1, [&](const RectD &other) {
                       return intersection(other, boxes.back()).isEmpty();
                   });
    };
    for (const Path::Verb verb : verbs) {
        if (verb == Path::Verb::Move && !agrees())
            return true;
        end += verb == Path::Verb::Curve ? 3 : verb == Path::Verb::Close ? 0 : 1;
    }
    return !agrees();
}

} // namespace svgtool::picture
