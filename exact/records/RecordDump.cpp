#include "exact/records/RecordDump.h"

#include "core/records/EmfRecordTypes.h"
#include "core/records/WmfRecordTypes.h"

#include <algorithm>

namespace svgtool {

std::string emfDumpLine(std::span<const RecordType> types, quint32 type)
{
    const RecordType *const found = findRecordType(types, type);
    if (found == nullptr)
        return {};
    std::string name = found->name;
    // Quirk: these two go by their numbers; hosts compare dumps.
    if (type == Emr::SetLinkedUfis || type == Emr::SetTextJustification)
        name = "EMR_RESERVED_" + std::to_string(type);
    // Quirk: the later half of the names has a column of its own, and the header's name none.
    const size_t column = type == Emr::Header ? 0 : type < Emr::SetICMMode ? 20 : 24;
    name.resize(std::max(column, name.size() + 1), ' ');
    return name + '\n';
}

std::string wmfDumpLine(std::span<const RecordType> types, quint32 function)
{
    constexpr size_t kTab = 8;
    constexpr size_t kColumn = 4 * kTab;
    const RecordType *const found = findRecordType(types, function);
    // Quirk: the dump has no name for META_SAVEDC; hosts compare dumps.
    if (found == nullptr || function == Meta::SaveDC)
        return {};
    const std::string name = found->name;
    return name + std::string((kColumn - name.size() + kTab - 1) / kTab, '\t') + '\n';
}

} // namespace svgtool
