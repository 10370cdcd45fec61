#pragma once

#include "core/records/GdiStructures.h"

#include <bit>
#include <cstdint>

namespace svgtool {

// The headers and records of 16-bit Windows metafiles, as they lie in a file. Parameters stand in
// the reverse order of the drawing call's arguments: y before x, bottom before top. Where an array
// or a text follows a structure, only the part of fixed size is declared.

/// A 32-bit field on a 16-bit boundary: the two words of a uint32_t as memory holds it, which on a
/// little-endian host means the low word first.
struct Unaligned32
{
    uint16_t words[2];

    constexpr Unaligned32() noexcept = default;
    constexpr Unaligned32(uint32_t value) noexcept : Unaligned32(std::bit_cast<Unaligned32>(value))
    {
    }
    constexpr operator uint32_t() const noexcept { return std::bit_cast<uint32_t>(*this); }
};
static_assert(sizeof(Unaligned32) == 4 && alignof(Unaligned32) == 2);

struct METAPLACEABLEHEADER
{
    Unaligned32 Key;
    uint16_t Hmf;
    int16_t Left, Top, Right, Bottom;
    uint16_t Inch; ///< metafile units per inch
    Unaligned32 Reserved;
    uint16_t Checksum;
};
static_assert(sizeof(METAPLACEABLEHEADER) == 22);

constexpr uint32_t kPlaceableKey = 0x9AC6CDD7; ///< Key

struct METAHEADER
{
    uint16_t Type;
    uint16_t HeaderSize; ///< 16-bit words, as Size and MaxRecord
    uint16_t Version;
    Unaligned32 Size;
    uint16_t NumberOfObjects;
    Unaligned32 MaxRecord;
    uint16_t NumberOfMembers;
};
static_assert(sizeof(METAHEADER) == 18);

/// Head of every record.
struct WMR
{
    Unaligned32 rdSize; ///< 16-bit words of the whole record, this head included
    uint16_t rdFunction;
};
static_assert(sizeof(WMR) == 6);

/// A point among a record's parameters. The points of an array are POINTS, x first.
struct PointYX
{
    int16_t y, x;
};
static_assert(sizeof(PointYX) == 4);

/// A box among a record's parameters.
struct RECT16
{
    int16_t bottom, right, top, left;
};
static_assert(sizeof(RECT16) == 8);

/// Of lopnWidth only x counts.
struct LOGPEN16
{
    uint16_t lopnStyle;
    POINTS lopnWidth;
    Unaligned32 lopnColor;
};
static_assert(sizeof(LOGPEN16) == 10);

struct LOGBRUSH16
{
    uint16_t lbStyle;
    Unaligned32 lbColor;
    uint16_t lbHatch;
};
static_assert(sizeof(LOGBRUSH16) == 8);

/// Followed by the face name: 8-bit characters up to a zero, 32 of them at most.
struct FONTSPEC
{
    int16_t lfHeight;
    int16_t lfWidth;
    int16_t lfEscapement; ///< tenths of a degree, as lfOrientation
    int16_t lfOrientation;
    int16_t lfWeight;
    uint8_t lfItalic;
    uint8_t lfUnderline;
    uint8_t lfStrikeOut;
    uint8_t lfCharSet;
    uint8_t lfOutPrecision;
    uint8_t lfClipPrecision;
    uint8_t lfQuality;
    uint8_t lfPitchAndFamily;
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
    uint16_t ihObject;
};
static_assert(sizeof(WMRSELECTOBJECT) == 8);

/// Polyline and polygon. Followed by cpts POINTS.
struct WMRPOLYLINE
{
    WMR wmr;
    int16_t cpts;
};
static_assert(sizeof(WMRPOLYLINE) == 8);

/// Poly-polygon. Followed by nPolys counts of 16 bits and then the POINTS of all polygons.
struct WMRPOLYPOLYLINE
{
    WMR wmr;
    uint16_t nPolys;
};
static_assert(sizeof(WMRPOLYPOLYLINE) == 8);

/// Followed by a rectangle (left, top, right, bottom) where fuOptions asks for one, the cChars
/// 8-bit characters and an optional array of advances.
struct WMREXTTEXTOUT
{
    WMR wmr;
    PointYX ptReference;
    int16_t cChars;
    uint16_t fuOptions;
};
static_assert(sizeof(WMREXTTEXTOUT) == 14);

/// Parts of the records that transfer bitmaps: the head, what is taken of the bitmap, where it
/// goes.
struct TransferHead
{
    WMR wmr;
    Unaligned32 dwRop;
};
struct TransferUsage
{
    uint16_t iUsage;
};
struct SourceSize
{
    int16_t cySrc, cxSrc;
};
struct SourcePlace
{
    int16_t ySrc, xSrc;
};
struct TransferTarget
{
    int16_t cyDest, cxDest, yDest, xDest;
};

struct WMRPATBLT : TransferHead, TransferTarget
{
};
static_assert(sizeof(WMRPATBLT) == 18);

/// Bit-blit with a bitmap. The bitmap starts at kBitmapOffset, so the last two words, which the
/// reader distinguishes, are its first ones.
struct WMRBITBLT : TransferHead, SourcePlace, TransferTarget
{
    static constexpr int64_t kBitmapOffset = 22;

    uint16_t word22;
    uint16_t word24;
};
static_assert(sizeof(WMRBITBLT) == 26);

/// Stretch-device-independent-bits. Followed by the bitmap.
struct WMRSTRETCHBLT : TransferHead, TransferUsage, SourceSize, SourcePlace, TransferTarget
{
};
static_assert(sizeof(WMRSTRETCHBLT) == 28);

/// Device-independent stretch-blit. Followed by the bitmap.
struct WMRDIBSTRETCHBLT : TransferHead, SourceSize, SourcePlace, TransferTarget
{
};
static_assert(sizeof(WMRDIBSTRETCHBLT) == 26);

} // namespace svgtool
