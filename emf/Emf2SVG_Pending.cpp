#include "emf/Emf2SVG.h"

#include "logging/TraceScope.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// The records that are accepted and do not draw yet. A handler that learns to draw leaves this
// list; when it is empty, so is the reason for this file.

qint32 Emf2SvgConverter::OnBitBlt(char *, quint32)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnBitBlt");
    return 1;
}

qint32 Emf2SvgConverter::OnStretchDIB(char *, quint32)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnStretchDIB");
    return 1;
}

qint32 Emf2SvgConverter::OnTransparentBlt(char *, quint32)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnTransparentBlt");
    return 1;
}

qint32 Emf2SvgConverter::OnMaskBlt(char *, quint32)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnMaskBlt");
    return 1;
}

qint32 Emf2SvgConverter::OnStretchBlt(char *, quint32)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnStretchBlt");
    return 1;
}

} // namespace svgtool
