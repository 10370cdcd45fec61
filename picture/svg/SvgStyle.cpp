#include "picture/svg/SvgStyle.h"

#include "picture/scene/Extents.h"
#include "picture/svg/SvgParts.h"

#include <algorithm>

namespace svgtool::picture {

namespace {

    using Defined = SvgDocument::Defined;
    using Verb = Path::Verb;

    // What of a stroke can be seen.
    struct StrokeShape
    {
        bool hasEnds, hasCorners, hasSharpCorners;
    };

    StrokeShape strokeShapeOf(const Scene &scene, const Node &node)
    {
        switch (node.kind) {
        case Node::Kind::Path: {
            const auto verbs = scene.verbsOf(node);
            const auto ends = std::count(verbs.begin(), verbs.end(), Verb::Move)
                    - std::count(verbs.begin(), verbs.end(), Verb::Close);
            const bool hasCorners = verbs.size() > 2;
            return { ends > 0, hasCorners, hasCorners };
        }
        case Node::Kind::Rect: {
            const Rect &rect = scene.rects[node.geometry];
            const bool isDot = !(rect.box.width() > 0 || rect.box.height() > 0);
            return { isDot, true, false };
        }
        case Node::Kind::Ellipse:
            return { false, false, false };
        default:
            return { true, true, true };
        }
    }

} // namespace

SvgStyles::SvgStyles(SvgDocument &document)
    : m_document(document), m_texts(3), m_fills(document.scene().paints.size(), kAny),
      m_strokes(document.scene().strokes.size()), m_clips(document.scene().clips.size(), kAny),
      m_transforms(document.scene().transforms.size(), kAny),
      m_fonts(document.scene().fonts.size()), m_shown(document.scene().transforms.size())
{
    const Scene &scene = document.scene();
    for (const Node &node : scene.nodes) {
        if (node.transform != kNone)
            m_shown[node.transform] = hull(m_shown[node.transform], inkOf(scene, node));
    }
}

std::vector<uint32_t> SvgStyles::costs() const
{
    std::vector<uint32_t> costs;
    costs.reserve(m_texts.size());
    for (const std::string &text : m_texts)
        costs.push_back(uint32_t(text.size()));
    return costs;
}

Index SvgStyles::take(int64_t start)
{
    TextBuffer &out = m_document.text();
    std::string text(out.view().substr(size_t(start)));
    out.truncate(start);
    if (text.empty())
        return kDefault;
    const auto [known, isNew] =
            m_known.try_emplace(HashedBytes(std::move(text)), Index(m_texts.size()));
    if (isNew)
        m_texts.push_back(known->first.bytes());
    return known->second;
}

Index SvgStyles::fill(Index paint)
{
    const int64_t start = m_document.text().size();
    if (paint == kNone) {
        writeFill(m_document, paint);
        return take(start);
    }
    if (m_fills[paint] == kAny) {
        writeFill(m_document, paint);
        m_fills[paint] = take(start);
    }
    return m_fills[paint];
}

const SvgStyles::StrokeValues &SvgStyles::stroke(Index number)
{
    StrokeValues &values = m_strokes[number];
    if (values.paint != kAny)
        return values;
    const Stroke &stroke = m_document.scene().strokes[number];
    const int64_t start = m_document.text().size();
    writeStrokePaint(m_document, stroke.paint);
    values.paint = take(start);
    writeStrokeWidth(m_document, stroke.width);
    values.width = take(start);
    writeStrokeCap(m_document, stroke.cap);
    values.cap = take(start);
    writeStrokeJoin(m_document, stroke.join);
    values.join = take(start);
    writeMiterLimit(m_document, stroke.miterLimit);
    values.miterLimit = take(start);
    writeDashes(m_document, stroke);
    values.dashes = take(start);
    return values;
}

void SvgStyles::addStroke(Style &style, const Node &node)
{
    const Scene &scene = m_document.scene();
    if (node.stroke == kNone) {
        valueOf(style, Property::Stroke) = kDefault;
        return;
    }
    const Stroke &stroke = scene.strokes[node.stroke];
    const StrokeValues &values = this->stroke(node.stroke);
    const StrokeShape shape = strokeShapeOf(scene, node);
    constexpr double kRightAngle = 1.4143; // the miter limit from which on it has a miter
    valueOf(style, Property::Stroke) = values.paint;
    valueOf(style, Property::StrokeWidth) = values.width;
    valueOf(style, Property::StrokeDasharray) = values.dashes;
    if (shape.hasEnds || !stroke.dashes.empty())
        valueOf(style, Property::StrokeLinecap) = values.cap;
    if (shape.hasCorners)
        valueOf(style, Property::StrokeLinejoin) = values.join;
    if (stroke.join == Join::Miter
        && (shape.hasSharpCorners || (shape.hasCorners && stroke.miterLimit < kRightAngle)))
        valueOf(style, Property::StrokeMiterlimit) = values.miterLimit;
}

void SvgStyles::addFont(Style &style, Index font)
{
    auto &values = m_fonts[font];
    for (size_t i = 0; i < values.size(); ++i) {
        const auto property = Property(size_t(Property::FontFamily) + i);
        if (values[i] == kAny) {
            const int64_t start = m_document.text().size();
            writeFont(m_document, m_document.scene().fonts[font], property);
            values[i] = take(start);
        }
        valueOf(style, property) = values[i];
    }
}

Index SvgStyles::clip(Index number)
{
    if (number == kNone)
        return kDefault;
    if (m_clips[number] == kAny) {
        const int64_t start = m_document.text().size();
        writeClipReference(m_document, number);
        m_clips[number] = take(start);
    }
    return m_clips[number];
}

Index SvgStyles::transform(Index number)
{
    if (number == kNone)
        return kDefault;
    if (m_transforms[number] == kAny) {
        const int64_t start = m_document.text().size();
        m_document.transform(m_document.scene().transforms[number], m_shown[number]);
        m_transforms[number] = take(start);
    }
    return m_transforms[number];
}

Index SvgStyles::fillRule(bool isEvenOdd)
{
    if (!isEvenOdd)
        return kDefault;
    if (m_evenOdd == kAny) {
        const int64_t start = m_document.text().size();
        m_document.attribute("fill-rule", "evenodd");
        m_evenOdd = take(start);
    }
    return m_evenOdd;
}

Style SvgStyles::styleOf(const Node &node)
{
    const Scene &scene = m_document.scene();
    Style style{};
    // A group with a clip would hide from its nodes what lies beneath it.
    const bool isOwn = node.clip != kNone && node.blend != Blend::Normal;
    valueOf(style, Property::ClipPath) = isOwn ? kOwn : clip(node.clip);
    if (node.kind == Node::Kind::Image) {
        valueOf(style, Property::Transform) = kOwn;
        return style;
    }
    valueOf(style, Property::Transform) = transform(node.transform);
    valueOf(style, Property::Fill) = fill(node.fill);
    addStroke(style, node);
    if (node.kind == Node::Kind::Path && node.fill != kNone) {
        const auto verbs = scene.verbsOf(node);
        if (needsFillRule(verbs, scene.pointsOf(node)))
            valueOf(style, Property::FillRule) = fillRule(node.isEvenOdd);
    }
    if (node.kind == Node::Kind::Text && !scene.texts[node.geometry].glyphs.empty()) {
        valueOf(style, Property::FillRule) = kDefault;
    } else if (node.kind == Node::Kind::Text) {
        if (node.transform == kNone) // its turn, if it has one, is its own
            valueOf(style, Property::Transform) = kOwn;
        addFont(style, scene.texts[node.geometry].font);
    }
    return style;
}

} // namespace svgtool::picture
