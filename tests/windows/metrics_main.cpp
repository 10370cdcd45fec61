// Answers questions about the font engine, which metrics.py asks: on each line of stdin stand a
// kind, a face, a weight, a height and a text, and the answer is a line on stdout. Faces and texts
// are "=" and four hexadecimal digits for each UTF-16 unit.

#include "platform/FontEngine.h"

#include <QString>

#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>

namespace {

QString readText(std::istream &in)
{
    std::string field;
    in >> field;
    QString text;
    for (size_t i = 1; i < field.size(); i += 4)
        text += QChar(static_cast<ushort>(std::stoi(field.substr(i, 4), nullptr, 16)));
    return text;
}

void writeText(const QString &text)
{
    std::cout << '=' << std::hex << std::setfill('0');
    for (const QChar unit : text)
        std::cout << std::setw(4) << unit.unicode();
    std::cout << std::dec;
}

void writeNumbers(const svgtool::FontMetrics &font)
{
    for (const qint32 number : { font.height, font.ascent, font.descent, font.internalLeading,
                                 font.externalLeading, font.averageWidth })
        std::cout << number << ' ';
}

} // namespace

int main()
{
    using namespace svgtool;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream in(line);
        std::string kind;
        in >> kind;
        const QString face = readText(in);
        qint32 weight = 0;
        qint32 height = 0;
        in >> weight >> height;
        const QString text = readText(in);
        if (!in || (kind != "dpi" && kind != "glyphs" && kind != "font"))
            return 2;
        if (kind == "dpi") {
            std::cout << horizontalDpi();
        } else if (kind == "glyphs") {
            writeText(textOfGlyphs(text, face, weight));
        } else {
            const TextExtent extent = textExtent(text, face, weight, height);
            writeNumbers(fontMetrics(face, weight, height));
            writeNumbers(extent.font);
            std::cout << extent.width << ' ' << extent.height;
        }
        std::cout << '\n';
    }
    return 0;
}
