// Answers questions about the font engine, which metrics.py asks: on each line of stdin stand a
// kind, a weight, a height, a face and a text, and the answer is a line of numbers on stdout. A
// text is the count of its UTF-16 units and the units.

#include "core/fonts/FontEngine.h"

#include <QString>

#include <iostream>
#include <sstream>
#include <string>

static QString readText(std::istream &in)
{
    size_t size = 0;
    in >> size;
    QString text;
    for (ushort unit = 0; size_t(text.size()) < size && in >> unit;)
        text.push_back(QChar(unit));
    return text;
}

int main()
{
    using namespace svgtool;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream in(line);
        std::string kind;
        qint32 weight = 0;
        qint32 height = 0;
        in >> kind >> weight >> height;
        const QString face = readText(in);
        const QString text = readText(in);
        if (!in)
            return 2;
        if (kind == "dpi") {
            std::cout << horizontalDpi();
        } else if (kind == "glyphs") {
            const QString characters = textOfGlyphs(text, face, weight);
            std::cout << characters.size();
            for (const QChar unit : characters)
                std::cout << ' ' << unsigned{ unit.unicode() };
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
