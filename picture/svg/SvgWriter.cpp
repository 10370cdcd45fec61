#include "picture/svg/SvgWriter.h"

#include "picture/svg/Numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>

namespace svgtool::picture {

void Numbers::append(std::string &out, int64_t steps) const
{
    if (steps < 0) {
        out += '-';
        steps = -steps;
    }
    std::string digits = std::to_string(steps);
    const auto decimals = size_t(m_decimals);
    if (digits.size() <= decimals)
        digits.insert(0, decimals + 1 - digits.size(), '0');
    std::string whole = digits.substr(0, digits.size() - decimals);
    std::string part = digits.substr(digits.size() - decimals);
    while (!part.empty() && part.back() == '0')
        part.pop_back();
    if (whole != "0" || part.empty())
        out += whole;
    if (!part.empty())
        out += '.' + part;
}

namespace {

    std::string colorText(const Color &color)
    {
        static constexpr char kDigits[] = "0123456789abcdef";
        const std::array<uint8_t, 3> parts{ color.red, color.green, color.blue };
        const bool isShort = std::all_of(parts.begin(), parts.end(),
                                         [](uint8_t part) { return part % 17 == 0; });
        if (color == Color{ 255, 0, 0, 255 })
            return "red";
        std::string text = "#";
        for (const uint8_t part : parts) {
            text += kDigits[part >> 4];
            if (!isShort)
                text += kDigits[part & 15];
        }
        return text;
    }

    void appendUtf8(std::string &out, std::u16string_view text, bool isValue)
    {
        for (size_t i = 0; i < text.size(); ++i) {
            uint32_t code = text[i];
            if (code >= 0xD800 && code < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00
                && text[i + 1] < 0xE000)
                code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
            else if (code >= 0xD800 && code < 0xE000)
                code = 0xFFFD;
            if (code < 0x20 || code == 0xFFFE || code == 0xFFFF)
                continue;
            if (code == '&')
                out += "&amp;";
            else if (code == '<')
                out += "&lt;";
            else if (code == '>')
                out += "&gt;";
            else if (code == '"' && isValue)
                out += "&quot;";
            else if (code < 0x80)
                out += char(code);
            else if (code < 0x800) {
                out += char(0xC0 | code >> 6);
                out += char(0x80 | (code & 0x3F));
            } else if (code < 0x10000) {
                out += char(0xE0 | code >> 12);
                out += char(0x80 | (code >> 6 & 0x3F));
                out += char(0x80 | (code & 0x3F));
            } else {
                out += char(0xF0 | code >> 18);
                out += char(0x80 | (code >> 12 & 0x3F));
                out += char(0x80 | (code >> 6 & 0x3F));
                out += char(0x80 | (code & 0x3F));
            }
        }
    }

    class Writer
    {
    public:
        Writer(const Scene &scene, std::string_view prefix)
            : m_scene(scene), m_prefix(prefix),
              m_numbers(scene.width > 0 ? scene.view.width() / scene.width : 1)
        {
        }
        std::string write();

    private:
        void definitions();
        void clips();
        void hatches();
        void node(const Node &node, const Node *outer);
        void paints(const Node &node, const Node *outer);
        void stroke(const Stroke &stroke);
        void paintValue(const Paint &paint);
        void path(const Node &node);
        void pathData(std::span<const Path::Verb> verbs, std::span<const PointD> points);
        void text(const Text &text);
        void number(std::string_view name, double value);
        void transform(const Affine &matrix);
        void exact(double value);

        const Scene &m_scene;
        std::string_view m_prefix;
        Numbers m_numbers;
        std::string m_out;
    };

    void Writer::exact(double value)
    {
        static const Numbers fine(1e-3);
        fine.append(m_out, value);
    }

    void Writer::number(std::string_view name, double value)
    {
        m_out += ' ';
        m_out += name;
        m_out += "=\"";
        m_numbers.append(m_out, value);
        m_out += '"';
    }

    void Writer::transform(const Affine &matrix)
    {
        m_out += " transform=\"matrix(";
        for (const double value : { matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f }) {
            exact(value);
            m_out += ' ';
        }
        m_out.back() = ')';
        m_out += '"';
    }

    // Relative commands from place to place on the grid, so that no error adds up.
    void Writer::pathData(std::span<const Path::Verb> verbs, std::span<const PointD> points)
    {
        struct Place
        {
            int64_t x, y;
        };
        const auto place = [this](PointD p) {
            return Place{ m_numbers.steps(p.x), m_numbers.steps(p.y) };
        };
        Place current{ 0, 0 }, start{ 0, 0 };
        char last = 0;
        const auto command = [&](char letter) {
            if (letter != last)
                m_out += letter;
            last = letter;
        };
        const auto value = [this](int64_t steps) {
            const char before = m_out.back();
            const bool isDigit = (before >= '0' && before <= '9') || before == '.';
            const size_t at = m_out.size();
            m_numbers.append(m_out, steps);
            if (isDigit && m_out[at] != '-')
                m_out.insert(at, 1, ' ');
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
                m_out += 'z';
                last = 0;
                current = start;
                break;
            }
        }
    }

    void Writer::paintValue(const Paint &paint)
    {
        if (paint.kind == Paint::Kind::Solid) {
            m_out += colorText(paint.color);
            return;
        }
        m_out += "url(#";
        m_out += m_prefix;
        m_out += 'h' + std::to_string(paint.resource) + ")";
    }

    void Writer::stroke(const Stroke &stroke)
    {
        m_out += " stroke=\"";
        paintValue(stroke.paint);
        m_out += '"';
        if (stroke.width != 1)
            number("stroke-width", stroke.width);
        if (stroke.cap != Cap::Butt)
            m_out += stroke.cap == Cap::Round ? " stroke-linecap=\"round\""
                                              : " stroke-linecap=\"square\"";
        if (stroke.join != Join::Miter)
            m_out += stroke.join == Join::Round ? " stroke-linejoin=\"round\""
                                                : " stroke-linejoin=\"bevel\"";
        else if (stroke.miterLimit != 4)
            number("stroke-miterlimit", stroke.miterLimit);
        if (!stroke.dashes.empty()) {
            m_out += " stroke-dasharray=\"";
            for (const double dash : stroke.dashes) {
                m_numbers.append(m_out, dash);
                m_out += ' ';
            }
            m_out.back() = '"';
        }
    }

    void Writer::paints(const Node &node, const Node *outer)
    {
        if (outer == nullptr || outer->fill != node.fill) {
            if (node.fill == kNone) {
                m_out += " fill=\"none\"";
            } else if (m_scene.paints[node.fill] != Paint{ Paint::Kind::Solid, Color{}, kNone }) {
                m_out += " fill=\"";
                paintValue(m_scene.paints[node.fill]);
                m_out += '"';
            }
        }
        if ((outer == nullptr || outer->stroke != node.stroke) && node.stroke != kNone)
            stroke(m_scene.strokes[node.stroke]);
    }

    void Writer::path(const Node &node)
    {
        const PathRange &range = m_scene.paths[node.geometry];
        const std::span verbs(m_scene.verbs.data() + range.firstVerb, range.verbs);
        const std::span points(m_scene.points.data() + range.firstPoint, range.points);
        m_out += "<path d=\"";
        pathData(verbs, points);
        m_out += '"';
        if (node.fill != kNone && node.isEvenOdd
            && std::count(verbs.begin(), verbs.end(), Path::Verb::Move)
                            + std::ptrdiff_t(verbs.size())
                    > 4)
            m_out += " fill-rule=\"evenodd\"";
    }

    void Writer::text(const Text &text)
    {
        m_out += "<text";
        number("x", text.baseline.x);
        number("y", text.baseline.y);
        if (text.angle != 0) {
            m_out += " transform=\"rotate(";
            exact(-text.angle);
            m_out += ' ';
            m_numbers.append(m_out, text.baseline.x);
            m_out += ' ';
            m_numbers.append(m_out, text.baseline.y);
            m_out += ")\"";
        }
        if (!text.advances.empty()) {
            double length = 0;
            for (const double advance : text.advances)
                length += advance;
            if (length > 0 && text.characters.size() > 1)
                number("textLength", length);
        }
        m_out += " font-family=\"";
        appendUtf8(m_out, text.face.empty() ? u"sans-serif" : std::u16string_view(text.face), true);
        m_out += '"';
        number("font-size", text.size);
        if (text.weight > 550)
            m_out += " font-weight=\"bold\"";
        if (text.isItalic)
            m_out += " font-style=\"italic\"";
        if (text.isUnderlined || text.isStruckOut) {
            m_out += " text-decoration=\"";
            m_out += text.isUnderlined ? text.isStruckOut ? "underline line-through" : "underline"
                                       : "line-through";
            m_out += '"';
        }
    }

    void Writer::node(const Node &node, const Node *outer)
    {
        switch (node.kind) {
        case Node::Kind::Path:
            path(node);
            break;
        case Node::Kind::Rect: {
            const Rect &rect = m_scene.rects[node.geometry];
            m_out += "<rect";
            if (rect.box.left != 0)
                number("x", rect.box.left);
            if (rect.box.top != 0)
                number("y", rect.box.top);
            number("width", rect.box.width());
            number("height", rect.box.height());
            if (rect.rx > 0)
                number("rx", rect.rx);
            if (rect.ry > 0 && rect.ry != rect.rx)
                number("ry", rect.ry);
            break;
        }
        case Node::Kind::Ellipse: {
            const Ellipse &ellipse = m_scene.ellipses[node.geometry];
            const bool isCircle = ellipse.radii.x == ellipse.radii.y;
            m_out += isCircle ? "<circle" : "<ellipse";
            number("cx", ellipse.center.x);
            number("cy", ellipse.center.y);
            number(isCircle ? "r" : "rx", ellipse.radii.x);
            if (!isCircle)
                number("ry", ellipse.radii.y);
            break;
        }
        case Node::Kind::Text:
            text(m_scene.texts[node.geometry]);
            break;
        }
        paints(node, outer);
        if (node.transform != kNone)
            transform(m_scene.transforms[node.transform]);
        if (node.kind == Node::Kind::Text) {
            m_out += '>';
            appendUtf8(m_out, m_scene.texts[node.geometry].characters, false);
            m_out += "</text>\n";
        } else {
            m_out += "/>\n";
        }
    }

    void Writer::clips()
    {
        std::vector<bool> isUsed(m_scene.clips.size());
        for (const Node &each : m_scene.nodes) {
            for (Index i = each.clip; i != kNone && !isUsed[i]; i = m_scene.clips[i].parent)
                isUsed[i] = true;
        }
        for (size_t i = 0; i < m_scene.clips.size(); ++i) {
            if (!isUsed[i])
                continue;
            const Clip &clip = m_scene.clips[i];
            m_out += "<clipPath id=\"";
            m_out += m_prefix;
            m_out += 'c' + std::to_string(i) + '"';
            if (clip.parent != kNone) {
                m_out += " clip-path=\"url(#";
                m_out += m_prefix;
                m_out += 'c' + std::to_string(clip.parent) + ")\"";
            }
            m_out += "><path d=\"";
            if (clip.path.isEmpty())
                m_out += "M0 0";
            pathData(clip.path.verbs(), clip.path.points());
            m_out += '"';
            if (clip.isEvenOdd)
                m_out += " clip-rule=\"evenodd\"";
            m_out += "/></clipPath>\n";
        }
    }

    void Writer::hatches()
    {
        for (size_t i = 0; i < m_scene.hatches.size(); ++i) {
            const Hatch &hatch = m_scene.hatches[i];
            m_out += "<pattern id=\"";
            m_out += m_prefix;
            m_out += 'h' + std::to_string(i) + "\" patternUnits=\"userSpaceOnUse\"";
            number("x", hatch.origin.x);
            number("y", hatch.origin.y);
            number("width", hatch.tile);
            number("height", hatch.tile);
            m_out += '>';
            if (hatch.ground) {
                m_out += "<rect";
                number("width", hatch.tile);
                number("height", hatch.tile);
                m_out += " fill=\"" + colorText(*hatch.ground) + "\"/>";
            }
            m_out += "<path fill=\"none\" stroke=\"" + colorText(hatch.color) + '"';
            if (hatch.lineWidth != 1)
                number("stroke-width", hatch.lineWidth);
            m_out += " d=\"";
            pathData(hatch.lines.verbs(), hatch.lines.points());
            m_out += "\"/></pattern>\n";
        }
    }

    void Writer::definitions()
    {
        const size_t before = m_out.size();
        m_out += "<defs>\n";
        const size_t start = m_out.size();
        clips();
        hatches();
        if (m_out.size() == start)
            m_out.resize(before);
        else
            m_out += "</defs>\n";
    }

    std::string Writer::write()
    {
        const RectD &view = m_scene.view;
        m_out = "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\"";
        static const Numbers pixels(0.1);
        const auto size = [this](std::string_view name, double value) {
            m_out += ' ';
            m_out += name;
            m_out += "=\"";
            pixels.append(m_out, value);
            m_out += '"';
        };
        size("width", m_scene.width);
        size("height", m_scene.height);
        m_out += " viewBox=\"";
        for (const double value : { view.left, view.top, view.width(), view.height() }) {
            m_numbers.append(m_out, value);
            m_out += ' ';
        }
        m_out.back() = '"';
        m_out += ">\n";
        definitions();
        const Node *outer = nullptr; // whose clip the open group has
        for (size_t i = 0; i < m_scene.nodes.size();) {
            const Node &first = m_scene.nodes[i];
            size_t end = i + 1;
            while (end < m_scene.nodes.size() && m_scene.nodes[end].clip == first.clip)
                ++end;
            if (first.clip != kNone) {
                m_out += "<g clip-path=\"url(#";
                m_out += m_prefix;
                m_out += 'c' + std::to_string(first.clip) + ")\">\n";
            }
            while (i < end) {
                size_t run = i + 1;
                const Node &lead = m_scene.nodes[i];
                while (run < end && m_scene.nodes[run].fill == lead.fill
                       && m_scene.nodes[run].stroke == lead.stroke)
                    ++run;
                const bool isGrouped = run - i > 1;
                outer = nullptr;
                if (isGrouped) {
                    m_out += "<g";
                    paints(lead, nullptr);
                    m_out += ">\n";
                    outer = &lead;
                }
                for (; i < run; ++i)
                    node(m_scene.nodes[i], outer);
                if (isGrouped)
                    m_out += "</g>\n";
            }
            if (first.clip != kNone)
                m_out += "</g>\n";
        }
        m_out += "</svg>\n";
        return std::move(m_out);
    }

} // namespace

std::string writeSvg(const Scene &scene, std::string_view idPrefix)
{
    return Writer(scene, idPrefix).write();
}

} // namespace svgtool::picture
