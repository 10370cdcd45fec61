#include "exact/svg/SVGTokenizer.h"

#include "core/text/XmlEscape.h"

#include <algorithm>

namespace svgtool {

namespace {

    constexpr size_t kNowhere = std::string_view::npos;

    bool isNameStart(char character)
    {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z')
                || character == '_';
    }

    bool isNameCharacter(char character)
    {
        return isNameStart(character) || (character >= '0' && character <= '9') || character == ':'
                || character == '.' || character == '-';
    }

    // The first place from @p at on whose character is not one of these.
    template<class Predicate>
    size_t skip(std::string_view text, size_t at, Predicate isSkipped)
    {
        while (at < text.size() && isSkipped(text[at]))
            ++at;
        return at;
    }

    bool startsWith(std::string_view text, std::string_view front)
    {
        return text.substr(0, front.size()) == front;
    }

    char characterAt(std::string_view text, size_t at)
    {
        return at < text.size() ? text[at] : '\0';
    }

    // Whether the quote of a value is missing and what was taken for it is that of a later tag: no
    // value holds a "<", and tags begin a line.
    bool holdsTag(std::string_view value)
    {
        return value.find("\n<") != value.npos;
    }

} // namespace

Token SvgTokenizer::take(Token::Kind kind, size_t length)
{
    Token token{ kind, m_text.substr(0, length) };
    m_text.remove_prefix(token.source.size());
    return token;
}

// A token from @p begin, which is at the front, to @p end or else to the end of the text.
Token SvgTokenizer::takeEnclosed(Token::Kind kind, std::string_view begin, std::string_view end)
{
    const size_t at = m_text.find(end, begin.size());
    Token token = take(kind, at == kNowhere ? kNowhere : at + end.size());
    token.content = token.source.substr(begin.size());
    if (at != kNowhere)
        token.content.remove_suffix(end.size());
    return token;
}

Token SvgTokenizer::next()
{
    using Kind = Token::Kind;
    if (m_text.empty())
        return {};
    if (m_text.front() != '<')
        return take(Kind::Text, m_text.find('<'));
    const char second = characterAt(m_text, 1);
    if (isNameStart(second))
        return takeStartTag();
    if (second == '/')
        return takeEndTag();
    if (startsWith(m_text, "<!--"))
        return takeEnclosed(Kind::Comment, "<!--", "-->");
    if (startsWith(m_text, "<![CDATA["))
        return takeEnclosed(Kind::CharacterData, "<![CDATA[", "]]>");
    if (second == '?' || second == '!')
        return takeUnknown(2);
    return take(Kind::Text, m_text.find('<', 1));
}

// A token of what is no proper tag, to the first ">" from @p at on or else to the next tag.
Token SvgTokenizer::takeUnknown(size_t at)
{
    const size_t end = m_text.find_first_of("<>", at);
    return take(Token::Kind::Unknown, characterAt(m_text, end) == '>' ? end + 1 : end);
}

Token SvgTokenizer::takeEndTag()
{
    const size_t nameEnd = skip(m_text, 2, isNameCharacter);
    const size_t end = skip(m_text, nameEnd, isXmlBlank);
    if (characterAt(m_text, end) != '>' || !isNameStart(m_text[2]))
        return takeUnknown(2);
    const std::string_view name = m_text.substr(2, nameEnd - 2);
    Token token = take(Token::Kind::EndTag, end + 1);
    token.name = name;
    return token;
}

Token SvgTokenizer::takeStartTag()
{
    m_attributes.clear();
    m_strays.clear();
    size_t at = skip(m_text, 1, isNameCharacter);
    const std::string_view name = m_text.substr(1, at - 1);
    for (;;) {
        at = skip(m_text, at, isXmlBlank);
        const char front = characterAt(m_text, at);
        const bool closesItself = front == '/' && characterAt(m_text, at + 1) == '>';
        if (front == '>' || closesItself) {
            Token token = take(Token::Kind::StartTag, at + (closesItself ? 2 : 1));
            token.name = name;
            token.closesItself = closesItself;
            return token;
        }
        const size_t itemEnd = readTagItem(at);
        if (itemEnd == at)
            return takeUnknown(at);
        at = itemEnd;
    }
}

// Reads what is at @p at in a start tag and returns where it ends; at @p at when the tag breaks
// off.
size_t SvgTokenizer::readTagItem(size_t at)
{
    if (at == m_text.size() || m_text[at] == '<')
        return at;
    if (isNameStart(m_text[at]))
        return readAttribute(at);
    const size_t end = skip(m_text, at + 1, [](char each) {
        return !isNameStart(each) && !isXmlBlank(each) && each != '<' && each != '>' && each != '/';
    });
    m_strays.push_back(m_text.substr(at, end - at));
    return end;
}

size_t SvgTokenizer::readAttribute(size_t at)
{
    const size_t nameEnd = skip(m_text, at, isNameCharacter);
    const std::string_view name = m_text.substr(at, nameEnd - at);
    const size_t equals = skip(m_text, nameEnd, isXmlBlank);
    if (characterAt(m_text, equals) != '=') {
        m_strays.push_back(name);
        return nameEnd;
    }
    size_t begin = skip(m_text, equals + 1, isXmlBlank);
    size_t end = 0;
    const char quote = characterAt(m_text, begin);
    size_t after = 0;
    if (quote == '"' || quote == '\'') {
        ++begin;
        end = m_text.find(quote, begin);
        if (end == kNowhere || holdsTag(m_text.substr(begin, end - begin)))
            return at;
        after = end + 1;
    } else {
        end = skip(m_text, begin, [](char each) { return isNameCharacter(each) || each == '#'; });
        after = end;
    }
    addAttribute({ name, trimmedBlanks(m_text.substr(begin, end - begin)),
                   m_text.substr(at, after - at) });
    return after;
}

void SvgTokenizer::addAttribute(const Attribute &attribute)
{
    // Far more than SVG has; it bounds the search below.
    constexpr size_t kMostAttributes = 128;
    const auto same = std::find_if(m_attributes.begin(), m_attributes.end(),
                                   [&](const auto &each) { return each.name == attribute.name; });
    if (same != m_attributes.end())
        *same = attribute;
    else if (m_attributes.size() < kMostAttributes)
        m_attributes.push_back(attribute);
    else
        m_strays.push_back(attribute.source);
}

} // namespace svgtool
