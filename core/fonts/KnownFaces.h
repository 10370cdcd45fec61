#pragma once

#include "core/fonts/FontShapes.h"
#include "core/text/SymbolFonts.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace svgtool {

/// A face whose numbers are known without its font, from a table: Arial, Times New Roman, Courier
/// New and their twins, with the letters of Europe. There are no outlines.
class KnownFace
{
public:
    /// The face of that name, or with its metrics.
    static std::optional<KnownFace> find(const FontRequest &request);
    /// What stands in for faces that are not known: Arial's numbers, and not named.
    static KnownFace substitute(const FontRequest &request);

    FontShape shape() const;
    /// As characterShapes has it; pairs are known of letters of Western Europe.
    std::vector<CharacterShape> characters(std::u32string_view text) const;

private:
    CharacterShape character(char32_t character, char32_t before) const;
    KnownFace(size_t family, const FontRequest &request, bool isNamed);

    size_t m_family; ///< 0 without serifs, 1 with, 2 of one width
    size_t m_style; ///< 0 regular, 1 bold, 2 italic, 3 both
    bool m_isNamed;
};

/// The advance of a code of a symbol font, alone or in the private use area, in thousandths of an
/// em; 0 where it is not known.
int32_t symbolAdvance(SymbolFont font, char32_t code);

} // namespace svgtool
