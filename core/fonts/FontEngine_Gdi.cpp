#include "core/fonts/FontEngine.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

// Metrics from GDI itself, on a device context of the screen.

namespace svgtool {

// GDI's texts are of wchar_t, which is another type of the same units.
static std::wstring wideText(std::u16string_view text)
{
    static_assert(sizeof(wchar_t) == sizeof(char16_t));
    return { text.begin(), text.end() };
}

namespace {

    /// A device context of the screen.
    class ScreenContext
    {
    public:
        ScreenContext() : m_window(GetDesktopWindow()), m_context(GetDC(m_window)) { }
        ~ScreenContext()
        {
            if (m_context != nullptr)
                ReleaseDC(m_window, m_context);
        }
        ScreenContext(const ScreenContext &) = delete;
        ScreenContext &operator=(const ScreenContext &) = delete;

        HDC handle() const { return m_context; }

    private:
        HWND m_window;
        HDC m_context;
    };

    /// A font, selected into a device context for as long as this lives.
    class SelectedFont
    {
    public:
        SelectedFont(HDC context, std::u16string_view faceName, int32_t weight, int32_t height)
            : m_context(context), m_font(CreateFontW(height, 0, 0, 0, weight, 0, 0, 0, 0, 0, 0, 0,
                                                     0, wideText(faceName).c_str())),
              m_previous(SelectObject(context, m_font))
        {
        }
        ~SelectedFont()
        {
            if (m_previous != nullptr)
                SelectObject(m_context, m_previous);
            if (m_font != nullptr)
                DeleteObject(m_font);
        }
        SelectedFont(const SelectedFont &) = delete;
        SelectedFont &operator=(const SelectedFont &) = delete;

    private:
        HDC m_context;
        HFONT m_font;
        HGDIOBJ m_previous;
    };

} // namespace

static FontMetrics selectedMetrics(HDC context)
{
    FontMetrics metrics;
    TEXTMETRICW numbers{};
    if (GetTextMetricsW(context, &numbers) == 0)
        return metrics;
    metrics.height = numbers.tmHeight;
    metrics.ascent = numbers.tmAscent;
    metrics.descent = numbers.tmDescent;
    metrics.internalLeading = numbers.tmInternalLeading;
    metrics.externalLeading = numbers.tmExternalLeading;
    metrics.averageWidth = numbers.tmAveCharWidth;
    return metrics;
}

FontMetrics fontMetrics(std::u16string_view faceName, int32_t weight, int32_t height)
{
    const ScreenContext screen;
    const SelectedFont font(screen.handle(), faceName, weight, height);
    return selectedMetrics(screen.handle());
}

TextExtent textExtent(std::u16string_view text, std::u16string_view faceName, int32_t weight,
                      int32_t height)
{
    const ScreenContext screen;
    const SelectedFont font(screen.handle(), faceName, weight, height);
    TextExtent extent;
    extent.font = selectedMetrics(screen.handle());

    const std::wstring units = wideText(text);
    const size_t length = std::min<size_t>(units.size(), std::numeric_limits<int>::max());
    RECT box{};
    extent.height =
            DrawTextW(screen.handle(), units.c_str(), static_cast<int>(length), &box, DT_CALCRECT);
    extent.width = box.right - box.left;
    return extent;
}

std::u16string textOfGlyphs(std::u16string_view glyphs, std::u16string_view faceName,
                            int32_t weight)
{
    constexpr size_t kUnits = 0x10000;
    const ScreenContext screen;
    const SelectedFont font(screen.handle(), faceName, weight, 0);
    // GDI maps characters to glyphs only, so all of them are mapped.
    std::wstring characters(kUnits, L'\0');
    std::iota(characters.begin(), characters.end(), L'\0');
    std::vector<WORD> numbers(kUnits, 0xFFFF);
    if (GetGlyphIndicesW(screen.handle(), characters.c_str(), static_cast<int>(kUnits),
                         numbers.data(), GGI_MARK_NONEXISTING_GLYPHS)
        == GDI_ERROR)
        return {};
    std::vector<char16_t> characterOf(kUnits, 0);
    for (size_t unit = kUnits - 1; unit > 0; --unit) {
        if (numbers[unit] != 0xFFFF)
            characterOf[numbers[unit]] = static_cast<char16_t>(unit);
    }

    std::u16string text(glyphs);
    for (char16_t &unit : text) {
        if (unit == 0 || characterOf[unit] == 0)
            return {};
        unit = characterOf[unit];
    }
    return text;
}

int32_t horizontalDpi()
{
    constexpr int32_t kWithoutScreen = 96;
    const ScreenContext screen;
    const int32_t dpi = GetDeviceCaps(screen.handle(), LOGPIXELSX);
    return dpi > 0 ? dpi : kWithoutScreen;
}

} // namespace svgtool
