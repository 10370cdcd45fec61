#include "picture/svg/SvgDocument.h"

#include "core/text/XmlEscape.h"

#include <initializer_list>
#include <string>

namespace svgtool::picture {

static double unitsPerPixelOf(const Scene &scene)
{
    const double units = scene.view.width() / scene.width;
    return units > 0 && std::isfinite(units) ? units : 1;
}

SvgDocument::SvgDocument(const Scene &scene, std::string_view prefix)
    : m_scene(scene), m_prefix(prefix), m_unitsPerPixel(unitsPerPixelOf(scene)),
      m_grid(Numbers::forPixel(m_unitsPerPixel))
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

void SvgDocument::transform(const Affine &matrix, std::string_view name)
{
    const auto write = [this, name](std::string_view kind, std::initializer_list<double> values) {
        m_text.append(' ', name, "=\"", kind);
        char before = '(';
        for (const double value : values) {
            m_text.append(before);
            exact(value);
            before = ' ';
        }
        m_text.append(")\"");
    };
    const auto &[a, b, c, d, e, f] = matrix;
    if (b != 0 || c != 0 || ((a != 1 || d != 1) && (e != 0 || f != 0)))
        write("matrix", { a, b, c, d, e, f });
    else if (e != 0 || f != 0)
        write("translate", { e, f });
    else if (a != d)
        write("scale", { a, d });
    else
        write("scale", { a });
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
    number = Index(m_definitions.size());
    m_definitions.push_back({ kind, resource });
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
