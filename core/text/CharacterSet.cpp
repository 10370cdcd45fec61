#include "core/text/CharacterSet.h"

#include "core/text/CodePage.h"
#include "core/text/FaceNames.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>
#include <optional>
#include <string_view>

namespace svgtool {

namespace {

    using namespace CharSet;

    struct Encoding
    {
        uint8_t charSet;
        int codePage;
    };
    constexpr Encoding kEncodings[] = {
        { kAnsi, 1252 },    { kMac, 10000 },       { kShiftJis, 932 },    { kHangul, 949 },
        { kJohab, 1361 },   { kGb2312, 936 },      { kChineseBig5, 950 }, { kGreek, 1253 },
        { kTurkish, 1254 }, { kVietnamese, 1258 }, { kHebrew, 1255 },     { kArabic, 1256 },
        { kBaltic, 1257 },  { kRussian, 1251 },    { kThai, 874 },        { kEastEurope, 1250 },
        { kOem, 437 }, // that of most systems
    };

    // Documents were made with ICU's tables before iconv's were used, and must not change. They
    // differ in the three tables that follow, and in that ICU keeps the bytes 80 to 9F that an
    // encoding leaves undefined as controls.

    struct Byte
    {
        uint8_t charSet;
        uint8_t byte;
        char16_t unit;
    };
    constexpr Byte kBytes[] = {
        { kMac, 0xC6, 0x2206 }, // increment, not the letter delta
        { kMac, 0xF0, 0xF8FF }, // the maker's sign
        // IBM's order of three controls, and their substitute for what is undefined
        { kShiftJis, 0x1A, 0x001C },
        { kShiftJis, 0x1C, 0x007F },
        { kShiftJis, 0x7F, 0x001A },
        { kShiftJis, 0x80, 0x001A },
        { kShiftJis, 0xA0, 0x001A },
        { kShiftJis, 0xFD, 0x001A },
        { kShiftJis, 0xFE, 0x001A },
        { kShiftJis, 0xFF, 0x001A },
        // undefined bytes that have a place in the private-use area, or are themselves
        { kHangul, 0xFF, 0xF8F7 },
        { kGb2312, 0xFF, 0xF8F5 },
        { kChineseBig5, 0xFF, 0xF8F8 },
        { kGreek, 0xAA, 0x00AA },
        { kThai, 0xDB, 0xF8C1 },
        { kThai, 0xDC, 0xF8C2 },
        { kThai, 0xDD, 0xF8C3 },
        { kThai, 0xDE, 0xF8C4 },
        { kThai, 0xFC, 0xF8C5 },
        { kThai, 0xFD, 0xF8C6 },
        { kThai, 0xFE, 0xF8C7 },
        { kThai, 0xFF, 0xF8C8 },
    };

    /// Rows of pairs that an encoding leaves to its users, and the first unit of theirs, which
    /// follow one another row by row.
    struct UserArea
    {
        uint8_t charSet;
        uint8_t firstLead, lastLead;
        uint8_t firstTrail, lastTrail;
        char16_t first;
    };
    constexpr UserArea kUserAreas[] = {
        { kHangul, 0xC9, 0xC9, 0xA1, 0xFE, 0xE000 },
        { kHangul, 0xFE, 0xFE, 0xA1, 0xFE, 0xE05E },
        { kGb2312, 0xAA, 0xAF, 0xA1, 0xFE, 0xE000 },
        { kGb2312, 0xF8, 0xFE, 0xA1, 0xFE, 0xE234 },
        { kGb2312, 0xA1, 0xA7, 0x40, 0xA0, 0xE4C6 },
        // the holes among the characters of GBK, one behind the other
        { kGb2312, 0xA2, 0xA2, 0xAB, 0xB0, 0xE766 },
        { kGb2312, 0xA2, 0xA2, 0xE3, 0xE4, 0xE76C },
        { kGb2312, 0xA2, 0xA2, 0xEF, 0xF0, 0xE76E },
        { kGb2312, 0xA2, 0xA2, 0xFD, 0xFE, 0xE770 },
        { kGb2312, 0xA4, 0xA4, 0xF4, 0xFE, 0xE772 },
        { kGb2312, 0xA5, 0xA5, 0xF7, 0xFE, 0xE77D },
        { kGb2312, 0xA6, 0xA6, 0xB9, 0xC0, 0xE785 },
        { kGb2312, 0xA6, 0xA6, 0xD9, 0xDF, 0xE78D },
        { kGb2312, 0xA6, 0xA6, 0xEC, 0xED, 0xE794 },
        { kGb2312, 0xA6, 0xA6, 0xF3, 0xF3, 0xE796 },
        { kGb2312, 0xA6, 0xA6, 0xF6, 0xFE, 0xE797 },
        { kGb2312, 0xA7, 0xA7, 0xC2, 0xD0, 0xE7A0 },
        { kGb2312, 0xA7, 0xA7, 0xF2, 0xFE, 0xE7AF },
        { kGb2312, 0xA8, 0xA8, 0x96, 0xA0, 0xE7BC },
        { kGb2312, 0xA8, 0xA8, 0xBC, 0xBC, 0xE7C7 },
        { kGb2312, 0xA8, 0xA8, 0xBF, 0xBF, 0xE7C8 },
        { kGb2312, 0xA8, 0xA8, 0xC1, 0xC4, 0xE7C9 },
        { kGb2312, 0xA8, 0xA8, 0xEA, 0xFE, 0xE7CD },
        { kGb2312, 0xA9, 0xA9, 0x58, 0x58, 0xE7E2 },
        { kGb2312, 0xA9, 0xA9, 0x5B, 0x5B, 0xE7E3 },
        { kGb2312, 0xA9, 0xA9, 0x5D, 0x5F, 0xE7E4 },
        { kGb2312, 0xA9, 0xA9, 0x89, 0x95, 0xE7E7 },
        { kGb2312, 0xA9, 0xA9, 0x97, 0xA3, 0xE7F4 },
        { kGb2312, 0xA9, 0xA9, 0xF0, 0xFE, 0xE801 },
        { kGb2312, 0xD7, 0xD7, 0xFA, 0xFE, 0xE810 },
        { kGb2312, 0xFE, 0xFE, 0x50, 0xA0, 0xE815 },
        { kChineseBig5, 0xFA, 0xFE, 0x40, 0xFE, 0xE000 },
        { kChineseBig5, 0x8E, 0xA0, 0x40, 0xFE, 0xE311 },
        { kChineseBig5, 0x81, 0x8D, 0x40, 0xFE, 0xEEB8 },
    };

    constexpr char16_t kNoCharacter = 0xFFFD;
    constexpr char16_t kNotAsked = 0xFFFF; // which no character set has

    uint8_t byteOf(char character)
    {
        return static_cast<uint8_t>(character);
    }

    bool isIn(uint8_t byte, uint8_t first, uint8_t last)
    {
        return first <= byte && byte <= last;
    }

    // What a pair stands for that the system does not know.
    char16_t userUnit(uint8_t charSet, uint8_t lead, uint8_t trail)
    {
        // Bytes from here on are not among the trails of a row.
        constexpr uint8_t kGap = 0x7F;
        const int gapSize = charSet == kChineseBig5 ? 0xA1 - kGap : 1;
        const auto place = [gapSize](uint8_t from, int to) {
            return to - from - (from < kGap && to > kGap ? gapSize : 0);
        };
        if (isIn(trail, kGap, static_cast<uint8_t>(kGap + gapSize - 1)))
            return kNoCharacter;
        for (const UserArea &area : kUserAreas) {
            if (area.charSet != charSet || !isIn(lead, area.firstLead, area.lastLead)
                || !isIn(trail, area.firstTrail, area.lastTrail))
                continue;
            const int row = (lead - area.firstLead) * place(area.firstTrail, area.lastTrail + 1);
            return static_cast<char16_t>(area.first + row + place(area.firstTrail, trail));
        }
        return kNoCharacter;
    }

    /// Decodes one character set. Not for two threads at a time.
    class Decoder
    {
    public:
        /// False when the system lacks the encoding.
        bool open(const Encoding &encoding);
        std::u16string decode(std::string_view bytes);

    private:
        bool isLead(char character) const;
        bool isTrail(char character) const;
        char16_t single(char character);
        char16_t pair(std::string_view bytes);

        uint8_t m_charSet = 0;
        bool m_hasPairs = false;
        CodePage m_codePage;
        std::array<char16_t, 256> m_singles{};
    };

} // namespace

bool Decoder::open(const Encoding &encoding)
{
    if (m_codePage.isOpen())
        return true;
    if (!m_codePage.open(encoding.codePage))
        return false;
    m_charSet = encoding.charSet;
    m_hasPairs = m_charSet >= kShiftJis && m_charSet <= kChineseBig5;
    m_singles.fill(kNotAsked);
    for (char16_t unit = 0; unit < 0x80; ++unit)
        m_singles[unit] = unit;
    for (const Byte &each : kBytes)
        if (each.charSet == m_charSet)
            m_singles[each.byte] = each.unit;
    return true;
}

static bool hasPairs(uint8_t charSet)
{
    return charSet >= kShiftJis && charSet <= kChineseBig5;
}

static bool isLeadByte(uint8_t byte, uint8_t charSet)
{
    if (charSet == kShiftJis)
        return isIn(byte, 0x81, 0x9F) || isIn(byte, 0xE0, 0xFC);
    if (charSet == kJohab)
        return isIn(byte, 0x84, 0xD3) || isIn(byte, 0xD8, 0xDE) || isIn(byte, 0xE0, 0xF9);
    return hasPairs(charSet) && isIn(byte, 0x81, 0xFE);
}

static bool isTrailByte(uint8_t byte, uint8_t charSet)
{
    const uint8_t first = charSet == kJohab ? 0x31 : 0x40;
    return isIn(byte, first, charSet == kShiftJis ? 0xFC : 0xFE) && byte != 0x7F;
}

int64_t characterLength(ByteView bytes, uint8_t charSet)
{
    const bool isPair = bytes.size > 1 && isLeadByte(byteOf(bytes.data[0]), charSet)
            && isTrailByte(byteOf(bytes.data[1]), charSet);
    return isPair ? 2 : 1;
}

bool Decoder::isLead(char character) const
{
    return isLeadByte(byteOf(character), m_charSet);
}

bool Decoder::isTrail(char character) const
{
    return isTrailByte(byteOf(character), m_charSet);
}

char16_t Decoder::single(char character)
{
    char16_t &unit = m_singles[byteOf(character)];
    if (unit == kNotAsked) {
        const bool isControl = isIn(byteOf(character), 0x80, 0x9F);
        unit = m_codePage.unit({ &character, 1 })
                       .value_or(isControl ? char16_t(byteOf(character)) : kNoCharacter);
    }
    return unit;
}

char16_t Decoder::pair(std::string_view bytes)
{
    const std::optional<char16_t> unit = m_codePage.unit(bytes);
    return unit ? *unit : userUnit(m_charSet, byteOf(bytes[0]), byteOf(bytes[1]));
}

std::u16string Decoder::decode(std::string_view bytes)
{
    std::u16string text;
    if (!m_hasPairs) {
        text.resize(bytes.size());
        std::transform(bytes.begin(), bytes.end(), text.begin(),
                       [this](char character) { return single(character); });
        return text;
    }
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        size_t length = 1;
        if (!isLead(bytes.front())) {
            text += single(bytes.front());
        } else if (bytes.size() == 1) {
            break;
        } else if (isTrail(bytes[1])) {
            length = 2;
            text += pair(bytes.substr(0, length));
        } else {
            text += m_charSet == kShiftJis ? char16_t(0x001A) : kNoCharacter;
        }
        bytes.remove_prefix(length);
    }
    return text;
}

namespace {

    /// The decoders that were used so far. To open one takes as long as to convert thousands of
    /// characters, and a file may use another for each text.
    struct Decoders
    {
        std::mutex mutex;
        std::array<Decoder, std::size(kEncodings)> all;
    };

} // namespace

// Made when first used; it goes with the library, so that unloading leaves nothing behind.
static Decoders &decoders()
{
    static Decoders instance;
    return instance;
}

static std::u16string decode(ByteView bytes, uint8_t charSet)
{
    const std::string_view text(bytes.data, static_cast<size_t>(bytes.size));
    std::u16string plain(text.size(), u'\0');
    std::transform(text.begin(), text.end(), plain.begin(), [charSet](char character) {
        return static_cast<char16_t>(byteOf(character) + (charSet == kSymbol ? 0xF000 : 0));
    });
    const bool isAscii = std::none_of(text.begin(), text.end(),
                                      [](char character) { return byteOf(character) >= 0x80; });
    if (charSet == kSymbol || (isAscii && charSet != kShiftJis))
        return plain;

    const auto *entry =
            std::find_if(std::begin(kEncodings), std::end(kEncodings),
                         [charSet](const Encoding &each) { return each.charSet == charSet; });
    if (entry == std::end(kEncodings))
        entry = std::begin(kEncodings);
    Decoders &shared = decoders();
    const std::lock_guard lock(shared.mutex);
    Decoder &decoder = shared.all[static_cast<size_t>(entry - std::begin(kEncodings))];
    return decoder.open(*entry) ? decoder.decode(text) : plain;
}

std::u16string decodeText(ByteView bytes, uint8_t charSet)
{
    return decode(bytes, charSet == kJohab || charSet == kOem ? kAnsi : charSet);
}

// What the tables at the top make of a byte that is no character, which is none to GDI either.
static char16_t characterOf(uint8_t byte, char16_t unit, uint8_t charSet)
{
    if (charSet == kSymbol)
        return unit;
    if (byte < 0x80 || (charSet == kShiftJis && byte == 0xA0))
        return byte;
    const bool isPlaced = std::any_of(std::begin(kBytes), std::end(kBytes), [&](const Byte &each) {
        return each.charSet == charSet && each.byte == byte;
    });
    const bool isSubstitute = charSet == kShiftJis && unit == 0x001A;
    return (isPlaced && charSet != kMac) || isSubstitute ? kNoCharacter : unit;
}

// What fonts of traditional Chinese show for a unit of the private-use area that pairs of Big5 are
// given, C6A1 and up: signs, kana and Cyrillic letters which makers of systems added in this order.
static char16_t added(char16_t unit)
{
    struct Run
    {
        char16_t first, last;
        char16_t shown; ///< for the first
    };
    static constexpr Run kRuns[] = {
        { 0xF6B1, 0xF6BA, 0x2460 }, // digits in circles
        { 0xF6BB, 0xF6C4, 0x2474 }, // and in parentheses
        { 0xF6C5, 0xF6CE, 0x2170 }, // small Roman numerals
        { 0xF6EA, 0xF6EB, 0x30FD }, // marks that repeat Katakana
        { 0xF6EC, 0xF6ED, 0x309D }, // and Hiragana
        { 0xF6F0, 0xF6F2, 0x3005 }, // and other characters, that of an end, zero
        { 0xF6F3, 0xF6F3, 0x30FC }, // of a long vowel
        { 0xF6F7, 0xF749, 0x3041 }, // Hiragana
        { 0xF74A, 0xF79F, 0x30A1 }, // Katakana
        { 0xF7A0, 0xF7A5, 0x0410 }, // Cyrillic, with Yo in its place in the alphabet
        { 0xF7A6, 0xF7A6, 0x0401 }, { 0xF7A7, 0xF7C0, 0x0416 }, { 0xF7C1, 0xF7C6, 0x0430 },
        { 0xF7C7, 0xF7C7, 0x0451 }, { 0xF7C8, 0xF7E1, 0x0436 },
    };
    const auto *run = std::find_if(std::begin(kRuns), std::end(kRuns), [unit](const Run &each) {
        return each.first <= unit && unit <= each.last;
    });
    return run == std::end(kRuns) ? unit : char16_t(run->shown + (unit - run->first));
}

std::u16string decodeAsGdi(ByteView bytes, uint8_t charSet)
{
    std::u16string text = decode(bytes, charSet);
    if (charSet == kChineseBig5)
        std::transform(text.begin(), text.end(), text.begin(), added);
    int64_t i = 0;
    for (size_t at = 0; i < bytes.size && at < text.size(); ++at) {
        const int64_t length = characterLength(tail(bytes, i), charSet);
        if (length == 1)
            text[at] = characterOf(byteOf(bytes.data[i]), text[at], charSet);
        i += length;
    }
    if (i < bytes.size) // half a character
        text += kNoCharacter;
    return text;
}

} // namespace svgtool
