#include "picture/svg/SvgDocument.h"

#include "core/text/XmlEscape.h"

#include <algorithm>
#include <array>
#include <cmath>
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
    kept.reserve(text.size());
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
    constexpr int64_t kMarkup = 4;
    m_text.write(int64_t(name.size()) + kMarkup + Numbers::kMostLength, [&](char *out) {
        bool hasPoint = false;
        *out++ = ' ';
        out = std::copy(name.begin(), name.end(), out);
        *out++ = '=';
        *out++ = '"';
        out = m_grid.put(out, m_grid.steps(length), hasPoint);
        *out++ = '"';
        return out;
    });
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

void SvgDocument::transform(const Affine &exact, const RectD &shown, std::string_view name)
{
    const double reach =
            std::max({ std::abs(shown.left), std::abs(shown.top), std::abs(shown.right),
                       std::abs(shown.bottom), m_unitsPerPixel });
    // Half of the thousandth is for the place, the other half for two parts of the matrix.
    const auto places = Numbers::forPixel(m_unitsPerPixel / 2);
    const auto parts = Numbers::forPixel(m_unitsPerPixel / 4 / reach);
    const auto write = [this](const Numbers &numbers, char before, double value) {
        m_text.append(before);
        numbers.append(m_text, value);
    };
    const Affine matrix{ parts.nearest(exact.a), parts.nearest(exact.b),  parts.nearest(exact.c),
                         parts.nearest(exact.d), places.nearest(exact.e), places.nearest(exact.f) };
    if (matrix.isIdentity())
        return;
    const auto &[a, b, c, d, e, f] = matrix;
    m_text.append(' ', name, "=\"");
    const bool isScaled = a != 1 || d != 1, isMoved = e != 0 || f != 0;
    if (b != 0 || c != 0 || (isScaled && isMoved && a != d)) {
        m_text.append("matrix");
        write(parts, '(', a);
        for (const double part : { b, c, d })
            write(parts, ' ', part);
        write(places, ' ', e);
        write(places, ' ', f);
        m_text.append(")\"");
        return;
    }
    if (isMoved) {
        m_text.append("translate");
        write(places, '(', e);
        if (f != 0)
            write(places, ' ', f);
        m_text.append(')');
    }
    if (isScaled) {
        m_text.append("scale");
        write(parts, '(', a);
        if (a != d)
            write(parts, ' ', d);
        m_text.append(')');
    }
    m_text.append('"');
}

void SvgDocument::transformAll(const Affine &matrix, std::string_view name)
{
    const auto back = matrix.inverse();
    transform(matrix, back ? mapBounds(*back, m_scene.view) : m_scene.view, name);
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

void SvgDocument::forget(size_t count)
{
    for (; m_definitions.size() > count; m_definitions.pop_back())
        number(m_definitions.back().kind, m_definitions.back().resource) = kNone;
}

bool SvgDocument::isUsed(Defined kind, Index resource) const
{
    const std::vector<Index> &numbers = m_numbers[size_t(kind)];
    return resource < numbers.size() && numbers[resource] != kNone;
}

void SvgDocument::putId(Defined kind, Index resource)
{
    static constexpr std::string_view kDigits =
            "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::array<char, 6> digits;
    size_t first = digits.size();
    Index rest = number(kind, resource);
    do {
        digits[--first] = kDigits[rest % kDigits.size()];
        rest /= Index(kDigits.size());
    } while (rest > 0);
    m_text.append(m_prefix, std::string_view(&digits[first], digits.size() - first));
}

void SvgDocument::id(Defined kind, Index resource)
{
    m_text.append(" id=\"");
    putId(kind, resource);
    m_text.append('"');
}

void SvgDocument::link(Defined kind, Index resource)
{
    m_text.append(" xlink:href=\"#");
    putId(kind, resource);
    m_text.append('"');
}

void SvgDocument::reference(Defined kind, Index resource)
{
    m_text.append("url(#");
    putId(kind, resource);
    m_text.append(')');
}

} // namespace svgtool::picture
