#include "exact/emf/Emf2SVG.h"

#include "core/base/Numeric.h"
#include "core/text/CharacterSet.h"
#include "exact/logging/TraceScope.h"
#include "exact/platform/PlatformDependent.h"
#include "exact/platform/QtText.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <algorithm>
#include <optional>
#include <vector>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Emf2SVG.cpp";

// Options of text records ([MS-EMF] 2.1.11).
static constexpr quint32 kOpaque = 0x0002;
static constexpr quint32 kGlyphIndex = 0x0010;
static constexpr quint32 kNoRect = 0x0100;
static constexpr quint32 kSmallChars = 0x0200;
static constexpr quint32 kPairsOfAdvances = 0x2000;

// Up to count UTF-16 units at offset; nothing when the offset lies outside the record.
static std::optional<QString> readUtf16(ByteView record, qint64 offset, qint64 count)
{
    const auto all = slice(record, offset, record.size - offset);
    if (!all)
        return std::nullopt;
    count = std::min<qint64>(count, all->size / 2);
    QString text;
    text.reserve(static_cast<int>(count));
    for (qint64 i = 0; i < count; ++i)
        text += QChar(qFromLittleEndian(elementAt<quint16>(*all, i)));
    return text;
}

// The sum of the advances at offset; nothing where the record has no such array.
static std::optional<qint32> sumAdvances(ByteView record, const EMRTEXT &text, qint64 count)
{
    const qint64 stride = (text.fOptions & kPairsOfAdvances) != 0 ? 2 : 1;
    // Without a rectangle the offset stands in its place.
    const bool hasRect = (text.fOptions & kNoRect) == 0;
    const quint32 offset = hasRect ? text.offDx : static_cast<quint32>(text.rcl.left);
    const auto advances = slice(record, offset, count * stride * 4);
    if (offset == 0 || !advances)
        return std::nullopt;
    qint32 sum = 0;
    for (qint64 i = 0; i < count; ++i)
        sum = wrapAdd(
                sum,
                static_cast<qint32>(qFromLittleEndian(elementAt<quint32>(*advances, i * stride))));
    return sum;
}

QString Emf2SvgConverter::shownText(const QString &text, quint32 options) const
{
    if ((options & kGlyphIndex) == 0)
        return text;
    const CStyleManager &styles = m_writer.styles();
    return WIN_GetTextOfGlyphs(text, styles.fontFace(), styles.fontWeight());
}

qint32 Emf2SvgConverter::OnSetTextAlign(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSetTextAlign");
    const auto align = readRecord({ record, size }, &InitEMRSETTEXTALIGN);
    m_writer.SetTextAlign(align.iMode);
    return 1;
}

qint32 Emf2SvgConverter::OnExtTextOutW(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnExtTextOutW");
    const ByteView all{ record, size };
    const auto textOut = readRecord(all, &InitEMREXTTEXTOUTA);
    const EMRTEXT &source = textOut.emrtext;
    const auto characters = readUtf16(all, source.offString, source.nChars);
    if (!characters)
        return 0;
    const QString text = shownText(*characters, source.fOptions);
    if (text.isEmpty())
        return 1;

    TextDimensions extent = m_writer.GetTextDimensions(text);
    if (const auto advances = sumAdvances(all, source, characters->size()))
        extent.width = MapX(*advances, false);
    const POINTL baseline = m_writer.GetPointOfReference(mapPoint(source.ptlReference), extent);
    RECTL background = m_writer.CalculateRect(baseline, extent);
    const bool hasRect = (source.fOptions & kNoRect) == 0 && source.rcl.left < source.rcl.right
            && source.rcl.top < source.rcl.bottom;
    if (hasRect && (source.fOptions & kOpaque) != 0)
        background = { MapX(source.rcl.left, true), MapY(source.rcl.top, true),
                       MapX(source.rcl.right, true), MapY(source.rcl.bottom, true) };
    m_writer.TextOut(text, baseline.x, baseline.y, background);
    return 1;
}

qint32 Emf2SvgConverter::OnSmallTextOut(char *record, quint32 size)
{
    SVGTOOL_TRACE("Emf2SvgConverter::OnSmallTextOut");
    const ByteView all{ record, size };
    const auto textOut = readRecord(all, &InitEMRSMALLTEXTOUT);
    const qint64 offset = qint64(sizeof(EMRSMALLTEXTOUT))
            + ((textOut.fuOptions & kNoRect) != 0 ? 0 : qint64(sizeof(RECTL)));
    const auto rest = slice(all, offset, all.size - offset);
    if (!rest)
        return 0;
    QString text;
    if ((textOut.fuOptions & kSmallChars) != 0) {
        const qint64 count = std::min<qint64>(textOut.cChars, rest->size);
        const ByteView bytes{ rest->data, count };
        text = (textOut.fuOptions & kGlyphIndex) != 0
                ? shownText(QString::fromLatin1(bytes.data, static_cast<int>(count)), kGlyphIndex)
                : toQString(decodeText(bytes, m_writer.styles().fontCharSet()));
    } else {
        text = shownText(readUtf16(all, offset, textOut.cChars).value_or(QString()),
                         textOut.fuOptions);
    }
    if (text.isEmpty())
        return 1;
    const POINTL baseline = m_writer.GetPointOfReference(mapPoint(textOut.ptlReference),
                                                         m_writer.GetTextDimensions(text));
    m_writer.SmallTextOut(text, baseline.x, baseline.y, m_writer.styles().GetCurrTextStyle());
    return 1;
}

} // namespace svgtool
