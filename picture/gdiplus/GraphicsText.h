#pragma once

#include "core/records/EmfPlusObjects.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/gdiplus/Graphics.h"
#include "picture/gdiplus/StringLayout.h"

#include <span>
#include <string_view>

namespace svgtool::picture {

/// Paints text of GDI+ on a Graphics: letters are those of a device context that paints in the same
/// scene.
class GraphicsText
{
public:
    GraphicsText(Graphics &graphics, DeviceContext &context)
        : m_graphics(graphics), m_context(context)
    {
    }

    /// @param box  world units; a width or height of 0 is none
    Played drawString(std::u16string_view text, const plus::Font &font, const plus::Brush &brush,
                      const plus::StringFormat &format, const RectD &box);

    /// Options of a driver string, [MS-EMFPLUS] 2.1.2.3.
    enum DriverOption : uint32_t { kIsCharacters = 1, kIsVertical = 2, kHasOwnAdvances = 4 };
    /// @param codes   UTF-16 or glyphs of the font, as the options say
    /// @param places  of the baselines' left ends, one for each unit of the codes
    /// @param matrix  of letters and places, to world units
    Played drawDriverString(std::u16string_view codes, const plus::Font &font,
                            const plus::Brush &brush, uint32_t options,
                            std::span<const PointD> places, const Affine &matrix);

private:
    struct Face
    {
        Font named;
        RealizedFont font; ///< in world units
    };
    Face faceOf(const plus::Font &font) const;
    /// @param toWorld  from where the characters are placed
    /// @param options  of TextOption: glyphs, right to left
    Played paint(std::span<const PlacedCharacter> characters, const Face &face,
                 const Affine &toWorld, const plus::Brush &brush, Index clip, uint32_t options);
    Played fillOutlines(std::span<const PlacedCharacter> characters, const Face &face,
                        const Affine &toWorld, const plus::Brush &brush);
    void underline(const StringLine &line, const Face &face, const Affine &toWorld,
                   const plus::Brush &brush);

    Graphics &m_graphics;
    DeviceContext &m_context;
};

} // namespace svgtool::picture
