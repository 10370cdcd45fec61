#include "support/Conversion.h"

#include "exact/svgtool/SVGTool.h"

namespace svgtool::test {

std::string documentHead(int width, int height)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg width=\"" + std::to_string(width)
            + "\" height=\" " + std::to_string(height)
            + "\" version=\"1.1\" xmlns=\"http://www.w3.org/2000/svg\" xml:space=\"preserve\" >\n";
}

Conversion convert(const QByteArray &bytes)
{
    QByteArray svg;
    Conversion conversion;
    conversion.result = ConvertMetaFileToSVG(bytes, svg);
    conversion.text = svg.toStdString();
    return conversion;
}

std::string Conversion::body(int width, int height) const
{
    const std::string head = documentHead(width, height);
    const std::string end = "</svg>\n";
    if (text.size() < head.size() + end.size() || text.compare(0, head.size(), head) != 0
        || text.compare(text.size() - end.size(), end.size(), end) != 0)
        return text;
    return text.substr(head.size(), text.size() - head.size() - end.size());
}

} // namespace svgtool::test
