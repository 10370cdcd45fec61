#pragma once

#include "core/records/RecordTally.h"

namespace svgtool {

/// Names of the EMF record types ([MS-EMF] 2.1.1), by type number, for the record dump. Each is
/// padded with blanks to its column; the types without a name (0, 69, 117) are null.
// clang-format off
inline constexpr const char *kEmfRecordNames[] = {
    nullptr, // 0
    "EMR_HEADER ", // 1
    "EMR_POLYBEZIER      ", // 2
    "EMR_POLYGON         ", // 3
    "EMR_POLYLINE        ", // 4
    "EMR_POLYBEZIERTO    ", // 5
    "EMR_POLYLINETO      ", // 6
    "EMR_POLYPOLYLINE    ", // 7
    "EMR_POLYPOLYGON     ", // 8
    "EMR_SETWINDOWEXTEX  ", // 9
    "EMR_SETWINDOWORGEX  ", // 10
    "EMR_SETVIEWPORTEXTEX ", // 11
    "EMR_SETVIEWPORTORGEX ", // 12
    "EMR_SETBRUSHORGEX   ", // 13
    "EMR_EOF             ", // 14
    "EMR_SETPIXELV       ", // 15
    "EMR_SETMAPPERFLAGS  ", // 16
    "EMR_SETMAPMODE      ", // 17
    "EMR_SETBKMODE       ", // 18
    "EMR_SETPOLYFILLMODE ", // 19
    "EMR_SETROP2         ", // 20
    "EMR_SETSTRETCHBLTMODE ", // 21
    "EMR_SETTEXTALIGN    ", // 22
    "EMR_SETCOLORADJUSTMENT ", // 23
    "EMR_SETTEXTCOLOR    ", // 24
    "EMR_SETBKCOLOR      ", // 25
    "EMR_OFFSETCLIPRGN   ", // 26
    "EMR_MOVETOEX        ", // 27
    "EMR_SETMETARGN      ", // 28
    "EMR_EXCLUDECLIPRECT ", // 29
    "EMR_INTERSECTCLIPRECT ", // 30
    "EMR_SCALEVIEWPORTEXTEX ", // 31
    "EMR_SCALEWINDOWEXTEX ", // 32
    "EMR_SAVEDC          ", // 33
    "EMR_RESTOREDC       ", // 34
    "EMR_SETWORLDTRANSFORM ", // 35
    "EMR_MODIFYWORLDTRANSFORM ", // 36
    "EMR_SELECTOBJECT    ", // 37
    "EMR_CREATEPEN       ", // 38
    "EMR_CREATEBRUSHINDIRECT ", // 39
    "EMR_DELETEOBJECT    ", // 40
    "EMR_ANGLEARC        ", // 41
    "EMR_ELLIPSE         ", // 42
    "EMR_RECTANGLE       ", // 43
    "EMR_ROUNDRECT       ", // 44
    "EMR_ARC             ", // 45
    "EMR_CHORD           ", // 46
    "EMR_PIE             ", // 47
    "EMR_SELECTPALETTE   ", // 48
    "EMR_CREATEPALETTE   ", // 49
    "EMR_SETPALETTEENTRIES ", // 50
    "EMR_RESIZEPALETTE   ", // 51
    "EMR_REALIZEPALETTE  ", // 52
    "EMR_EXTFLOODFILL    ", // 53
    "EMR_LINETO          ", // 54
    "EMR_ARCTO           ", // 55
    "EMR_POLYDRAW        ", // 56
    "EMR_SETARCDIRECTION ", // 57
    "EMR_SETMITERLIMIT   ", // 58
    "EMR_BEGINPATH       ", // 59
    "EMR_ENDPATH         ", // 60
    "EMR_CLOSEFIGURE     ", // 61
    "EMR_FILLPATH        ", // 62
    "EMR_STROKEANDFILLPATH ", // 63
    "EMR_STROKEPATH      ", // 64
    "EMR_FLATTENPATH     ", // 65
    "EMR_WIDENPATH       ", // 66
    "EMR_SELECTCLIPPATH  ", // 67
    "EMR_ABORTPATH       ", // 68
    nullptr,
    "EMR_GDICOMMENT      ", // 70
    "EMR_FILLRGN         ", // 71
    "EMR_FRAMERGN        ", // 72
    "EMR_INVERTRGN       ", // 73
    "EMR_PAINTRGN        ", // 74
    "EMR_EXTSELECTCLIPRGN ", // 75
    "EMR_BITBLT          ", // 76
    "EMR_STRETCHBLT      ", // 77
    "EMR_MASKBLT         ", // 78
    "EMR_PLGBLT          ", // 79
    "EMR_SETDIBITSTODEVICE ", // 80
    "EMR_STRETCHDIBITS   ", // 81
    "EMR_EXTCREATEFONTINDIRECTW ", // 82
    "EMR_EXTTEXTOUTA     ", // 83
    "EMR_EXTTEXTOUTW     ", // 84
    "EMR_POLYBEZIER16    ", // 85
    "EMR_POLYGON16       ", // 86
    "EMR_POLYLINE16      ", // 87
    "EMR_POLYBEZIERTO16  ", // 88
    "EMR_POLYLINETO16    ", // 89
    "EMR_POLYPOLYLINE16  ", // 90
    "EMR_POLYPOLYGON16   ", // 91
    "EMR_POLYDRAW16      ", // 92
    "EMR_CREATEMONOBRUSH ", // 93
    "EMR_CREATEDIBPATTERNBRUSHPT ", // 94
    "EMR_EXTCREATEPEN    ", // 95
    "EMR_POLYTEXTOUTA    ", // 96
    "EMR_POLYTEXTOUTW    ", // 97
    "EMR_SETICMMODE          ", // 98
    "EMR_CREATECOLORSPACE    ", // 99
    "EMR_SETCOLORSPACE       ", // 100
    "EMR_DELETECOLORSPACE    ", // 101
    "EMR_GLSRECORD           ", // 102
    "EMR_GLSBOUNDEDRECORD    ", // 103
    "EMR_PIXELFORMAT         ", // 104
    "EMR_DRAWESCAPE          ", // 105
    "EMR_EXTESCAPE           ", // 106
    "EMR_RESERVED_107        ", // 107
    "EMR_SMALLTEXTOUT        ", // 108
    "EMR_FORCEUFIMAPPING     ", // 109
    "EMR_NAMEDESCAPE         ", // 110
    "EMR_COLORCORRECTPALETTE ", // 111
    "EMR_SETICMPROFILEA      ", // 112
    "EMR_SETICMPROFILEW      ", // 113
    "EMR_ALPHABLEND          ", // 114
    "EMR_SETLAYOUT           ", // 115
    "EMR_TRANSPARENTBLT      ", // 116
    nullptr,
    "EMR_GRADIENTFILL        ", // 118
    "EMR_RESERVED_119        ", // 119
    "EMR_RESERVED_120        ", // 120
    "EMR_COLORMATCHTOTARGETW ", // 121
    "EMR_CREATECOLORSPACEW   ", // 122
};
// clang-format on
static_assert(sizeof(kEmfRecordNames) / sizeof(kEmfRecordNames[0]) == 123);

/// The EMF record types that are not carried out as GDI does, each with the reason.
// clang-format off
inline constexpr TypeOutcome kEmfOutcomes[] = {
    { 3, RecordOutcome::Approximated }, // EMR_POLYGON: neither mapped nor styled
    { 4, RecordOutcome::Approximated }, // EMR_POLYLINE: the same
    { 5, RecordOutcome::Approximated }, // EMR_POLYBEZIERTO: not mapped
    { 6, RecordOutcome::Approximated }, // EMR_POLYLINETO: neither mapped nor styled
    { 7, RecordOutcome::Approximated }, // EMR_POLYPOLYLINE: the same
    { 8, RecordOutcome::Approximated }, // EMR_POLYPOLYGON: the same
    { 9, RecordOutcome::Approximated }, // EMR_SETWINDOWEXTEX: makes no new scale by itself
    { 10, RecordOutcome::Approximated }, // EMR_SETWINDOWORGEX: unsigned, and taken off after scaling
    { 11, RecordOutcome::Approximated }, // EMR_SETVIEWPORTEXTEX: unsigned; one of the modes only
    { 12, RecordOutcome::Skipped }, // EMR_SETVIEWPORTORGEX: kept and not used
    { 16, RecordOutcome::Neutral }, // EMR_SETMAPPERFLAGS: a hint for choosing fonts
    { 45, RecordOutcome::Approximated }, // EMR_ARC: the arc direction is not known
    { 46, RecordOutcome::Approximated }, // EMR_CHORD: the same
    { 47, RecordOutcome::Approximated }, // EMR_PIE: the same, and the large-arc test
    { 55, RecordOutcome::Approximated }, // EMR_ARCTO: the arc direction is not known
    { 61, RecordOutcome::Approximated }, // EMR_CLOSEFIGURE: ends at x = 0
    { 64, RecordOutcome::Approximated }, // EMR_STROKEPATH: polylines are closed
    { 67, RecordOutcome::Approximated }, // EMR_SELECTCLIPPATH: replaces; clips rectangles only
    { 70, RecordOutcome::Neutral }, // EMR_GDICOMMENT, but see handleAndNote
    { 75, RecordOutcome::Approximated }, // EMR_EXTSELECTCLIPRGN: clips rectangles only
    { 84, RecordOutcome::Approximated }, // EMR_EXTTEXTOUTW: without the distances of characters
    { 91, RecordOutcome::Approximated }, // EMR_POLYPOLYGON16: polygon by polygon, without holes
    { 108, RecordOutcome::Approximated }, // EMR_SMALLTEXTOUT: without a rectangle
};
// clang-format on

} // namespace svgtool
