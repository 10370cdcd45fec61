#include "core/text/CodePage.h"

#include <windows.h>

namespace svgtool {

CodePage::~CodePage() = default;

bool CodePage::open(int number)
{
    m_number = IsValidCodePage(static_cast<UINT>(number)) ? number : 0;
    return isOpen();
}

std::optional<char16_t> CodePage::unit(std::string_view character)
{
    wchar_t units[4];
    const int count =
            MultiByteToWideChar(static_cast<UINT>(m_number), MB_ERR_INVALID_CHARS, character.data(),
                                static_cast<int>(character.size()), units, 4);
    if (count != 1)
        return std::nullopt;
    return static_cast<char16_t>(units[0]);
}

} // namespace svgtool
