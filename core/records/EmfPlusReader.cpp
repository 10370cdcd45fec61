#include "core/records/EmfPlusReader.h"

#include "core/records/EmfPlusFields.h"
#include "core/records/EmfPlusParts.h"

#include <algorithm>

namespace svgtool::plus {

// Each reader begins behind the object's version, which nothing depends on.

static Font readFont(PlusFields &fields)
{
    constexpr uint32_t kBold = 1, kItalic = 2, kUnderline = 4, kStrikeout = 8;
    Font font;
    font.emSize = fields.real();
    font.unit = fields.choice(Unit::Millimeter, Unit::World);
    const uint32_t style = fields.dword();
    font.isBold = (style & kBold) != 0;
    font.isItalic = (style & kItalic) != 0;
    font.isUnderlined = (style & kUnderline) != 0;
    font.isStruckOut = (style & kStrikeout) != 0;
    fields.skip(4); // reserved
    font.family = fields.text(fields.dword());
    font.family.erase(std::min(font.family.find(u'\0'), font.family.size()));
    return font;
}

static StringFormat readStringFormat(PlusFields &fields)
{
    constexpr int64_t kLanguage = 4, kDigits = 8;
    StringFormat format;
    format.flags = fields.dword();
    fields.skip(kLanguage);
    format.alignment = fields.choice(StringAlignment::Far, StringAlignment::Near);
    format.lineAlignment = fields.choice(StringAlignment::Far, StringAlignment::Near);
    fields.skip(kDigits);
    format.firstTabOffset = fields.real();
    format.hotkeys = fields.choice(HotkeyPrefix::Hide, HotkeyPrefix::None);
    format.leadingMargin = fields.real();
    format.trailingMargin = fields.real();
    format.tracking = fields.real();
    format.trimming = fields.choice(StringTrimming::EllipsisPath, StringTrimming::None);
    const uint32_t tabs = fields.dword();
    fields.skip(4); // the number of ranges, which are for measuring alone
    format.tabStops = fields.reals(tabs);
    return format;
}

static ImageAttributes readImageAttributes(PlusFields &fields)
{
    ImageAttributes attributes;
    fields.skip(4); // reserved
    attributes.wrapMode = fields.choice(WrapMode::Clamp, WrapMode::Clamp);
    attributes.clampColor = fields.dword();
    attributes.clampsToBitmap = fields.dword() == 1;
    return attributes;
}

static RegionNode::Kind nodeKind(uint32_t type, PlusFields &fields)
{
    constexpr uint32_t kAnd = 1, kComplement = 5, kRectangle = 0x10000000, kInfinite = 0x10000003;
    using Kind = RegionNode::Kind;
    if (type >= kAnd && type <= kComplement)
        return Kind(uint32_t(Kind::Intersect) + type - kAnd);
    if (type >= kRectangle && type <= kInfinite)
        return Kind(uint32_t(Kind::Rectangle) + type - kRectangle);
    fields.fail();
    return Kind::Empty;
}

static RectD ascending(const RectD &box)
{
    return { std::min(box.left, box.right), std::min(box.top, box.bottom),
             std::max(box.left, box.right), std::max(box.top, box.bottom) };
}

static Region readRegion(PlusFields &fields)
{
    Region region;
    fields.skip(4); // the number of nodes but the first: the tree itself says where it ends
    for (size_t missing = 1; missing > 0 && fields.isSound(); --missing) {
        if (fields.rest().size < 4)
            fields.fail();
        RegionNode node;
        node.kind = nodeKind(fields.dword(), fields);
        if (node.isCombination())
            missing += 2;
        else if (node.kind == RegionNode::Kind::Rectangle)
            node.box = ascending(fields.rect());
        else if (node.kind == RegionNode::Kind::Path)
            node.path = std::make_shared<PathObject>(readSizedPath(fields));
        region.nodes.push_back(std::move(node));
    }
    return region;
}

template<class T>
static Object finished(T value, const PlusFields &fields)
{
    if (!fields.isSound())
        return {};
    return std::make_shared<const T>(std::move(value));
}

Object readObject(uint32_t type, ByteView data)
{
    // clang-format off
    enum : uint32_t {
        kBrush = 1, kPen, kPath, kRegion, kImage, kFont, kStringFormat, kImageAttributes,
        kCustomLineCap,
    };
    // clang-format on
    PlusFields fields(data);
    fields.skip(kVersionBytes);
    switch (type) {
    case kBrush:
        return finished(readBrush(fields), fields);
    case kPen:
        return finished(readPen(fields), fields);
    case kPath:
        return finished(readPath(fields), fields);
    case kRegion:
        return finished(readRegion(fields), fields);
    case kImage:
        return finished(readImage(fields), fields);
    case kFont:
        return finished(readFont(fields), fields);
    case kStringFormat:
        return finished(readStringFormat(fields), fields);
    case kImageAttributes:
        return finished(readImageAttributes(fields), fields);
    case kCustomLineCap:
        return finished(readCustomLineCap(fields), fields);
    default:
        return {};
    }
}

std::optional<ByteView> ObjectParts::add(uint16_t flags, ByteView data)
{
    constexpr uint16_t kContinued = 0x8000;
    const uint16_t own = flags & uint16_t(~kContinued);
    const bool isContinued = (flags & kContinued) != 0;
    if (m_total > 0 && own != m_flags)
        drop();
    if (!isContinued && m_total == 0)
        return data;
    if (isContinued) {
        // The total comes with every part; the last one may be without it and without the bit.
        Fields fields(data);
        const uint32_t total = fields.dword();
        if (m_total > 0 && total != m_total)
            drop();
        m_flags = own;
        m_total = total;
        data = tail(data, fields.offset());
    }
    const size_t missing = m_total - m_data.size();
    m_data.append(data.data, std::min(missing, size_t(data.size)));
    if (m_data.size() < m_total)
        return std::nullopt;
    m_total = 0;
    m_whole.swap(m_data);
    m_data.clear();
    return ByteView{ m_whole.data(), int64_t(m_whole.size()) };
}

void ObjectParts::drop()
{
    m_total = 0;
    m_data.clear();
}

} // namespace svgtool::plus
