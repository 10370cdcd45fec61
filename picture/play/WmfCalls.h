#pragma once

#include "core/base/Bytes.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/play/RecordCalls.h"
#include "picture/play/WmfFields.h"

namespace svgtool::picture::wmf {

// One function a record, as for EMF: it reads the fields and makes the call. Numbers of objects
// are those of the file, which count from 0; the device context's are one more.

template<auto Call>
inline constexpr RecordCall plain = playPlain<Call>;
template<auto Call>
inline constexpr RecordCall number = playNumber<Format, Call>;
template<auto Call>
inline constexpr RecordCall color = playColor<Format, Call>;
template<auto Call>
inline constexpr RecordCall pair = playPair<Format, Call>;
template<auto Call>
inline constexpr RecordCall point = playPoint<Format, Call>;
template<auto Call>
inline constexpr RecordCall box = playBox<Format, Call>;

template<auto Call>
Played object(DeviceContext &dc, ByteView record)
{
    return (dc.*Call)(Fields(record, kBody).word() + 1u);
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
inline constexpr RecordCall restoreState = playInt<Format, &DeviceContext::restoreState>;
Played offsetWindowOrigin(DeviceContext &dc, ByteView record);
Played offsetViewportOrigin(DeviceContext &dc, ByteView record);
Played scaleWindowExtent(DeviceContext &dc, ByteView record);
Played scaleViewportExtent(DeviceContext &dc, ByteView record);
inline constexpr RecordCall setCharacterExtra = playInt<Format, &DeviceContext::setCharacterExtra>;
Played setJustification(DeviceContext &dc, ByteView record);

// Objects: WmfCalls_Objects.cpp.
Played createPen(DeviceContext &dc, ByteView record);
Played createBrush(DeviceContext &dc, ByteView record);
Played createFont(DeviceContext &dc, ByteView record);
Played createPalette(DeviceContext &dc, ByteView record);
Played setPaletteEntries(DeviceContext &dc, ByteView record);
Played resizePalette(DeviceContext &dc, ByteView record);
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
Played createPatternBrush(DeviceContext &dc, ByteView record);
Played dibBitBlt(DeviceContext &dc, ByteView record);
Played dibStretchBlt(DeviceContext &dc, ByteView record);
Played stretchDib(DeviceContext &dc, ByteView record);
Played setDibToDevice(DeviceContext &dc, ByteView record);

} // namespace svgtool::picture::wmf
