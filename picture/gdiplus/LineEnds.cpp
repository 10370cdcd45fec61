#include "picture/gdiplus/LineEnds.h"

#include <cmath>
#include <initializer_list>
#include <numbers>
#include <type_traits>

namespace svgtool::picture {

using plus::LineCap;

static Path polygon(std::initializer_list<PointD> points)
{
    Path path;
    for (const PointD &point : points)
        path.isEmpty() ? path.moveTo(point) : path.lineTo(point);
    path.close();
    return path;
}

std::optional<Cap> plainCap(LineCap cap)
{
    switch (cap) {
    case LineCap::Flat:
    case LineCap::NoAnchor:
        return Cap::Butt;
    case LineCap::Square:
        return Cap::Square;
    case LineCap::Round:
        return Cap::Round;
    default:
        return std::nullopt;
    }
}

std::optional<Cap> plainCap(plus::DashCap cap)
{
    switch (cap) {
    case plus::DashCap::Flat:
        return Cap::Butt;
    case plus::DashCap::Round:
        return Cap::Round;
    case plus::DashCap::Triangle:
        break;
    }
    return std::nullopt;
}

Join joinOf(plus::LineJoin join)
{
    switch (join) {
    case plus::LineJoin::Bevel:
        return Join::Bevel;
    case plus::LineJoin::Round:
        return Join::Round;
    case plus::LineJoin::Miter:
    case plus::LineJoin::MiterClipped:
        break;
    }
    return Join::Miter;
}

// Anchors take the place of the line as far as they are wider, so that nothing lies twice.
LineEnd lineEnd(LineCap cap, double over)
{
    LineEnd end;
    const double half = std::numbers::sqrt2 / 2;
    switch (cap) {
    case LineCap::Flat:
    case LineCap::NoAnchor:
        break;
    case LineCap::Square:
        end.fill = polygon({ { -0.5, -over }, { 0.5, -over }, { 0.5, 0.5 }, { -0.5, 0.5 } });
        break;
    case LineCap::Round:
        if (over > 0) {
            end.fill.addEllipse(Affine::scale(0.5, 0.5));
        } else {
            end.fill.addArc(Affine::scale(0.5, 0.5), 0, std::numbers::pi);
            end.fill.close();
        }
        break;
    case LineCap::Triangle:
        end.fill =
                polygon({ { -0.5, -over }, { 0.5, -over }, { 0.5, 0 }, { 0, 0.5 }, { -0.5, 0 } });
        break;
    case LineCap::SquareAnchor:
        end.fill = polygon({ { -half, -half }, { half, -half }, { half, half }, { -half, half } });
        end.inset = half - over;
        break;
    case LineCap::RoundAnchor:
        end.fill.addEllipse(Affine());
        end.inset = std::sqrt(3) / 2 - over;
        break;
    case LineCap::DiamondAnchor:
        end.fill = polygon({ { 0, -1 }, { 1, 0 }, { 0, 1 }, { -1, 0 } });
        end.inset = 0.5 - over;
        break;
    case LineCap::ArrowAnchor: {
        const double wide = 2 / std::sqrt(3);
        end.fill = polygon({ { 0, 0 }, { -wide, -2 }, { wide, -2 } });
        end.inset = 2 - over;
        break;
    }
    }
    end.isAnchor = cap >= LineCap::NoAnchor;
    return end;
}

LineEnd dashEnd(plus::DashCap cap, double over)
{
    LineEnd end;
    if (cap == plus::DashCap::Flat)
        return end;
    end = lineEnd(cap == plus::DashCap::Round ? LineCap::Round : LineCap::Triangle, over);
    end.inset = 0.5;
    end.fill.transform(Affine::translation(0, -end.inset));
    return end;
}

static LineEnd figureEnd(const plus::PathCap &cap, double over)
{
    const Affine scale = Affine::scale(cap.widthScale, cap.widthScale);
    LineEnd end = lineEnd(cap.baseCap, over); // of what is left of the line
    end.inset = cap.baseInset * cap.widthScale;
    end.fill.transform(Affine::translation(0, -end.inset));
    if (cap.fill) {
        Path fill = cap.fill->outline;
        fill.transform(scale);
        end.fill.append(fill);
    }
    if (cap.line) {
        end.line = cap.line->outline;
        end.line.transform(scale);
        end.lineCap = plainCap(cap.endCap).value_or(Cap::Butt);
        end.lineJoin = joinOf(cap.join);
        end.lineMiterLimit = cap.miterLimit;
    }
    return end;
}

static LineEnd arrowEnd(const plus::ArrowCap &cap, double over)
{
    const double width = cap.width * cap.widthScale, height = cap.height * cap.widthScale;
    const double middle = height - cap.middleInset * cap.widthScale;
    LineEnd end;
    if (cap.isFilled) {
        end.fill = polygon(
                { { 0, 0 }, { -width / 2, -height }, { 0, -middle }, { width / 2, -height } });
        end.inset = std::fmax(middle - over, 0);
        return end;
    }
    end.line.moveTo({ -width / 2, -height });
    end.line.lineTo({ 0, 0 });
    end.line.lineTo({ width / 2, -height });
    end.lineCap = plainCap(cap.endCap).value_or(Cap::Butt);
    end.lineJoin = joinOf(cap.join);
    end.lineMiterLimit = cap.miterLimit;
    return end;
}

LineEnd lineEnd(const plus::CustomLineCap &cap, double over)
{
    return std::visit(
            [over](const auto &kind) {
                if constexpr (std::is_same_v<std::decay_t<decltype(kind)>, plus::ArrowCap>)
                    return arrowEnd(kind, over);
                else
                    return figureEnd(kind, over);
            },
            cap);
}

} // namespace svgtool::picture
