#include "picture/svg/SvgWriter.h"

#include "core/text/XmlEscape.h"
#include "picture/svg/SvgGroups.h"
#include "picture/svg/SvgParts.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

void writeStyle(SvgDocument &document, Blend blend, std::string_view properties)
{
    static constexpr std::string_view kNames[] = {
        "normal", "multiply", "screen", "overlay", "darken", "lighten", "difference", "exclusion"
    };
    if (blend == Blend::Normal && properties.empty())
        return;
    document.put(" style=\"", properties);
    if (blend != Blend::Normal)
        document.put(properties.empty() ? "" : ";", "mix-blend-mode:", kNames[size_t(blend)]);
    document.put('"');
}

namespace {

    void writeElement(SvgDocument &document, const Node &node)
    {
        const Scene &scene = document.scene();
        switch (node.kind) {
        case Node::Kind::Path:
            writePath(document, node);
            break;
        case Node::Kind::Rect:
            writeRect(document, scene.rects[node.geometry]);
            break;
        case Node::Kind::Ellipse:
            writeEllipse(document, scene.ellipses[node.geometry]);
            break;
        case Node::Kind::Text:
            if (scene.texts[node.geometry].glyphs.empty())
                writeText(document, scene.texts[node.geometry]);
            break;
        case Node::Kind::Image:
            writeImage(document, node);
            break;
        }
    }

    // The attributes for values that no group around has said.
    std::string attributesOf(const SvgStyles &styles, const Style &values, const Style &outer)
    {
        std::string attributes;
        for (size_t i = 0; i < kProperties; ++i) {
            if (outer[i] == SvgStyles::kAny)
                attributes += styles.text(values[i]);
        }
        return attributes;
    }

    // Takes back what has been written since.
    std::string takeText(SvgDocument &document, int64_t start)
    {
        std::string text(document.text().view().substr(size_t(start)));
        document.text().truncate(start);
        return text;
    }

    /// @param style  attributes that no group around has
    void writeNode(SvgDocument &document, const Node &node, std::string_view style)
    {
        // The clip of what is mixed with its ground goes around it, together with the mode: before
        // the node's transform, and in no group that would keep the ground from it.
        const bool isWrapped = node.blend != Blend::Normal && node.clip != kNone;
        if (isWrapped) {
            document.put("<g");
            writeClipReference(document, node.clip);
            writeStyle(document, node.blend, {});
            document.put(">\n");
        }
        const Scene &scene = document.scene();
        writeElement(document, node);
        const int64_t attributes = document.text().size();
        document.put(style);
        if (node.opacity < 1) {
            constexpr Numbers kFine(3); // finer than the colours of a screen
            document.put(" opacity=\"");
            kFine.append(document.text(), node.opacity);
            document.put('"');
        }
        writeStyle(document, isWrapped ? Blend::Normal : node.blend,
                   node.kind == Node::Kind::Image ? imageStyle(scene.imagePlaces[node.geometry])
                                                  : std::string_view());
        if (node.kind != Node::Kind::Text)
            document.put("/>\n");
        else if (scene.texts[node.geometry].glyphs.empty())
            writeTextEnd(document, scene.texts[node.geometry]);
        else
            writeGlyphs(document, node, takeText(document, attributes));
        if (isWrapped)
            document.put("</g>\n");
    }

    // Each of these is false, and leaves off, where the document gets longer than it may.

    bool writeDefinitions(SvgDocument &document, int64_t most)
    {
        const Scene &scene = document.scene();
        for (const Node &node : scene.nodes)
            useDefinitions(document, node);
        ImageUses images(document);
        for (const Node &node : scene.nodes)
            images.addNode(node);
        images.addTiles(0);
        if (document.definitions().empty())
            return true;
        document.put("<defs>\n");
        for (const SvgDocument::Definition &definition : document.definitions()) {
            writeDefinition(document, definition);
            if (document.text().size() > most)
                return false;
        }
        document.put("</defs>\n");
        return true;
    }

    void writeNote(SvgDocument &document, std::string_view name, std::u16string_view text)
    {
        if (text.empty())
            return;
        document.put('<', name, '>');
        document.content(text);
        document.put("</", name, ">\n");
    }

    // How long a document gets is seen early on, so that it is not moved again and again as it
    // grows, into twice the memory.
    class Forecast
    {
    public:
        Forecast(SvgDocument &document, size_t nodes)
            : m_text(document.text()), m_nodes(nodes), m_start(m_text.size())
        {
        }

        void update(size_t nodesDone)
        {
            constexpr int64_t kMostTimes = 3; // for what is still to come may be shorter
            const int64_t size = m_text.size(), written = size - m_start;
            if (written < m_next)
                return;
            m_next = 2 * written;
            const double each = double(written) / double(nodesDone);
            const double rest = 1.1 * each * double(m_nodes - nodesDone);
            m_text.reserve(size + int64_t(std::fmin(rest, double(kMostTimes * size))));
        }

    private:
        static constexpr int64_t kFirst = 1 << 16;

        TextBuffer &m_text;
        size_t m_nodes;
        int64_t m_start;
        int64_t m_next = kFirst; // bytes
    };

    bool writeNodes(SvgDocument &document, int64_t most)
    {
        const auto &nodes = document.scene().nodes;
        SvgStyles styles(document);
        StyleList each;
        each.reserve(nodes.size());
        for (const Node &node : nodes)
            each.add(styles.styleOf(node));
        const std::vector<Group> groups = groupsOf(document.scene(), each, styles.costs());

        struct Open
        {
            size_t end;
            Style said; // by this group and those around
        };
        std::vector<Open> open{ { nodes.size() + 1, Style{} } };
        auto next = groups.begin();
        Forecast forecast(document, nodes.size());
        std::string own; // of the node and those behind it that say the same
        size_t ownEnd = 0;
        for (size_t i = 0; i < nodes.size(); ++i) {
            forecast.update(i);
            for (; open.back().end == i; open.pop_back())
                document.put("</g>\n");
            for (; next != groups.end() && next->begin == i; ++next) {
                document.put("<g", attributesOf(styles, next->values, open.back().said), ">\n");
                if (next->nodeGroup != kNone)
                    writeNote(document, "title", document.scene().groups[next->nodeGroup].title);
                Open inner{ next->end, open.back().said };
                for (size_t k = 0; k < kProperties; ++k) {
                    if (next->values[k] != SvgStyles::kAny)
                        inner.said[k] = next->values[k];
                }
                open.push_back(inner);
            }
            if (i >= ownEnd) {
                const size_t nextGroup = next != groups.end() ? next->begin : nodes.size();
                ownEnd = each.endOfAlike(i, std::min(open.back().end, nextGroup));
                own = attributesOf(styles, each[i], open.back().said);
            }
            writeNode(document, nodes[i], own);
            if (document.text().size() > most)
                return false;
        }
        for (; open.size() > 1; open.pop_back())
            document.put("</g>\n");
        return true;
    }

    void writeHead(SvgDocument &document)
    {
        const Scene &scene = document.scene();
        constexpr Numbers kPixels(3);
        if (!scene.comment.empty()) {
            appendComment(document.text(), scene.comment);
            document.put('\n');
        }
        document.put("<svg xmlns=\"http://www.w3.org/2000/svg\"");
        if (needsLinks(document))
            document.put(" xmlns:xlink=\"http://www.w3.org/1999/xlink\"");
        document.put(" version=\"1.1\" width=\"");
        kPixels.append(document.text(), scene.width);
        document.put("\" height=\"");
        kPixels.append(document.text(), scene.height);
        document.put('"');
        std::string_view before = " viewBox=\"";
        for (const double value :
             { scene.view.left, scene.view.top, scene.view.width(), scene.view.height() }) {
            document.put(before);
            document.number(value);
            before = " ";
        }
        document.put("\">\n");
        writeNote(document, "title", scene.title);
        writeNote(document, "desc", scene.description);
    }

} // namespace

void useDefinitions(SvgDocument &document, const Node &node)
{
    const Scene &scene = document.scene();
    useClip(document, node.clip);
    if (node.fill != kNone)
        usePaint(document, scene.paints[node.fill]);
    if (node.stroke != kNone)
        usePaint(document, scene.strokes[node.stroke].paint);
}

void writeDefinition(SvgDocument &document, const SvgDocument::Definition &definition)
{
    const auto &[kind, resource] = definition;
    switch (kind) {
    case Defined::Clip:
        return defineClip(document, resource);
    case Defined::Hatch:
        return defineHatch(document, resource);
    case Defined::Pattern:
        return definePattern(document, resource);
    case Defined::Gradient:
        return defineGradient(document, resource);
    case Defined::Image:
        return defineImage(document, resource);
    case Defined::Glyph:
        return defineGlyph(document, resource);
    }
}

void writeAlone(SvgDocument &document, const Node &node, SvgStyles &styles)
{
    writeNode(document, node, attributesOf(styles, styles.styleOf(node), Style{}));
}

std::optional<std::string> writeSvg(const Scene &scene, std::string_view idPrefix, int64_t most)
{
    SvgDocument document(scene, idPrefix);
    useGlyphs(document);
    writeHead(document);
    if (!writeDefinitions(document, most) || !writeNodes(document, most))
        return std::nullopt;
    document.put("</svg>\n");
    if (document.text().size() > most)
        return std::nullopt;
    return document.text().take();
}

std::string writeSvg(const Scene &scene, std::string_view idPrefix)
{
    return *writeSvg(scene, idPrefix, kAnyLength);
}

} // namespace svgtool::picture
