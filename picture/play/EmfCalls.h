#pragma once

#include "core/base/Bytes.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/play/EmfFields.h"
#include "picture/play/RecordCalls.h"

namespace svgtool::picture::emf {

// One function a record: it reads the fields and makes the call. Nothing of the record is trusted;
// a record that is too short reads as if zeros followed, and one whose counts do not fit is
// refused.

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

/// A box and two points that end an arc of its ellipse.
template<auto Call>
Played arc(DeviceContext &dc, ByteView record)
{
    Fields fields(record, kBody);
    const RectD box = takeBox(fields);
    const PointD start = takePoint(fields), end = takePoint(fields);
    return (dc.*Call)(box, start, end);
}

// State: EmfCalls_State.cpp.
inline constexpr RecordCall restoreState = playInt<Format, &DeviceContext::restoreState>;
Played setTextJustification(DeviceContext &dc, ByteView record);
Played scaleWindowExtent(DeviceContext &dc, ByteView record);
Played scaleViewportExtent(DeviceContext &dc, ByteView record);
Played setWorldTransform(DeviceContext &dc, ByteView record);
Played modifyWorldTransform(DeviceContext &dc, ByteView record);
Played setMiterLimit(DeviceContext &dc, ByteView record);
Played selectClipRegion(DeviceContext &dc, ByteView record);

// Objects: EmfCalls_Objects.cpp.
Played createPen(DeviceContext &dc, ByteView record);
Played createBrush(DeviceContext &dc, ByteView record);
Played extCreatePen(DeviceContext &dc, ByteView record);
Played createFont(DeviceContext &dc, ByteView record);
Played createOther(DeviceContext &dc, ByteView record);
Played createPalette(DeviceContext &dc, ByteView record);
Played setPaletteEntries(DeviceContext &dc, ByteView record);
Played resizePalette(DeviceContext &dc, ByteView record);

// Figures: EmfCalls_Figures.cpp.
using PointsCall = Played (DeviceContext::*)(std::span<const PointD> points);
using FiguresCall = Played (DeviceContext::*)(std::span<const PointD> points,
                                              std::span<const uint32_t> counts);
enum class Width { Long, Short }; ///< of a coordinate, 32 or 16 bits

Played playPoints(DeviceContext &dc, ByteView record, Width width, PointsCall call);
Played playFigures(DeviceContext &dc, ByteView record, Width width, FiguresCall call);
Played playPolyDraw(DeviceContext &dc, ByteView record, Width width);

template<Width width, PointsCall Call>
Played points(DeviceContext &dc, ByteView record)
{
    return playPoints(dc, record, width, Call);
}
template<Width width, FiguresCall Call>
Played figures(DeviceContext &dc, ByteView record)
{
    return playFigures(dc, record, width, Call);
}
template<Width width>
Played polyDraw(DeviceContext &dc, ByteView record)
{
    return playPolyDraw(dc, record, width);
}
Played setPixel(DeviceContext &dc, ByteView record);
Played roundRectangle(DeviceContext &dc, ByteView record);
Played angleArc(DeviceContext &dc, ByteView record);
Played floodFill(DeviceContext &dc, ByteView record);
Played fillRegion(DeviceContext &dc, ByteView record);
Played frameRegion(DeviceContext &dc, ByteView record);
Played paintRegion(DeviceContext &dc, ByteView record);
Played invertRegion(DeviceContext &dc, ByteView record);

// Bitmaps: EmfCalls_Bitmaps.cpp.
Played bitBlt(DeviceContext &dc, ByteView record);
Played stretchBlt(DeviceContext &dc, ByteView record);
Played setDibitsToDevice(DeviceContext &dc, ByteView record);
Played stretchDibits(DeviceContext &dc, ByteView record);
Played maskBlt(DeviceContext &dc, ByteView record);
Played plgBlt(DeviceContext &dc, ByteView record);
Played transparentBlt(DeviceContext &dc, ByteView record);
Played alphaBlend(DeviceContext &dc, ByteView record);
Played gradientFill(DeviceContext &dc, ByteView record);
Played createMonoBrush(DeviceContext &dc, ByteView record);
Played createDibBrush(DeviceContext &dc, ByteView record);

// Text: EmfCalls_Text.cpp.
enum class Encoding { Unicode, Bytes }; ///< of a text: UTF-16, or of the font's character set

Played playTextOut(DeviceContext &dc, ByteView record, Encoding encoding);
Played playPolyTextOut(DeviceContext &dc, ByteView record, Encoding encoding);

template<Encoding encoding>
Played textOut(DeviceContext &dc, ByteView record)
{
    return playTextOut(dc, record, encoding);
}
template<Encoding encoding>
Played polyTextOut(DeviceContext &dc, ByteView record)
{
    return playPolyTextOut(dc, record, encoding);
}
Played smallTextOut(DeviceContext &dc, ByteView record);

} // namespace svgtool::picture::emf
