#pragma once

#include "core/base/Bytes.h"
#include "core/records/EmfRecords.h"
#include "core/records/WmfRecords.h"
#include "exact/logging/TraceScope.h"

namespace svgtool {

// Byte order. Metafiles are little-endian, so only a big-endian host has anything to swap.

/// Whether the host is big-endian: false, always. Alone in its source file, so that a build for a
/// big-endian host, and the test of such a build, replace nothing else.
bool IsBigEndian();
/// The same answer for code that is not traced; beside it in that file.
extern const bool kIsBigEndianHost;

/// @p value with its two bytes exchanged on a big-endian host, 0 on a little-endian one: to be
/// called only where IsBigEndian() has answered true.
quint32 LE2BE_Word(quint16 value);

/// @p value with its four bytes reversed on a big-endian host, 0 on a little-endian one.
quint32 LE2BE_DWord(quint32 value);

/// The float whose bytes in memory are the four at @p bytes in reverse, on every host.
float GetFloatFromBLOB(const char *bytes);

// Readers. Each brings a structure that was laid over bytes of a file into the host's byte order.
//
// Readers of one argument work in place: on a big-endian host they swap the fields where they
// stand, on a little-endian host they change nothing. They return true either way, but for the
// three that are declared last.
//
// Readers of two arguments copy: on a big-endian host they fill the destination's parameters with
// the swapped ones of the source and return true. On a little-endian host they touch nothing and
// return false, which is no error but asks the caller to copy the source as it stands.
//
// Readers check nothing. Where a structure is followed by an array, the caller has made sure that
// the count stays inside the block the structure starts, and a destination has the same room.
// The head of a record is left as it stands unless the comment names it.

/// All fields, iType as a 16-bit one.
bool InitEnhMetaHeader(ENHMETAHEADER *header);
bool InitEMR(EMR *head);
/// As InitEMR, for the head of a record that is being dispatched.
bool InitEMRMETARECORD(EMR *head);

bool InitPOINTL(POINTL *point);
bool InitPOINT(POINT *point);
bool InitPOINTS(POINTS *point);
bool InitRECT(RECT *rect);
bool InitRECTL(RECTL *rect);
bool InitSIZEL(SIZEL *size);
bool InitXFORM(XFORM *matrix);

bool InitEMRMOVETO(EMRMOVETOEX *record);
bool InitLINETO(EMRLINETO *record);
bool InitEMRRECTANGLE(EMRRECTANGLE *record);
bool InitEMRELLIPSE(EMRELLIPSE *record);
bool InitEMRROUNDRECT(EMRROUNDRECT *record);
/// Arc, arc-to, chord and pie.
bool InitEMRARC(EMRARC *record);
bool InitEMRANGLEARC(EMRANGLEARC *destination, const EMRANGLEARC *source);
/// Polygon, polyline, polyline-to, poly-Bézier and poly-Bézier-to, with the points that follow.
bool InitEMRPOLYGON(EMRPOLYGON *record);
/// The same five records with 16-bit points.
bool InitEMRPOLYGON16(EMRPOLYGON16 *record);
/// With the points that follow; the types behind them are bytes.
bool InitEMRPOLYDRAW16(EMRPOLYDRAW16 *record);
/// Poly-polygon and poly-polyline, with the counts and the points that follow. Bounds are left.
/// The points come to stand as many 32-bit units behind the start of the destination's counts as
/// there are points, so the destination needs room for three units a point, or for its counts
/// where they take more.
bool InitEMRPOLYPOLYGON(EMRPOLYPOLYGON *destination, const EMRPOLYPOLYGON *source);
/// The same with 16-bit points, so room for two units a point.
bool InitEMRPOLYPOLYGON16(EMRPOLYPOLYGON16 *destination, const EMRPOLYPOLYGON16 *source);

/// Text colour and background colour.
bool InitEMRCOLOR(EMRSETTEXTCOLOR *record);
bool InitEMRMAPMODE(EMRSETMAPMODE *record);
bool InitEMRORIGIN(EMRSETWINDOWORGEX *record);
/// Window extent and viewport extent.
bool InitEMREXT(EMRSETWINDOWEXTEX *record);
bool InitEMRSETTEXTALIGN(EMRSETTEXTALIGN *record);
/// The one reader that writes no trace lines.
bool InitEMRSETBKMODE(EMRSETBKMODE *record);

bool InitEMRSELECTOBJECT(EMRSELECTOBJECT *record);
bool InitEMRDELETEOBJECT(EMRDELETEOBJECT *record);
bool InitLOGBRUSH(LOGBRUSH *brush);
bool InitEMRCREATEBRUSHINDIRECT(EMRCREATEBRUSHINDIRECT *record);
bool InitEMRLOGPEN(LOGPEN *pen);
bool InitEMRCREATEPEN(EMRCREATEPEN *record);
/// For big-endian hosts only: a little-endian one gets a pen of zeros. The lengths are left.
bool InitEXTLOGPEN(EXTLOGPEN *pen);
bool InitEMREXTCREATEPEN(EMREXTCREATEPEN *record);
bool InitLOGFONTW(LOGFONTW *font);
bool InitEXTLOGFONTW(EXTLOGFONTW *font);
/// Head included.
bool InitEMREXTCREATEFONTINDIRECTW(EMREXTCREATEFONTINDIRECTW *record);

/// The text and its spacing array are left.
bool InitEMRTEXT(EMRTEXT *text);
/// Quirk: named for the 8-bit record but serves the wide one.
bool InitEMREXTTEXTOUTA(EMREXTTEXTOUTW *record);
bool InitEMRSMALLTEXTOUT(EMRSMALLTEXTOUT *record);

bool InitEMRFILLRGN(EMRFILLRGN *record);
bool InitEMRFRAMERGN(EMRFRAMERGN *record);
bool InitEMREXTSELECTCLIPRGN(EMREXTSELECTCLIPRGN *record);
bool Init_RGNDATAHEADER(RGNDATAHEADER *header);
/// The header only; the handlers bring the rectangles through InitRECT.
bool Init_RGNDATA(RGNDATA *region);

bool InitBITMAPHEADER(BITMAPINFOHEADER *header);
/// The header only: the colour table and the bits are bytes.
bool InitBITMAPINFO(BITMAPINFO *info);
/// Head included.
bool InitEMRBITBLT(EMRBITBLT *record);
bool InitEMRSTRETCHBLT(EMRSTRETCHBLT *record);
bool InitEMRMASKBLT(EMRMASKBLT *record);
bool InitEMRTRANSPARENTBLT(EMRTRANSPARENTBLT *record);
/// Head included.
bool InitEMRSTRETCHDIBITS(EMRSTRETCHDIBITS *record);

bool InitPlaceableMetaHeader(METAPLACEABLEHEADER *header);
bool InitWindowsMetaHeader(METAHEADER *header);
bool InitWMR(WMR *destination, const WMR *source);
/// The head of a record that is being dispatched, rdSize as a 16-bit field.
bool InitMETARECORD(WMR *destination, const WMR *source);

bool InitWMRPOINTS(POINTS *destination, const POINTS *source);
bool InitWMRPOINTS(PointYX *destination, const PointYX *source);
bool InitRECT16(RECT16 *destination, const RECT16 *source);
bool InitWMRLINETO(WMRLINETO *destination, const WMRLINETO *source);
/// Quirk: named for the viewport origin but serves the window origin and extent.
bool InitWMRSETVIEWPORTORGEX(WMRSETVIEWPORTORGEX *destination, const WMRSETVIEWPORTORGEX *source);
bool InitWMRELLIPSE(WMRELLIPSE *destination, const WMRELLIPSE *source);
/// With the points that follow.
bool InitWMRPOLYLINE(WMRPOLYLINE *destination, const WMRPOLYLINE *source);
/// With the counts and the points that follow.
bool InitWMRPOLYPOLYLINE(WMRPOLYPOLYLINE *destination, const WMRPOLYPOLYLINE *source);
/// With count and options exchanged. The rectangle, the text and its spacing array are left.
bool InitWMREXTTEXTOUT(WMREXTTEXTOUT *destination, const WMREXTTEXTOUT *source);

bool InitLOGPEN16(LOGPEN16 *destination, const LOGPEN16 *source);
bool InitWMRCREATEPEN(WMRCREATEPEN *destination, const WMRCREATEPEN *source);
bool InitLOGBRUSH16(LOGBRUSH16 *destination, const LOGBRUSH16 *source);
bool InitWMRCREATEBRUSHINDIRECT(WMRCREATEBRUSHINDIRECT *destination,
                                const WMRCREATEBRUSHINDIRECT *source);
/// Copies height and width unswapped and swaps escapement, orientation and weight of the
/// destination where they stand; the bytes are left.
bool InitFONTSPEC(FONTSPEC *destination, const FONTSPEC *source);
bool InitWMREXTCREATEFONTINDIRECT(WMREXTCREATEFONTINDIRECT *destination,
                                  const WMREXTCREATEFONTINDIRECT *source);
/// Select and delete object.
bool InitWMRSELECTOBJECT(WMRSELECTOBJECT *destination, const WMRSELECTOBJECT *source);
bool InitWMRPATBLT(WMRPATBLT *destination, const WMRPATBLT *source);

// These three work in place and yet return false, with nothing changed, on a little-endian host.

/// All fields but word22. The bitmap header is left to InitBITMAPINFO, as in the other two.
bool InitWMRBITBLT(WMRBITBLT *record);
bool InitWMRSTRETCHBLT(WMRSTRETCHBLT *record);
bool InitWMRDIBSTRETCHBLT(WMRDIBSTRETCHBLT *record);

/// Whether a reader has anything to do: to swap fields, or to trace its call.
inline bool readersAct() noexcept
{
    return kIsBigEndianHost || isTracing();
}

/// The record at the start of @p bytes in the host's byte order, made by calling its reader.
template<class Record>
[[gnu::cold, gnu::noinline]] Record callReader(ByteView bytes, bool (*read)(Record *))
{
    auto record = readPadded<Record>(bytes);
    read(&record);
    return record;
}
template<class Record>
[[gnu::cold, gnu::noinline]] Record callReader(ByteView bytes,
                                               bool (*read)(Record *, const Record *))
{
    const auto source = readPadded<Record>(bytes);
    Record record = source;
    read(&record, &source);
    return record;
}

/// The record at the start of @p bytes in the host's byte order; what they do not cover is zero.
/// A reader that has nothing to do is not called, and the record can stay in registers.
/// @param read  an in-place or a copying reader, which changes nothing on a little-endian host
template<class Record, class... Source>
Record readRecord(ByteView bytes, bool (*read)(Record *, Source...))
{
    if (readersAct()) [[unlikely]]
        return callReader(bytes, read);
    return readPadded<Record>(bytes);
}

} // namespace svgtool
