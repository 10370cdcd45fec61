#include "picture/svg/SvgWriter.h"

#include "core/text/XmlEscape.h"
#include "picture/svg/SvgParts.h"

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

    void writePaints(SvgDocument &document, const Node &node, const Node *outer)
    {
        if (outer == nullptr || outer->fill != node.fill)
            writeFill(document, node.fill);
        if ((outer == nullptr || outer->stroke != node.stroke) && node.stroke != kNone)
            writeStroke(document, document.scene().strokes[node.stroke]);
    }

    void writeNode(SvgDocument &document, const Node &node, const Node *outer)
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
            writeText(document, scene.texts[node.geometry]);
            break;
        case Node::Kind::Image:
            writeImage(document, node);
            return;
        }
        writePaints(document, node, outer);
        if (node.transform != kNone)
            document.transform(scene.transforms[node.transform]);
        if (node.opacity < 1) {
            document.put(" opacity=\"");
            document.exact(node.opacity);
            document.put('"');
        }
        writeStyle(document, node.clip == kNone ? node.blend : Blend::Normal, {});
        if (node.kind == Node::Kind::Text)
            writeTextEnd(document, scene.texts[node.geometry]);
        else
            document.put("/>\n");
    }

    void writeClipReference(SvgDocument &document, Index clip)
    {
        document.put(" clip-path=\"");
        document.reference(Defined::Clip, clip);
        document.put('"');
    }

    void defineClip(SvgDocument &document, Index number)
    {
        const Clip &clip = document.scene().clips[number];
        document.put("<clipPath");
        document.id(Defined::Clip, number);
        if (clip.parent != kNone)
            writeClipReference(document, clip.parent);
        document.put("><path d=\"");
        if (clip.path.isEmpty())
            document.put("M0 0");
        writePathData(document, clip.path.verbs(), clip.path.points());
        document.put('"');
        if (clip.isEvenOdd)
            document.put(" clip-rule=\"evenodd\"");
        document.put("/></clipPath>\n");
    }

    void useDefinitions(SvgDocument &document)
    {
        const Scene &scene = document.scene();
        for (const Node &node : scene.nodes) {
            for (Index i = node.clip; i != kNone; i = scene.clips[i].parent) {
                if (!document.use(Defined::Clip, i))
                    break;
            }
            if (node.fill != kNone)
                usePaint(document, scene.paints[node.fill]);
            if (node.stroke != kNone)
                usePaint(document, scene.strokes[node.stroke].paint);
        }
        useImages(document);
    }

    void writeDefinitions(SvgDocument &document)
    {
        useDefinitions(document);
        const int64_t before = document.text().size();
        document.put("<defs>\n");
        const int64_t start = document.text().size();
        for (size_t i = 0; i < document.scene().clips.size(); ++i) {
            if (document.isUsed(Defined::Clip, Index(i)))
                defineClip(document, Index(i));
        }
        definePaints(document);
        defineImages(document);
        if (document.text().size() == start)
            document.text().truncate(before);
        else
            document.put("</defs>\n");
    }

    // The nodes from one to another of one clip, those of one fill and stroke in a group.
    void writeRun(SvgDocument &document, size_t from, size_t to)
    {
        const auto &nodes = document.scene().nodes;
        while (from < to) {
            const Node &lead = nodes[from];
            size_t end = from + 1;
            while (end < to && lead.kind != Node::Kind::Image && nodes[end].fill == lead.fill
                   && nodes[end].stroke == lead.stroke)
                ++end;
            const Node *outer = nullptr;
            if (end - from > 1) {
                document.put("<g");
                writePaints(document, lead, nullptr);
                document.put(">\n");
                outer = &lead;
            }
            for (; from < end; ++from)
                writeNode(document, nodes[from], outer);
            if (outer != nullptr)
                document.put("</g>\n");
        }
    }

    void writeNodes(SvgDocument &document)
    {
        const auto &nodes = document.scene().nodes;
        for (size_t i = 0, end = 0; i < nodes.size(); i = end) {
            // A group with a clip is painted apart, so what is mixed with the ground is a group of
            // its own, and that is mixed.
            const bool isMixed = nodes[i].blend != Blend::Normal && nodes[i].clip != kNone;
            end = i + 1;
            while (end < nodes.size() && nodes[end].clip == nodes[i].clip && !isMixed
                   && (nodes[end].blend == Blend::Normal || nodes[i].clip == kNone))
                ++end;
            if (nodes[i].clip != kNone) {
                document.put("<g");
                writeClipReference(document, nodes[i].clip);
                writeStyle(document, nodes[i].blend, {});
                document.put(">\n");
            }
            writeRun(document, i, end);
            if (nodes[i].clip != kNone)
                document.put("</g>\n");
        }
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
        if (needsLinks(scene))
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
    }

} // namespace

std::string writeSvg(const Scene &scene, std::string_view idPrefix)
{
    SvgDocument document(scene, idPrefix);
    writeHead(document);
    writeDefinitions(document);
    writeNodes(document);
    document.put("</svg>\n");
    return document.text().take();
}

} // namespace svgtool::picture
