#include "core/fonts/FontEngine.h"

#include "core/fonts/FontScaling.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_TRUETYPE_TABLES_H
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Metrics from the tables of the font files, as GDI computes them. fontconfig finds the files and
// FreeType reads them; neither renders anything.

namespace svgtool {

namespace {

    template<auto function>
    struct Call
    {
        template<class T>
        void operator()(T *object) const
        {
            function(object);
        }
    };

    using Library = std::unique_ptr<FT_LibraryRec_, Call<FT_Done_FreeType>>;
    using OpenFace = std::unique_ptr<FT_FaceRec_, Call<FT_Done_Face>>;
    using Config = std::unique_ptr<FcConfig, Call<FcConfigDestroy>>;
    using Pattern = std::unique_ptr<FcPattern, Call<FcPatternDestroy>>;

} // namespace

// The numbers of a face without an OS/2 table. FreeType has taken the ascender and the descender
// from the hhea table where there is one.
static FontTables generalNumbers(FT_Face face)
{
    FontTables tables;
    if (FT_IS_SCALABLE(face)) {
        tables.unitsPerEm = face->units_per_EM;
        tables.ascender = face->ascender;
        tables.descender = face->descender;
        tables.lineGap = face->height - (face->ascender - face->descender);
    } else if (FT_HAS_FIXED_SIZES(face) && FT_Select_Size(face, 0) == 0) {
        // A pixel of the first bitmap strike counts as a unit.
        const FT_Size_Metrics &strike = face->size->metrics;
        tables.unitsPerEm = strike.y_ppem;
        tables.ascender = static_cast<int16_t>(strike.ascender >> 6);
        tables.descender = static_cast<int16_t>(strike.descender >> 6);
    }
    tables.unitsPerEm = std::max(1, tables.unitsPerEm);
    return tables;
}

static FontTables readTables(FT_Face face)
{
    FontTables tables = generalNumbers(face);
    if (const auto *hhea =
                static_cast<const TT_HoriHeader *>(FT_Get_Sfnt_Table(face, FT_SFNT_HHEA))) {
        tables.ascender = hhea->Ascender;
        tables.descender = hhea->Descender;
        tables.lineGap = hhea->Line_Gap;
    }
    tables.winAscent = std::max(0, tables.ascender);
    tables.winDescent = std::max(0, -tables.descender);
    constexpr FT_UShort kAbsent = 0xFFFF;
    const auto *os2 = static_cast<const TT_OS2 *>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    if (os2 != nullptr && os2->version != kAbsent) {
        tables.averageWidth = os2->xAvgCharWidth;
        if (os2->usWinAscent != 0 || os2->usWinDescent != 0) {
            tables.winAscent = os2->usWinAscent;
            tables.winDescent = os2->usWinDescent;
        }
    }
    if (tables.winAscent + tables.winDescent == 0)
        tables.winAscent = tables.unitsPerEm;
    return tables;
}

namespace {

    /// Where a face is.
    struct FontFile
    {
        std::string path;
        int index = 0;

        bool operator==(const FontFile &) const = default;
    };

    /// An open font file. What it keeps is bounded whatever texts are measured with it.
    class FontFace
    {
    public:
        FontFace(FontFile file, OpenFace face);

        const FontFile &file() const { return m_file; }
        const FontTables &tables() const { return m_tables; }
        /// In font units, 0 to 65535.
        int32_t advance(char16_t unit);
        QString textOfGlyphs(const QString &glyphs);

    private:
        struct KnownAdvance
        {
            bool isKnown = false;
            char16_t unit = 0;
            uint16_t advance = 0;
        };

        FT_UInt glyphIndex(char16_t unit) const;
        uint16_t readAdvance(char16_t unit) const;
        void readCharacters();

        FontFile m_file;
        OpenFace m_face;
        FontTables m_tables;
        std::array<KnownAdvance, 1024> m_advances; // a unit's place is its remainder
        std::vector<char16_t> m_characters; // by glyph number, 0 for none; filled when first needed
    };

} // namespace

FontFace::FontFace(FontFile file, OpenFace face)
    : m_file(std::move(file)), m_face(std::move(face)), m_tables(readTables(m_face.get()))
{
    // FreeType selects the Unicode map by itself, but none where a font has only others.
    if (m_face->charmap == nullptr && m_face->num_charmaps > 0)
        FT_Set_Charmap(m_face.get(), m_face->charmaps[0]);
    if (m_tables.averageWidth == 0)
        m_tables.averageWidth = advance(u'x');
}

FT_UInt FontFace::glyphIndex(char16_t unit) const
{
    const FT_UInt glyph = FT_Get_Char_Index(m_face.get(), unit);
    const bool isSymbol =
            m_face->charmap != nullptr && m_face->charmap->encoding == FT_ENCODING_MS_SYMBOL;
    // Symbol fonts hold their characters in the private area, and texts name the low byte.
    if (glyph == 0 && isSymbol && unit < 0x100)
        return FT_Get_Char_Index(m_face.get(), 0xF000u + unit);
    return glyph;
}

uint16_t FontFace::readAdvance(char16_t unit) const
{
    const bool isScalable = FT_IS_SCALABLE(m_face.get());
    const FT_Int32 flags = isScalable ? FT_LOAD_NO_SCALE : FT_LOAD_DEFAULT;
    FT_Fixed advance = 0;
    if (FT_Get_Advance(m_face.get(), glyphIndex(unit), flags, &advance) != 0)
        return 0;
    const FT_Fixed units = isScalable ? advance : advance >> 16;
    return static_cast<uint16_t>(std::clamp<FT_Fixed>(units, 0, 0xFFFF));
}

// Without what is kept here, measuring a text takes more than ten times as long.
int32_t FontFace::advance(char16_t unit)
{
    KnownAdvance &place = m_advances[unit % m_advances.size()];
    if (!place.isKnown || place.unit != unit)
        place = { true, unit, readAdvance(unit) };
    return place.advance;
}

void FontFace::readCharacters()
{
    m_characters.assign(0x10000, 0);
    FT_UInt glyph = 0;
    FT_ULong character = FT_Get_First_Char(m_face.get(), &glyph);
    while (glyph != 0 && character <= 0xFFFF) {
        if (glyph <= 0xFFFF && m_characters[glyph] == 0)
            m_characters[glyph] = static_cast<char16_t>(character);
        character = FT_Get_Next_Char(m_face.get(), character, &glyph);
    }
}

QString FontFace::textOfGlyphs(const QString &glyphs)
{
    if (m_characters.empty())
        readCharacters();
    QString text = glyphs;
    for (QChar &unit : text) {
        unit = QChar(m_characters[unit.unicode()]);
        if (unit.isNull())
            return {};
    }
    return text;
}

namespace {

    /// Finds and keeps faces. Not to be used by two threads at a time.
    class FontCatalog
    {
    public:
        FontCatalog();

        /// The face of that name, or the one in place of it; null where there is no font.
        std::shared_ptr<FontFace> face(const QString &faceName, int32_t weight);

    private:
        struct Entry
        {
            QString name;
            bool isBold;
            std::shared_ptr<FontFace> face;
        };

        std::shared_ptr<FontFace> recall(const QString &name, bool isBold);
        std::shared_ptr<FontFace> find(const QString &name, bool isBold);
        std::shared_ptr<FontFace> open(const FontFile &file);
        std::optional<FontFile> locate(const QString &name, bool isBold);
        std::optional<FontFile> match(const QString &name, bool isBold) const;

        Library m_library; // goes last: it would free the faces
        Config m_config; // our own: the host's may be finalised at any time
        std::vector<Entry> m_entries; // latest first
        std::map<std::pair<QString, bool>, std::optional<FontFile>> m_files; // by name and boldness
    };

    /// Stands in for the names that no installed font answers to.
    constexpr char kSubstituteFace[] = "Arial";

} // namespace

FontCatalog::FontCatalog() : m_config(FcInitLoadConfigAndFonts())
{
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) == 0)
        m_library.reset(library);
}

std::shared_ptr<FontFace> FontCatalog::face(const QString &faceName, int32_t weight)
{
    constexpr int32_t kLastRegularWeight = 550;
    constexpr int kLongestName = 31; // LF_FACESIZE of GDI without the final zero
    QString name = faceName.left(kLongestName);
    if (name.isEmpty())
        name = QLatin1String(kSubstituteFace);
    return recall(name, weight > kLastRegularWeight);
}

std::shared_ptr<FontFace> FontCatalog::recall(const QString &name, bool isBold)
{
    // Names come from files, so the number kept is bounded, and with it that of the open faces.
    constexpr size_t kMostEntries = 64;
    const auto known = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry &entry) {
        return entry.isBold == isBold && entry.name == name;
    });
    if (known != m_entries.end()) {
        std::rotate(m_entries.begin(), known, known + 1);
        return m_entries.front().face;
    }
    Entry entry{ name, isBold, find(name, isBold) };
    if (m_entries.size() >= kMostEntries)
        m_entries.pop_back();
    return m_entries.insert(m_entries.begin(), std::move(entry))->face;
}

std::shared_ptr<FontFace> FontCatalog::find(const QString &name, bool isBold)
{
    if (const auto file = locate(name, isBold)) {
        if (auto face = open(*file))
            return face;
    }
    const QString substitute = QLatin1String(kSubstituteFace);
    return name == substitute ? nullptr : recall(substitute, isBold);
}

// fontconfig takes a quarter of a millisecond for a name, and a file may use more names in turn
// than faces are kept open. Their number is bounded too.
std::optional<FontFile> FontCatalog::locate(const QString &name, bool isBold)
{
    constexpr size_t kMostNames = 4096;
    const std::pair key(name, isBold);
    if (const auto known = m_files.find(key); known != m_files.end())
        return known->second;
    if (m_files.size() >= kMostNames)
        m_files.clear();
    return m_files[key] = match(name, isBold);
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

// Whether the font that was found has the family name asked for, or one that the configuration
// puts in its place for having the same metrics. Such names are bound as strongly as the one
// asked for; the families that fontconfig falls back to for want of better are bound weakly.
static bool answersTo(FcPattern *font, FcPattern *asked)
{
    FcValue family{};
    FcValueBinding binding{};
    for (int i = 0;
         FcPatternGetWithBinding(asked, FC_FAMILY, i, &family, &binding) == FcResultMatch; ++i) {
        FcChar8 *name = nullptr;
        for (int j = 0; binding != FcValueBindingWeak && family.type == FcTypeString
             && FcPatternGetString(font, FC_FAMILY, j, &name) == FcResultMatch;
             ++j) {
            if (FcStrCmpIgnoreCase(family.u.s, name) == 0)
                return true;
        }
    }
    return false;
}

// As GDI takes the substitute face for any name it does not know, whatever fontconfig would
// offer for it, only a font that answers to the name will do; for the substitute itself any will.
std::optional<FontFile> FontCatalog::match(const QString &name, bool isBold) const
{
    const Pattern asked(FcPatternCreate());
    if (!m_config || !asked)
        return std::nullopt;
    const QByteArray family = name.toUtf8(); // fontconfig reads up to a zero byte
    FcPatternAddString(asked.get(), FC_FAMILY,
                       reinterpret_cast<const FcChar8 *>(family.constData()));
    FcPatternAddInteger(asked.get(), FC_WEIGHT, isBold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(asked.get(), FC_SLANT, FC_SLANT_ROMAN);
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
    if (name != QLatin1String(kSubstituteFace) && !answersTo(font.get(), asked.get()))
        return std::nullopt;
    file.index &= 0x7FFFFFFF; // above the number of the face is that of a variable font's instance
    file.path = reinterpret_cast<const char *>(path);
    return file;
}

static bool isLineBreak(QChar unit)
{
    return unit == u'\n' || unit == u'\r';
}

static int64_t lineWidth(FontFace &face, QStringView line, int64_t scale)
{
    int64_t width = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        // A prefix counts nothing and makes an ampersand after it count as a character.
        if (line[i] == u'&' && i + 1 < line.size())
            ++i;
        width += scaledAdvance(face.advance(line[i].unicode()), scale);
    }
    return width;
}

static TextExtent measure(FontFace &face, QStringView text, int32_t pixels)
{
    const int64_t scale = fixedScale(face.tables(), pixels);
    int64_t width = 0;
    int64_t lines = 0;
    qsizetype start = 0;
    do {
        qsizetype end = start;
        while (end < text.size() && !isLineBreak(text[end]))
            ++end;
        width = std::max(width, lineWidth(face, text.mid(start, end - start), scale));
        ++lines;
        // The two break characters side by side, in either order, are one break.
        const bool isPair =
                end + 1 < text.size() && isLineBreak(text[end + 1]) && text[end + 1] != text[end];
        start = end + (isPair ? 2 : 1);
    } while (start < text.size()); // so a break at the end adds no line

    TextExtent extent;
    extent.font = scaledMetrics(face.tables(), pixels);
    extent.width = clampToInt32(width);
    extent.height = clampToInt32(lines * extent.font.height);
    return extent;
}

namespace {

    /// The one catalog and the lock that every use of it takes: neither FreeType's library object
    /// nor its faces may be used by two threads at a time.
    struct Engine
    {
        std::mutex mutex;
        FontCatalog catalog;
    };

} // namespace

// Made when first used; it goes with the library, so that unloading leaves nothing behind.
static Engine &engine()
{
    static Engine instance;
    return instance;
}

FontMetrics fontMetrics(const QString &faceName, int32_t weight, int32_t height)
{
    Engine &shared = engine();
    const std::lock_guard lock(shared.mutex);
    const auto face = shared.catalog.face(faceName, weight);
    if (!face)
        return {};
    return scaledMetrics(face->tables(), pixelsPerEm(face->tables(), height));
}

TextExtent textExtent(const QString &text, const QString &faceName, int32_t weight, int32_t height)
{
    Engine &shared = engine();
    const std::lock_guard lock(shared.mutex);
    const auto face = shared.catalog.face(faceName, weight);
    if (!face)
        return {};
    return measure(*face, text, pixelsPerEm(face->tables(), height));
}

QString textOfGlyphs(const QString &glyphs, const QString &faceName, int32_t weight)
{
    Engine &shared = engine();
    const std::lock_guard lock(shared.mutex);
    const auto face = shared.catalog.face(faceName, weight);
    return face ? face->textOfGlyphs(glyphs) : QString();
}

int32_t horizontalDpi()
{
    return 96; // no screen is asked
}

} // namespace svgtool
