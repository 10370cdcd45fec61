#include "picture/play/TextCharacters.h"

#include "core/base/Numeric.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/WmfRecordTypes.h"
#include "core/text/CharacterSet.h"
#include "core/text/FaceNames.h"
#include "core/text/SymbolFonts.h"

#include <algorithm>

namespace svgtool::picture {

// Of a character of two bytes, the advances of both count.
static void joinPairs(TextCharacters &text, ByteView bytes, uint8_t charSet)
{
    size_t to = 0;
    for (int64_t i = 0; i < bytes.size && to < text.units.size(); ++to) {
        const int64_t length = characterLength(tail(bytes, i), charSet);
        for (auto *values : { &text.advances, &text.rises }) {
            if (values->empty())
                continue;
            int32_t sum = 0;
            for (int64_t j = i; j < i + length; ++j)
                sum = wrapAdd(sum, (*values)[size_t(j)]);
            (*values)[to] = sum;
        }
        i += length;
    }
    for (auto *values : { &text.advances, &text.rises })
        values->resize(std::min(values->size(), to));
}

// Fonts that do not tell have the character set of the system; but what they are called may tell,
// also where an old program calls any set ANSI. The bytes of a symbol font are codes of its own,
// whatever set is asked for.
uint8_t textCharSet(const Font &font)
{
    if (symbolFont(font.face) != SymbolFont::None)
        return CharSet::kSymbol;
    const FaceName name = readFaceName(font.face);
    const bool isOneScript = name.family.size() < font.face.size();
    if (font.charSet == CharSet::kDefault)
        return name.charSet;
    return font.charSet == CharSet::kAnsi && isOneScript ? name.charSet : font.charSet;
}

void decodeCharacters(TextCharacters &text, ByteView bytes, DeviceContext &dc)
{
    uint8_t charSet = dc.state().font->charSet;
    if (charSet == CharSet::kDefault)
        charSet = dc.systemCharSet();
    text.units = decodeAsGdi(bytes, charSet);
    if (int64_t(text.units.size()) != bytes.size)
        joinPairs(text, bytes, charSet);
}

std::u16string decodeFace(ByteView bytes, uint8_t charSet)
{
    constexpr uint8_t kEastern[] = { CharSet::kShiftJis, CharSet::kHangul, CharSet::kGb2312,
                                     CharSet::kChineseBig5 };
    for (const uint8_t each : kEastern) {
        std::u16string name = decodeAsGdi(bytes, each);
        if (readFaceName(name).charSet == each)
            return name;
    }
    return decodeAsGdi(bytes, charSet == CharSet::kSymbol ? CharSet::kAnsi : charSet);
}

uint8_t systemCharSet(RecordRecovery records, MetafileFormat format)
{
    const bool isEmf = format == MetafileFormat::Emf;
    const uint32_t createsFont =
            isEmf ? uint32_t(Emr::ExtCreateFontIndirectW) : uint32_t(Meta::CreateFontIndirect);
    const int64_t offset = isEmf ? 12 + 23 : 6 + 13; // of the character set
    while (const auto record = records.next()) {
        const auto byte = slice(record->bytes, offset, 1);
        if (record->type != createsFont || !byte)
            continue;
        const auto charSet = uint8_t(byte->data[0]);
        if (charSet >= CharSet::kShiftJis && charSet != CharSet::kOem)
            return charSet;
    }
    return CharSet::kAnsi;
}

} // namespace svgtool::picture
