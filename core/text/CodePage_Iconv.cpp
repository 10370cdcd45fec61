#include "core/text/CodePage.h"

#include <iconv.h>

#include <bit>
#include <cerrno>
#include <new>
#include <string>

namespace svgtool {

static std::string nameOf(int number)
{
    switch (number) {
    case 1361:
        return "JOHAB";
    case 10000:
        return "MACINTOSH";
    default:
        return "CP" + std::to_string(number);
    }
}

CodePage::~CodePage()
{
    if (isOpen())
        iconv_close(m_converter);
}

bool CodePage::open(int number)
{
    constexpr bool isLittle = std::endian::native == std::endian::little;
    const iconv_t converter =
            iconv_open(isLittle ? "UTF-16LE" : "UTF-16BE", nameOf(number).c_str());
    // NOLINTNEXTLINE(performance-no-int-to-ptr): what POSIX says it gives when it fails
    if (converter == iconv_t(-1)) {
        if (errno == ENOMEM)
            throw std::bad_alloc();
        return false;
    }
    m_converter = converter;
    m_number = number;
    return true;
}

std::optional<char16_t> CodePage::unit(std::string_view character)
{
    char16_t units[8];
    char *in = const_cast<char *>(character.data()); // iconv reads it only
    size_t inLeft = character.size();
    char *out = reinterpret_cast<char *>(units);
    size_t outLeft = sizeof units;
    const bool isKnown = iconv(m_converter, &in, &inLeft, &out, &outLeft) != size_t(-1);
    // Some encodings hold a letter back until they know whether an accent follows.
    iconv(m_converter, nullptr, nullptr, &out, &outLeft);
    if (!isKnown || sizeof units - outLeft != sizeof *units)
        return std::nullopt;
    return units[0];
}

} // namespace svgtool
