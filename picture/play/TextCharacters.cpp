#include "picture/play/TextCharacters.h"

#include "core/base/Numeric.h"
#include "core/text/CharacterSet.h"
#include "core/text/SymbolFonts.h"

#include <algorithm>

namespace svgtool::picture {

// Of a character of two bytes, the advances of both count.
static void joinPairs(TextCharacters &text, ByteView bytes, uint8_t charSet)
{
    size_t to = 0;
    for (int64_t i = 0; i < bytes.size && to < text.units.size(); ++to) {
        const int64_t length = characterLength(tail(bytes, i), charSet);
        for (auto *values : { &text.advances, &text.rises }) {
            if (values->empty())
                continue;
            int32_t sum = 0;
            for (int64_t j = i; j < i + length; ++j)
                sum = wrapAdd(sum, (*values)[size_t(j)]);
            (*values)[to] = sum;
        }
        i += length;
    }
    for (auto *values : { &text.advances, &text.rises })
        values->resize(std::min(values->size(), to));
}

void decodeCharacters(TextCharacters &text, ByteView bytes, const Font &font)
{
    // The bytes of a symbol font are codes of its own, whatever character set is asked for.
    constexpr uint8_t kSymbols = 2;
    const bool isSymbols = symbolFont(font.face) != SymbolFont::None;
    const uint8_t charSet = isSymbols ? kSymbols : font.charSet;
    text.units = decodeText(bytes, charSet);
    if (int64_t(text.units.size()) != bytes.size)
        joinPairs(text, bytes, charSet);
}

} // namespace svgtool::picture
