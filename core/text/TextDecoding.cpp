#include "core/text/TextDecoding.h"

#include "exact/platform/QtCompat.h"

#include <QByteArray>

#include <algorithm>
#include <iterator>

namespace svgtool {

static constexpr uint8_t kSymbol = 2;

// The encoding of a character set.
static const char *encodingOf(uint8_t charSet)
{
    struct Entry
    {
        uint8_t charSet;
        const char *encoding;
    };
    static constexpr Entry kEncodings[] = {
        { 77, "macintosh" }, // MAC_CHARSET
        { 128, "windows-932" }, // SHIFTJIS_CHARSET
        { 129, "windows-949" }, // HANGUL_CHARSET
        { 134, "windows-936" }, // GB2312_CHARSET
        { 136, "windows-950" }, // CHINESEBIG5_CHARSET
        { 161, "windows-1253" }, // GREEK_CHARSET
        { 162, "windows-1254" }, // TURKISH_CHARSET
        { 163, "windows-1258" }, // VIETNAMESE_CHARSET
        { 177, "windows-1255" }, // HEBREW_CHARSET
        { 178, "windows-1256" }, // ARABIC_CHARSET
        { 186, "windows-1257" }, // BALTIC_CHARSET
        { 204, "windows-1251" }, // RUSSIAN_CHARSET
        { 222, "windows-874" }, // THAI_CHARSET
        { 238, "windows-1250" }, // EASTEUROPE_CHARSET
    };
    const auto *const entry =
            std::find_if(std::begin(kEncodings), std::end(kEncodings),
                         [charSet](const Entry &each) { return each.charSet == charSet; });
    return entry != std::end(kEncodings) ? entry->encoding : "windows-1252";
}

QString decodeText(ByteView bytes, uint8_t charSet)
{
    const QByteArray text(bytes.data, static_cast<int>(bytes.size));
    if (charSet != kSymbol)
        return decode(text, encodingOf(charSet));
    QString symbols;
    for (const char byte : text)
        symbols += QChar(static_cast<ushort>(0xF000 + static_cast<uint8_t>(byte)));
    return symbols;
}

} // namespace svgtool
