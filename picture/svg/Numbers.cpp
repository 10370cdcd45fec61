#include "picture/svg/Numbers.h"

#include <array>
#include <charconv>
#include <string_view>

namespace svgtool::picture {

namespace {

    struct Digits
    {
        std::array<char, 24> text;
        size_t size = 0;
    };

    Digits digitsOf(int64_t steps, int decimals)
    {
        constexpr size_t kLead = 1 + Numbers::kMostDecimals; // a sign, and zeros behind the point
        std::array<char, kLead + 20> plain;
        Digits digits;
        if (steps < 0) {
            digits.text[digits.size++] = '-';
            steps = -steps;
        }
        const char *const end =
                std::to_chars(plain.data() + kLead, plain.data() + plain.size(), steps).ptr;
        const char *first = plain.data() + kLead;
        if (decimals == 0 || steps == 0) {
            while (first != end)
                digits.text[digits.size++] = *first++;
            return digits;
        }
        char *lead = plain.data() + kLead;
        while (end - lead < decimals)
            *--lead = '0';
        const char *const point = end - decimals;
        const char *last = end;
        while (last != point && last[-1] == '0')
            --last;
        for (const char *at = lead; at != last; ++at) {
            if (at == point)
                digits.text[digits.size++] = '.';
            digits.text[digits.size++] = *at;
        }
        for (const char *at = last; at < point; ++at)
            digits.text[digits.size++] = *at;
        return digits;
    }

} // namespace

void Numbers::append(TextBuffer &out, int64_t steps) const
{
    const Digits digits = digitsOf(steps, m_decimals);
    out.append(std::string_view(digits.text.data(), digits.size));
}

int Numbers::length(int64_t steps) const
{
    return int(digitsOf(steps, m_decimals).size);
}

} // namespace svgtool::picture
