#pragma once

#include <string_view>
#include <vector>

namespace svgtool {

/// An attribute of a start tag.
struct Attribute
{
    std::string_view name;
    std::string_view value; ///< without quotes and blanks at the ends, references not resolved
    std::string_view source; ///< all of it as it is written
};

/// A piece of an SVG text. Everything in it is a view of that text.
struct Token
{
    enum class Kind {
        End, ///< the text is used up
        Text, ///< source: text between tags; a "<" at its front starts no tag
        StartTag, ///< name, closesItself, and the tokenizer's attributes and strays
        EndTag, ///< name
        Comment, ///< content
        CharacterData, ///< content: text that was kept from being read as tags
        Unknown, ///< source: a tag that breaks off, an instruction or a declaration
    };

    Kind kind = Kind::End;
    std::string_view source; ///< the whole piece
    std::string_view name = {};
    std::string_view content = {};
    bool closesItself = false;
};

/// Cuts an SVG text, or what is meant to be one, into tokens.
///
/// It takes what the writer writes, such as attributes without a blank between them, and is defined
/// for any other bytes. Each byte is in exactly one token, and none is looked at more than a few
/// times.
class SvgTokenizer
{
public:
    explicit SvgTokenizer(std::string_view text) : m_text(text) { }

    /// The next token; its views live as long as the text.
    Token next();
    /// What follows the last token.
    std::string_view rest() const { return m_text; }

    /// The attributes of the last start tag, one of each name: the last value, in the first place.
    std::vector<Attribute> &attributes() { return m_attributes; }
    /// What stood in the last start tag and is no attribute.
    std::vector<std::string_view> &strays() { return m_strays; }

private:
    Token take(Token::Kind kind, size_t length);
    Token takeEnclosed(Token::Kind kind, std::string_view begin, std::string_view end);
    Token takeUnknown(size_t at);
    Token takeStartTag();
    Token takeEndTag();
    size_t readTagItem(size_t at);
    size_t readAttribute(size_t at);
    void addAttribute(const Attribute &attribute);

    std::string_view m_text;
    std::vector<Attribute> m_attributes;
    std::vector<std::string_view> m_strays;
};

} // namespace svgtool
