#include "wmf/Wmf2SVG.h"

#include "logging/TraceScope.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

// The records that are accepted and do not draw yet. A handler that learns to draw leaves this
// list; when it is empty, so is the reason for this file.

qint32 WMF2SVGConverter::OnMetaPatBlt(char *, quint32)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaPatBlt");
    return 1;
}

qint32 WMF2SVGConverter::OnDIBBitBlt(char *, quint32)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnDIBBitBlt");
    return 1;
}

qint32 WMF2SVGConverter::OnStretchDIB(char *, quint32)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnStretchDIB");
    return 1;
}

qint32 WMF2SVGConverter::OnDIBStretchBlt(char *, quint32)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnDIBStretchBlt");
    return 1;
}

} // namespace svgtool
