#pragma once

#include <optional>
#include <string_view>

namespace svgtool {

/// The characters of a Windows code page, as the system knows them: iconv, Windows or, for a module
/// of a page, the browser. Not for two threads at a time.
class CodePage
{
public:
    CodePage() = default;
    ~CodePage();
    CodePage(const CodePage &) = delete;
    CodePage &operator=(const CodePage &) = delete;

    /// False where the system lacks the code page. To be called before any other function.
    /// @throws std::bad_alloc
    bool open(int number);
    bool isOpen() const { return m_number != 0; }
    /// What a byte, or a pair of them in those that have pairs, stands for; nothing if for no
    /// character.
    std::optional<char16_t> unit(std::string_view character);

private:
    int m_number = 0;
    [[maybe_unused]] void *m_converter = nullptr; ///< iconv's, where that is asked
};

} // namespace svgtool
