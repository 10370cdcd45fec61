#pragma once

#include "core/records/EmfDrawingRecords.h"

#include <cstdint>

namespace svgtool {

// The records of enhanced metafiles that create objects, write text, paint regions and copy
// bitmaps. Offsets in them count from the start of the record.

struct EMRCREATEBRUSHINDIRECT
{
    EMR emr;
    uint32_t ihBrush;
    LOGBRUSH lb;
};
static_assert(sizeof(EMRCREATEBRUSHINDIRECT) == 24);

struct EMRCREATEPEN
{
    EMR emr;
    uint32_t ihPen;
    LOGPEN lopn;
};
static_assert(sizeof(EMRCREATEPEN) == 28);

/// Followed by the lengths of elp; a bitmap may lie at offBmi.
struct EMREXTCREATEPEN
{
    EMR emr;
    uint32_t ihPen;
    uint32_t offBmi;
    uint32_t cbBmi;
    uint32_t offBits;
    uint32_t cbBits;
    EXTLOGPEN elp;
};
static_assert(sizeof(EMREXTCREATEPEN) == 52);

/// Records may be shorter, ending after elfLogFont, or longer than this.
struct EMREXTCREATEFONTINDIRECTW
{
    EMR emr;
    uint32_t ihFont;
    EXTLOGFONTW elfw;
};
static_assert(sizeof(EMREXTCREATEFONTINDIRECTW) == 332);

/// The UTF-16 characters lie at offString, their 32-bit advances at offDx.
struct EMRTEXT
{
    POINTL ptlReference;
    uint32_t nChars;
    uint32_t offString;
    uint32_t fOptions;
    RECTL rcl;
    uint32_t offDx;
};
static_assert(sizeof(EMRTEXT) == 40);

struct EMREXTTEXTOUTW
{
    EMR emr;
    RECTL rclBounds;
    uint32_t iGraphicsMode;
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
    uint32_t cChars;
    uint32_t fuOptions;
    uint32_t iGraphicsMode;
    float exScale;
    float eyScale;
};
static_assert(sizeof(EMRSMALLTEXTOUT) == 36);

/// Followed by cbRgnData bytes of RGNDATA.
struct EMRFILLRGN
{
    EMR emr;
    RECTL rclBounds;
    uint32_t cbRgnData;
    uint32_t ihBrush;
};
static_assert(sizeof(EMRFILLRGN) == 32);

/// Followed by cbRgnData bytes of RGNDATA.
struct EMRFRAMERGN
{
    EMR emr;
    RECTL rclBounds;
    uint32_t cbRgnData;
    uint32_t ihBrush;
    SIZEL szlStroke;
};
static_assert(sizeof(EMRFRAMERGN) == 40);

/// Followed by cbRgnData bytes of RGNDATA.
struct EMREXTSELECTCLIPRGN
{
    EMR emr;
    uint32_t cbRgnData;
    uint32_t iMode;
};
static_assert(sizeof(EMREXTSELECTCLIPRGN) == 16);

/// The other transfers from a device context begin with the same fields.
struct EMRBITBLT
{
    EMR emr;
    RECTL rclBounds;
    int32_t xDest, yDest, cxDest, cyDest;
    uint32_t dwRop;
    int32_t xSrc, ySrc;
    XFORM xformSrc;
    COLORREF crBkColorSrc;
    uint32_t iUsageSrc;
    uint32_t offBmiSrc, cbBmiSrc;
    uint32_t offBitsSrc, cbBitsSrc;
};
static_assert(sizeof(EMRBITBLT) == 100);

struct EMRSTRETCHBLT : EMRBITBLT
{
    int32_t cxSrc, cySrc;
};
static_assert(sizeof(EMRSTRETCHBLT) == 108);

/// Its dwRop is the transparent colour.
using EMRTRANSPARENTBLT = EMRSTRETCHBLT;

struct EMRMASKBLT : EMRBITBLT
{
    int32_t xMask, yMask;
    uint32_t iUsageMask;
    uint32_t offBmiMask, cbBmiMask;
    uint32_t offBitsMask, cbBitsMask;
};
static_assert(sizeof(EMRMASKBLT) == 128);

struct EMRSTRETCHDIBITS
{
    EMR emr;
    RECTL rclBounds;
    int32_t xDest, yDest;
    int32_t xSrc, ySrc, cxSrc, cySrc;
    uint32_t offBmiSrc, cbBmiSrc;
    uint32_t offBitsSrc, cbBitsSrc;
    uint32_t iUsageSrc;
    uint32_t dwRop;
    int32_t cxDest, cyDest;
};
static_assert(sizeof(EMRSTRETCHDIBITS) == 80);

} // namespace svgtool
