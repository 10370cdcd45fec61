// The document for display: of what a metafile's conversion gives, and of any text.

#include "exact/svg/SVGDisplay.h"
#include "fuzz/Harness.h"

#include <QXmlStreamReader>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace svgtool::fuzz;
    const QByteArray bytes = bytesOf(data, size);
    const QByteArray document = convertAndCheck(bytes);
    svgtool::DisplayOptions options;
    options.comment = bytes.right(size % 16);
    options.width = size % 5 == 0 ? double(size) : 0;
    options.scale = size % 3 == 0 ? 0.5 : 1;
    const QByteArray shown = displayableSvg(document.isEmpty() ? bytes : document, options);
    QXmlStreamReader reader(shown);
    while (!reader.atEnd())
        reader.readNext();
    require(!reader.hasError());
    return 0;
}
