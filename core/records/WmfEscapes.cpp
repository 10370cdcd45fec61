#include "core/records/WmfEscapes.h"

#include "core/records/Fields.h"
#include "core/records/RecordRecovery.h"
#include "core/records/WmfRecordTypes.h"
#include "core/records/WmfRecords.h"

namespace svgtool {

namespace {

    constexpr int64_t kFunction = 6, kComment = 10; // in a record
    constexpr uint32_t kIdentifier = 0x43464D57, kEnhanced = 1;

    // META_ESCAPE_ENHANCED_METAFILE from its checksum on.
    struct Part
    {
        uint16_t checksum; ///< right in the first part
        uint32_t count, size, left, total; ///< parts; bytes of this one, of those behind it, of all
        ByteView bytes;
    };

    Part partOf(ByteView record)
    {
        constexpr int64_t kChecksum = kComment + 12, kFlags = 4;
        Fields fields(record, kChecksum);
        Part part{};
        part.checksum = fields.word();
        part.count = fields.skip(kFlags).dword();
        part.size = fields.dword();
        part.left = fields.dword();
        part.total = fields.dword();
        const ByteView rest = tail(record, fields.offset());
        part.bytes = slice(rest, 0, part.size).value_or(rest);
        return part;
    }

    // Parts in their order, of one EMF.
    class Assembly
    {
    public:
        void add(const Part &part)
        {
            if (isWhole() || !m_isRight)
                return;
            if (m_parts == 0)
                m_first = part;
            m_isRight = part.count == m_first.count && part.total == m_first.total
                    && part.left == int64_t(part.total) - int64_t(m_bytes.size()) - part.size;
            if (!m_isRight)
                return;
            m_isRight = part.bytes.size == part.size;
            m_bytes.append(part.bytes.data, size_t(part.bytes.size));
            ++m_parts;
        }
        bool hasBegun() const { return m_parts > 0 || !m_isRight; }
        bool isWhole() const
        {
            return m_isRight && m_parts > 0 && m_parts == m_first.count
                    && m_bytes.size() == m_first.total;
        }
        uint16_t checksum() const { return m_first.checksum; }
        std::string &bytes() { return m_bytes; }

    private:
        Part m_first{};
        uint32_t m_parts = 0;
        bool m_isRight = true;
        std::string m_bytes;
    };

    template<class Combine>
    uint16_t combined(ByteView bytes, Combine combine)
    {
        uint16_t result = 0;
        Fields words(bytes);
        while (words.offset() < bytes.size)
            result = uint16_t(combine(result, words.word()));
        return result;
    }

    // The words of the EMF by exclusive or, and that inverted, is what the description says; GDI
    // makes the sum of all words of the WMF 0. One writer negates in place of inverting.
    bool isRight(uint16_t checksum, ByteView emf, ByteView file, const MetafileFacts &facts)
    {
        const uint16_t mixed =
                combined(emf, [](uint32_t all, uint32_t word) { return all ^ word; });
        if (checksum == uint16_t(~mixed) || checksum == uint16_t(-mixed))
            return true;
        const int64_t start = facts.firstRecord - int64_t(sizeof(METAHEADER));
        const auto named = slice(file, start, facts.headerBytes - start);
        return named
                && combined(*named, [](uint32_t all, uint32_t word) { return all + word; }) == 0;
    }

} // namespace

bool isPartOfEmf(ByteView record)
{
    Fields fields(record, kFunction);
    const bool isComment = fields.word() == WmfEscape::Comment;
    return isComment && fields.skip(2).dword() == kIdentifier && fields.dword() == kEnhanced;
}

WmfEscapes readEscapes(ByteView file, const MetafileFacts &facts)
{
    WmfEscapes escapes;
    Assembly emf;
    RecordRecovery records(file, facts);
    while (const auto record = records.next()) {
        if (record->type != Meta::Escape)
            continue;
        if (isPartOfEmf(record->bytes))
            emf.add(partOf(record->bytes));
        else if (Fields(record->bytes, kFunction).word() == WmfEscape::PostScriptIgnore)
            escapes.replacesPostScript = true;
    }
    const ByteView bytes{ emf.bytes().data(), int64_t(emf.bytes().size()) };
    escapes.isEmfDamaged =
            emf.hasBegun() && !(emf.isWhole() && isRight(emf.checksum(), bytes, file, facts));
    escapes.emf = std::move(emf.bytes());
    return escapes;
}

} // namespace svgtool
