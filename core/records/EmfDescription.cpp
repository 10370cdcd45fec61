#include "core/records/EmfDescription.h"

#include "core/base/ByteOrder.h"
#include "core/records/EmfRecords.h"

#include <algorithm>
#include <string_view>

namespace svgtool {

// Programs pad their names with blanks.
static std::u16string trimmed(std::u16string_view text)
{
    const size_t first = std::min(text.find_first_not_of(u' '), text.size());
    return std::u16string(text.substr(first, text.find_last_not_of(u' ') + 1 - first));
}

EmfDescription readDescription(ByteView header)
{
    const auto fields = readPadded<ENHMETAHEADER>(header);
    const int64_t units = fromLittleEndian(fields.nDescription);
    const int64_t offset = fromLittleEndian(fields.offDescription);
    const auto bytes = slice(header, offset, units * 2);
    if (!bytes || offset < int64_t(sizeof fields))
        return {};
    std::u16string text;
    for (int64_t i = 0; i < units; ++i)
        text += char16_t(fromLittleEndian(elementAt<uint16_t>(*bytes, i)));
    const size_t end = std::min(text.find(u'\0'), text.size());
    const std::u16string_view rest = std::u16string_view(text).substr(end);
    const std::u16string_view title = rest.substr(std::min<size_t>(rest.size(), 1));
    return { trimmed({ text.data(), end }), trimmed(title.substr(0, title.find(u'\0'))) };
}

} // namespace svgtool
