#pragma once

#include "core/raster/Png.h"
#include "picture/scene/Scene.h"
#include "picture/svg/Numbers.h"

#include <span>
#include <string_view>
#include <vector>

namespace svgtool::picture {

/// A document while it is written: the text so far, and how its parts write numbers, attributes
/// and references. An element is `put("<rect")`, attributes, `put("/>\n")`.
class SvgDocument
{
public:
    /// What is written in <defs> and named from elsewhere.
    enum class Defined : uint8_t { Clip, Hatch, Image, Pattern, Gradient, Glyph };
    static constexpr size_t kDefinedKinds = 6;

    /// @param prefix  of all ids; lives as long as the document
    SvgDocument(const Scene &scene, std::string_view prefix);

    const Scene &scene() const { return m_scene; }
    TextBuffer &text() { return m_text; }
    PngEncoder &png() { return m_png; }
    double unitsPerPixel() const { return m_unitsPerPixel; }
    /// On which all lengths of the picture are written.
    const Numbers &grid() const { return m_grid; }

    /// Appends markup as it stands.
    template<class... Piece>
    void put(const Piece &...pieces)
    {
        m_text.append(pieces...);
    }
    /// Appends a length of the picture.
    void number(double value) { m_grid.append(m_text, value); }
    /// Appends a number to which the grid does not apply, such as a part of a matrix or an angle.
    void exact(double value) { kExact.append(m_text, value); }
    /// Appends foreign text between tags.
    void content(std::u16string_view text);

    // Each appends a blank, the name, and the value in quotes.
    void attribute(std::string_view name, double length);
    void attribute(std::string_view name, std::string_view markup);
    void foreignAttribute(std::string_view name, std::u16string_view text);
    void attribute(std::string_view name, Color color);
    /// @param shown  what is transformed; nothing of it moves by more than a thousandth of a pixel
    void transform(const Affine &matrix, const RectD &shown, std::string_view name = "transform");
    /// The same of what goes on over the whole picture.
    void transformAll(const Affine &matrix, std::string_view name);

    // Definitions are numbered in the order of their use.
    /// @return whether this is the first use
    bool use(Defined kind, Index resource);
    bool isUsed(Defined kind, Index resource) const;
    struct Definition
    {
        Defined kind;
        Index resource;
    };
    /// Makes those from number @p count on unused again.
    void forget(size_t count);
    /// Those in use, by number.
    std::span<const Definition> definitions() const { return m_definitions; }
    /// Appends ` id="..."`.
    void id(Defined kind, Index resource);
    /// Appends ` xlink:href="#..."`.
    void link(Defined kind, Index resource);
    /// Appends `url(#...)`.
    void reference(Defined kind, Index resource);

private:
    static constexpr Numbers kExact{ 8 };

    Index &number(Defined kind, Index resource);
    void putId(Defined kind, Index resource);

    const Scene &m_scene;
    std::string_view m_prefix;
    double m_unitsPerPixel;
    Numbers m_grid;
    TextBuffer m_text;
    PngEncoder m_png;
    std::vector<Index> m_numbers[kDefinedKinds]; // by resource; kNone while it is not used
    std::vector<Definition> m_definitions;
};

} // namespace svgtool::picture
