// Prints characters for a transcript to compare: those of the bytes on standard input, by the
// number of a character set, or what the codes of a symbol font stand for, by its name.

#include "core/base/TextBuffer.h"
#include "core/text/CharacterSet.h"
#include "core/text/SymbolFonts.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <string>

using namespace svgtool;

static void printSymbols(SymbolFont font)
{
    for (char32_t code = 0x20; code <= 0xFF; ++code)
        std::printf("%02X %04X\n", unsigned(code), unsigned(symbolCharacter(font, code)));
}

int main(int argc, char **argv)
{
    const std::string which = argc > 1 ? argv[1] : "";
    const SymbolFont font = symbolFont(std::u16string(which.begin(), which.end()));
    if (font != SymbolFont::None) {
        printSymbols(font);
        return 0;
    }
    const std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
    TextBuffer text;
    text.append(decodeAsGdi({ bytes.data(), int64_t(bytes.size()) }, uint8_t(std::stoi(which))));
    std::fwrite(text.view().data(), 1, text.view().size(), stdout);
    return 0;
}
