#pragma once

#include <QString>

namespace svgtool {

/// What WIN32_GetTextDimensions measures.
struct TextDescription
{
    QString text; ///< the text; line breaks in it give several lines
    QString faceName; ///< name of the font's face
    qint32 weight = 0; ///< 0 to 1000, 400 normal, 700 bold
    qint32 height = 0; ///< cell height in pixels; negative: character height
};

/// The character height of a font given by its cell height: the cell height less the font's
/// internal and external leading (TEXTMETRICW of GDI).
/// @param height    cell height in pixels; 0 asks for the default size
/// @param faceName  name of the face; a missing one is substituted
/// @param weight    0 to 1000, 400 normal, 700 bold
/// @note Like all functions here it may be called from any thread and never fails: where no
///       font can be had, the metrics count as 0.
qint32 WIN_GetActualHeight(qint32 height, const QString &faceName, qint32 weight);

/// The descent of a font in pixels: how far its cell reaches below the baseline.
qint32 WIN_GetFontDescent(qint32 height, const QString &faceName, qint32 weight);

/// Measures a text of one or more lines.
/// @param[out] textHeight  height of all lines in pixels
/// @param[out] textWidth   width of the widest line in pixels
/// @param[out] descent     the font's descent in pixels
/// @return true
bool WIN32_GetTextDimensions(qint32 &textHeight, qint32 &textWidth, qint32 &descent,
                             const TextDescription &description);

/// Pixels in points of 1/72 inch, at the screen's horizontal resolution (96 dots per inch where
/// there is no screen), truncated toward zero.
qint32 WIN_GetFontinPoints(qint32 pixels);

/// The characters that a font shows by the given glyph numbers.
/// @param glyphs  a glyph number in each UTF-16 unit
/// @return the text; empty when there is a glyph that no character maps to
QString WIN_GetTextOfGlyphs(const QString &glyphs, const QString &faceName, qint32 weight);

} // namespace svgtool
