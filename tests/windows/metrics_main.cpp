// Answers questions about the font engine, which metrics.py asks: on each line of stdin stand a
// kind, a weight, a height, a face and a text, and the answer is a line of numbers on stdout. A
// text is the count of its UTF-16 units and the units.

#include "core/fonts/FontEngine.h"

#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>

static std::u16string readText(std::istream &in)
{
    size_t size = 0;
    in >> size;
    std::u16string text;
    for (uint16_t unit = 0; text.size() < size && in >> unit;)
        text.push_back(unit);
    return text;
}

int main()
{
    using namespace svgtool;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream in(line);
        std::string kind;
        int32_t weight = 0;
        int32_t height = 0;
        in >> kind >> weight >> height;
        const std::u16string face = readText(in);
        const std::u16string text = readText(in);
        if (!in)
            return 2;
        if (kind == "dpi") {
            std::cout << horizontalDpi();
        } else if (kind == "glyphs") {
            const std::u16string characters = textOfGlyphs(text, face, weight);
            std::cout << characters.size();
            for (const char16_t unit : characters)
                std::cout << ' ' << uint16_t{ unit };
        } else {
            const TextExtent extent = textExtent(text, face, weight, height);
            for (const FontMetrics &font : { fontMetrics(face, weight, height), extent.font })
                std::cout << font.height << ' ' << font.ascent << ' ' << font.descent << ' '
                          << font.internalLeading << ' ' << font.externalLeading << ' '
                          << font.averageWidth << ' ';
            std::cout << extent.width << ' ' << extent.height;
        }
        std::cout << '\n';
    }
    return 0;
}
