#pragma once

#include "exact/svgtool/SVGTool.h"

#include <ostream>
#include <string>

namespace svgtool::test {

/// The head of a document, line feed included.
inline std::string documentHead(int width, int height)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg width=\"" + std::to_string(width)
            + "\" height=\" " + std::to_string(height)
            + "\" version=\"1.1\" xmlns=\"http://www.w3.org/2000/svg\" xml:space=\"preserve\" >\n";
}

/// What the exported function gave.
struct Conversion
{
    qint32 result = 0;
    std::string text;

    /// The text between the head of a document of the given size and its tail; the whole text
    /// when it has no such head or tail.
    std::string body(int width = 100, int height = 50) const
    {
        const std::string head = documentHead(width, height);
        const std::string end = "</svg>\n";
        if (!text.starts_with(head) || !text.ends_with(end))
            return text;
        return text.substr(head.size(), text.size() - head.size() - end.size());
    }
};

/// Converts @p bytes through the exported function.
inline Conversion convert(const QByteArray &bytes)
{
    QByteArray svg;
    const qint32 result = ConvertMetaFileToSVG(bytes, svg);
    return { result, svg.toStdString() };
}

} // namespace svgtool::test

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
