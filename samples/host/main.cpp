#include <svgtool/SVGTool.h>

#include <QFile>

#include <cstdio>

// Converts the metafile named first to the SVG file named second.
int main(int argc, char *argv[])
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s METAFILE SVG\n", argv[0]);
        return 2;
    }
    QFile input(QString::fromLocal8Bit(argv[1]));
    if (!input.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s: %s\n", argv[1], qPrintable(input.errorString()));
        return 1;
    }

    QByteArray svg;
    const qint32 result = ConvertMetaFileToSVG(input.readAll(), svg);
    if (result != SvgToolEmfConverted && result != SvgToolWmfConverted) {
        std::fprintf(stderr, "%s: not converted, result %d\n", argv[1], result);
        return 1;
    }

    QFile output(QString::fromLocal8Bit(argv[2]));
    if (!output.open(QIODevice::WriteOnly) || output.write(svg) != svg.size() || !output.flush()) {
        std::fprintf(stderr, "%s: %s\n", argv[2], qPrintable(output.errorString()));
        return 1;
    }
    return 0;
}
