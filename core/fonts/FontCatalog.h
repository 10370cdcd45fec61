#pragma once

#include "core/fonts/FontFace.h"

#include <fontconfig/fontconfig.h>

#include <map>
#include <memory>
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
    std::shared_ptr<FontFace> face(std::u16string_view faceName, int32_t weight);

private:
    struct Entry
    {
        std::u16string name;
        bool isBold;
        std::shared_ptr<FontFace> face;
    };
    using Library = std::unique_ptr<FT_LibraryRec_, Call<FT_Done_FreeType>>;
    using Config = std::unique_ptr<FcConfig, Call<FcConfigDestroy>>;

    std::shared_ptr<FontFace> recall(std::u16string_view name, bool isBold);
    std::shared_ptr<FontFace> find(std::u16string_view name, bool isBold);
    std::shared_ptr<FontFace> open(const FontFile &file);
    std::optional<FontFile> locate(std::u16string_view name, bool isBold);
    std::optional<FontFile> match(std::u16string_view name, bool isBold) const;

    Library m_library; // goes last: it would free the faces
    Config m_config; // our own: the host's may be finalised at any time
    std::vector<Entry> m_entries; // latest first
    /// By name and boldness.
    std::map<std::pair<std::u16string, bool>, std::optional<FontFile>> m_files;
};

} // namespace svgtool
