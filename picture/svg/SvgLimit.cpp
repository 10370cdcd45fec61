#include "picture/svg/SvgLimit.h"

#include "picture/svg/SvgGroups.h"
#include "picture/svg/SvgParts.h"
#include "picture/svg/SvgWriter.h"

#include <algorithm>

namespace svgtool::picture {

using Defined = SvgDocument::Defined;

namespace {

    // What each node adds to a document at most, which is what it adds without groups that share
    // attributes. A definition adds to the first node that uses it.
    class NodeCosts
    {
    public:
        NodeCosts(const Scene &scene, std::string_view idPrefix)
            : m_document(scene, idPrefix), m_styles(m_document), m_images(m_document),
              m_isGroupPaid(scene.groups.size())
        {
            useGlyphs(m_document);
            m_isGlyphPaid.resize(scene.glyphs.size());
        }

        /// Adds a node, if it takes no more than there is room for.
        bool fits(const Node &node, int64_t &room)
        {
            const size_t before = m_document.definitions().size();
            useDefinitions(m_document, node);
            m_images.addNode(node);
            m_images.addTiles(before);
            m_document.text().truncate(0);
            for (size_t i = before; i < m_document.definitions().size(); ++i)
                writeDefinition(m_document, m_document.definitions()[i]);
            addGlyphs(node);
            writeAlone(m_document, node, m_styles);
            const int64_t cost = m_document.text().size() + groupCost(node.group);
            if (cost > room) {
                m_document.forget(before);
                return false;
            }
            room -= cost;
            pay(node);
            return true;
        }

    private:
        std::span<const Index> glyphsOf(const Node &node) const
        {
            return node.kind == Node::Kind::Text
                    ? std::span<const Index>(m_document.scene().texts[node.geometry].glyphs)
                    : std::span<const Index>();
        }
        bool isToPay(Index glyph) const
        {
            return !m_isGlyphPaid[glyph] && m_document.isUsed(Defined::Glyph, glyph);
        }
        void addGlyphs(const Node &node)
        {
            for (const Index glyph : glyphsOf(node)) {
                if (isToPay(glyph))
                    defineGlyph(m_document, glyph); // as often as it is there, which is more
            }
        }
        int64_t groupCost(Index group) const
        {
            constexpr int64_t kMarkup = 40, kMostOfUnit = 6; // bytes
            int64_t cost = 0;
            for (; group != kNone && !m_isGroupPaid[group];
                 group = m_document.scene().groups[group].parent)
                cost += kMarkup
                        + kMostOfUnit * int64_t(m_document.scene().groups[group].title.size());
            return cost;
        }
        void pay(const Node &node)
        {
            for (const Index glyph : glyphsOf(node))
                m_isGlyphPaid[glyph] = true;
            for (Index group = node.group; group != kNone && !m_isGroupPaid[group];
                 group = m_document.scene().groups[group].parent)
                m_isGroupPaid[group] = true;
        }

        SvgDocument m_document;
        SvgStyles m_styles;
        ImageUses m_images;
        std::vector<bool> m_isGlyphPaid, m_isGroupPaid;
    };

    // Takes nodes out of a scene that do not fit into so many bytes.
    void dropNodes(Scene &scene, std::string_view idPrefix, int64_t room,
                   std::vector<uint32_t> &records)
    {
        constexpr int64_t kLeastNode = 16; // bytes; there is no shorter one
        NodeCosts costs(scene, idPrefix);
        std::vector<Node> kept;
        for (const Node &node : scene.nodes) {
            if (room >= kLeastNode && costs.fits(node, room))
                kept.push_back(node);
            else
                records.push_back(node.record);
        }
        scene.nodes = std::move(kept);
    }

} // namespace

// About as many bytes as the texts beside the nodes take.
static int64_t textBytes(const Scene &scene)
{
    constexpr int64_t kMostOfUnit = 6;
    return int64_t(scene.comment.size())
            + kMostOfUnit * int64_t(scene.title.size() + scene.description.size());
}

std::string writeWithin(Scene &scene, std::string_view idPrefix, int64_t most,
                        std::vector<uint32_t> &records)
{
    constexpr int64_t kHead = 1024; // bytes beside nodes and texts
    auto document = writeSvg(scene, idPrefix, most);
    for (int64_t room = most; !document; room = room / 4 * 3) {
        if (textBytes(scene) > room / 2)
            scene.title = scene.description = {};
        dropNodes(scene, idPrefix, room - kHead - textBytes(scene), records);
        document = writeSvg(scene, idPrefix, scene.nodes.empty() ? kAnyLength : most);
    }
    std::ranges::sort(records);
    records.erase(std::unique(records.begin(), records.end()), records.end());
    return std::move(*document);
}

} // namespace svgtool::picture
