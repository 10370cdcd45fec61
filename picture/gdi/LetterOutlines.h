#pragma once

#include "picture/gdi/TextLayout.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace svgtool::picture {

/// The outlines of the letters of a text, each once however often it comes.
class LetterOutlines
{
public:
    LetterOutlines(std::span<const PlacedCharacter> text, const FontRequest &face);

    /// Of a character of the text, its place among the outlines.
    size_t number(char32_t character) const;
    /// In font units, y downwards from the baseline; empty for those that have none.
    const std::vector<Path> &all() const { return m_outlines; }
    const Path &of(char32_t character) const { return m_outlines[number(character)]; }

private:
    std::u32string m_characters; ///< rising
    std::vector<Path> m_outlines;
};

} // namespace svgtool::picture
