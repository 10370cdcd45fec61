#pragma once

#include <cstdint>

namespace svgtool {

// The GDI structures inside metafile records, as they lie in a file: 32-bit widths everywhere, also
// where the in-memory structure of a 64-bit host is wider. Every field stands on a multiple of its
// own size, so the natural layout is the packed one. Where an array or a text follows a structure,
// only the part of fixed size is declared and the comment says what follows.

using COLORREF = uint32_t; ///< 0x00BBGGRR

struct POINTL
{
    int32_t x, y;
};
static_assert(sizeof(POINTL) == 8);

struct POINT
{
    int32_t x, y;
};
static_assert(sizeof(POINT) == 8);

/// A point of the records whose names end in 16, and of WMF point arrays.
struct POINTS
{
    int16_t x, y;
};
static_assert(sizeof(POINTS) == 4);

struct SIZEL
{
    int32_t cx, cy;
};
static_assert(sizeof(SIZEL) == 8);

struct RECTL
{
    int32_t left, top, right, bottom;
};
static_assert(sizeof(RECTL) == 16);

struct RECT
{
    int32_t left, top, right, bottom;
};
static_assert(sizeof(RECT) == 16);

/// x' = eM11 x + eM21 y + eDx, y' = eM12 x + eM22 y + eDy.
struct XFORM
{
    float eM11, eM12, eM21, eM22, eDx, eDy;
};
static_assert(sizeof(XFORM) == 24);

struct LOGBRUSH
{
    uint32_t lbStyle;
    COLORREF lbColor;
    uint32_t lbHatch;
};
static_assert(sizeof(LOGBRUSH) == 12);

/// Of lopnWidth only x counts.
struct LOGPEN
{
    uint32_t lopnStyle;
    POINT lopnWidth;
    COLORREF lopnColor;
};
static_assert(sizeof(LOGPEN) == 16);

/// Followed by elpNumEntries lengths of dashes and gaps, 32 bits each.
struct EXTLOGPEN
{
    uint32_t elpPenStyle;
    uint32_t elpWidth;
    uint32_t elpBrushStyle;
    COLORREF elpColor;
    uint32_t elpHatch;
    uint32_t elpNumEntries;
};
static_assert(sizeof(EXTLOGPEN) == 24);

/// The face name is UTF-16 and need not end in a zero.
struct LOGFONTW
{
    int32_t lfHeight;
    int32_t lfWidth;
    int32_t lfEscapement; ///< tenths of a degree, as lfOrientation
    int32_t lfOrientation;
    int32_t lfWeight;
    uint8_t lfItalic;
    uint8_t lfUnderline;
    uint8_t lfStrikeOut;
    uint8_t lfCharSet;
    uint8_t lfOutPrecision;
    uint8_t lfClipPrecision;
    uint8_t lfQuality;
    uint8_t lfPitchAndFamily;
    uint16_t lfFaceName[32];
};
static_assert(sizeof(LOGFONTW) == 92);

struct PANOSE
{
    uint8_t bFamilyType;
    uint8_t bSerifStyle;
    uint8_t bWeight;
    uint8_t bProportion;
    uint8_t bContrast;
    uint8_t bStrokeVariation;
    uint8_t bArmStyle;
    uint8_t bLetterform;
    uint8_t bMidline;
    uint8_t bXHeight;
};
static_assert(sizeof(PANOSE) == 10);

struct EXTLOGFONTW
{
    LOGFONTW elfLogFont;
    uint16_t elfFullName[64];
    uint16_t elfStyle[32];
    uint32_t elfVersion;
    uint32_t elfStyleSize;
    uint32_t elfMatch;
    uint32_t elfReserved;
    uint8_t elfVendorId[4];
    uint32_t elfCulture;
    PANOSE elfPanose;
    uint16_t padding;
};
static_assert(sizeof(EXTLOGFONTW) == 320);

struct BITMAPINFOHEADER
{
    uint32_t biSize;
    int32_t biWidth;
    int32_t biHeight; ///< negative when the top line comes first
    uint16_t biPlanes;
    uint16_t biBitCount;
    uint32_t biCompression;
    uint32_t biSizeImage;
    int32_t biXPelsPerMeter;
    int32_t biYPelsPerMeter;
    uint32_t biClrUsed;
    uint32_t biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

/// Followed by the colour table, four bytes an entry (blue, green, red, unused).
struct BITMAPINFO
{
    BITMAPINFOHEADER bmiHeader;
};
static_assert(sizeof(BITMAPINFO) == 40);

struct RGNDATAHEADER
{
    uint32_t dwSize;
    uint32_t iType;
    uint32_t nCount;
    uint32_t nRgnSize;
    RECT rcBound;
};
static_assert(sizeof(RGNDATAHEADER) == 32);

/// Followed by nCount RECT.
struct RGNDATA
{
    RGNDATAHEADER rdh;
};
static_assert(sizeof(RGNDATA) == 32);

} // namespace svgtool
