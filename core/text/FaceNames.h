#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace svgtool {

/// Character sets that are spoken of by name, [MS-WMF] 2.1.1.5.
namespace CharSet {
    inline constexpr uint8_t kAnsi = 0, kDefault = 1, kSymbol = 2, kMac = 77, kShiftJis = 128,
                             kHangul = 129, kJohab = 130, kGb2312 = 134, kChineseBig5 = 136,
                             kGreek = 161, kTurkish = 162, kVietnamese = 163, kHebrew = 177,
                             kArabic = 178, kBaltic = 186, kRussian = 204, kThai = 222,
                             kEastEurope = 238, kOem = 255;
}

/// What the name of a face tells.
struct FaceName
{
    std::u16string_view family; ///< without what names a character set: Arial of "Arial CE"
    std::u16string_view twin; ///< the name that it goes by elsewhere: 標楷體 of "DFKai-SB"
    uint8_t charSet = CharSet::kDefault; ///< that its texts have; kDefault where it does not tell
};

/// @param face  whatever the case of its letters from A to Z; the result's parts view it
FaceName readFaceName(std::u16string_view face);

/// With small letters for those from A to Z, by which faces are told apart.
std::u16string foldedFace(std::u16string_view face);

} // namespace svgtool
