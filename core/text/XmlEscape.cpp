#include "core/text/XmlEscape.h"

#include <algorithm>
#include <cstdint>

namespace svgtool {

namespace {

    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

    bool isXmlCharacter(uint32_t code)
    {
        return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xD800)
                || (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code < 0x110000);
    }

    // The bytes of the UTF-8 character at the front; 0 unless it is complete, in its shortest form
    // and allowed in XML.
    size_t characterLength(std::string_view text)
    {
        const auto lead = static_cast<unsigned char>(text.front());
        if (lead >= 0x20 && lead < 0x80)
            return 1;
        const size_t length = lead < 0x80 ? 1
                : lead < 0xC0             ? 0
                : lead < 0xE0             ? 2
                : lead < 0xF0             ? 3
                                          : 4;
        if (length == 0 || lead > 0xF4 || text.size() < length)
            return 0;
        static constexpr uint32_t kSmallest[] = { 0, 0, 0x80, 0x800, 0x10000 };
        uint32_t code = length == 1 ? lead : lead & (0x7FU >> length);
        for (size_t i = 1; i < length; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if ((byte & 0xC0) != 0x80)
                return 0;
            code = code << 6 | (byte & 0x3F);
        }
        return code >= kSmallest[length] && isXmlCharacter(code) ? length : 0;
    }

    // Appends text of which @p escaped tells what stands for a character of one byte; empty:
    // itself.
    template<class Escaped>
    void append(TextBuffer &out, std::string_view text, const Escaped &escaped)
    {
        while (!text.empty()) {
            size_t kept = 0, length = 0;
            std::string_view instead;
            for (; kept < text.size(); kept += length) {
                length = characterLength(text.substr(kept));
                instead = length == 0 ? kReplacement : escaped(text[kept]);
                if (!instead.empty())
                    break;
            }
            out.append(text.substr(0, kept), instead);
            text.remove_prefix(std::min(kept + 1, text.size()));
        }
    }

} // namespace

void appendEscaped(TextBuffer &out, std::string_view text, XmlPlace place)
{
    append(out, text, [place](char character) -> std::string_view {
        switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return place == XmlPlace::Value ? "&quot;" : "";
        default:
            return {};
        }
    });
}

void appendComment(TextBuffer &out, std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
    text = text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
    out.append("<!-- ");
    char before = '\0';
    append(out, text, [&before](char character) -> std::string_view {
        const bool isSecondHyphen = before == '-' && character == '-';
        before = character;
        return isSecondHyphen ? " -" : "";
    });
    out.append(" -->");
}

} // namespace svgtool
