#pragma once

#include <QByteArray>

#include <string_view>

namespace svgtool {

/// Where text stands in an XML document.
enum class XmlPlace { Content, Value, Comment };

/// Appends @p bytes as they are; nothing is checked.
void appendBytes(QByteArray &out, std::string_view bytes);

/// Appends @p text so that it is well-formed at @p place. References to characters stay, any other
/// "&" is escaped, and what is not UTF-8 or no character of XML becomes U+FFFD. In a comment "--"
/// becomes "- -".
void appendEscaped(QByteArray &out, std::string_view text, XmlPlace place);

/// Appends a whole comment; blanks at the ends of @p text are not kept.
void appendComment(QByteArray &out, std::string_view text);

/// Whether a character is a blank to XML.
inline bool isXmlBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}
/// @p text without the blanks at its ends.
std::string_view trimmedBlanks(std::string_view text);

} // namespace svgtool
