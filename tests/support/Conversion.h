#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>
#include <string>

namespace svgtool::test {

/// What the exported function gave.
struct Conversion
{
    qint32 result = 0;
    std::string text;

    /// The text between the head of a document of the given size and its tail; the whole text
    /// when it has no such head or tail.
    std::string body(int width = 100, int height = 50) const;
};

/// Converts @p bytes through the exported function.
Conversion convert(const QByteArray &bytes);

/// The head of a document, line feed included.
std::string documentHead(int width, int height);

} // namespace svgtool::test

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}
