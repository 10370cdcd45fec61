#pragma once

#include <string_view>

namespace svgtool {

/// Where text stands in an XML document.
enum class XmlPlace { Content, Value, Comment };

/// Takes a piece from the front of @p text, which must not be empty.
/// @return what stands for the piece at @p place; it lives as long as the text
std::string_view takeEscaped(std::string_view &text, XmlPlace place);

/// Takes the part of a comment's @p text, which must not be empty, that ends behind the first of
/// two hyphens.
std::string_view takeUpToHyphen(std::string_view &text);

/// Whether a character is a blank to XML.
inline bool isXmlBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}
/// @p text without the blanks at its ends.
std::string_view trimmedBlanks(std::string_view text);

/// Appends @p text so that it is well-formed at @p place. References to characters stay, any other
/// "&" is escaped, and what is not UTF-8 or no character of XML becomes U+FFFD. In a comment "--"
/// becomes "- -".
/// @param out  whatever appends a std::string_view: a text buffer, a std::string
template<class Out>
void appendEscaped(Out &out, std::string_view text, XmlPlace place)
{
    while (!text.empty())
        out.append(takeEscaped(text, place));
}

/// Appends a whole comment; blanks at the ends of @p text are not kept.
template<class Out>
void appendComment(Out &out, std::string_view text)
{
    out.append("<!-- ");
    text = trimmedBlanks(text);
    while (!text.empty()) {
        appendEscaped(out, takeUpToHyphen(text), XmlPlace::Comment);
        if (!text.empty())
            out.append(" ");
    }
    out.append(" -->");
}

} // namespace svgtool
