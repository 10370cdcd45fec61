#include "exact/records/BEndTools.h"

#include "exact/logging/TraceScope.h"
#include "exact/records/FieldSwap.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\BEndTools.cpp";

bool InitPlaceableMetaHeader(METAPLACEABLEHEADER *header)
{
    SVGTOOL_TRACE("InitPlaceableMetaHeader");
    return readInPlace(header, &METAPLACEABLEHEADER::Key, &METAPLACEABLEHEADER::Hmf,
                       &METAPLACEABLEHEADER::Left, &METAPLACEABLEHEADER::Top,
                       &METAPLACEABLEHEADER::Right, &METAPLACEABLEHEADER::Bottom,
                       &METAPLACEABLEHEADER::Inch, &METAPLACEABLEHEADER::Reserved,
                       &METAPLACEABLEHEADER::Checksum);
}

bool InitWindowsMetaHeader(METAHEADER *header)
{
    SVGTOOL_TRACE("InitWindowsMetaHeader");
    return readInPlace(header, &METAHEADER::Type, &METAHEADER::HeaderSize, &METAHEADER::Version,
                       &METAHEADER::Size, &METAHEADER::NumberOfObjects, &METAHEADER::MaxRecord,
                       &METAHEADER::NumberOfMembers);
}

bool InitWMR(WMR *destination, const WMR *source)
{
    SVGTOOL_TRACE("InitWMR");
    return readCopy(destination, source, &WMR::rdSize, &WMR::rdFunction);
}

bool InitMETARECORD(WMR *destination, const WMR *source)
{
    SVGTOOL_TRACE("InitMETARECORD");
    if (!readCopy(destination, source, &WMR::rdFunction))
        return false;
    // Quirk: only the low half of rdSize survives; the dispatch depends on rdFunction alone.
    destination->rdSize = LE2BE_Word(static_cast<quint16>(source->rdSize & 0xFFFFu));
    return true;
}

bool InitWMRPOINTS(POINTS *destination, const POINTS *source)
{
    SVGTOOL_TRACE("InitWMRPOINTS");
    return readCopy(destination, source, &POINTS::x, &POINTS::y);
}

bool InitWMRPOINTS(PointYX *destination, const PointYX *source)
{
    SVGTOOL_TRACE("InitWMRPOINTS");
    return readCopy(destination, source, &PointYX::y, &PointYX::x);
}

bool InitRECT16(RECT16 *destination, const RECT16 *source)
{
    SVGTOOL_TRACE("InitRECT16");
    return readCopy(destination, source, &RECT16::bottom, &RECT16::right, &RECT16::top,
                    &RECT16::left);
}

bool InitWMRLINETO(WMRLINETO *destination, const WMRLINETO *source)
{
    SVGTOOL_TRACE("InitWMRLINETO");
    return readCopy(destination, source, &WMRLINETO::pt);
}

bool InitWMRSETVIEWPORTORGEX(WMRSETVIEWPORTORGEX *destination, const WMRSETVIEWPORTORGEX *source)
{
    SVGTOOL_TRACE("InitWMRSETVIEWPORTORGEX");
    return readCopy(destination, source, &WMRSETVIEWPORTORGEX::pt);
}

bool InitWMRELLIPSE(WMRELLIPSE *destination, const WMRELLIPSE *source)
{
    SVGTOOL_TRACE("InitWMRELLIPSE");
    return readCopy(destination, source, &WMRELLIPSE::box);
}

bool InitWMRPOLYLINE(WMRPOLYLINE *destination, const WMRPOLYLINE *source)
{
    SVGTOOL_TRACE("InitWMRPOLYLINE");
    if (!readCopy(destination, source, &WMRPOLYLINE::cpts))
        return false;
    copyArray<POINTS>(behind(destination), behind(source), destination->cpts);
    return true;
}

bool InitWMRPOLYPOLYLINE(WMRPOLYPOLYLINE *destination, const WMRPOLYPOLYLINE *source)
{
    SVGTOOL_TRACE("InitWMRPOLYPOLYLINE");
    if (!readCopy(destination, source, &WMRPOLYPOLYLINE::nPolys))
        return false;
    const qint64 polygons = destination->nPolys;
    const qint64 countBytes = polygons * qint64(sizeof(quint16));
    char *const counts = behind(destination);
    copyArray<quint16>(counts, behind(source), polygons);
    copyArray<POINTS>(counts + countBytes, behind(source) + countBytes,
                      sumOfCounts<quint16>(counts, polygons));
    return true;
}

bool InitWMREXTTEXTOUT(WMREXTTEXTOUT *destination, const WMREXTTEXTOUT *source)
{
    SVGTOOL_TRACE("InitWMREXTTEXTOUT");
    if (!readCopy(&destination->ptReference, &source->ptReference, &PointYX::y, &PointYX::x))
        return false;
    // Quirk: swapped as one value, so count and options change places; the text handler of a
    // big-endian host depends on it.
    constexpr size_t offset = offsetof(WMREXTTEXTOUT, cChars);
    static_assert(offsetof(WMREXTTEXTOUT, fuOptions) == offset + sizeof(quint16));
    quint32 countAndOptions = 0;
    std::memcpy(&countAndOptions, bytesOf(source) + offset, sizeof countAndOptions);
    swapField(countAndOptions);
    std::memcpy(bytesOf(destination) + offset, &countAndOptions, sizeof countAndOptions);
    return true;
}

bool InitLOGPEN16(LOGPEN16 *destination, const LOGPEN16 *source)
{
    SVGTOOL_TRACE("InitLOGPEN16");
    return readCopy(destination, source, &LOGPEN16::lopnStyle, &LOGPEN16::lopnWidth,
                    &LOGPEN16::lopnColor);
}

bool InitWMRCREATEPEN(WMRCREATEPEN *destination, const WMRCREATEPEN *source)
{
    SVGTOOL_TRACE("InitWMRCREATEPEN");
    return readCopy(destination, source, &WMRCREATEPEN::lopn);
}

bool InitLOGBRUSH16(LOGBRUSH16 *destination, const LOGBRUSH16 *source)
{
    SVGTOOL_TRACE("InitLOGBRUSH16");
    return readCopy(destination, source, &LOGBRUSH16::lbStyle, &LOGBRUSH16::lbColor,
                    &LOGBRUSH16::lbHatch);
}

bool InitWMRCREATEBRUSHINDIRECT(WMRCREATEBRUSHINDIRECT *destination,
                                const WMRCREATEBRUSHINDIRECT *source)
{
    SVGTOOL_TRACE("InitWMRCREATEBRUSHINDIRECT");
    return readCopy(destination, source, &WMRCREATEBRUSHINDIRECT::lb);
}

bool InitFONTSPEC(FONTSPEC *destination, const FONTSPEC *source)
{
    SVGTOOL_TRACE("InitFONTSPEC");
    if (!IsBigEndian())
        return false;
    // Quirk: unswapped, and the next three are not copied from the source but swapped where they
    // stand; the font handler of a big-endian host depends on it.
    destination->lfHeight = source->lfHeight;
    destination->lfWidth = source->lfWidth;
    swapFields(destination, &FONTSPEC::lfEscapement, &FONTSPEC::lfOrientation, &FONTSPEC::lfWeight);
    return true;
}

bool InitWMREXTCREATEFONTINDIRECT(WMREXTCREATEFONTINDIRECT *destination,
                                  const WMREXTCREATEFONTINDIRECT *source)
{
    SVGTOOL_TRACE("InitWMREXTCREATEFONTINDIRECT");
    return readCopy(destination, source, &WMREXTCREATEFONTINDIRECT::font);
}

bool InitWMRSELECTOBJECT(WMRSELECTOBJECT *destination, const WMRSELECTOBJECT *source)
{
    SVGTOOL_TRACE("InitWMRSELECTOBJECT");
    return readCopy(destination, source, &WMRSELECTOBJECT::ihObject);
}

bool InitWMRPATBLT(WMRPATBLT *destination, const WMRPATBLT *source)
{
    SVGTOOL_TRACE("InitWMRPATBLT");
    return readCopy(destination, source, &WMRPATBLT::dwRop, &WMRPATBLT::cyDest, &WMRPATBLT::cxDest,
                    &WMRPATBLT::yDest, &WMRPATBLT::xDest);
}

// Quirk: in place, yet false on a little-endian host; the three bitmap handlers go on regardless.
template<class Record, class... Part, class... Field>
static bool readBitmapRecord(Record *record, Field Part::*...fields)
{
    return IsBigEndian() && readInPlace(record, fields...);
}

bool InitWMRBITBLT(WMRBITBLT *record)
{
    SVGTOOL_TRACE("InitWMRBITBLT");
    using R = WMRBITBLT;
    // Quirk: word22 is left and word24 swapped, though both belong to the bitmap; the bit-blit
    // handler of a big-endian host depends on it.
    return readBitmapRecord(record, &R::dwRop, &R::ySrc, &R::xSrc, &R::cyDest, &R::cxDest,
                            &R::yDest, &R::xDest, &R::word24);
}

bool InitWMRSTRETCHBLT(WMRSTRETCHBLT *record)
{
    SVGTOOL_TRACE("InitWMRSTRETCHBLT");
    using R = WMRSTRETCHBLT;
    return readBitmapRecord(record, &R::dwRop, &R::iUsage, &R::cySrc, &R::cxSrc, &R::ySrc, &R::xSrc,
                            &R::cyDest, &R::cxDest, &R::yDest, &R::xDest);
}

bool InitWMRDIBSTRETCHBLT(WMRDIBSTRETCHBLT *record)
{
    SVGTOOL_TRACE("InitWMRDIBSTRETCHBLT");
    using R = WMRDIBSTRETCHBLT;
    return readBitmapRecord(record, &R::dwRop, &R::cySrc, &R::cxSrc, &R::ySrc, &R::xSrc, &R::cyDest,
                            &R::cxDest, &R::yDest, &R::xDest);
}

} // namespace svgtool
