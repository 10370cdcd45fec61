#include "core/fonts/FontShapes.h"

#include "core/fonts/GlyphOrder.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <numeric>

// Shapes from GDI itself, of a font whose em is so many pixels that they do for font units.

namespace svgtool {

static constexpr int kUnitsPerEm = 2048;

namespace {

    /// A font on a device context of the screen for as long as this lives.
    class Selected
    {
    public:
        explicit Selected(const FontRequest &request, int pixels = kUnitsPerEm)
            : m_asked(request.face.begin(), request.face.end()),
              m_context(CreateCompatibleDC(nullptr)),
              m_font(CreateFontW(-pixels, 0, 0, 0, request.weight, request.isItalic ? 1 : 0, 0, 0,
                                 DEFAULT_CHARSET, 0, 0, 0, 0, m_asked.c_str())),
              m_previous(SelectObject(m_context, m_font))
        {
        }
        ~Selected()
        {
            SelectObject(m_context, m_previous);
            DeleteObject(m_font);
            DeleteDC(m_context);
        }
        Selected(const Selected &) = delete;
        Selected &operator=(const Selected &) = delete;

        HDC handle() const { return m_context; }
        /// Whether it is the face that was asked for.
        bool isNamed() const
        {
            wchar_t face[LF_FACESIZE] = {};
            GetTextFaceW(m_context, LF_FACESIZE, face);
            return lstrcmpiW(face, m_asked.c_str()) == 0;
        }

    private:
        std::wstring m_asked;
        HDC m_context;
        HFONT m_font;
        HGDIOBJ m_previous;
    };

} // namespace

FontShape fontShape(const FontRequest &request)
{
    const Selected font(request);
    FontShape shape;
    TEXTMETRICW numbers{};
    GetTextMetricsW(font.handle(), &numbers);
    shape.tables = { kUnitsPerEm,
                     std::max(1, int(numbers.tmAscent)),
                     std::max(0, int(numbers.tmDescent)),
                     int(numbers.tmAscent),
                     -int(numbers.tmDescent),
                     int(numbers.tmExternalLeading),
                     int(numbers.tmAveCharWidth) };
    OUTLINETEXTMETRICW lines{};
    if (GetOutlineTextMetricsW(font.handle(), sizeof lines, &lines) != 0) {
        shape.underlineThickness = lines.otmsUnderscoreSize;
        shape.underline = lines.otmsUnderscorePosition - shape.underlineThickness / 2;
        shape.strikeOut = lines.otmsStrikeoutPosition;
        shape.strikeOutThickness = int(lines.otmsStrikeoutSize);
    }
    shape.isNamed = font.isNamed();
    return shape;
}

// GDI takes UTF-16; what lies beyond its first plane is left to the fonts that it links.
static wchar_t unitOf(char32_t character)
{
    return character < 0x10000 ? wchar_t(character) : wchar_t(0xFFFD);
}

std::vector<CharacterShape> characterShapes(std::u32string_view text, const FontRequest &request)
{
    const Selected font(request);
    std::vector<CharacterShape> shapes(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t unit = unitOf(text[i]);
        WORD glyph = 0xFFFF;
        SIZE size{};
        GetGlyphIndicesW(font.handle(), &unit, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS);
        GetTextExtentPoint32W(font.handle(), &unit, 1, &size);
        shapes[i].hasGlyph = glyph != 0xFFFF;
        shapes[i].advance = std::clamp(int(size.cx), 0, 0xFFFF);
    }
    return shapes;
}

// What GDI says at any size is what it hints to.
std::vector<int32_t> hintedAdvances(std::u32string_view text, const FontRequest &request,
                                    int32_t pixels)
{
    constexpr int32_t kLargest = 100; // larger letters are as wide hinted as not
    std::vector<int32_t> advances;
    if (pixels < 1 || pixels > kLargest)
        return advances;
    const Selected font(request, pixels);
    for (const char32_t character : text) {
        const wchar_t unit = unitOf(character);
        int advance = 0;
        GetCharWidth32W(font.handle(), unit, unit, &advance);
        advances.push_back(std::max(0, advance));
    }
    return advances;
}

static PointD pointOf(const POINTFX &point)
{
    const auto number = [](FIXED fixed) { return fixed.value + fixed.fract / 65536.0; };
    return { number(point.x), -number(point.y) };
}

// Curves of a glyph, which follow one another in blocks: TTPOLYGONHEADER and TTPOLYCURVE.
static void addCurve(Path &path, const TTPOLYCURVE &head, const char *points)
{
    const auto at = [points](int i) {
        POINTFX point;
        std::memcpy(&point, points + size_t(i) * sizeof point, sizeof point);
        return pointOf(point);
    };
    if (head.wType == TT_PRIM_LINE) {
        for (int i = 0; i < head.cpfx; ++i)
            path.lineTo(at(i));
        return;
    }
    for (int i = 0; i + 1 < head.cpfx; ++i) {
        // Between two control points the curve goes through their middle.
        const PointD control = at(i);
        PointD end = at(i + 1);
        if (i + 2 < head.cpfx)
            end = { (control.x + end.x) / 2, (control.y + end.y) / 2 };
        const auto toward = [&control](PointD p) {
            return PointD{ p.x + (control.x - p.x) * 2 / 3, p.y + (control.y - p.y) * 2 / 3 };
        };
        path.curveTo(toward(path.current()), toward(end), end);
    }
}

static Path outlineOf(HDC context, wchar_t unit)
{
    constexpr MAT2 kIdentity{ { 0, 1 }, { 0, 0 }, { 0, 0 }, { 0, 1 } };
    Path path;
    GLYPHMETRICS metrics;
    const DWORD size =
            GetGlyphOutlineW(context, unit, GGO_NATIVE, &metrics, 0, nullptr, &kIdentity);
    if (size == GDI_ERROR || size == 0)
        return path;
    std::vector<char> bytes(size);
    if (GetGlyphOutlineW(context, unit, GGO_NATIVE, &metrics, size, bytes.data(), &kIdentity)
        == GDI_ERROR)
        return path;
    for (size_t figure = 0; figure + sizeof(TTPOLYGONHEADER) <= size;) {
        TTPOLYGONHEADER head;
        std::memcpy(&head, bytes.data() + figure, sizeof head);
        const size_t end = std::min<size_t>(size, figure + std::max<size_t>(head.cb, sizeof head));
        path.moveTo(pointOf(head.pfxStart));
        constexpr size_t kHead = offsetof(TTPOLYCURVE, apfx);
        for (size_t at = figure + sizeof head; at + kHead <= end;) {
            TTPOLYCURVE curve{};
            std::memcpy(&curve, bytes.data() + at, kHead);
            const size_t length = kHead + curve.cpfx * sizeof(POINTFX);
            if (length > end - at)
                break;
            addCurve(path, curve, bytes.data() + at + kHead);
            at += length;
        }
        path.close();
        figure = end;
    }
    return path;
}

std::vector<Path> characterOutlines(std::u32string_view text, const FontRequest &request)
{
    const Selected font(request);
    std::vector<Path> outlines;
    for (const char32_t character : text)
        outlines.push_back(outlineOf(font.handle(), unitOf(character)));
    return outlines;
}

std::u16string charactersOfGlyphs(std::u16string_view glyphs, const FontRequest &request)
{
    constexpr size_t kUnits = 0x10000;
    const Selected font(request);
    if (!font.isNamed())
        return charactersInKnownOrder(glyphs, request.face);
    // GDI maps characters to glyphs only, so all of them are mapped.
    std::wstring characters(kUnits, L'\0');
    std::iota(characters.begin(), characters.end(), L'\0');
    std::vector<WORD> numbers(kUnits, 0xFFFF);
    std::u16string text(glyphs.size(), u'\0');
    if (GetGlyphIndicesW(font.handle(), characters.c_str(), int(kUnits), numbers.data(),
                         GGI_MARK_NONEXISTING_GLYPHS)
        == GDI_ERROR)
        return text;
    std::vector<char16_t> characterOf(kUnits, 0);
    for (size_t unit = kUnits - 1; unit > 0; --unit) {
        if (numbers[unit] != 0xFFFF)
            characterOf[numbers[unit]] = char16_t(unit);
    }
    std::transform(glyphs.begin(), glyphs.end(), text.begin(),
                   [&](char16_t glyph) { return characterOf[glyph]; });
    return text;
}

} // namespace svgtool
