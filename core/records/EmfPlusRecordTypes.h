#pragma once

#include "core/records/RecordType.h"

#include <algorithm>

namespace svgtool {

/// Numbers of the EMF+ record types ([MS-EMFPLUS] 2.1.1.1).
namespace EmfPlus {
    // clang-format off
    enum Type : uint32_t {
        Header = 0x4001, EndOfFile = 0x4002, Comment = 0x4003, GetDC = 0x4004,
        MultiFormatStart = 0x4005, MultiFormatSection = 0x4006, MultiFormatEnd = 0x4007,
        Object = 0x4008, Clear = 0x4009, FillRects = 0x400A, DrawRects = 0x400B,
        FillPolygon = 0x400C, DrawLines = 0x400D, FillEllipse = 0x400E, DrawEllipse = 0x400F,
        FillPie = 0x4010, DrawPie = 0x4011, DrawArc = 0x4012, FillRegion = 0x4013,
        FillPath = 0x4014, DrawPath = 0x4015, FillClosedCurve = 0x4016, DrawClosedCurve = 0x4017,
        DrawCurve = 0x4018, DrawBeziers = 0x4019, DrawImage = 0x401A, DrawImagePoints = 0x401B,
        DrawString = 0x401C, SetRenderingOrigin = 0x401D, SetAntiAliasMode = 0x401E,
        SetTextRenderingHint = 0x401F, SetTextContrast = 0x4020, SetInterpolationMode = 0x4021,
        SetPixelOffsetMode = 0x4022, SetCompositingMode = 0x4023, SetCompositingQuality = 0x4024,
        Save = 0x4025, Restore = 0x4026, BeginContainer = 0x4027, BeginContainerNoParams = 0x4028,
        EndContainer = 0x4029, SetWorldTransform = 0x402A, ResetWorldTransform = 0x402B,
        MultiplyWorldTransform = 0x402C, TranslateWorldTransform = 0x402D,
        ScaleWorldTransform = 0x402E, RotateWorldTransform = 0x402F, SetPageTransform = 0x4030,
        ResetClip = 0x4031, SetClipRect = 0x4032, SetClipPath = 0x4033, SetClipRegion = 0x4034,
        OffsetClip = 0x4035, DrawDriverString = 0x4036, StrokeFillPath = 0x4037,
        SerializableObject = 0x4038, SetTSGraphics = 0x4039, SetTSClip = 0x403A,
    };
    // clang-format on
} // namespace EmfPlus

/// The one list of EMF+ record types, by number. Sizes include the head of 12 bytes.
// clang-format off
inline constexpr RecordType kEmfPlusRecordTypes[] = {
    { EmfPlus::Header, "EmfPlusHeader", 28, Loss::Hint },
    { EmfPlus::EndOfFile, "EmfPlusEndOfFile", 12, Loss::Hint },
    { EmfPlus::Comment, "EmfPlusComment", 12, Loss::Hint },
    { EmfPlus::GetDC, "EmfPlusGetDC", 12, Loss::Hint },
    { EmfPlus::MultiFormatStart, "EmfPlusMultiFormatStart", 12, Loss::Hint },
    { EmfPlus::MultiFormatSection, "EmfPlusMultiFormatSection", 12, Loss::Hint },
    { EmfPlus::MultiFormatEnd, "EmfPlusMultiFormatEnd", 12, Loss::Hint },
    { EmfPlus::Object, "EmfPlusObject", 12, Loss::State },
    { EmfPlus::Clear, "EmfPlusClear", 16, Loss::Drawing },
    { EmfPlus::FillRects, "EmfPlusFillRects", 20, Loss::Drawing },
    { EmfPlus::DrawRects, "EmfPlusDrawRects", 16, Loss::Drawing },
    { EmfPlus::FillPolygon, "EmfPlusFillPolygon", 20, Loss::Drawing },
    { EmfPlus::DrawLines, "EmfPlusDrawLines", 16, Loss::Drawing },
    { EmfPlus::FillEllipse, "EmfPlusFillEllipse", 24, Loss::Drawing },
    { EmfPlus::DrawEllipse, "EmfPlusDrawEllipse", 20, Loss::Drawing },
    { EmfPlus::FillPie, "EmfPlusFillPie", 32, Loss::Drawing },
    { EmfPlus::DrawPie, "EmfPlusDrawPie", 28, Loss::Drawing },
    { EmfPlus::DrawArc, "EmfPlusDrawArc", 28, Loss::Drawing },
    { EmfPlus::FillRegion, "EmfPlusFillRegion", 16, Loss::Drawing },
    { EmfPlus::FillPath, "EmfPlusFillPath", 16, Loss::Drawing },
    { EmfPlus::DrawPath, "EmfPlusDrawPath", 16, Loss::Drawing },
    { EmfPlus::FillClosedCurve, "EmfPlusFillClosedCurve", 24, Loss::Drawing },
    { EmfPlus::DrawClosedCurve, "EmfPlusDrawClosedCurve", 20, Loss::Drawing },
    { EmfPlus::DrawCurve, "EmfPlusDrawCurve", 28, Loss::Drawing },
    { EmfPlus::DrawBeziers, "EmfPlusDrawBeziers", 16, Loss::Drawing },
    { EmfPlus::DrawImage, "EmfPlusDrawImage", 44, Loss::Drawing },
    { EmfPlus::DrawImagePoints, "EmfPlusDrawImagePoints", 40, Loss::Drawing },
    { EmfPlus::DrawString, "EmfPlusDrawString", 40, Loss::Drawing },
    { EmfPlus::SetRenderingOrigin, "EmfPlusSetRenderingOrigin", 20, Loss::State },
    { EmfPlus::SetAntiAliasMode, "EmfPlusSetAntiAliasMode", 12, Loss::Hint },
    { EmfPlus::SetTextRenderingHint, "EmfPlusSetTextRenderingHint", 12, Loss::Hint },
    { EmfPlus::SetTextContrast, "EmfPlusSetTextContrast", 12, Loss::Hint },
    { EmfPlus::SetInterpolationMode, "EmfPlusSetInterpolationMode", 12, Loss::State },
    { EmfPlus::SetPixelOffsetMode, "EmfPlusSetPixelOffsetMode", 12, Loss::State },
    { EmfPlus::SetCompositingMode, "EmfPlusSetCompositingMode", 12, Loss::State },
    { EmfPlus::SetCompositingQuality, "EmfPlusSetCompositingQuality", 12, Loss::Hint },
    { EmfPlus::Save, "EmfPlusSave", 16, Loss::State },
    { EmfPlus::Restore, "EmfPlusRestore", 16, Loss::State },
    { EmfPlus::BeginContainer, "EmfPlusBeginContainer", 48, Loss::State },
    { EmfPlus::BeginContainerNoParams, "EmfPlusBeginContainerNoParams", 16, Loss::State },
    { EmfPlus::EndContainer, "EmfPlusEndContainer", 16, Loss::State },
    { EmfPlus::SetWorldTransform, "EmfPlusSetWorldTransform", 36, Loss::State },
    { EmfPlus::ResetWorldTransform, "EmfPlusResetWorldTransform", 12, Loss::State },
    { EmfPlus::MultiplyWorldTransform, "EmfPlusMultiplyWorldTransform", 36, Loss::State },
    { EmfPlus::TranslateWorldTransform, "EmfPlusTranslateWorldTransform", 20, Loss::State },
    { EmfPlus::ScaleWorldTransform, "EmfPlusScaleWorldTransform", 20, Loss::State },
    { EmfPlus::RotateWorldTransform, "EmfPlusRotateWorldTransform", 16, Loss::State },
    { EmfPlus::SetPageTransform, "EmfPlusSetPageTransform", 16, Loss::State },
    { EmfPlus::ResetClip, "EmfPlusResetClip", 12, Loss::State },
    { EmfPlus::SetClipRect, "EmfPlusSetClipRect", 28, Loss::State },
    { EmfPlus::SetClipPath, "EmfPlusSetClipPath", 12, Loss::State },
    { EmfPlus::SetClipRegion, "EmfPlusSetClipRegion", 12, Loss::State },
    { EmfPlus::OffsetClip, "EmfPlusOffsetClip", 20, Loss::State },
    { EmfPlus::DrawDriverString, "EmfPlusDrawDriverString", 28, Loss::Drawing },
    { EmfPlus::StrokeFillPath, "EmfPlusStrokeFillPath", 12, Loss::Drawing },
    { EmfPlus::SerializableObject, "EmfPlusSerializableObject", 32, Loss::State },
    { EmfPlus::SetTSGraphics, "EmfPlusSetTSGraphics", 48, Loss::State },
    { EmfPlus::SetTSClip, "EmfPlusSetTSClip", 12, Loss::State },
};
// clang-format on
static_assert(std::size(kEmfPlusRecordTypes) == 58);
static_assert(std::ranges::is_sorted(kEmfPlusRecordTypes, {}, &RecordType::number));

} // namespace svgtool
