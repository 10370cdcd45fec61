#include "picture/gdiplus/StringLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace svgtool::picture {

namespace {

    using plus::StringFormat;
    using plus::StringTrimming;

    constexpr char32_t kEllipsis = U'\u2026';
    constexpr double kEndless = std::numeric_limits<double>::max();

    bool isBlank(char32_t character)
    {
        return character == U' ' || character == U'\t';
    }

    // Between characters of these scripts lines break anywhere.
    bool isIdeograph(char32_t character)
    {
        return (character >= 0x2E80 && character < 0xA000)
                || (character >= 0xAC00 && character < 0xD7B0)
                || (character >= 0xF900 && character < 0xFB00)
                || (character >= 0x20000 && character < 0x40000);
    }

    // A text's characters without line breaks and marks of keys.
    struct Paragraph
    {
        std::u32string characters;
        std::vector<size_t> hotkeys; ///< the places of keys
    };

    class Layout
    {
    public:
        Layout(const StringFormat &format, const RealizedFont &font, PointD box)
            : m_format(format), m_font(font), m_box(box),
              m_room(box.x > 0 ? box.x - (format.leadingMargin + format.trailingMargin) * font.em
                               : kEndless)
        {
            const FontTables &tables = font.shape.tables;
            const double gap = tables.lineGap
                    - (tables.winAscent + tables.winDescent
                       - double(tables.ascender - tables.descender));
            m_lineHeight =
                    font.ascent + font.descent + std::max(0.0, gap) * font.em / tables.unitsPerEm;
            placeTabs();
        }

        std::vector<StringLine> lines(std::u16string_view text)
        {
            for (const Paragraph &paragraph : paragraphs(text))
                addParagraph(paragraph);
            align();
            return std::move(m_lines);
        }

    private:
        bool has(uint32_t flag) const { return (m_format.flags & flag) != 0; }

        std::vector<Paragraph> paragraphs(std::u16string_view utf16) const
        {
            std::vector<size_t> units;
            const std::u32string text = decode(utf16, units);
            const bool hasKeys = m_format.hotkeys != plus::HotkeyPrefix::None;
            std::vector<Paragraph> all(1);
            for (size_t i = 0; i < text.size(); ++i) {
                const char32_t next = i + 1 < text.size() ? text[i + 1] : 0;
                std::u32string &characters = all.back().characters;
                if (text[i] == U'\r' || text[i] == U'\n') {
                    i += text[i] == U'\r' && next == U'\n';
                    all.emplace_back();
                } else if (!hasKeys || text[i] != U'&') {
                    characters += text[i];
                } else if (next == U'&') {
                    characters += text[++i];
                } else {
                    all.back().hotkeys.push_back(characters.size());
                }
            }
            if (all.back().characters.empty() && all.size() > 1)
                all.pop_back(); // a break at the end adds no line
            return all;
        }

        // Each stop, or one before it that is further off: what comes next is the first beyond.
        void placeTabs()
        {
            constexpr size_t kMost = 1000; // many short strings may share a long list
            m_lastTab = m_format.firstTabOffset;
            m_tabs.push_back(m_lastTab);
            for (size_t i = 0; i < std::min(m_format.tabStops.size(), kMost); ++i) {
                m_lastTab += m_format.tabStops[i];
                m_tabs.push_back(std::max(m_tabs.back(), m_lastTab));
            }
        }

        double nextTab(double x) const
        {
            constexpr double kDefault = 8; // widths of an average character
            const auto known = std::ranges::upper_bound(m_tabs, x);
            if (known != m_tabs.end())
                return *known;
            const double stop = m_lastTab;
            double step = m_format.tabStops.empty() ? 0 : m_format.tabStops.back();
            const FontTables &tables = m_font.shape.tables;
            if (!(step > 0))
                step = kDefault * tables.averageWidth * m_font.em / tables.unitsPerEm;
            return step > 0 ? stop + (std::floor((x - stop) / step) + 1) * step : x;
        }

        double advance(const PlacedCharacter &each, double x) const
        {
            if (each.character == U'\t')
                return nextTab(x) - x;
            return each.shape.advance * m_font.em / m_font.shape.tables.unitsPerEm
                    * m_format.tracking;
        }

        std::vector<PlacedCharacter> shaped(std::u32string_view characters) const
        {
            std::u32string meant(characters);
            for (char32_t &character : meant)
                character = meaning(character, m_font.symbols);
            const auto shapes = characterShapes(meant, m_font.request);
            std::vector<PlacedCharacter> all;
            all.reserve(meant.size());
            for (size_t i = 0; i < meant.size(); ++i)
                all.push_back({ meant[i], 0, 0, shapes[i] });
            return all;
        }

        bool breaksAfter(const std::vector<PlacedCharacter> &all, size_t i) const
        {
            const char32_t character = all[i].character;
            return isBlank(character) || character == U'-' || isIdeograph(character)
                    || (i + 1 < all.size() && isIdeograph(all[i + 1].character));
        }

        // How many characters from @p first on make a line: up to the last place to break, or as
        // many as there is room for.
        size_t lengthOfLine(const std::vector<PlacedCharacter> &all, size_t first,
                            bool breaksWords) const
        {
            double x = 0;
            size_t length = 0;
            for (size_t i = first; i < all.size(); ++i) {
                x += advance(all[i], x);
                if (x > m_room && !isBlank(all[i].character))
                    return length > 0 && !breaksWords ? length : std::max<size_t>(i - first, 1);
                if (breaksAfter(all, i))
                    length = i - first + 1;
            }
            return all.size() - first;
        }

        // What begins below the box is not seen, nor what ends there where only whole lines are.
        bool hasRoom(size_t lines) const
        {
            if (!(m_box.y > 0))
                return true;
            const double top = double(lines) * m_lineHeight;
            constexpr double kSlack = 1e-3; // of rounded sizes
            return has(StringFormat::kLineLimit)
                    ? top + m_lineHeight <= m_box.y + kSlack * m_lineHeight
                    : top < m_box.y;
        }

        void addParagraph(const Paragraph &paragraph)
        {
            const auto all = shaped(paragraph.characters);
            const bool wraps = m_room < kEndless && !has(StringFormat::kNoWrap);
            size_t first = 0;
            auto hotkey = paragraph.hotkeys.begin(); // they ascend as the lines do
            do {
                if (!hasRoom(m_lines.size()))
                    return;
                const bool isLast = !hasRoom(m_lines.size() + 1);
                size_t length = all.size() - first;
                if (wraps && !isLast)
                    length = lengthOfLine(all, first, false);
                const std::vector<PlacedCharacter> characters(
                        all.begin() + std::ptrdiff_t(first),
                        all.begin() + std::ptrdiff_t(first + length));
                addLine(wraps || has(StringFormat::kNoWrap) ? trimmed(characters) : characters);
                for (; hotkey != paragraph.hotkeys.end() && *hotkey < first + length; ++hotkey) {
                    const bool isHere = *hotkey - first < m_lines.back().characters.size();
                    if (isHere && m_format.hotkeys == plus::HotkeyPrefix::Show)
                        m_lines.back().hotkeys.push_back(*hotkey - first);
                }
                first += length;
            } while (first < all.size());
        }

        double widthOf(const std::vector<PlacedCharacter> &characters) const
        {
            double x = 0;
            for (const PlacedCharacter &each : characters)
                x += advance(each, x);
            return x;
        }

        // A line that has more than there is room for, as the format trims it.
        std::vector<PlacedCharacter> trimmed(std::vector<PlacedCharacter> line) const
        {
            const StringTrimming trimming = m_format.trimming;
            if (!has(StringFormat::kMeasuresTrailingSpaces)) {
                while (!line.empty() && isBlank(line.back().character))
                    line.pop_back();
            }
            if (!(m_room < kEndless) || widthOf(line) <= m_room)
                return line;
            const bool hasEllipsis = trimming >= StringTrimming::EllipsisCharacter;
            if (trimming == StringTrimming::None) {
                if (!has(StringFormat::kNoWrap))
                    line.resize(lengthOfLine(line, 0, false));
                return line;
            }
            auto end = shaped(hasEllipsis ? std::u32string_view(&kEllipsis, 1)
                                          : std::u32string_view());
            const double room = m_room - widthOf(end);
            const bool isByWord =
                    trimming == StringTrimming::Word || trimming == StringTrimming::EllipsisWord;
            double x = 0;
            size_t fitting = 0, words = 0;
            while (fitting < line.size()) {
                x += advance(line[fitting], x);
                if (x > room)
                    break;
                ++fitting;
                if (isBlank(line[fitting - 1].character))
                    words = fitting;
            }
            line.resize(isByWord && words > 0 ? words : fitting);
            while (hasEllipsis && !line.empty() && isBlank(line.back().character))
                line.pop_back();
            line.insert(line.end(), end.begin(), end.end());
            return line;
        }

        void addLine(std::vector<PlacedCharacter> characters)
        {
            StringLine line;
            double x = 0;
            for (PlacedCharacter &each : characters) {
                each.x = x;
                x += advance(each, x);
                if (!isBlank(each.character) || has(StringFormat::kMeasuresTrailingSpaces))
                    line.width = x;
            }
            line.characters = std::move(characters);
            m_lines.push_back(std::move(line));
        }

        // Where something of a length begins along a side of the box.
        static double place(plus::StringAlignment alignment, double side, double length)
        {
            switch (alignment) {
            case plus::StringAlignment::Center:
                return (side - length) / 2;
            case plus::StringAlignment::Far:
                return side - length;
            default:
                return 0;
            }
        }

        void align()
        {
            const double leading = m_format.leadingMargin * m_font.em;
            const double trailing = m_format.trailingMargin * m_font.em;
            plus::StringAlignment alignment = m_format.alignment;
            const bool isReversed = has(StringFormat::kRightToLeft);
            if (isReversed && alignment != plus::StringAlignment::Center)
                alignment = alignment == plus::StringAlignment::Near ? plus::StringAlignment::Far
                                                                     : plus::StringAlignment::Near;
            const double height = double(m_lines.size()) * m_lineHeight;
            const double top = place(m_format.lineAlignment, std::max(m_box.y, 0.0), height);
            // Columns of vertical text go from left to right, which is against their own down.
            const bool isUpwards = has(StringFormat::kVertical) && !isReversed;
            const double side = std::max(m_box.x, 0.0);
            for (size_t i = 0; i < m_lines.size(); ++i) {
                StringLine &line = m_lines[i];
                const double row = isUpwards
                        ? std::max(m_box.y, 0.0) - top - double(i + 1) * m_lineHeight
                        : top + double(i) * m_lineHeight;
                const double all = line.width + leading + trailing;
                line.baseline = { place(alignment, side, all) + (isReversed ? trailing : leading),
                                  row + m_font.ascent };
            }
        }

        const StringFormat &m_format;
        const RealizedFont &m_font;
        PointD m_box;
        double m_room; ///< for a line's letters
        double m_lineHeight;
        std::vector<double> m_tabs;
        double m_lastTab = 0;
        std::vector<StringLine> m_lines;
    };

} // namespace

std::vector<StringLine> layOutString(std::u16string_view text, const plus::StringFormat &format,
                                     const RealizedFont &font, PointD box)
{
    return Layout(format, font, box).lines(text);
}

} // namespace svgtool::picture
