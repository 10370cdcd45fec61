#include "core/geometry/Lines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace svgtool {

namespace {

    using Verb = Path::Verb;

    PointD between(PointD a, PointD b, double part)
    {
        return { a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part };
    }

    double distance(PointD a, PointD b)
    {
        return std::hypot(b.x - a.x, b.y - a.y);
    }

    using Cubic = std::array<PointD, 4>;

    PointD at(const Cubic &c, double t)
    {
        const PointD ab = between(c[0], c[1], t), bc = between(c[1], c[2], t);
        const PointD cd = between(c[2], c[3], t);
        return between(between(ab, bc, t), between(bc, cd, t), t);
    }

    Cubic firstPart(const Cubic &c, double t)
    {
        const PointD ab = between(c[0], c[1], t), bc = between(c[1], c[2], t);
        const PointD abc = between(ab, bc, t);
        return { c[0], ab, abc, at(c, t) };
    }

    // Steps in which the length of a curve is looked for.
    constexpr int kSteps = 64;

    // Where a curve has so much left; before its start when it is shorter.
    double placeBeforeEnd(const Cubic &curve, double length)
    {
        PointD later = curve[3];
        for (int i = kSteps - 1; i >= 0; --i) {
            const PointD earlier = at(curve, double(i) / kSteps);
            const double step = distance(earlier, later);
            if (step >= length && step > 0)
                return (i + 1 - length / step) / kSteps;
            length -= step;
            later = earlier;
        }
        return -1;
    }

    double lengthOf(const Cubic &curve)
    {
        double length = 0;
        for (int i = 0; i < kSteps; ++i)
            length += distance(at(curve, double(i) / kSteps), at(curve, double(i + 1) / kSteps));
        return length;
    }

    // Steps that rounding makes have no direction.
    PointD directionOf(PointD from, PointD to)
    {
        const double length = distance(from, to);
        if (!(length > 1e-9 * (std::abs(to.x) + std::abs(to.y))))
            return {};
        return { (to.x - from.x) / length, (to.y - from.y) / length };
    }

} // namespace

std::vector<Path> figuresOf(const Path &path)
{
    std::vector<Path> figures;
    size_t next = 0;
    for (const Verb verb : path.verbs()) {
        const PointD *const points = path.points().data() + next;
        switch (verb) {
        case Verb::Move:
            figures.emplace_back().moveTo(points[0]);
            next += 1;
            break;
        case Verb::Line:
            figures.back().lineTo(points[0]);
            next += 1;
            break;
        case Verb::Curve:
            figures.back().curveTo(points[0], points[1], points[2]);
            next += 3;
            break;
        case Verb::Close:
            figures.back().close();
            break;
        }
    }
    return figures;
}

bool isClosed(const Path &figure)
{
    return !figure.verbs().empty() && figure.verbs().back() == Verb::Close;
}

Path reversed(const Path &figure)
{
    const auto points = figure.points();
    const auto verbs = figure.verbs();
    Path path;
    if (points.empty())
        return path;
    size_t last = points.size() - 1;
    path.moveTo(points[last]);
    for (size_t i = verbs.size(); i-- > 0;) {
        if (verbs[i] == Verb::Line) {
            path.lineTo(points[last - 1]);
            last -= 1;
        } else if (verbs[i] == Verb::Curve) {
            path.curveTo(points[last - 1], points[last - 2], points[last - 3]);
            last -= 3;
        }
    }
    if (isClosed(figure))
        path.close();
    return path;
}

Path withoutEnd(const Path &figure, double length)
{
    const auto points = figure.points();
    const auto verbs = figure.verbs();
    // Whole parts go first.
    size_t count = verbs.size(), end = points.size();
    double cut = 1; // of the part that is the last one then
    for (; count > 1; --count) {
        if (verbs[count - 1] == Verb::Line) {
            const double part = distance(points[end - 2], points[end - 1]);
            if (part > length) {
                cut = 1 - length / part;
                break;
            }
            length -= part;
            end -= 1;
        } else if (verbs[count - 1] == Verb::Curve) {
            const Cubic curve{ points[end - 4], points[end - 3], points[end - 2], points[end - 1] };
            cut = placeBeforeEnd(curve, length);
            if (cut > 0)
                break;
            cut = 1;
            length -= lengthOf(curve);
            end -= 3;
        }
    }
    Path path;
    size_t next = 0;
    for (size_t i = 0; i < count && count > 1; ++i) {
        const double part = i + 1 == count ? cut : 1;
        if (verbs[i] == Verb::Move) {
            path.moveTo(points[next++]);
        } else if (verbs[i] == Verb::Line) {
            path.lineTo(between(points[next - 1], points[next], part));
            ++next;
        } else if (verbs[i] == Verb::Curve) {
            const Cubic curve = firstPart(
                    { points[next - 1], points[next], points[next + 1], points[next + 2] }, part);
            path.curveTo(curve[1], curve[2], curve[3]);
            next += 3;
        }
    }
    return path;
}

LineEndPlace endOf(const Path &figure)
{
    const auto points = figure.points();
    LineEndPlace end;
    if (points.empty())
        return end;
    end.point = points.back();
    for (size_t i = points.size() - 1; i-- > 0 && end.direction == PointD{};)
        end.direction = directionOf(points[i], end.point);
    return end;
}

Path beside(const Path &figure, double by)
{
    // The control points are moved as the corners of a line are, those in one place together.
    std::vector<PointD> corners;
    std::vector<size_t> cornerOf;
    for (const PointD &point : figure.points()) {
        if (corners.empty() || directionOf(corners.back(), point) != PointD{})
            corners.push_back(point);
        cornerOf.push_back(corners.size() - 1);
    }
    const bool isRing = isClosed(figure);
    if (isRing && corners.size() > 1 && directionOf(corners.back(), corners[0]) == PointD{})
        corners.pop_back();
    const size_t count = corners.size();
    if (count < 2)
        return figure;
    const auto moved = [&](size_t i) -> PointD {
        PointD before, after;
        if (i > 0 || isRing)
            before = directionOf(corners[(i + count - 1) % count], corners[i]);
        if (i + 1 < count || isRing)
            after = directionOf(corners[i], corners[(i + 1) % count]);
        before = before == PointD{} ? after : before;
        after = after == PointD{} ? before : after;
        constexpr double kSharp = 0.1; // where a mitre would go too far
        const double dot = before.x * after.x + before.y * after.y;
        const double reach = by / std::fmax(1 + dot, kSharp);
        return { corners[i].x - (before.y + after.y) * reach,
                 corners[i].y + (before.x + after.x) * reach };
    };
    Path path;
    size_t next = 0;
    const auto point = [&] { return moved(cornerOf[next++] % count); };
    for (const Verb verb : figure.verbs()) {
        if (verb == Verb::Move) {
            path.moveTo(point());
        } else if (verb == Verb::Line) {
            path.lineTo(point());
        } else if (verb == Verb::Curve) {
            const PointD first = point(), second = point();
            path.curveTo(first, second, point());
        } else {
            path.close();
        }
    }
    return path;
}

std::optional<std::vector<DashedLine>> dashed(const Path &lines, std::span<const double> given,
                                              double offset, size_t most)
{
    std::vector<double> dashes(given.begin(), given.end());
    if (dashes.size() % 2 != 0)
        dashes.insert(dashes.end(), given.begin(), given.end());
    double sum = 0;
    for (const double dash : dashes)
        sum += dash;
    std::vector<PointD> points(lines.points().begin(), lines.points().end());
    if (isClosed(lines) && !points.empty())
        points.push_back(points.front());
    double length = 0;
    for (size_t i = 1; i < points.size(); ++i)
        length += distance(points[i - 1], points[i]);
    if (!(sum > 0) || !std::isfinite(length + sum) || !std::isfinite(offset)
        || length / sum * double(dashes.size()) > double(most))
        return std::nullopt;
    double left = std::fmod(offset, sum);
    left = left < 0 ? left + sum : left;
    size_t dash = 0;
    for (; left >= dashes[dash] && dash + 1 < dashes.size(); ++dash)
        left -= dashes[dash];
    left = std::fmax(dashes[dash] - left, 0); // of the dash or gap in which the figure begins
    std::vector<DashedLine> result;
    bool isOpen = false; // the last one goes on
    for (size_t i = 1; i < points.size(); ++i) {
        const double whole = distance(points[i - 1], points[i]);
        double done = 0;
        while (true) {
            if (dash % 2 == 0 && !std::exchange(isOpen, true)) {
                result.push_back({ {}, i == 1 && done == 0, false });
                result.back().line.moveTo(
                        between(points[i - 1], points[i], whole > 0 ? done / whole : 0));
            }
            if (done + left > whole) {
                left -= whole - done;
                if (isOpen)
                    result.back().line.lineTo(points[i]);
                break;
            }
            done += left;
            if (isOpen)
                result.back().line.lineTo(
                        between(points[i - 1], points[i], whole > 0 ? done / whole : 0));
            isOpen = false;
            dash = (dash + 1) % dashes.size();
            left = dashes[dash];
            if (result.size() > most)
                return std::nullopt;
        }
    }
    if (isOpen && !result.empty())
        result.back().isAtEnd = true;
    return result;
}

} // namespace svgtool
