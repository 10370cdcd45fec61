#pragma once

#include "core/records/GdiStructures.h"

#include <cstdint>

namespace svgtool {

// The records of enhanced metafiles that draw figures and set the state of drawing.

/// Head of every record.
struct EMR
{
    uint32_t iType;
    uint32_t nSize; ///< bytes of the whole record, this head included
};
static_assert(sizeof(EMR) == 8);

/// The part of the header record that every version has. Extensions, the description and the
/// palette may follow; nSize tells where the next record starts.
struct ENHMETAHEADER
{
    uint32_t iType;
    uint32_t nSize;
    RECTL rclBounds; ///< device units
    RECTL rclFrame; ///< 0.01 mm
    uint32_t dSignature;
    uint32_t nVersion;
    uint32_t nBytes;
    uint32_t nRecords;
    uint16_t nHandles;
    uint16_t sReserved;
    uint32_t nDescription;
    uint32_t offDescription;
    uint32_t nPalEntries;
    SIZEL szlDevice; ///< pixels
    SIZEL szlMillimeters;
};
static_assert(sizeof(ENHMETAHEADER) == 88);

constexpr uint32_t kEmfSignature = 0x464D4520; ///< dSignature: " EMF"

struct EMRMOVETOEX
{
    EMR emr;
    POINTL ptl;
};
static_assert(sizeof(EMRMOVETOEX) == 16);
using EMRLINETO = EMRMOVETOEX;

struct EMRELLIPSE
{
    EMR emr;
    RECTL rclBox;
};
static_assert(sizeof(EMRELLIPSE) == 24);
using EMRRECTANGLE = EMRELLIPSE;

struct EMRROUNDRECT
{
    EMR emr;
    RECTL rclBox;
    SIZEL szlCorner;
};
static_assert(sizeof(EMRROUNDRECT) == 32);

struct EMRARC
{
    EMR emr;
    RECTL rclBox;
    POINTL ptlStart;
    POINTL ptlEnd;
};
static_assert(sizeof(EMRARC) == 40);
using EMRARCTO = EMRARC;
using EMRCHORD = EMRARC;
using EMRPIE = EMRARC;

struct EMRANGLEARC
{
    EMR emr;
    POINTL ptlCenter;
    uint32_t nRadius;
    float eStartAngle; ///< degrees, as eSweepAngle
    float eSweepAngle;
};
static_assert(sizeof(EMRANGLEARC) == 28);

/// Followed by cptl POINTL.
struct EMRPOLYLINE
{
    EMR emr;
    RECTL rclBounds;
    uint32_t cptl;
};
static_assert(sizeof(EMRPOLYLINE) == 28);
using EMRPOLYGON = EMRPOLYLINE;
using EMRPOLYLINETO = EMRPOLYLINE;
using EMRPOLYBEZIER = EMRPOLYLINE;
using EMRPOLYBEZIERTO = EMRPOLYLINE;

/// Followed by cpts POINTS.
struct EMRPOLYLINE16
{
    EMR emr;
    RECTL rclBounds;
    uint32_t cpts;
};
static_assert(sizeof(EMRPOLYLINE16) == 28);
using EMRPOLYGON16 = EMRPOLYLINE16;
using EMRPOLYLINETO16 = EMRPOLYLINE16;
using EMRPOLYBEZIER16 = EMRPOLYLINE16;
using EMRPOLYBEZIERTO16 = EMRPOLYLINE16;

/// Followed by cpts POINTS and then cpts bytes, the types of the points.
struct EMRPOLYDRAW16
{
    EMR emr;
    RECTL rclBounds;
    uint32_t cpts;
};
static_assert(sizeof(EMRPOLYDRAW16) == 28);

/// Followed by nPolys counts of 32 bits and then cptl POINTL.
struct EMRPOLYPOLYLINE
{
    EMR emr;
    RECTL rclBounds;
    uint32_t nPolys;
    uint32_t cptl;
};
static_assert(sizeof(EMRPOLYPOLYLINE) == 32);
using EMRPOLYPOLYGON = EMRPOLYPOLYLINE;

/// Followed by nPolys counts of 32 bits and then cpts POINTS.
struct EMRPOLYPOLYLINE16
{
    EMR emr;
    RECTL rclBounds;
    uint32_t nPolys;
    uint32_t cpts;
};
static_assert(sizeof(EMRPOLYPOLYLINE16) == 32);
using EMRPOLYPOLYGON16 = EMRPOLYPOLYLINE16;

struct EMRSETTEXTCOLOR
{
    EMR emr;
    COLORREF crColor;
};
static_assert(sizeof(EMRSETTEXTCOLOR) == 12);
using EMRSETBKCOLOR = EMRSETTEXTCOLOR;

struct EMRSELECTOBJECT
{
    EMR emr;
    uint32_t ihObject; ///< stock objects are 0x80000000 plus their number
};
static_assert(sizeof(EMRSELECTOBJECT) == 12);
using EMRDELETEOBJECT = EMRSELECTOBJECT;

struct EMRSETMAPMODE
{
    EMR emr;
    uint32_t iMode;
};
static_assert(sizeof(EMRSETMAPMODE) == 12);
using EMRSETBKMODE = EMRSETMAPMODE;
using EMRSETTEXTALIGN = EMRSETMAPMODE;
using EMRSELECTCLIPPATH = EMRSETMAPMODE;

struct EMRSETWINDOWORGEX
{
    EMR emr;
    POINTL ptlOrigin;
};
static_assert(sizeof(EMRSETWINDOWORGEX) == 16);
using EMRSETVIEWPORTORGEX = EMRSETWINDOWORGEX;

struct EMRSETWINDOWEXTEX
{
    EMR emr;
    SIZEL szlExtent;
};
static_assert(sizeof(EMRSETWINDOWEXTEX) == 16);
using EMRSETVIEWPORTEXTEX = EMRSETWINDOWEXTEX;

struct EMRSETWORLDTRANSFORM
{
    EMR emr;
    XFORM xform;
};
static_assert(sizeof(EMRSETWORLDTRANSFORM) == 32);

struct EMRMODIFYWORLDTRANSFORM
{
    EMR emr;
    XFORM xform;
    uint32_t iMode;
};
static_assert(sizeof(EMRMODIFYWORLDTRANSFORM) == 36);

} // namespace svgtool
