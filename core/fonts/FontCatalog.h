#pragma once

#include "core/fonts/FontFace.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace svgtool {

/// Finds and keeps faces. Not to be used by two threads at a time.
class FontCatalog
{
public:
    FontCatalog();

    /// The face of that name, or the one in place of it; null where there is no font. The
    /// arguments are those of fontMetrics.
    std::shared_ptr<FontFace> face(std::u16string_view faceName, int32_t weight,
                                   bool isItalic = false);
    enum class Presence : uint8_t {
        Missing, ///< another may stand in for it
        Twin, ///< one with its metrics is installed
        Installed,
    };
    Presence presence(std::u16string_view faceName, int32_t weight, bool isItalic);
    /// What is asked for, and the face is not.
    FaceStyle lacking(std::u16string_view faceName, int32_t weight, bool isItalic);

private:
    struct Found
    {
        FontFile file;
        Presence presence = Presence::Missing; ///< of the face asked for
        FaceStyle lacking;
    };
    struct Entry
    {
        std::u16string name;
        FaceStyle style;
        std::shared_ptr<FontFace> face;
    };
    using Library = std::unique_ptr<FT_LibraryRec_, Call<FT_Done_FreeType>>;
    using Config = std::unique_ptr<FcConfig, Call<FcConfigDestroy>>;

    std::shared_ptr<FontFace> recall(std::u16string_view name, FaceStyle style);
    std::shared_ptr<FontFace> find(std::u16string_view name, FaceStyle style);
    std::shared_ptr<FontFace> open(const FontFile &file);
    std::optional<Found> locate(std::u16string_view name, FaceStyle style);
    std::optional<Found> match(std::u16string_view name, FaceStyle style) const;

    Library m_library; // goes last: it would free the faces
    Config m_config; // our own: the host's may be finalised at any time
    std::vector<Entry> m_entries; // latest first
    /// By name and style.
    std::map<std::pair<std::u16string, FaceStyle>, std::optional<Found>> m_files;
};

/// The one catalog and the lock that every use of it takes: neither FreeType's library object nor
/// its faces may be used by two threads at a time.
struct FontEngine
{
    std::mutex mutex;
    FontCatalog catalog;
};
FontEngine &fontEngine();

} // namespace svgtool
