#pragma once

#include "core/records/RecordTally.h"

#include <cstdint>

namespace svgtool {

/// The name of a WMF record type.
struct WmfRecordName
{
    uint16_t function; ///< rdFunction of the record's head
    const char *name; ///< followed by tabs to its column
};

/// Names of the WMF record types ([MS-WMF] 2.1.1.1), by function number, for the record dump.
// clang-format off
inline constexpr WmfRecordName kWmfRecordNames[] = {
    { 0x0000, "META_EOF\t\t\t" },
    { 0x0035, "META_REALIZEPALETTE\t\t" },
    { 0x0037, "META_SETPALENTRIES\t\t" },
    { 0x00F7, "META_CREATEPALETTE\t\t" },
    { 0x00F8, "META_CREATEBRUSH\t\t" },
    { 0x0102, "META_SETBKMODE\t\t\t" },
    { 0x0103, "META_SETMAPMODE\t\t\t" },
    { 0x0104, "META_SETROP2\t\t\t" },
    { 0x0105, "META_SETRELABS\t\t\t" },
    { 0x0106, "META_SETPOLYFILLMODE\t\t" },
    { 0x0107, "META_SETSTRETCHBLTMODE\t\t" },
    { 0x0108, "META_SETTEXTCHAREXTRA\t\t" },
    { 0x0127, "META_RESTOREDC\t\t\t" },
    { 0x012A, "META_INVERTREGION\t\t" },
    { 0x012B, "META_PAINTREGION\t\t" },
    { 0x012C, "META_SELECTCLIPREGION\t\t" },
    { 0x012D, "META_SELECTOBJECT\t\t" },
    { 0x012E, "META_SETTEXTALIGN\t\t" },
    { 0x0139, "META_RESIZEPALETTE\t\t" },
    { 0x0142, "META_DIBCREATEPATTERNBRUSH\t" },
    { 0x0149, "META_SETLAYOUT\t\t\t" },
    { 0x01F0, "META_DELETEOBJECT\t\t" },
    { 0x01F9, "META_CREATEPATTERNBRUSH\t\t" },
    { 0x0201, "META_SETBKCOLOR\t\t\t" },
    { 0x0209, "META_SETTEXTCOLOR\t\t" },
    { 0x020A, "META_SETTEXTJUSTIFICATION\t" },
    { 0x020B, "META_SETWINDOWORG\t\t" },
    { 0x020C, "META_SETWINDOWEXT\t\t" },
    { 0x020D, "META_SETVIEWPORTORG\t\t" },
    { 0x020E, "META_SETVIEWPORTEXT\t\t" },
    { 0x020F, "META_OFFSETWINDOWORG\t\t" },
    { 0x0211, "META_OFFSETVIEWPORTORG\t\t" },
    { 0x0213, "META_LINETO\t\t\t" },
    { 0x0214, "META_MOVETO\t\t\t" },
    { 0x0220, "META_OFFSETCLIPRGN\t\t" },
    { 0x0228, "META_FILLREGION\t\t\t" },
    { 0x0231, "META_SETMAPPERFLAGS\t\t" },
    { 0x0234, "META_SELECTPALETTE\t\t" },
    { 0x02FA, "META_CREATEPENINDIRECT\t\t" },
    { 0x02FB, "META_CREATEFONTINDIRECT\t\t" },
    { 0x02FC, "META_CREATEBRUSHINDIRECT\t" },
    { 0x02FD, "META_CREATEBITMAPINDIRECT\t" },
    { 0x0324, "META_POLYGON\t\t\t" },
    { 0x0325, "META_POLYLINE\t\t\t" },
    { 0x0410, "META_SCALEWINDOWEXT\t\t" },
    { 0x0412, "META_SCALEVIEWPORTEXT\t\t" },
    { 0x0415, "META_EXCLUDECLIPRECT\t\t" },
    { 0x0416, "META_INTERSECTCLIPRECT\t\t" },
    { 0x0418, "META_ELLIPSE\t\t\t" },
    { 0x0419, "META_FLOODFILL\t\t\t" },
    { 0x041B, "META_RECTANGLE\t\t\t" },
    { 0x041F, "META_SETPIXEL\t\t\t" },
    { 0x0429, "META_FRAMEREGION\t\t" },
    { 0x0436, "META_ANIMATEPALETTE\t\t" },
    { 0x0521, "META_TEXTOUT\t\t\t" },
    { 0x0538, "META_POLYPOLYGON\t\t" },
    { 0x0548, "META_EXTFLOODFILL\t\t" },
    { 0x061C, "META_ROUNDRECT\t\t\t" },
    { 0x061D, "META_PATBLT\t\t\t" },
    { 0x0626, "META_ESCAPE\t\t\t" },
    { 0x062F, "META_DRAWTEXT\t\t\t" },
    { 0x06FE, "META_CREATEBITMAP\t\t" },
    { 0x06FF, "META_CREATEREGION\t\t" },
    { 0x0817, "META_ARC\t\t\t" },
    { 0x081A, "META_PIE\t\t\t" },
    { 0x0830, "META_CHORD\t\t\t" },
    { 0x0922, "META_BITBLT\t\t\t" },
    { 0x0940, "META_DIBBITBLT\t\t\t" },
    { 0x0A32, "META_EXTTEXTOUT\t\t\t" },
    { 0x0B23, "META_STRETCHBLT\t\t\t" },
    { 0x0B41, "META_DIBSTRETCHBLT\t\t" },
    { 0x0D33, "META_SETDIBTODEV\t\t" },
    { 0x0F43, "META_STRETCHDIB\t\t\t" },
};

/// The WMF record types that are not carried out as GDI does, each with the reason.
inline constexpr TypeOutcome kWmfOutcomes[] = {
    { 0x0105, RecordOutcome::Neutral }, // META_SETRELABS: reserved, without a meaning
    { 0x0231, RecordOutcome::Neutral }, // META_SETMAPPERFLAGS: a hint for choosing fonts
    { 0x0626, RecordOutcome::Neutral }, // META_ESCAPE, but see handleAndNote
    { 0x0A32, RecordOutcome::Approximated }, // META_EXTTEXTOUT: no distances, no background
};
// clang-format on

} // namespace svgtool
