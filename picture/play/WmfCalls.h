#pragma once

#include "core/base/Bytes.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/play/WmfFields.h"

namespace svgtool::picture::wmf {

// One function a record, as for EMF: it reads the fields and makes the call. Numbers of objects
// are those of the file, which count from 0; the device context's are one more.

/// A record without fields.
template<auto Call>
Played plain(DeviceContext &dc, ByteView)
{
    return (dc.*Call)();
}

/// A record of one number.
template<auto Call>
Played number(DeviceContext &dc, ByteView record)
{
    return (dc.*Call)(Fields(record, kBody).word());
}

template<auto Call>
Played color(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return (dc.*Call)(dc.colorOfReference(fields.dword()));
}

template<auto Call>
Played object(DeviceContext &dc, ByteView record)
{
    return (dc.*Call)(Fields(record, kBody).word() + 1u);
}

template<auto Call>
Played pair(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return (dc.*Call)(takePair(fields));
}

template<auto Call>
Played point(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return (dc.*Call)(takePoint(fields));
}

template<auto Call>
Played box(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    return (dc.*Call)(takeBox(fields));
}

/// The box of a figure whose right and lower edge the call leaves out, as the device context takes
/// it: with the edges' last pixels on the outline. Nothing where it has no pixel.
std::optional<RectD> outlined(const DeviceContext &dc, const RectD &box);

/// A figure in a box.
template<auto Call>
Played figure(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const auto box = outlined(dc, takeBox(fields));
    return box ? (dc.*Call)(*box) : kDone;
}

/// An arc of the ellipse in a box: its end, its start, and the box.
template<auto Call>
Played arc(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const PointD end = takePoint(fields), start = takePoint(fields);
    const auto box = outlined(dc, takeBox(fields));
    return box ? (dc.*Call)(*box, start, end) : kDone;
}

// State: WmfCalls_State.cpp.
Played restoreState(DeviceContext &dc, ByteView record);
Played offsetWindowOrigin(DeviceContext &dc, ByteView record);
Played offsetViewportOrigin(DeviceContext &dc, ByteView record);
Played scaleWindowExtent(DeviceContext &dc, ByteView record);
Played scaleViewportExtent(DeviceContext &dc, ByteView record);
Played setCharacterExtra(DeviceContext &dc, ByteView record);
Played setJustification(DeviceContext &dc, ByteView record);

// Objects: WmfCalls_Objects.cpp.
Played createPen(DeviceContext &dc, ByteView record);
Played createBrush(DeviceContext &dc, ByteView record);
Played createFont(DeviceContext &dc, ByteView record);
Played createPalette(DeviceContext &dc, ByteView record);
Played createRegion(DeviceContext &dc, ByteView record);
Played createOther(DeviceContext &dc, ByteView record);

// Figures: WmfCalls_Figures.cpp.
Played polyline(DeviceContext &dc, ByteView record);
Played polygon(DeviceContext &dc, ByteView record);
Played polyPolygon(DeviceContext &dc, ByteView record);
Played roundRectangle(DeviceContext &dc, ByteView record);
Played setPixel(DeviceContext &dc, ByteView record);
Played floodFill(DeviceContext &dc, ByteView record);
Played extFloodFill(DeviceContext &dc, ByteView record);

// Regions of the object table.
Played selectObject(DeviceContext &dc, ByteView record);
Played selectClipRegion(DeviceContext &dc, ByteView record);
Played fillRegion(DeviceContext &dc, ByteView record);
Played frameRegion(DeviceContext &dc, ByteView record);
Played paintRegion(DeviceContext &dc, ByteView record);
Played invertRegion(DeviceContext &dc, ByteView record);

// Text: WmfCalls_Text.cpp.
Played textOut(DeviceContext &dc, ByteView record);
Played extTextOut(DeviceContext &dc, ByteView record);

// Bitmaps: WmfCalls_Bitmaps.cpp.
Played patBlt(DeviceContext &dc, ByteView record);
Played createDibBrush(DeviceContext &dc, ByteView record);
Played dibBitBlt(DeviceContext &dc, ByteView record);
Played dibStretchBlt(DeviceContext &dc, ByteView record);
Played stretchDib(DeviceContext &dc, ByteView record);
Played setDibToDevice(DeviceContext &dc, ByteView record);

} // namespace svgtool::picture::wmf
