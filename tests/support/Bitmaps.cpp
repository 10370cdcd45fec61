#include "support/Bitmaps.h"

#include <QColor>
#include <QImage>

namespace svgtool::test {

static std::string pixels(const QImage &image)
{
    QString text;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const QString colour = QColor(pixel).name().mid(1);
            text += x > 0 ? QLatin1String(" ") : QLatin1String(y > 0 ? "/" : "");
            if (qAlpha(pixel) == 0)
                text += QLatin1String("......");
            else if (qAlpha(pixel) == 255)
                text += colour;
            else
                text += colour + QString::number(qAlpha(pixel), 16);
        }
    }
    return text.toStdString();
}

std::string withPixels(std::string svg)
{
    const std::string opening = "data:image/png;base64,";
    size_t at = 0;
    while ((at = svg.find(opening, at)) != std::string::npos) {
        const size_t start = at + opening.size();
        const size_t end = svg.find('"', start);
        const auto file = QByteArray::fromStdString(svg.substr(start, end - start));
        const QImage image = QImage::fromData(QByteArray::fromBase64(file), "PNG");
        svg.replace(at, end - at, image.isNull() ? "no picture" : pixels(image));
        ++at;
    }
    return svg;
}

} // namespace svgtool::test
