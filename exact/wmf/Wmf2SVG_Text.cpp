#include "exact/wmf/Wmf2SVG.h"

#include "core/text/CharacterSet.h"
#include "exact/logging/TraceScope.h"
#include "exact/platform/PlatformDependent.h"
#include "exact/platform/QtText.h"
#include "exact/records/BEndTools.h"

#include <algorithm>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\Wmf2SVG.cpp";

// How far the baseline lies below the top of the text, as the font entry has the numbers. A size
// that is a negative height in disguise counts as the height, and its descent with it.
qint32 WMF2SVGConverter::textAscent() const
{
    constexpr qint32 kLargestHeight = 0x7FFF;
    const CStyleManager &styles = m_writer.styles();
    if (styles.fontSize() <= kLargestHeight)
        return styles.fontSize() - styles.fontDescent();
    const qint32 size = 0x10000 - styles.fontSize();
    return size - WIN_GetFontDescent(size, styles.fontFace(), styles.fontWeight());
}

qint32 WMF2SVGConverter::OnMetaExtTextOut(char *record, quint32 size)
{
    SVGTOOL_TRACE("WMF2SVGConverter::OnMetaExtTextOut");
    constexpr quint16 kOpaque = 2;
    constexpr quint16 kClipped = 4;
    const ByteView all{ record, size };
    const auto textOut = readRecord(all, &InitWMREXTTEXTOUT);
    const bool hasRect = (textOut.fuOptions & (kOpaque | kClipped)) != 0;
    const qint64 offset = qint64(sizeof(WMREXTTEXTOUT)) + (hasRect ? qint64(sizeof(RECT16)) : 0);
    const auto rest = slice(all, offset, all.size - offset);
    if (!rest)
        return 0;
    const qint64 count = std::min<qint64>(static_cast<quint16>(textOut.cChars), rest->size);
    const QString text =
            toQString(decodeText({ rest->data, count }, m_writer.styles().fontCharSet()));
    m_writer.SmallTextOut(text, MapX(textOut.ptReference.x),
                          MapY(textOut.ptReference.y) + textAscent(),
                          m_writer.styles().GetCurrTextStyle());
    return 1;
}

} // namespace svgtool
