#include "fuzz/Harness.h"

#include "core/records/MetafileFacts.h"
#include "exact/svgtool/SVGTool.h"

// What fontconfig keeps is its own.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

namespace svgtool::fuzz {

QByteArray convertAndCheck(const QByteArray &metafile)
{
    // What the tool does with it first, and with its header before it tries again.
    const MetafileFacts facts = inspectMetafile({ metafile.constData(), metafile.size() });
    require(facts.firstRecord == facts.namedFirstRecord || facts.firstRecord < metafile.size());
    QByteArray copy = metafile;
    repairHeader({ copy.data(), size_t(copy.size()) }, facts);
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
