#include "core/text/XmlEscape.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace svgtool {

std::string_view trimmedBlanks(std::string_view text)
{
    while (!text.empty() && isXmlBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isXmlBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

namespace {

    // Whether a byte stands for itself wherever it is. Without branches, so that a loop over it
    // becomes vector instructions.
    bool isPlain(char character)
    {
        const auto byte = static_cast<unsigned char>(character);
        return (byte >= 0x20) & (byte < 0x7F) & (byte != '&') & (byte != '<') & (byte != '>')
                & (byte != '"');
    }

    // How many plain bytes are at the front; data URLs have megabytes of them.
    size_t plainLength(std::string_view text)
    {
        constexpr size_t kBlock = 64;
        size_t length = 0;
        for (; text.size() - length >= kBlock; length += kBlock) {
            unsigned char isAllPlain = 1;
            for (size_t i = 0; i < kBlock; ++i)
                isAllPlain &= static_cast<unsigned char>(isPlain(text[length + i]));
            if (isAllPlain == 0)
                break;
        }
        while (length < text.size() && isPlain(text[length]))
            ++length;
        return length;
    }

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

    // Whether a name between "&" and ";" is one that every XML reader knows.
    bool isReference(std::string_view name)
    {
        if (name.substr(0, 1) != "#")
            return name == "amp" || name == "lt" || name == "gt" || name == "quot"
                    || name == "apos";
        const bool isHexadecimal = name.substr(1, 1) == "x";
        name.remove_prefix(isHexadecimal ? 2 : 1);
        uint32_t code = 0;
        const char *end = name.data() + name.size();
        const auto read = std::from_chars(name.data(), end, code, isHexadecimal ? 16 : 10);
        return read.ec == std::errc() && read.ptr == end && isXmlCharacter(code);
    }

    // The bytes of the reference at the front, from "&" to ";"; 0 when there is none.
    size_t referenceLength(std::string_view text)
    {
        constexpr size_t kLongest = 16;
        const size_t end = text.substr(0, kLongest).find(';');
        return end != text.npos && isReference(text.substr(1, end - 1)) ? end + 1 : 0;
    }

    // Takes the character at the front, which is not plain.
    std::string_view takeOdd(std::string_view &text, XmlPlace place)
    {
        const char front = text.front();
        const bool isComment = place == XmlPlace::Comment;
        size_t length = characterLength(text);
        std::string_view written = text.substr(0, length);
        if (length == 0) {
            length = 1;
            written = "\xEF\xBF\xBD";
        } else if (front == '&' && !isComment) {
            length = std::max<size_t>(1, referenceLength(text));
            written = length == 1 ? "&amp;" : text.substr(0, length);
        } else if (front == '<' && !isComment) {
            written = "&lt;";
        } else if (front == '>' && !isComment) {
            written = "&gt;";
        } else if (front == '"' && place == XmlPlace::Value) {
            written = "&quot;";
        }
        text.remove_prefix(length);
        return written;
    }

    std::string_view takeFront(std::string_view &text, size_t length)
    {
        const std::string_view front = text.substr(0, length);
        text.remove_prefix(length);
        return front;
    }

} // namespace

std::string_view takeEscaped(std::string_view &text, XmlPlace place)
{
    const size_t length = plainLength(text);
    return length > 0 ? takeFront(text, length) : takeOdd(text, place);
}

std::string_view takeUpToHyphen(std::string_view &text)
{
    return takeFront(text, std::min(text.find("--"), text.size() - 1) + 1);
}

} // namespace svgtool
