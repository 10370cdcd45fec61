#include "core/text/FaceNames.h"

#include <algorithm>
#include <iterator>

namespace svgtool {

namespace {

    // What follows the name of a face in the list of fonts for one script of it.
    struct Script
    {
        std::u16string_view suffix;
        uint8_t charSet;
    };
    constexpr Script kScripts[] = {
        { u" ce", CharSet::kEastEurope },
        { u" cyr", CharSet::kRussian },
        { u" cyrillic", CharSet::kRussian },
        { u" greek", CharSet::kGreek },
        { u" tur", CharSet::kTurkish },
        { u" baltic", CharSet::kBaltic },
        { u" (hebrew)", CharSet::kHebrew },
        { u" (arabic)", CharSet::kArabic },
        { u" (vietnamese)", CharSet::kVietnamese },
        { u" (thai)", CharSet::kThai },
    };

    // Faces of one character set; those of the Far East by their names in English and in the
    // language itself.
    struct OneSetFace
    {
        std::u16string_view name, own;
        uint8_t charSet;
    };
    constexpr OneSetFace kOneSetFaces[] = {
        { u"Terminal", {}, CharSet::kOem },
        { u"MS Gothic", u"ＭＳ ゴシック", CharSet::kShiftJis },
        { u"MS PGothic", u"ＭＳ Ｐゴシック", CharSet::kShiftJis },
        { u"MS UI Gothic", {}, CharSet::kShiftJis },
        { u"MS Mincho", u"ＭＳ 明朝", CharSet::kShiftJis },
        { u"MS PMincho", u"ＭＳ Ｐ明朝", CharSet::kShiftJis },
        { u"Meiryo", u"メイリオ", CharSet::kShiftJis },
        { u"Meiryo UI", {}, CharSet::kShiftJis },
        { u"Yu Gothic", u"游ゴシック", CharSet::kShiftJis },
        { u"Yu Mincho", u"游明朝", CharSet::kShiftJis },
        { u"Gulim", u"굴림", CharSet::kHangul },
        { u"GulimChe", u"굴림체", CharSet::kHangul },
        { u"Dotum", u"돋움", CharSet::kHangul },
        { u"DotumChe", u"돋움체", CharSet::kHangul },
        { u"Batang", u"바탕", CharSet::kHangul },
        { u"BatangChe", u"바탕체", CharSet::kHangul },
        { u"Gungsuh", u"궁서", CharSet::kHangul },
        { u"GungsuhChe", u"궁서체", CharSet::kHangul },
        { u"Malgun Gothic", u"맑은 고딕", CharSet::kHangul },
        { u"SimSun", u"宋体", CharSet::kGb2312 },
        { u"NSimSun", u"新宋体", CharSet::kGb2312 },
        { u"SimHei", u"黑体", CharSet::kGb2312 },
        { u"KaiTi", u"楷体", CharSet::kGb2312 },
        { u"KaiTi_GB2312", u"楷体_GB2312", CharSet::kGb2312 },
        { u"FangSong", u"仿宋", CharSet::kGb2312 },
        { u"FangSong_GB2312", u"仿宋_GB2312", CharSet::kGb2312 },
        { u"Microsoft YaHei", u"微软雅黑", CharSet::kGb2312 },
        { u"Microsoft YaHei UI", {}, CharSet::kGb2312 },
        { u"DengXian", u"等线", CharSet::kGb2312 },
        { u"MingLiU", u"細明體", CharSet::kChineseBig5 },
        { u"PMingLiU", u"新細明體", CharSet::kChineseBig5 },
        { u"DFKai-SB", u"標楷體", CharSet::kChineseBig5 },
        { u"Microsoft JhengHei", u"微軟正黑體", CharSet::kChineseBig5 },
        { u"Microsoft JhengHei UI", {}, CharSet::kChineseBig5 },
    };

} // namespace

static char16_t folded(char16_t unit)
{
    return unit >= u'A' && unit <= u'Z' ? char16_t(unit + 32) : unit;
}

static bool isSameFace(std::u16string_view a, std::u16string_view b)
{
    return std::ranges::equal(a, b, {}, folded, folded);
}

std::u16string foldedFace(std::u16string_view face)
{
    std::u16string name(face);
    std::ranges::transform(name, name.begin(), folded);
    return name;
}

FaceName readFaceName(std::u16string_view face)
{
    for (const Script &each : kScripts) {
        const size_t length = each.suffix.size();
        if (face.size() > length && isSameFace(face.substr(face.size() - length), each.suffix))
            return { face.substr(0, face.size() - length), {}, each.charSet };
    }
    for (const OneSetFace &each : kOneSetFaces) {
        if (isSameFace(face, each.name))
            return { face, each.own, each.charSet };
        if (!face.empty() && face == each.own)
            return { face, each.name, each.charSet };
    }
    return { face, {}, CharSet::kDefault };
}

} // namespace svgtool
