#include "exact/svg/SVGDisplay.h"

#include "core/text/XmlEscape.h"
#include "exact/svg/DocumentText.h"
#include "exact/svg/SVGTokenizer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace svgtool {

namespace {

    constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
    constexpr std::string_view kXlinkNamespace = "http://www.w3.org/1999/xlink";

    // What viewers can be counted on to open.
    constexpr double kLargestSide = 16384;
    constexpr double kLargestFont = 32768;
    constexpr std::string_view kLargestFontText = "32768";

    bool startsWith(std::string_view text, std::string_view front)
    {
        return text.substr(0, front.size()) == front;
    }

    // Whether @p name is a name without a prefix. Only characters of ASCII count, which is what SVG
    // is made of.
    bool isPlainName(std::string_view name)
    {
        const auto isOdd = [](char each) {
            return !((each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z')
                     || (each >= '0' && each <= '9') || each == '_' || each == '-' || each == '.');
        };
        return !name.empty() && std::none_of(name.begin(), name.end(), isOdd) && name[0] >= 'A';
    }

    // Whether an attribute may stand in a document that declares the namespaces above.
    bool isPermitted(const Attribute &attribute)
    {
        if (attribute.name == "id")
            return isPlainName(attribute.value);
        if (attribute.name == "xmlns")
            return attribute.value == kSvgNamespace;
        if (attribute.name == "xmlns:xlink")
            return attribute.value == kXlinkNamespace;
        if (startsWith(attribute.name, "xlink:"))
            return isPlainName(attribute.name.substr(6));
        return isPlainName(attribute.name) || attribute.name == "xml:space"
                || attribute.name == "xml:lang";
    }

    // The number that @p text is; nothing when it has a unit or is none.
    std::optional<double> toNumber(std::string_view text)
    {
        double number = 0;
        const char *end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, number);
        if (read.ec != std::errc() || read.ptr != end || !std::isfinite(number))
            return std::nullopt;
        return number;
    }

    // A length to a thousandth of a pixel, never with an exponent.
    std::string toText(double number)
    {
        constexpr double kLargest = 1e9;
        char text[32];
        const double rounded = std::round(std::min(number, kLargest) * 1000) / 1000;
        const auto end =
                std::to_chars(std::begin(text), std::end(text), rounded, std::chars_format::fixed);
        return { text, end.ptr };
    }

    double positiveOr(double value, double fallback)
    {
        return std::isfinite(value) && value > 0 ? value : fallback;
    }

    // The ids of a document, each made unique when it is defined again.
    class IdTable
    {
    public:
        // The id that a new definition of @p id gets.
        const std::string &define(std::string_view id)
        {
            const auto [entry, isFirst] = m_entries.try_emplace(std::string(id), id);
            std::string &current = entry->second.current;
            while (!isFirst) {
                current = entry->first + '-' + std::to_string(++entry->second.definitions);
                if (m_entries.try_emplace(current, current).second)
                    break;
            }
            return current;
        }

        // The id that a reference to @p id means here.
        std::string_view current(std::string_view id) const
        {
            const auto entry = m_entries.find(id);
            return entry == m_entries.end() ? id : entry->second.current;
        }

    private:
        struct Entry
        {
            explicit Entry(std::string_view id) : current(id) { }

            std::string current; // of the latest definition
            unsigned definitions = 1;
        };

        std::map<std::string, Entry, std::less<>> m_entries;
    };

    // The elements that are open.
    class OpenElements
    {
    public:
        bool isEmpty() const { return m_names.empty(); }
        bool contains(std::string_view name) const
        {
            const auto count = m_counts.find(name);
            return count != m_counts.end() && count->second > 0;
        }
        void push(std::string_view name)
        {
            m_names.push_back(name);
            ++m_counts[name];
        }
        std::string_view pop()
        {
            const std::string_view name = m_names.back();
            m_names.pop_back();
            --m_counts[name];
            return name;
        }

    private:
        std::vector<std::string_view> m_names;
        std::map<std::string_view, size_t> m_counts;
    };

    // Writes the tokens of one text anew.
    class Rewriter
    {
    public:
        Rewriter(std::string_view exact, const DisplayOptions &options)
            : m_tokens(exact), m_options(options)
        {
        }

        QByteArray run(size_t expectedSize);

    private:
        void write(std::string_view text) { m_out.append(text); }
        void writeHead();
        void writeToken(const Token &token);
        void writeText(std::string_view text);
        void writeStartTag(const Token &token);
        void writeRoot();
        void writeTag(std::string_view name, bool closesItself);
        void writeAttribute(const Attribute &attribute);
        void writeLink(std::string_view target);
        void writeReferences(std::string_view value);
        void writeEndTag(const Token &token);
        std::string_view closeElement();
        QByteArray finish();

        void separateStrays();
        void keepHairline();
        void boundFontSize();
        Attribute *find(std::string_view name);
        void set(std::string_view name, std::string_view value);

        SvgTokenizer m_tokens;
        const DisplayOptions &m_options;
        DocumentText m_out;
        OpenElements m_open;
        IdTable m_ids;
        bool m_hasRoot = false;
        bool m_usesXlink = false;
        bool m_declaresXlink = false;
        int64_t m_rootEnd = 0; // where the attributes of the root end
    };

    QByteArray Rewriter::run(size_t expectedSize)
    {
        m_out.reserve(static_cast<int64_t>(expectedSize));
        writeHead();
        bool isFirst = true;
        while (!m_hasRoot || !m_open.isEmpty()) {
            const Token token = m_tokens.next();
            if (token.kind == Token::Kind::End)
                break;
            // The declaration is written already.
            if (!isFirst || !startsWith(token.source, "<?xml "))
                writeToken(token);
            isFirst = false;
        }
        return finish();
    }

    void Rewriter::writeHead()
    {
        write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
        const auto &comment = m_options.comment;
        if (!comment.isEmpty()) {
            appendComment(m_out, { comment.constData(), static_cast<size_t>(comment.size()) });
            write("\n");
        }
    }

    void Rewriter::writeToken(const Token &token)
    {
        switch (token.kind) {
        case Token::Kind::Text:
            return writeText(token.source);
        case Token::Kind::CharacterData:
            return writeText(token.content);
        case Token::Kind::StartTag:
            return writeStartTag(token);
        case Token::Kind::EndTag:
            return writeEndTag(token);
        case Token::Kind::Comment:
            return appendComment(m_out, token.content);
        case Token::Kind::Unknown:
            return appendComment(m_out, token.source);
        case Token::Kind::End:
            return;
        }
    }

    void Rewriter::writeText(std::string_view text)
    {
        if (!m_open.isEmpty())
            appendEscaped(m_out, text, XmlPlace::Content);
        else if (!trimmedBlanks(text).empty())
            appendComment(m_out, text);
    }

    void Rewriter::writeStartTag(const Token &token)
    {
        if (!isPlainName(token.name)) {
            appendComment(m_out, token.source);
            return;
        }
        separateStrays();
        if (!m_hasRoot && token.name == "svg") {
            writeRoot();
            if (token.closesItself)
                closeElement();
            return;
        }
        if (!m_hasRoot) {
            const std::vector<Attribute> attributes = std::exchange(m_tokens.attributes(), {});
            writeRoot();
            m_tokens.attributes() = attributes;
        }
        keepHairline();
        boundFontSize();
        writeTag(token.name, token.closesItself);
    }

    // Puts what may not stand in the start tag into a comment in front of it.
    void Rewriter::separateStrays()
    {
        auto &attributes = m_tokens.attributes();
        auto &strays = m_tokens.strays();
        const auto isStray = [&strays](const Attribute &attribute) {
            if (isPermitted(attribute))
                return false;
            strays.push_back(attribute.source);
            return true;
        };
        attributes.erase(std::remove_if(attributes.begin(), attributes.end(), isStray),
                         attributes.end());
        std::string comment;
        for (const std::string_view stray : strays)
            comment.append(stray).append(" ");
        if (!comment.empty())
            appendComment(m_out, comment);
    }

    Attribute *Rewriter::find(std::string_view name)
    {
        for (Attribute &each : m_tokens.attributes())
            if (each.name == name)
                return &each;
        return nullptr;
    }

    void Rewriter::set(std::string_view name, std::string_view value)
    {
        if (Attribute *attribute = find(name))
            attribute->value = value;
        else
            m_tokens.attributes().push_back({ name, value, {} });
    }

    void Rewriter::writeRoot()
    {
        // A side that is written but none at all would keep viewers from opening the document.
        const auto sideOf = [this](std::string_view name) {
            const Attribute *attribute = find(name);
            return attribute ? positiveOr(toNumber(attribute->value).value_or(0), 1) : 0;
        };
        const double ownWidth = sideOf("width");
        const double ownHeight = sideOf("height");
        const double givenWidth = positiveOr(m_options.width, 0);
        const double givenHeight = positiveOr(m_options.height, 0);
        const bool hasSize = ownWidth > 0 && ownHeight > 0;
        double scale = positiveOr(m_options.scale, 1);
        if (hasSize && givenWidth > 0)
            scale = givenWidth / ownWidth;
        else if (hasSize && givenHeight > 0)
            scale = givenHeight / ownHeight;
        // Unless somebody wants it, no picture is too large for viewers to open, or of no size.
        if (givenWidth == 0 && givenHeight == 0)
            scale = std::min(scale, kLargestSide / std::max({ ownWidth, ownHeight, 1.0 }));

        const std::string viewBox = "0 0 " + toText(ownWidth) + ' ' + toText(ownHeight);
        const auto setSide = [&](std::string_view name, double given, double own,
                                 std::string &text) {
            if (given == 0 && own == 0)
                return;
            const bool isKept = given == 0 && scale == 1 && toNumber(find(name)->value) == own;
            text = toText(given > 0 ? std::max(given, 0.001) : std::max(own * scale, 1.0));
            if (!isKept)
                set(name, text);
        };
        std::string width;
        std::string height;
        setSide("width", givenWidth, ownWidth, width);
        setSide("height", givenHeight, ownHeight, height);
        if (hasSize && find("viewBox") == nullptr)
            set("viewBox", viewBox);
        set("version", "1.1");
        set("xmlns", kSvgNamespace);
        m_declaresXlink = find("xmlns:xlink") != nullptr;
        m_hasRoot = true;
        writeTag("svg", false);
        m_rootEnd = m_out.size() - 1;
    }

    // Letters larger than any picture fail some viewers, which then open nothing at all.
    void Rewriter::boundFontSize()
    {
        const Attribute *size = find("font-size");
        if (size != nullptr && toNumber(size->value).value_or(0) > kLargestFont)
            set("font-size", kLargestFontText);
    }

    // GDI draws a pen without width one pixel wide, however the picture is scaled.
    void Rewriter::keepHairline()
    {
        const Attribute *width = find("stroke-width");
        if (width == nullptr || toNumber(width->value) != 0.0)
            return;
        const Attribute *stroke = find("stroke");
        if (stroke == nullptr || stroke->value == "none")
            return;
        set("stroke-width", "1");
        set("vector-effect", "non-scaling-stroke");
    }

    void Rewriter::writeTag(std::string_view name, bool closesItself)
    {
        write("<");
        write(name);
        for (const Attribute &attribute : m_tokens.attributes())
            writeAttribute(attribute);
        write(closesItself ? "/>" : ">");
        if (!closesItself)
            m_open.push(name);
    }

    void Rewriter::writeAttribute(const Attribute &attribute)
    {
        const auto &[name, value, source] = attribute;
        write(" ");
        write(name);
        write("=\"");
        if (name == "id") {
            write(m_ids.define(value));
        } else if (name == "xlink:href") {
            writeLink(value);
        } else {
            writeReferences(value);
        }
        write("\"");
        m_usesXlink |= startsWith(name, "xlink:");
    }

    void Rewriter::writeLink(std::string_view target)
    {
        if (startsWith(target, "#")) {
            write("#");
            target = m_ids.current(target.substr(1));
        }
        appendEscaped(m_out, target, XmlPlace::Value);
    }

    void Rewriter::writeReferences(std::string_view value)
    {
        constexpr std::string_view kBegin = "url(#";
        for (;;) {
            const size_t begin = value.find(kBegin);
            const size_t end = begin == value.npos ? value.npos : value.find(')', begin);
            if (end == value.npos)
                break;
            const size_t id = begin + kBegin.size();
            appendEscaped(m_out, value.substr(0, id), XmlPlace::Value);
            appendEscaped(m_out, m_ids.current(value.substr(id, end - id)), XmlPlace::Value);
            value.remove_prefix(end);
        }
        appendEscaped(m_out, value, XmlPlace::Value);
    }

    void Rewriter::writeEndTag(const Token &token)
    {
        if (!m_open.contains(token.name)) {
            appendComment(m_out, token.source);
            return;
        }
        // Elements left open inside end with it.
        while (closeElement() != token.name) { }
    }

    std::string_view Rewriter::closeElement()
    {
        const std::string_view name = m_open.pop();
        write("</");
        write(name);
        write(">");
        return name;
    }

    QByteArray Rewriter::finish()
    {
        if (!m_hasRoot) {
            m_tokens.attributes().clear();
            writeRoot();
        }
        while (!m_open.isEmpty())
            closeElement();
        if (!trimmedBlanks(m_tokens.rest()).empty())
            appendComment(m_out, m_tokens.rest());
        write("\n");
        QByteArray document = m_out.take();
        if (m_usesXlink && !m_declaresXlink) {
            const std::string declaration = " xmlns:xlink=\"" + std::string(kXlinkNamespace) + '"';
            document.insert(static_cast<decltype(document.size())>(m_rootEnd), declaration.c_str());
        }
        return document;
    }

} // namespace

QByteArray displayableSvg(const QByteArray &exact, const DisplayOptions &options)
{
    const std::string_view text(exact.constData(), static_cast<size_t>(exact.size()));
    return Rewriter(text, options).run(text.size() + text.size() / 8 + 1024);
}

} // namespace svgtool
