#pragma once

#include "core/base/TextBuffer.h"

#include <string_view>

namespace svgtool {

/// Where text stands in an XML document; a value is between double quotes.
enum class XmlPlace { Content, Value };

/// Appends UTF-8 so that a reader of XML gets the same characters back. What is not UTF-8 or no
/// character of XML becomes U+FFFD.
void appendEscaped(TextBuffer &out, std::string_view text, XmlPlace place);

/// Appends a whole comment that holds UTF-8, without the blanks at its ends. "--" becomes "- -",
/// and what is not UTF-8 or no character of XML U+FFFD.
void appendComment(TextBuffer &out, std::string_view text);

} // namespace svgtool
