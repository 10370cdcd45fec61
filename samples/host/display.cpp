#include <svg/SVGDisplay.h>
#include <svgtool/SVGTool.h>

#include <QFile>

#include <cstdio>

// Converts the metafile named first and writes a document for viewers, 800 pixels wide, to
// standard output.
int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    QFile input(QString::fromLocal8Bit(argv[1]));
    if (!input.open(QIODevice::ReadOnly))
        return 1;
    QByteArray exact;
    if (ConvertMetaFileToSVG(input.readAll(), exact) <= 0)
        return 1;

    svgtool::DisplayOptions options;
    options.width = 800;
    const QByteArray document = svgtool::displayableSvg(exact, options);
    const size_t written = std::fwrite(document.constData(), 1, size_t(document.size()), stdout);
    return written == size_t(document.size()) && std::fflush(stdout) == 0 ? 0 : 1;
}
