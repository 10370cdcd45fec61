#include "fuzz/Harness.h"

#include "svgtool/SVGTool.h"

#include <CLogSystem.h>

// What fontconfig keeps is its own.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

namespace svgtool::fuzz {

// A line or two a conversion that nobody reads.
static bool silenceLogs()
{
    for (auto *level : { &basic_logging::infolevel, &basic_logging::warnlevel })
        level->setSink([](const std::string &) {});
    return true;
}

QByteArray convertAndCheck(const QByteArray &metafile)
{
    static const bool isSilent = silenceLogs();
    require(isSilent);
    const QByteArray before("untouched");
    QByteArray svg = before;
    const qint32 result = ConvertMetaFileToSVG(metafile, svg);
    require(result >= SvgToolInvalidWmf && result <= SvgToolWmfConverted);
    // An exception would be a fault: memory is not scarce here.
    require(result != SvgToolException);
    if (result <= 0) {
        require(svg == before);
        return {};
    }
    // The bound of docs/limits.md.
    require(svg.size() <= 350 * qint64(metafile.size()) + 20000000);
    require(svg.startsWith("<?xml ") && svg.endsWith("</svg>\n"));
    return svg;
}

} // namespace svgtool::fuzz
