#include "core/records/RecordType.h"

#include "core/records/EmfPlusRecordTypes.h"
#include "core/records/EmfRecordTypes.h"
#include "core/records/RecordTally.h"
#include "core/records/WmfRecordTypes.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace svgtool {

std::span<const RecordType> recordTypes(MetafileFormat format)
{
    switch (format) {
    case MetafileFormat::Emf:
        return kEmfRecordTypes;
    case MetafileFormat::Wmf:
    case MetafileFormat::PlaceableWmf:
        return kWmfRecordTypes;
    case MetafileFormat::Unknown:
        break;
    }
    return {};
}

const RecordType *findRecordType(std::span<const RecordType> types, uint32_t number)
{
    if (types.empty() || number < types.front().number)
        return nullptr;
    // Numbers of EMF types follow one another with few gaps: each stands at its distance from the
    // first, or a little before.
    constexpr size_t kGaps = 8;
    size_t place = number - types.front().number;
    if (place < types.size() + kGaps) {
        place = std::min(place, types.size() - 1);
        while (types[place].number > number)
            --place;
        return types[place].number == number ? &types[place] : nullptr;
    }
    const auto type = std::ranges::lower_bound(types, number, {}, &RecordType::number);
    return type != types.end() && type->number == number ? &*type : nullptr;
}

const RecordType *findRecordType(MetafileFormat format, uint32_t number)
{
    const RecordType *const type = findRecordType(recordTypes(format), number);
    return type == nullptr && format == MetafileFormat::Emf
            ? findRecordType(kEmfPlusRecordTypes, number)
            : type;
}

std::string recordName(MetafileFormat format, uint32_t number)
{
    if (number == RecordTally::kOtherTypes)
        return "other types";
    if (const RecordType *type = findRecordType(format, number))
        return type->name;
    const bool isEmf = format == MetafileFormat::Emf;
    std::array<char, 16> digits{};
    const auto end =
            std::to_chars(digits.data(), digits.data() + digits.size(), number, isEmf ? 10 : 16);
    return (isEmf ? "EMR " : "META 0x") + std::string(digits.data(), end.ptr);
}

} // namespace svgtool
