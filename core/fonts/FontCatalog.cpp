#include "core/fonts/FontCatalog.h"

#include "core/base/TextBuffer.h"

#include <algorithm>

namespace svgtool {

using Pattern = std::unique_ptr<FcPattern, Call<FcPatternDestroy>>;

/// Stands in for the names that no installed font answers to.
static constexpr std::u16string_view kSubstituteFace = u"Arial";

FontCatalog::FontCatalog() : m_config(FcInitLoadConfigAndFonts())
{
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) == 0)
        m_library.reset(library);
}

// Made when first used; it goes with the library, so that unloading leaves nothing behind.
FontEngine &fontEngine()
{
    static FontEngine instance;
    return instance;
}

static std::u16string_view cutName(std::u16string_view faceName)
{
    constexpr size_t kLongestName = 31; // LF_FACESIZE of GDI without the final zero
    const std::u16string_view name = faceName.substr(0, kLongestName);
    return name.empty() ? kSubstituteFace : name;
}

std::shared_ptr<FontFace> FontCatalog::face(std::u16string_view faceName, int32_t weight,
                                            bool isItalic)
{
    return recall(cutName(faceName), { isBold(weight), isItalic });
}

FontCatalog::Presence FontCatalog::presence(std::u16string_view faceName, int32_t weight,
                                            bool isItalic)
{
    const auto found = locate(cutName(faceName), { isBold(weight), isItalic });
    return found ? found->presence : Presence::Missing;
}

FaceStyle FontCatalog::lacking(std::u16string_view faceName, int32_t weight, bool isItalic)
{
    const FaceStyle style{ isBold(weight), isItalic };
    auto found = locate(cutName(faceName), style);
    if (!found)
        found = locate(kSubstituteFace, style);
    return found ? found->lacking : FaceStyle();
}

std::shared_ptr<FontFace> FontCatalog::recall(std::u16string_view name, FaceStyle style)
{
    // Names come from files, so the number kept is bounded, and with it that of the open faces.
    constexpr size_t kMostEntries = 64;
    const auto known = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return entry.style == style && entry.name == name;
    });
    if (known != m_entries.end()) {
        std::rotate(m_entries.begin(), known, known + 1);
        return m_entries.front().face;
    }
    Entry entry{ std::u16string(name), style, find(name, style) };
    if (m_entries.size() >= kMostEntries)
        m_entries.pop_back();
    return m_entries.insert(m_entries.begin(), std::move(entry))->face;
}

std::shared_ptr<FontFace> FontCatalog::find(std::u16string_view name, FaceStyle style)
{
    if (const auto found = locate(name, style)) {
        if (auto face = open(found->file))
            return face;
    }
    return name == kSubstituteFace ? nullptr : recall(kSubstituteFace, style);
}

// fontconfig takes a quarter of a millisecond for a name, and a file may use more names in turn
// than faces are kept open. Their number is bounded too.
std::optional<FontCatalog::Found> FontCatalog::locate(std::u16string_view name, FaceStyle style)
{
    constexpr size_t kMostNames = 4096;
    const std::pair key(std::u16string(name), style);
    if (const auto known = m_files.find(key); known != m_files.end())
        return known->second;
    if (m_files.size() >= kMostNames)
        m_files.clear();
    return m_files[key] = match(name, style);
}

std::shared_ptr<FontFace> FontCatalog::open(const FontFile &file)
{
    const auto same = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return entry.face && entry.face->file() == file;
    });
    if (same != m_entries.end())
        return same->face;

    FT_Face opened = nullptr;
    if (!m_library || FT_New_Face(m_library.get(), file.path.c_str(), file.index, &opened) != 0)
        return nullptr;
    return std::make_shared<FontFace>(file, OpenFace(opened));
}

static bool hasFamily(FcPattern *font, const FcChar8 *family)
{
    FcChar8 *name = nullptr;
    for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        if (FcStrCmpIgnoreCase(family, name) == 0)
            return true;
    }
    return false;
}

// Whether the font that was found has the family name asked for, or one that the configuration
// puts in its place for having the same metrics. Such names are bound as strongly as the one
// asked for; the families that fontconfig falls back to for want of better are bound weakly.
static bool answersTo(FcPattern *font, FcPattern *asked)
{
    FcValue family{};
    FcValueBinding binding{};
    for (int i = 0;
         FcPatternGetWithBinding(asked, FC_FAMILY, i, &family, &binding) == FcResultMatch; ++i) {
        if (binding != FcValueBindingWeak && family.type == FcTypeString
            && hasFamily(font, family.u.s))
            return true;
    }
    return false;
}

// What is asked for, and not had; a font that does not say what it is has it. fontconfig may
// have been told to pass such a face for what it is not, and to have it changed when it is drawn.
static FaceStyle lackingIn(FcPattern *font, FaceStyle style)
{
    int weight = FC_WEIGHT_BOLD, slant = FC_SLANT_ITALIC;
    FcPatternGetInteger(font, FC_WEIGHT, 0, &weight);
    FcPatternGetInteger(font, FC_SLANT, 0, &slant);
    FcBool isEmboldened = FcFalse;
    FcPatternGetBool(font, FC_EMBOLDEN, 0, &isEmboldened);
    FcMatrix *matrix = nullptr;
    const bool isSlanted =
            FcPatternGetMatrix(font, FC_MATRIX, 0, &matrix) == FcResultMatch && matrix->xy != 0;
    return { style.isBold && (weight <= FC_WEIGHT_MEDIUM || isEmboldened),
             style.isItalic && (slant == FC_SLANT_ROMAN || isSlanted) };
}

// As GDI takes the substitute face for any name it does not know, whatever fontconfig would
// offer for it, only a font that answers to the name will do; for the substitute itself any will.
std::optional<FontCatalog::Found> FontCatalog::match(std::u16string_view name,
                                                     FaceStyle style) const
{
    const Pattern asked(FcPatternCreate());
    if (!m_config || !asked)
        return std::nullopt;
    TextBuffer family;
    family.append(name, '\0'); // which fontconfig reads up to
    const auto *const plainName = reinterpret_cast<const FcChar8 *>(family.view().data());
    FcPatternAddString(asked.get(), FC_FAMILY, plainName);
    FcPatternAddInteger(asked.get(), FC_WEIGHT, style.isBold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(asked.get(), FC_SLANT, style.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddInteger(asked.get(), FC_WIDTH, FC_WIDTH_NORMAL);
    FcPatternAddBool(asked.get(), FC_SCALABLE, FcTrue);
    FcPatternAddBool(asked.get(), FC_VARIABLE, FcFalse); // rather its instances of fixed weight
    FcConfigSubstitute(m_config.get(), asked.get(), FcMatchPattern);
    // The user's language would make the choice of a font differ from one locale to the next.
    FcPatternDel(asked.get(), FC_LANG);

    FcResult result = FcResultNoMatch;
    const Pattern font(FcFontMatch(m_config.get(), asked.get(), &result));
    FcChar8 *path = nullptr;
    FontFile file;
    if (!font || FcPatternGetString(font.get(), FC_FILE, 0, &path) != FcResultMatch
        || FcPatternGetInteger(font.get(), FC_INDEX, 0, &file.index) != FcResultMatch)
        return std::nullopt;
    Presence presence = Presence::Missing;
    if (hasFamily(font.get(), plainName))
        presence = Presence::Installed;
    else if (answersTo(font.get(), asked.get()))
        presence = Presence::Twin;
    else if (name != kSubstituteFace)
        return std::nullopt;
    file.index &= 0x7FFFFFFF; // above the number of the face is that of a variable font's instance
    file.path = reinterpret_cast<const char *>(path);
    return Found{ file, presence, lackingIn(font.get(), style) };
}

} // namespace svgtool
