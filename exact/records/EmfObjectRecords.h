#pragma once

#include "exact/records/EmfDrawingRecords.h"

namespace svgtool {

// The records of enhanced metafiles that create objects, write text, paint regions and copy
// bitmaps. Offsets in them count from the start of the record.

struct EMRCREATEBRUSHINDIRECT
{
    EMR emr;
    quint32 ihBrush;
    LOGBRUSH lb;
};
static_assert(sizeof(EMRCREATEBRUSHINDIRECT) == 24);

struct EMRCREATEPEN
{
    EMR emr;
    quint32 ihPen;
    LOGPEN lopn;
};
static_assert(sizeof(EMRCREATEPEN) == 28);

/// Followed by the lengths of elp; a bitmap may lie at offBmi.
struct EMREXTCREATEPEN
{
    EMR emr;
    quint32 ihPen;
    quint32 offBmi;
    quint32 cbBmi;
    quint32 offBits;
    quint32 cbBits;
    EXTLOGPEN elp;
};
static_assert(sizeof(EMREXTCREATEPEN) == 52);

/// Records may be shorter, ending after elfLogFont, or longer than this.
struct EMREXTCREATEFONTINDIRECTW
{
    EMR emr;
    quint32 ihFont;
    EXTLOGFONTW elfw;
};
static_assert(sizeof(EMREXTCREATEFONTINDIRECTW) == 332);

/// The UTF-16 characters lie at offString, their 32-bit advances at offDx.
struct EMRTEXT
{
    POINTL ptlReference;
    quint32 nChars;
    quint32 offString;
    quint32 fOptions;
    RECTL rcl;
    quint32 offDx;
};
static_assert(sizeof(EMRTEXT) == 40);

struct EMREXTTEXTOUTW
{
    EMR emr;
    RECTL rclBounds;
    quint32 iGraphicsMode;
    float exScale;
    float eyScale;
    EMRTEXT emrtext;
};
static_assert(sizeof(EMREXTTEXTOUTW) == 76);

/// Followed by a RECTL, which fuOptions may leave out, and then cChars characters of the width
/// that fuOptions tells.
struct EMRSMALLTEXTOUT
{
    EMR emr;
    POINTL ptlReference;
    quint32 cChars;
    quint32 fuOptions;
    quint32 iGraphicsMode;
    float exScale;
    float eyScale;
};
static_assert(sizeof(EMRSMALLTEXTOUT) == 36);

/// Followed by cbRgnData bytes of RGNDATA.
struct EMRFILLRGN
{
    EMR emr;
    RECTL rclBounds;
    quint32 cbRgnData;
    quint32 ihBrush;
};
static_assert(sizeof(EMRFILLRGN) == 32);

/// Followed by cbRgnData bytes of RGNDATA.
struct EMRFRAMERGN
{
    EMR emr;
    RECTL rclBounds;
    quint32 cbRgnData;
    quint32 ihBrush;
    SIZEL szlStroke;
};
static_assert(sizeof(EMRFRAMERGN) == 40);

/// Followed by cbRgnData bytes of RGNDATA.
struct EMREXTSELECTCLIPRGN
{
    EMR emr;
    quint32 cbRgnData;
    quint32 iMode;
};
static_assert(sizeof(EMREXTSELECTCLIPRGN) == 16);

struct EMRBITBLT
{
    EMR emr;
    RECTL rclBounds;
    qint32 xDest, yDest, cxDest, cyDest;
    quint32 dwRop;
    qint32 xSrc, ySrc;
    XFORM xformSrc;
    COLORREF crBkColorSrc;
    quint32 iUsageSrc;
    quint32 offBmiSrc, cbBmiSrc;
    quint32 offBitsSrc, cbBitsSrc;
};
static_assert(sizeof(EMRBITBLT) == 100);

struct EMRSTRETCHBLT
{
    EMR emr;
    RECTL rclBounds;
    qint32 xDest, yDest, cxDest, cyDest;
    quint32 dwRop;
    qint32 xSrc, ySrc;
    XFORM xformSrc;
    COLORREF crBkColorSrc;
    quint32 iUsageSrc;
    quint32 offBmiSrc, cbBmiSrc;
    quint32 offBitsSrc, cbBitsSrc;
    qint32 cxSrc, cySrc;
};
static_assert(sizeof(EMRSTRETCHBLT) == 108);

/// Its dwRop is the transparent colour.
using EMRTRANSPARENTBLT = EMRSTRETCHBLT;

struct EMRMASKBLT
{
    EMR emr;
    RECTL rclBounds;
    qint32 xDest, yDest, cxDest, cyDest;
    quint32 dwRop;
    qint32 xSrc, ySrc;
    XFORM xformSrc;
    COLORREF crBkColorSrc;
    quint32 iUsageSrc;
    quint32 offBmiSrc, cbBmiSrc;
    quint32 offBitsSrc, cbBitsSrc;
    qint32 xMask, yMask;
    quint32 iUsageMask;
    quint32 offBmiMask, cbBmiMask;
    quint32 offBitsMask, cbBitsMask;
};
static_assert(sizeof(EMRMASKBLT) == 128);

struct EMRSTRETCHDIBITS
{
    EMR emr;
    RECTL rclBounds;
    qint32 xDest, yDest;
    qint32 xSrc, ySrc, cxSrc, cySrc;
    quint32 offBmiSrc, cbBmiSrc;
    quint32 offBitsSrc, cbBitsSrc;
    quint32 iUsageSrc;
    quint32 dwRop;
    qint32 cxDest, cyDest;
};
static_assert(sizeof(EMRSTRETCHDIBITS) == 80);

} // namespace svgtool
