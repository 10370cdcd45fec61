#include "core/text/CodePage.h"

// The function of the script that runs the module; negative for no character.
extern "C" __attribute__((import_module("svgtool"), import_name("unit"))) int
svgtool_unit(int codePage, const char *bytes, size_t count);

namespace svgtool {

CodePage::~CodePage() = default;

bool CodePage::open(int number)
{
    m_number = svgtool_unit(number, "A", 1) == 'A' ? number : 0;
    return isOpen();
}

std::optional<char16_t> CodePage::unit(std::string_view character)
{
    const int unit = svgtool_unit(m_number, character.data(), character.size());
    if (unit < 0)
        return std::nullopt;
    return static_cast<char16_t>(unit);
}

} // namespace svgtool
