#pragma once

#include "exact/records/GdiStructures.h"

#include <bit>

namespace svgtool {

// The headers and records of 16-bit Windows metafiles, as they lie in a file. Parameters stand in
// the reverse order of the drawing call's arguments: y before x, bottom before top. Where an array
// or a text follows a structure, only the part of fixed size is declared.

/// A 32-bit field on a 16-bit boundary: the two words of a quint32 as memory holds it, which on a
/// little-endian host means the low word first.
struct Unaligned32
{
    quint16 words[2];

    constexpr Unaligned32() noexcept = default;
    constexpr Unaligned32(quint32 value) noexcept : Unaligned32(std::bit_cast<Unaligned32>(value))
    {
    }
    constexpr operator quint32() const noexcept { return std::bit_cast<quint32>(*this); }
};
static_assert(sizeof(Unaligned32) == 4 && alignof(Unaligned32) == 2);

struct METAPLACEABLEHEADER
{
    Unaligned32 Key;
    quint16 Hmf;
    qint16 Left, Top, Right, Bottom;
    quint16 Inch; ///< metafile units per inch
    Unaligned32 Reserved;
    quint16 Checksum;
};
static_assert(sizeof(METAPLACEABLEHEADER) == 22);

struct METAHEADER
{
    quint16 Type;
    quint16 HeaderSize; ///< 16-bit words, as Size and MaxRecord
    quint16 Version;
    Unaligned32 Size;
    quint16 NumberOfObjects;
    Unaligned32 MaxRecord;
    quint16 NumberOfMembers;
};
static_assert(sizeof(METAHEADER) == 18);

/// Head of every record.
struct WMR
{
    Unaligned32 rdSize; ///< 16-bit words of the whole record, this head included
    quint16 rdFunction;
};
static_assert(sizeof(WMR) == 6);

/// A point among a record's parameters. The points of an array are POINTS, x first.
struct PointYX
{
    qint16 y, x;
};
static_assert(sizeof(PointYX) == 4);

/// A box among a record's parameters.
struct RECT16
{
    qint16 bottom, right, top, left;
};
static_assert(sizeof(RECT16) == 8);

/// Of lopnWidth only x counts.
struct LOGPEN16
{
    quint16 lopnStyle;
    POINTS lopnWidth;
    Unaligned32 lopnColor;
};
static_assert(sizeof(LOGPEN16) == 10);

struct LOGBRUSH16
{
    quint16 lbStyle;
    Unaligned32 lbColor;
    quint16 lbHatch;
};
static_assert(sizeof(LOGBRUSH16) == 8);

/// Followed by the face name: 8-bit characters up to a zero, 32 of them at most.
struct FONTSPEC
{
    qint16 lfHeight;
    qint16 lfWidth;
    qint16 lfEscapement; ///< tenths of a degree, as lfOrientation
    qint16 lfOrientation;
    qint16 lfWeight;
    quint8 lfItalic;
    quint8 lfUnderline;
    quint8 lfStrikeOut;
    quint8 lfCharSet;
    quint8 lfOutPrecision;
    quint8 lfClipPrecision;
    quint8 lfQuality;
    quint8 lfPitchAndFamily;
};
static_assert(sizeof(FONTSPEC) == 18);

/// Line-to and move-to.
struct WMRLINETO
{
    WMR wmr;
    PointYX pt;
};
static_assert(sizeof(WMRLINETO) == 10);

/// Window origin and window extent.
using WMRSETVIEWPORTORGEX = WMRLINETO;

/// Ellipse and rectangle.
struct WMRELLIPSE
{
    WMR wmr;
    RECT16 box;
};
static_assert(sizeof(WMRELLIPSE) == 14);

struct WMRCREATEPEN
{
    WMR wmr;
    LOGPEN16 lopn;
};
static_assert(sizeof(WMRCREATEPEN) == 16);

struct WMRCREATEBRUSHINDIRECT
{
    WMR wmr;
    LOGBRUSH16 lb;
};
static_assert(sizeof(WMRCREATEBRUSHINDIRECT) == 14);

/// Followed by the face name of the font.
struct WMREXTCREATEFONTINDIRECT
{
    WMR wmr;
    FONTSPEC font;
};
static_assert(sizeof(WMREXTCREATEFONTINDIRECT) == 24);

/// Select and delete object.
struct WMRSELECTOBJECT
{
    WMR wmr;
    quint16 ihObject;
};
static_assert(sizeof(WMRSELECTOBJECT) == 8);

/// Polyline and polygon. Followed by cpts POINTS.
struct WMRPOLYLINE
{
    WMR wmr;
    qint16 cpts;
};
static_assert(sizeof(WMRPOLYLINE) == 8);

/// Poly-polygon. Followed by nPolys counts of 16 bits and then the POINTS of all polygons.
struct WMRPOLYPOLYLINE
{
    WMR wmr;
    quint16 nPolys;
};
static_assert(sizeof(WMRPOLYPOLYLINE) == 8);

/// Followed by a rectangle (left, top, right, bottom) where fuOptions asks for one, the cChars
/// 8-bit characters and an optional array of advances.
struct WMREXTTEXTOUT
{
    WMR wmr;
    PointYX ptReference;
    qint16 cChars;
    quint16 fuOptions;
};
static_assert(sizeof(WMREXTTEXTOUT) == 14);

struct WMRPATBLT
{
    WMR wmr;
    Unaligned32 dwRop;
    qint16 cyDest, cxDest, yDest, xDest;
};
static_assert(sizeof(WMRPATBLT) == 18);

/// Bit-blit with a bitmap. The bitmap starts at kBitmapOffset, so the last two words, which the
/// reader distinguishes, are its first ones.
struct WMRBITBLT
{
    static constexpr qint64 kBitmapOffset = 22;

    WMR wmr;
    Unaligned32 dwRop;
    qint16 ySrc, xSrc;
    qint16 cyDest, cxDest, yDest, xDest;
    quint16 word22;
    quint16 word24;
};
static_assert(sizeof(WMRBITBLT) == 26);

/// Stretch-device-independent-bits. Followed by the bitmap.
struct WMRSTRETCHBLT
{
    WMR wmr;
    Unaligned32 dwRop;
    quint16 iUsage;
    qint16 cySrc, cxSrc, ySrc, xSrc;
    qint16 cyDest, cxDest, yDest, xDest;
};
static_assert(sizeof(WMRSTRETCHBLT) == 28);

/// Device-independent stretch-blit. Followed by the bitmap.
struct WMRDIBSTRETCHBLT
{
    WMR wmr;
    Unaligned32 dwRop;
    qint16 cySrc, cxSrc, ySrc, xSrc;
    qint16 cyDest, cxDest, yDest, xDest;
};
static_assert(sizeof(WMRDIBSTRETCHBLT) == 26);

} // namespace svgtool
