#pragma once

#include "core/records/RecordType.h"

#include <algorithm>

namespace svgtool {

/// Numbers of the WMF record types ([MS-WMF] 2.1.1.1), and of the four that only older
/// descriptions have.
namespace Meta {
    // clang-format off
    enum Type : uint32_t {
        Eof = 0x0000, SaveDC = 0x001E, RealizePalette = 0x0035, SetPalEntries = 0x0037,
        CreatePalette = 0x00F7, CreateBrush = 0x00F8, SetBkMode = 0x0102, SetMapMode = 0x0103,
        SetRop2 = 0x0104, SetRelAbs = 0x0105, SetPolyFillMode = 0x0106, SetStretchBltMode = 0x0107,
        SetTextCharExtra = 0x0108, RestoreDC = 0x0127, InvertRegion = 0x012A, PaintRegion = 0x012B,
        SelectClipRegion = 0x012C, SelectObject = 0x012D, SetTextAlign = 0x012E,
        ResizePalette = 0x0139, DibCreatePatternBrush = 0x0142, SetLayout = 0x0149,
        DeleteObject = 0x01F0, CreatePatternBrush = 0x01F9, SetBkColor = 0x0201,
        SetTextColor = 0x0209, SetTextJustification = 0x020A, SetWindowOrg = 0x020B,
        SetWindowExt = 0x020C, SetViewportOrg = 0x020D, SetViewportExt = 0x020E,
        OffsetWindowOrg = 0x020F, OffsetViewportOrg = 0x0211, LineTo = 0x0213, MoveTo = 0x0214,
        OffsetClipRgn = 0x0220, FillRegion = 0x0228, SetMapperFlags = 0x0231,
        SelectPalette = 0x0234, CreatePenIndirect = 0x02FA, CreateFontIndirect = 0x02FB,
        CreateBrushIndirect = 0x02FC, CreateBitmapIndirect = 0x02FD, Polygon = 0x0324,
        Polyline = 0x0325, ScaleWindowExt = 0x0410, ScaleViewportExt = 0x0412,
        ExcludeClipRect = 0x0415, IntersectClipRect = 0x0416, Ellipse = 0x0418, FloodFill = 0x0419,
        Rectangle = 0x041B, SetPixel = 0x041F, FrameRegion = 0x0429, AnimatePalette = 0x0436,
        TextOut = 0x0521, PolyPolygon = 0x0538, ExtFloodFill = 0x0548, RoundRect = 0x061C,
        PatBlt = 0x061D, Escape = 0x0626, DrawText = 0x062F, CreateBitmap = 0x06FE,
        CreateRegion = 0x06FF, Arc = 0x0817, Pie = 0x081A, Chord = 0x0830, BitBlt = 0x0922,
        DibBitBlt = 0x0940, ExtTextOut = 0x0A32, StretchBlt = 0x0B23, DibStretchBlt = 0x0B41,
        SetDibToDev = 0x0D33, StretchDib = 0x0F43,
    };
    // clang-format on
} // namespace Meta

/// The one list of WMF record types, by number.
// clang-format off
inline constexpr RecordType kWmfRecordTypes[] = {
    { Meta::Eof, "META_EOF", 6, Loss::Hint },
    { Meta::SaveDC, "META_SAVEDC", 6, Loss::State },
    { Meta::RealizePalette, "META_REALIZEPALETTE", 6, Loss::Hint },
    { Meta::SetPalEntries, "META_SETPALENTRIES", 10, Loss::State },
    { Meta::CreatePalette, "META_CREATEPALETTE", 10, Loss::State },
    { Meta::CreateBrush, "META_CREATEBRUSH", 6, Loss::State },
    { Meta::SetBkMode, "META_SETBKMODE", 8, Loss::State },
    { Meta::SetMapMode, "META_SETMAPMODE", 8, Loss::State },
    { Meta::SetRop2, "META_SETROP2", 8, Loss::State },
    { Meta::SetRelAbs, "META_SETRELABS", 6, Loss::Hint },
    { Meta::SetPolyFillMode, "META_SETPOLYFILLMODE", 8, Loss::State },
    { Meta::SetStretchBltMode, "META_SETSTRETCHBLTMODE", 8, Loss::State },
    { Meta::SetTextCharExtra, "META_SETTEXTCHAREXTRA", 8, Loss::State },
    { Meta::RestoreDC, "META_RESTOREDC", 8, Loss::State },
    { Meta::InvertRegion, "META_INVERTREGION", 8, Loss::Drawing },
    { Meta::PaintRegion, "META_PAINTREGION", 8, Loss::Drawing },
    { Meta::SelectClipRegion, "META_SELECTCLIPREGION", 8, Loss::State },
    { Meta::SelectObject, "META_SELECTOBJECT", 8, Loss::State },
    { Meta::SetTextAlign, "META_SETTEXTALIGN", 8, Loss::State },
    { Meta::ResizePalette, "META_RESIZEPALETTE", 8, Loss::State },
    { Meta::DibCreatePatternBrush, "META_DIBCREATEPATTERNBRUSH", 10, Loss::State },
    { Meta::SetLayout, "META_SETLAYOUT", 8, Loss::State },
    { Meta::DeleteObject, "META_DELETEOBJECT", 8, Loss::State },
    { Meta::CreatePatternBrush, "META_CREATEPATTERNBRUSH", 10, Loss::State },
    { Meta::SetBkColor, "META_SETBKCOLOR", 10, Loss::State },
    { Meta::SetTextColor, "META_SETTEXTCOLOR", 10, Loss::State },
    { Meta::SetTextJustification, "META_SETTEXTJUSTIFICATION", 10, Loss::State },
    { Meta::SetWindowOrg, "META_SETWINDOWORG", 10, Loss::State },
    { Meta::SetWindowExt, "META_SETWINDOWEXT", 10, Loss::State },
    { Meta::SetViewportOrg, "META_SETVIEWPORTORG", 10, Loss::State },
    { Meta::SetViewportExt, "META_SETVIEWPORTEXT", 10, Loss::State },
    { Meta::OffsetWindowOrg, "META_OFFSETWINDOWORG", 10, Loss::State },
    { Meta::OffsetViewportOrg, "META_OFFSETVIEWPORTORG", 10, Loss::State },
    { Meta::LineTo, "META_LINETO", 10, Loss::Drawing },
    { Meta::MoveTo, "META_MOVETO", 10, Loss::State },
    { Meta::OffsetClipRgn, "META_OFFSETCLIPRGN", 10, Loss::State },
    { Meta::FillRegion, "META_FILLREGION", 10, Loss::Drawing },
    { Meta::SetMapperFlags, "META_SETMAPPERFLAGS", 10, Loss::Hint },
    { Meta::SelectPalette, "META_SELECTPALETTE", 8, Loss::State },
    { Meta::CreatePenIndirect, "META_CREATEPENINDIRECT", 16, Loss::State },
    { Meta::CreateFontIndirect, "META_CREATEFONTINDIRECT", 24, Loss::State },
    { Meta::CreateBrushIndirect, "META_CREATEBRUSHINDIRECT", 14, Loss::State },
    { Meta::CreateBitmapIndirect, "META_CREATEBITMAPINDIRECT", 6, Loss::State },
    { Meta::Polygon, "META_POLYGON", 8, Loss::Drawing },
    { Meta::Polyline, "META_POLYLINE", 8, Loss::Drawing },
    { Meta::ScaleWindowExt, "META_SCALEWINDOWEXT", 14, Loss::State },
    { Meta::ScaleViewportExt, "META_SCALEVIEWPORTEXT", 14, Loss::State },
    { Meta::ExcludeClipRect, "META_EXCLUDECLIPRECT", 14, Loss::State },
    { Meta::IntersectClipRect, "META_INTERSECTCLIPRECT", 14, Loss::State },
    { Meta::Ellipse, "META_ELLIPSE", 14, Loss::Drawing },
    { Meta::FloodFill, "META_FLOODFILL", 14, Loss::Drawing },
    { Meta::Rectangle, "META_RECTANGLE", 14, Loss::Drawing },
    { Meta::SetPixel, "META_SETPIXEL", 14, Loss::Drawing },
    { Meta::FrameRegion, "META_FRAMEREGION", 14, Loss::Drawing },
    { Meta::AnimatePalette, "META_ANIMATEPALETTE", 10, Loss::State },
    { Meta::TextOut, "META_TEXTOUT", 12, Loss::Drawing },
    { Meta::PolyPolygon, "META_POLYPOLYGON", 8, Loss::Drawing },
    { Meta::ExtFloodFill, "META_EXTFLOODFILL", 16, Loss::Drawing },
    { Meta::RoundRect, "META_ROUNDRECT", 18, Loss::Drawing },
    { Meta::PatBlt, "META_PATBLT", 18, Loss::Drawing },
    { Meta::Escape, "META_ESCAPE", 10, Loss::Hint },
    { Meta::DrawText, "META_DRAWTEXT", 6, Loss::Drawing },
    { Meta::CreateBitmap, "META_CREATEBITMAP", 6, Loss::State },
    { Meta::CreateRegion, "META_CREATEREGION", 26, Loss::State },
    { Meta::Arc, "META_ARC", 22, Loss::Drawing },
    { Meta::Pie, "META_PIE", 22, Loss::Drawing },
    { Meta::Chord, "META_CHORD", 22, Loss::Drawing },
    { Meta::BitBlt, "META_BITBLT", 22, Loss::Drawing },
    { Meta::DibBitBlt, "META_DIBBITBLT", 22, Loss::Drawing },
    { Meta::ExtTextOut, "META_EXTTEXTOUT", 14, Loss::Drawing },
    { Meta::StretchBlt, "META_STRETCHBLT", 26, Loss::Drawing },
    { Meta::DibStretchBlt, "META_DIBSTRETCHBLT", 26, Loss::Drawing },
    { Meta::SetDibToDev, "META_SETDIBTODEV", 24, Loss::Drawing },
    { Meta::StretchDib, "META_STRETCHDIB", 28, Loss::Drawing },
};
// clang-format on
static_assert(std::ranges::is_sorted(kWmfRecordTypes, {}, &RecordType::number));

} // namespace svgtool
