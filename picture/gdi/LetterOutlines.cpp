#include "picture/gdi/LetterOutlines.h"

#include <algorithm>

namespace svgtool::picture {

LetterOutlines::LetterOutlines(std::span<const PlacedCharacter> text, const FontRequest &face)
{
    for (const PlacedCharacter &each : text)
        m_characters += each.character;
    std::ranges::sort(m_characters);
    m_characters.erase(std::unique(m_characters.begin(), m_characters.end()), m_characters.end());
    m_outlines = characterOutlines(m_characters, face);
}

size_t LetterOutlines::number(char32_t character) const
{
    return size_t(std::ranges::lower_bound(m_characters, character) - m_characters.begin());
}

} // namespace svgtool::picture
