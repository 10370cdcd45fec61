#include "picture/svg/SvgParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace svgtool::picture {

namespace {

    // A place on the grid, or the way from one to another.
    struct Place
    {
        int64_t x = 0, y = 0;

        Place operator+(Place other) const { return { x + other.x, y + other.y }; }
        Place operator-(Place other) const { return { x - other.x, y - other.y }; }
        bool operator==(const Place &) const = default;
    };

    // Whether a line goes straight on, and not back. Ways that are too long for the product are
    // not looked at.
    bool goesOn(Place a, Place b)
    {
        constexpr int64_t kLong = int64_t(1) << 30;
        const int64_t longest = std::max(std::max(std::abs(a.x), std::abs(a.y)),
                                         std::max(std::abs(b.x), std::abs(b.y)));
        return longest <= kLong && a.x * b.y == a.y * b.x && a.x * b.x + a.y * b.y >= 0;
    }

    // What the next command goes on from.
    struct Before
    {
        char letter = 0; // that need not be repeated
        bool isNumber = false; // the last character belongs to one
        bool hasPoint = false; // that number has a decimal point
    };

    // Where a command that was written ends, and what it leaves for the next one.
    struct Command
    {
        char *end;
        Before after;
    };

    template<size_t count>
    using Values = std::array<int64_t, count>;

    // The longest that a command of so many numbers can be.
    template<size_t count>
    constexpr size_t kMostLength = 1 + count *(1 + Numbers::kMostLength);

    // Path data in its shortest form. Places are on the grid before they are subtracted, so that
    // no error adds up along relative commands.
    class PathData
    {
    public:
        PathData(SvgDocument &document, const Numbers &grid)
            : m_document(document), m_grid(grid) { }

        void write(std::span<const Path::Verb> verbs, std::span<const PointD> points);

    private:
        Place place(PointD p) const { return { m_grid.steps(p.x), m_grid.steps(p.y) }; }
        bool isNear(Place at, PointD p) const
        {
            return m_grid.isNear(at.x, p.x) && m_grid.isNear(at.y, p.y);
        }
        Place mirrored(bool isParabola) const;
        bool isStraight(PointD from, const PointD *points) const;
        void line(Place to);
        void flushLine(bool isLast);
        void writeMove();
        void writeMoveAndLine(Place way);
        void writeCurve(PointD from, const PointD *points);
        bool writeParabola(PointD from, const PointD *points);
        void writeCubic(const PointD *points);
        void close();

        template<size_t count>
        Command command(char *out, const Before &before, char letter,
                        const Values<count> &values) const;
        template<size_t room, class First, class Second>
        void putShorter(First first, Second second, bool takesSecond = false);
        template<size_t count>
        void put(char relative, const Values<count> &way, char absolute, const Values<count> &to);

        SvgDocument &m_document;
        const Numbers &m_grid;
        Before m_before;
        Place m_current; // where the written ends
        Place m_start; // of the figure
        bool m_hasMove = false; // to m_start, not written yet
        bool m_hasLine = false; // to m_lineEnd, not written yet
        Place m_lineEnd;
        Place m_lastControl; // of the curve before, its last one; else where the written ends
        bool m_isParabola = false; // the curve before is one
    };

    template<size_t count>
    Command PathData::command(char *out, const Before &before, char letter,
                              const Values<count> &values) const
    {
        // Numbers behind those of a move are lines.
        Before state{ letter == 'm'           ? 'l'
                              : letter == 'M' ? 'L'
                                              : letter,
                      before.isNumber, before.hasPoint };
        if (letter != before.letter) {
            *out++ = letter;
            state.isNumber = false;
        }
        for (const int64_t value : values) {
            const bool isApart = value < 0 || (state.hasPoint && m_grid.beginsWithPoint(value));
            *out = ' ';
            out += state.isNumber && !isApart ? 1 : 0;
            out = m_grid.put(out, value, state.hasPoint);
            state.isNumber = true;
        }
        return { out, state };
    }

    // Puts the shorter one of two ways to write something, each a function of the place for it.
    // @param takesSecond  of two that are equally long
    template<size_t room, class First, class Second>
    void PathData::putShorter(First first, Second second, bool takesSecond)
    {
        m_document.text().write(int64_t(room), [&](char *out) {
            std::array<char, room> other; // which is copied whole, since its length is not foreseen
            const Command one = first(out), two = second(other.data());
            const std::ptrdiff_t length = two.end - other.data(), least = one.end - out;
            if (length > least || (length == least && !takesSecond)) {
                m_before = one.after;
                return one.end;
            }
            std::memcpy(out, other.data(), room);
            m_before = two.after;
            return out + length;
        });
    }

    template<size_t count>
    void PathData::put(char relative, const Values<count> &way, char absolute,
                       const Values<count> &to)
    {
        const Before before = m_before;
        putShorter<kMostLength<count>>(
                [&](char *out) { return command(out, before, relative, way); },
                [&](char *out) { return command(out, before, absolute, to); },
                before.letter == absolute);
    }

    void PathData::writeMove()
    {
        if (!m_hasMove)
            return;
        m_hasMove = false;
        const Before before = m_before;
        const Place way = m_start - m_current;
        putShorter<kMostLength<2>>(
                [&](char *out) {
                    return command<2>(out, before, 'M', { m_start.x, m_start.y });
                },
                [&](char *out) {
                    return command<2>(out, before, 'm', { way.x, way.y });
                });
        m_current = m_lastControl = m_start;
    }

    // The line needs no letter where it is relative or absolute as the move is.
    void PathData::writeMoveAndLine(Place way)
    {
        m_hasMove = false;
        const Before before = m_before;
        const Place to = m_start + way, move = m_start - m_current;
        putShorter<2 * kMostLength<2>>(
                [&](char *out) {
                    const Command moved = command<2>(out, before, 'M', { m_start.x, m_start.y });
                    return command<2>(moved.end, moved.after, 'L', { to.x, to.y });
                },
                [&](char *out) {
                    const Command moved = command<2>(out, before, 'm', { move.x, move.y });
                    return command<2>(moved.end, moved.after, 'l', { way.x, way.y });
                });
    }

    // A line that goes on as the one before makes that one longer.
    void PathData::line(Place to)
    {
        const Place from = m_hasMove ? m_start : m_current;
        if (m_hasLine && !goesOn(m_lineEnd - from, to - m_lineEnd))
            flushLine(false);
        m_hasLine = true;
        m_lineEnd = to;
    }

    // A line to where it begins is a dot when there is nothing else in the figure.
    void PathData::flushLine(bool isLast)
    {
        if (!m_hasLine)
            return;
        m_hasLine = false;
        const Place to = m_lineEnd, way = to - (m_hasMove ? m_start : m_current);
        if (way == Place() && (!m_hasMove || !isLast))
            return;
        if (way.x != 0 && way.y != 0 && m_hasMove) {
            writeMoveAndLine(way);
        } else {
            writeMove();
            if (way.y == 0)
                put<1>('h', { way.x }, 'H', { to.x });
            else if (way.x == 0)
                put<1>('v', { way.y }, 'V', { to.y });
            else
                put<2>('l', { way.x, way.y }, 'L', { to.x, to.y });
        }
        m_current = m_lastControl = to;
    }

    // Where a viewer puts a first control point that is left out: it mirrors the last one of the
    // curve before, if that is of the same kind.
    Place PathData::mirrored(bool isParabola) const
    {
        return m_isParabola == isParabola ? m_current + m_current - m_lastControl : m_current;
    }

    // Whether a curve goes from one end to the other as a line does, and not back.
    bool PathData::isStraight(PointD from, const PointD *points) const
    {
        const PointD way{ points[2].x - from.x, points[2].y - from.y };
        const double length = std::hypot(way.x, way.y), tolerance = m_grid.tolerance();
        const auto isOnWay = [&](PointD control) {
            const PointD part{ control.x - from.x, control.y - from.y };
            const double along = part.x * way.x + part.y * way.y;
            return std::abs(part.x * way.y - part.y * way.x) <= tolerance * length
                    && along >= -tolerance * length && along <= (length + tolerance) * length;
        };
        return length > tolerance && isOnWay(points[0]) && isOnWay(points[1]);
    }

    void PathData::writeCurve(PointD from, const PointD *points)
    {
        if (isStraight(from, points)) {
            line(place(points[2]));
            return;
        }
        flushLine(false);
        writeMove();
        if (writeParabola(from, points)) {
            m_isParabola = true;
        } else {
            writeCubic(points);
            m_isParabola = false;
        }
        m_current = place(points[2]);
    }

    // Letters of many fonts are made of curves with one control point, which is less to write.
    bool PathData::writeParabola(PointD from, const PointD *points)
    {
        const PointD first{ (3 * points[0].x - from.x) / 2, (3 * points[0].y - from.y) / 2 };
        const PointD second{ (3 * points[1].x - points[2].x) / 2,
                             (3 * points[1].y - points[2].y) / 2 };
        const PointD middle{ (first.x + second.x) / 2, (first.y + second.y) / 2 };
        const Place control = place(middle), to = place(points[2]);
        if (!isNear(control, first) || !isNear(control, second))
            return false;
        const Place way = to - m_current, toControl = control - m_current;
        const Place mirror = mirrored(true);
        if (isNear(mirror, middle)) {
            put<2>('t', { way.x, way.y }, 'T', { to.x, to.y });
            m_lastControl = mirror; // where the next one is mirrored
        } else {
            put<4>('q', { toControl.x, toControl.y, way.x, way.y }, 'Q',
                   { control.x, control.y, to.x, to.y });
            m_lastControl = control;
        }
        return true;
    }

    void PathData::writeCubic(const PointD *points)
    {
        const Place c2 = place(points[1]), to = place(points[2]);
        const Place r2 = c2 - m_current, way = to - m_current;
        if (isNear(mirrored(false), points[0])) {
            put<4>('s', { r2.x, r2.y, way.x, way.y }, 'S', { c2.x, c2.y, to.x, to.y });
        } else {
            const Place c1 = place(points[0]), r1 = c1 - m_current;
            put<6>('c', { r1.x, r1.y, r2.x, r2.y, way.x, way.y }, 'C',
                   { c1.x, c1.y, c2.x, c2.y, to.x, to.y });
        }
        m_lastControl = c2;
    }

    void PathData::close()
    {
        // The last line is drawn by closing.
        if (m_hasLine && !m_hasMove && m_lineEnd == m_start)
            m_hasLine = false;
        flushLine(true);
        writeMove();
        m_document.put('z');
        m_before = {};
        m_current = m_lastControl = m_start;
    }

    void PathData::write(std::span<const Path::Verb> verbs, std::span<const PointD> points)
    {
        size_t next = 0;
        for (const Path::Verb verb : verbs) {
            switch (verb) {
            case Path::Verb::Move:
                flushLine(true);
                m_start = place(points[next++]);
                m_hasMove = true;
                break;
            case Path::Verb::Line:
                line(place(points[next++]));
                break;
            case Path::Verb::Curve:
                writeCurve(points[next - 1], &points[next]);
                next += 3;
                break;
            case Path::Verb::Close:
                close();
                break;
            }
        }
        flushLine(true);
    }

} // namespace

void writePathData(SvgDocument &document, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points)
{
    writePathData(document, document.grid(), verbs, points);
}

void writePathData(SvgDocument &document, const Numbers &grid, std::span<const Path::Verb> verbs,
                   std::span<const PointD> points)
{
    PathData(document, grid).write(verbs, points);
}

} // namespace svgtool::picture
