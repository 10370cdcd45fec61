#include <basic_logging/CLogSystem.h>
#include <svgtool/SVGTool.h>

#include <QFile>

#include <cstdio>

// Converts the metafile named first and prints how many lines the library logged on the way.
int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    QFile input(QString::fromLocal8Bit(argv[1]));
    if (!input.open(QIODevice::ReadOnly))
        return 1;

    // A sink may be called from any thread that converts, but by one at a time.
    int calls = 0;
    basic_logging::tracelevel.setSink([&calls](const std::string &) { ++calls; });
    int warnings = 0;
    basic_logging::warnlevel.setSink([&warnings](const std::string &) { ++warnings; });
    basic_logging::infolevel.setSink([](const std::string &) {});
    CLogSystem::theRootInstance->setLevel("TRACE");

    QByteArray svg;
    const qint32 result = ConvertMetaFileToSVG(input.readAll(), svg);
    std::printf("result %d, %d trace lines, %d warnings\n", result, calls, warnings);

    // The sinks refer to variables of this function; an empty one brings the default back.
    basic_logging::tracelevel.setSink({});
    basic_logging::warnlevel.setSink({});
    return 0;
}
