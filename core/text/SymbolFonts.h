#pragma once

#include <cstdint>
#include <string_view>

namespace svgtool {

/// Fonts whose codes stand for symbols instead of letters, by the order of their characters.
enum class SymbolFont : uint8_t {
    None,
    Symbol,
    Wingdings,
    Wingdings2,
    Wingdings3,
    Webdings,
    Dingbats,
    MathExtra,
};

/// The order that a face of this name has, whatever the case of its letters; None for other faces.
SymbolFont symbolFont(std::u16string_view face);

/// What a code of such a font, or its place in the private use area from U+F020 to U+F0FF, means.
/// @return its place in the private use area where Unicode has no such character; @p code itself
///         where it is neither of these
char32_t symbolCharacter(SymbolFont font, char32_t code);

} // namespace svgtool
