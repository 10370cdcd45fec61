#include "picture/svg/SvgDocument.h"

#include "core/text/XmlEscape.h"

#include <string>

namespace svgtool::picture {

static Numbers gridOf(const Scene &scene)
{
    const double unitsPerPixel = scene.view.width() / scene.width;
    return Numbers::forPixel(unitsPerPixel > 0 ? unitsPerPixel : 1);
}

SvgDocument::SvgDocument(const Scene &scene, std::string_view prefix)
    : m_scene(scene), m_prefix(prefix), m_grid(gridOf(scene))
{
}

// Characters that XML lacks are left out.
static std::string utf8Of(std::u16string_view text)
{
    std::u16string kept;
    for (const char16_t unit : text) {
        if (unit >= 0x20 && unit < 0xFFFE)
            kept += unit;
    }
    std::string utf8(kept.size() * kUtf8PerUnit, '\0');
    utf8.resize(size_t(putUtf8(utf8.data(), kept.data(), int64_t(kept.size())) - utf8.data()));
    // An "&" stands for itself here, whatever follows.
    for (size_t at = utf8.find('&'); at != std::string::npos; at = utf8.find('&', at + 1))
        utf8.insert(at + 1, "amp;");
    return utf8;
}

void SvgDocument::content(std::u16string_view text)
{
    appendEscaped(m_text, utf8Of(text), XmlPlace::Content);
}

void SvgDocument::attribute(std::string_view name, double length)
{
    m_text.append(' ', name, "=\"");
    number(length);
    m_text.append('"');
}

void SvgDocument::attribute(std::string_view name, std::string_view markup)
{
    m_text.append(' ', name, "=\"", markup, '"');
}

void SvgDocument::foreignAttribute(std::string_view name, std::u16string_view text)
{
    m_text.append(' ', name, "=\"");
    appendEscaped(m_text, utf8Of(text), XmlPlace::Value);
    m_text.append('"');
}

void SvgDocument::transform(const Affine &matrix)
{
    char before = '(';
    m_text.append(" transform=\"matrix");
    for (const double value : { matrix.a, matrix.b, matrix.c, matrix.d, matrix.e, matrix.f }) {
        m_text.append(before);
        exact(value);
        before = ' ';
    }
    m_text.append(")\"");
}

Index &SvgDocument::number(Defined kind, Index resource)
{
    std::vector<Index> &numbers = m_numbers[size_t(kind)];
    if (resource >= numbers.size())
        numbers.resize(size_t(resource) + 1, kNone);
    return numbers[resource];
}

bool SvgDocument::use(Defined kind, Index resource)
{
    Index &number = this->number(kind, resource);
    if (number != kNone)
        return false;
    number = m_next++;
    return true;
}

bool SvgDocument::isUsed(Defined kind, Index resource) const
{
    const std::vector<Index> &numbers = m_numbers[size_t(kind)];
    return resource < numbers.size() && numbers[resource] != kNone;
}

void SvgDocument::id(Defined kind, Index resource)
{
    m_text.append(" id=\"", m_prefix, number(kind, resource), '"');
}

void SvgDocument::link(Defined kind, Index resource)
{
    m_text.append(" xlink:href=\"#", m_prefix, number(kind, resource), '"');
}

void SvgDocument::reference(Defined kind, Index resource)
{
    m_text.append("url(#", m_prefix, number(kind, resource), ')');
}

} // namespace svgtool::picture
