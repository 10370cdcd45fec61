#pragma once

#include <QtGlobal>

namespace svgtool {

// The GDI structures inside metafile records, as they lie in a file: 32-bit widths everywhere, also
// where the in-memory structure of a 64-bit host is wider. Every field stands on a multiple of its
// own size, so the natural layout is the packed one. Where an array or a text follows a structure,
// only the part of fixed size is declared and the comment says what follows.

using COLORREF = quint32; ///< 0x00BBGGRR

struct POINTL
{
    qint32 x, y;
};
static_assert(sizeof(POINTL) == 8);

struct POINT
{
    qint32 x, y;
};
static_assert(sizeof(POINT) == 8);

/// A point of the records whose names end in 16, and of WMF point arrays.
struct POINTS
{
    qint16 x, y;
};
static_assert(sizeof(POINTS) == 4);

struct SIZEL
{
    qint32 cx, cy;
};
static_assert(sizeof(SIZEL) == 8);

struct RECTL
{
    qint32 left, top, right, bottom;
};
static_assert(sizeof(RECTL) == 16);

struct RECT
{
    qint32 left, top, right, bottom;
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
    quint32 lbStyle;
    COLORREF lbColor;
    quint32 lbHatch;
};
static_assert(sizeof(LOGBRUSH) == 12);

/// Of lopnWidth only x counts.
struct LOGPEN
{
    quint32 lopnStyle;
    POINT lopnWidth;
    COLORREF lopnColor;
};
static_assert(sizeof(LOGPEN) == 16);

/// Followed by elpNumEntries lengths of dashes and gaps, 32 bits each.
struct EXTLOGPEN
{
    quint32 elpPenStyle;
    quint32 elpWidth;
    quint32 elpBrushStyle;
    COLORREF elpColor;
    quint32 elpHatch;
    quint32 elpNumEntries;
};
static_assert(sizeof(EXTLOGPEN) == 24);

/// The face name is UTF-16 and need not end in a zero.
struct LOGFONTW
{
    qint32 lfHeight;
    qint32 lfWidth;
    qint32 lfEscapement; ///< tenths of a degree, as lfOrientation
    qint32 lfOrientation;
    qint32 lfWeight;
    quint8 lfItalic;
    quint8 lfUnderline;
    quint8 lfStrikeOut;
    quint8 lfCharSet;
    quint8 lfOutPrecision;
    quint8 lfClipPrecision;
    quint8 lfQuality;
    quint8 lfPitchAndFamily;
    quint16 lfFaceName[32];
};
static_assert(sizeof(LOGFONTW) == 92);

struct PANOSE
{
    quint8 bFamilyType;
    quint8 bSerifStyle;
    quint8 bWeight;
    quint8 bProportion;
    quint8 bContrast;
    quint8 bStrokeVariation;
    quint8 bArmStyle;
    quint8 bLetterform;
    quint8 bMidline;
    quint8 bXHeight;
};
static_assert(sizeof(PANOSE) == 10);

struct EXTLOGFONTW
{
    LOGFONTW elfLogFont;
    quint16 elfFullName[64];
    quint16 elfStyle[32];
    quint32 elfVersion;
    quint32 elfStyleSize;
    quint32 elfMatch;
    quint32 elfReserved;
    quint8 elfVendorId[4];
    quint32 elfCulture;
    PANOSE elfPanose;
    quint16 padding;
};
static_assert(sizeof(EXTLOGFONTW) == 320);

struct BITMAPINFOHEADER
{
    quint32 biSize;
    qint32 biWidth;
    qint32 biHeight; ///< negative when the top line comes first
    quint16 biPlanes;
    quint16 biBitCount;
    quint32 biCompression;
    quint32 biSizeImage;
    qint32 biXPelsPerMeter;
    qint32 biYPelsPerMeter;
    quint32 biClrUsed;
    quint32 biClrImportant;
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
    quint32 dwSize;
    quint32 iType;
    quint32 nCount;
    quint32 nRgnSize;
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
