#pragma once

#include "core/base/Bytes.h"
#include "core/records/EmfRecords.h"
#include "core/records/WmfRecords.h"
#include "exact/style/StyleText.h"

#include <QString>

#include <map>
#include <optional>
#include <span>

namespace svgtool {

/// The graphics objects of one conversion and the SVG attribute texts made from them.
///
/// The interpreters create, select and delete objects as their records say; the writer pastes the
/// current texts into its elements. An object is turned into text once, when it is created.
/// Nothing here fails or reports: unknown indices, repeated creations and deletions are accepted.
/// @note One manager belongs to one conversion on one thread.
class CStyleManager
{
public:
    CStyleManager();

    /// Makes a pen and keeps it under @p index, in place of what was there.
    /// @param style    PS_* bits: line style, end cap (0x0F00), join (0xF000); [MS-EMF] 2.1.25
    /// @param width    in output units; written as an unsigned number
    /// @param colour   COLORREF
    /// @param entries  dash and gap lengths of a PS_USERSTYLE pen
    void EmfCreatePen(quint32 index, quint32 style, qint32 width, quint32 colour,
                      std::span<const quint32> entries = {});
    /// Makes a brush and keeps it under @p index.
    /// @param style  BS_SOLID 0, BS_HATCHED 2; every other style fills nothing
    /// @param hatch  HS_* value 0 to 5 of a hatched brush
    void EmfCreateBrush(quint32 index, quint32 style, quint32 colour, quint32 hatch);
    /// Makes a font of an EMF and keeps it under @p index; sets the text rotation.
    /// @param font  its height in output units
    void EmfCreateFont(quint32 index, const LOGFONTW &font);
    /// Makes a font of a WMF and keeps it under @p index.
    /// @param faceName  8-bit characters up to the first zero
    void MetaCreateFont(quint32 index, const FONTSPEC &font, ByteView faceName);
    /// Makes the object current, or applies a stock object (0x80000000 plus its GDI number), and
    /// rebuilds the combined text.
    void EmfSelectObject(quint32 index);
    /// Removes the object; what is drawn stays as it is until the next selection.
    void EmfDeleteObject(quint32 index);

    /// The text of brush @p index from its first "=" on; empty unless it is a brush.
    QString EmfGetBrush(quint32 index);
    /// The pattern definitions of hatched brush @p index; empty when there are none.
    QString GetBrushPattern(quint32 index);
    /// Sets the background colour (COLORREF) and returns its text.
    QString SetBkgColor(quint32 colour);
    /// Sets the text colour (COLORREF) and returns its text.
    QString SetTextColor(quint32 colour);
    /// Ties every later shape to the clip path @p clipId, or to none when it is empty.
    bool ExtSetClipRgn(const QString &clipId);

    /// "#" and six lowercase hexadecimal digits, red first.
    static QString GetColorString(quint32 colour);
    /// Line ends, join and dashes of a pen.
    static QString GetDashArray(quint32 style, qint32 width, std::span<const quint32> entries);
    /// For elements that are only stroked.
    QString GetCurrPenStyle() const;
    /// For filled path data; opens with the quote that closes the data.
    QString GetCurrBrushStyle() const;
    /// For text elements.
    QString GetCurrTextStyle() const;

    /// For shapes: pen, brush and clip reference in one.
    const QString &combinedStyle() const { return m_combinedStyle; }
    /// The same as elements take it; made when it is first asked for after a change.
    const StyleText &shapeStyle() const
    {
        if (!m_shapeStyle)
            m_shapeStyle = m_combinedStyle;
        return *m_shapeStyle;
    }
    /// The clip reference; empty when no clip is set.
    const QString &clipReference() const { return m_extraAttributes; }
    /// The paint of the current brush: a colour, a pattern reference or "none". Empty while a stock
    /// pen stands in the brush's place.
    QString brushPaint() const;
    const QString &backgroundColor() const { return m_backgroundColor; }
    /// Rotation of text in whole degrees, clockwise; 0 for none.
    qint32 textRotation() const { return m_textRotation; }
    double textFillOpacity() const { return m_textFillOpacity; }
    const QString &fontFace() const { return m_font.faceName; }
    /// These two ask the font engine when they are first called for a font; a document without
    /// texts never waits for it.
    qint32 fontSize() const;
    qint32 fontDescent() const;
    qint32 fontWeight() const { return m_font.weight; }
    /// Character set of the current font ([MS-WMF] 2.1.1.5), for its 8-bit texts.
    quint8 fontCharSet() const { return m_font.charSet; }
    /// How many hatch patterns were made so far.
    quint32 patternCount() const { return m_patternCount; }

private:
    enum class Kind { Nothing, Pen, Brush, Font };

    struct Object
    {
        Kind kind = Kind::Nothing;
        QString style;
    };

    struct Font
    {
        QString faceName;
        qint32 cellHeight = 0; ///< what the size is asked for with
        mutable std::optional<qint32> size; ///< known or asked for
        mutable std::optional<qint32> descent;
        qint32 weight = 0;
        bool italic = false;
        bool underline = false;
        quint8 charSet = 0;
    };

    QString GetPattern(quint32 brushIndex, quint32 hatch, quint32 colour);
    void addFont(quint32 index, const Font &font, const QString &style);
    void selectStockObject(quint32 index);
    void rebuildCombinedStyle();

    quint32 m_patternCount = 0;
    QString m_penStyle;
    QString m_brushStyle;
    QString m_backgroundColor;
    double m_textFillOpacity = 0.0;
    QString m_textColor;
    QString m_textStyle;
    QString m_extraAttributes;
    QString m_combinedStyle;
    mutable std::optional<StyleText> m_shapeStyle; ///< the combined style; none when that changed
    std::map<quint32, Object> m_objects;
    std::map<quint32, QString> m_patterns;
    std::map<quint32, Font> m_fonts;
    qint32 m_textRotation = 0;
    Font m_font; ///< the current one
    quint32 m_lastFontIndex = 0;
};

} // namespace svgtool
