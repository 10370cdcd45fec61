#include "core/records/MetafileFacts.h"

#include "core/base/ByteOrder.h"
#include "core/records/EmfRecords.h"
#include "core/records/RecordHead.h"
#include "core/records/RecordIterator.h"
#include "core/records/WmfRecords.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

namespace svgtool {

namespace {

    HeaderBox boxOf(const RECTL &rect)
    {
        return { fromLittleEndian(rect.left), fromLittleEndian(rect.top),
                 fromLittleEndian(rect.right), fromLittleEndian(rect.bottom) };
    }

    uint32_t numberOf(const Unaligned32 &field)
    {
        return uint32_t(fromLittleEndian(field.words[1])) << 16 | fromLittleEndian(field.words[0]);
    }

    int64_t behind(const Record &record)
    {
        return record.offset + record.bytes.size;
    }

    bool isPlausible(MetafileFormat format, const Record &record)
    {
        return svgtool::isPlausible(format, record.type, record.bytes.size);
    }

    bool endsWell(MetafileFormat format, const RecordIterator &records)
    {
        return records.endRecord() && isPlausible(format, *records.endRecord());
    }

    // So many plausible records in a row are no chance.
    constexpr uint64_t kChain = 3;

    // Whether plausible records lead on from a place: so many that it is no chance, or fewer up to
    // an end record or the very end of the file.
    bool leadsOn(MetafileFormat format, ByteView file, int64_t offset)
    {
        RecordIterator records(format, file, offset);
        for (uint64_t count = 0; count < kChain; ++count) {
            const auto record = records.next();
            if (!record)
                return endsWell(format, records) || (count > 0 && records.offset() == file.size);
            if (!isPlausible(format, *record))
                return false;
        }
        return true;
    }

    // Whether the records from a place on are right although they do not all look it: the type of
    // the first is known, whatever its size, or they come by another place, from which plausible
    // ones lead on, or they go on to the end.
    bool isFirstRecord(ByteView file, int64_t offset, int64_t other)
    {
        const uint32_t first = readHead(MetafileFormat::Emf, tail(file, offset)).type;
        if (first != Emr::Header && findRecordType(kEmfRecordTypes, first) != nullptr)
            return true;
        RecordIterator records(MetafileFormat::Emf, file, offset);
        while (const auto record = records.next()) {
            if (record->offset == other)
                return true;
        }
        return records.stop() == StopReason::EndRecord || records.offset() == file.size;
    }

    // Where the records of an EMF begin, whose header names a place. Headers are longer than their
    // fixed part by their extensions, a description and a pixel format, in which no records stand.
    int64_t findFirstRecord(ByteView file, int64_t named)
    {
        constexpr MetafileFormat kEmf = MetafileFormat::Emf;
        constexpr int64_t kFixed = sizeof(ENHMETAHEADER);
        constexpr int64_t kLongestHeader = int64_t(1) << 20;
        const int64_t end = std::min(file.size, kLongestHeader);
        int64_t found = kFixed;
        while (found < end && !leadsOn(kEmf, file, found))
            found += 4;
        if (found >= end || found == named)
            return named;
        const bool isBehind = named >= kFixed && named < found;
        return isBehind && isFirstRecord(file, named, found) ? named : found;
    }

    // Behind the last record there may be anything, and zeros or another end record say nothing.
    MetafileFacts::Unread unreadFrom(MetafileFormat format, ByteView file, int64_t offset)
    {
        MetafileFacts::Unread unread{ 0, offset };
        bool isChain = false;
        for (bool goesOn = true; goesOn;) {
            RecordIterator records(format, file, offset);
            std::optional<Record> record = records.next();
            for (; record && isPlausible(format, *record); record = records.next())
                ++unread.records;
            goesOn = endsWell(format, records);
            const bool isToTheEnd = !record && records.offset() == file.size;
            isChain = isChain || (unread.records > 0 && (goesOn || isToTheEnd));
            if (goesOn)
                offset = behind(*records.endRecord());
        }
        return isChain || unread.records >= kChain ? unread : MetafileFacts::Unread{};
    }

    void walkRecords(ByteView file, MetafileFacts &facts)
    {
        RecordIterator records(facts.format, file, facts.firstRecord);
        // The header of an EMF is a record, too.
        facts.records.begin(records.offset(), facts.format == MetafileFormat::Emf ? 2 : 1);
        while (const auto record = records.next()) {
            facts.records.note(record->type, RecordOutcome::Skipped, record->bytes.size);
            facts.largestRecord = std::max(facts.largestRecord, record->bytes.size);
        }
        facts.records.end(records.stop());
        facts.isEndCut = records.stop() == StopReason::EndRecord && !records.endRecord();
        if (records.endRecord())
            facts.unread = unreadFrom(facts.format, file, behind(*records.endRecord()));
    }

    void readEmf(ByteView file, MetafileFacts &facts)
    {
        const auto header = readPadded<ENHMETAHEADER>(file);
        facts.format = MetafileFormat::Emf;
        facts.headerBytes = fromLittleEndian(header.nBytes);
        facts.headerRecords = fromLittleEndian(header.nRecords);
        facts.bounds = boxOf(header.rclBounds);
        facts.frame = boxOf(header.rclFrame);
        facts.devicePixels[0] = fromLittleEndian(header.szlDevice.cx);
        facts.devicePixels[1] = fromLittleEndian(header.szlDevice.cy);
        facts.deviceMillimeters[0] = fromLittleEndian(header.szlMillimeters.cx);
        facts.deviceMillimeters[1] = fromLittleEndian(header.szlMillimeters.cy);
        facts.namedFirstRecord = fromLittleEndian(header.nSize);
        facts.firstRecord = findFirstRecord(file, facts.namedFirstRecord);
        walkRecords(file, facts);
    }

    void readWmf(ByteView file, MetafileFacts &facts)
    {
        const auto placeable = readPadded<METAPLACEABLEHEADER>(file);
        const bool isPlaceable = numberOf(placeable.Key) == kPlaceableKey;
        const int64_t start = isPlaceable ? int64_t(sizeof placeable) : 0;
        const auto header = readPadded<METAHEADER>(tail(file, start));
        if (fromLittleEndian(header.HeaderSize) != sizeof header / 2 || header.NumberOfMembers != 0)
            return;
        facts.format = isPlaceable ? MetafileFormat::PlaceableWmf : MetafileFormat::Wmf;
        facts.headerBytes = int64_t(numberOf(header.Size)) * 2 + start;
        facts.headerLargestRecord = int64_t(numberOf(header.MaxRecord)) * 2;
        if (isPlaceable) {
            facts.bounds = { fromLittleEndian(placeable.Left), fromLittleEndian(placeable.Top),
                             fromLittleEndian(placeable.Right),
                             fromLittleEndian(placeable.Bottom) };
            facts.unitsPerInch = fromLittleEndian(placeable.Inch);
        }
        facts.namedFirstRecord = facts.firstRecord = start + int64_t(sizeof header);
        walkRecords(file, facts);
    }

} // namespace

MetafileFacts inspectMetafile(ByteView file)
{
    MetafileFacts facts;
    facts.fileBytes = file.size;
    if (file.size >= int64_t(sizeof(ENHMETAHEADER))
        && fromLittleEndian(readPadded<ENHMETAHEADER>(file).dSignature) == kEmfSignature)
        readEmf(file, facts);
    else if (file.size >= int64_t(sizeof(METAHEADER)))
        readWmf(file, facts);
    return facts;
}

bool hasWrongHeader(const MetafileFacts &facts)
{
    // At this one they end. It is not there, or is the end record, which some programs do not
    // count.
    const RecordTally::Stop &stop = facts.records.stop();
    if (facts.format == MetafileFormat::Emf)
        return facts.fileBytes != facts.headerBytes || facts.firstRecord != facts.namedFirstRecord
                || uint64_t(facts.headerRecords) + 1 < stop.record;
    // Nor do some count the bytes of the header, and what lies behind the records is no fault.
    return stop.offset >= facts.headerBytes + int64_t(sizeof(METAHEADER))
            || facts.largestRecord > facts.headerLargestRecord;
}

bool hasAllRecords(const MetafileFacts &facts)
{
    const RecordTally::Stop &stop = facts.records.stop();
    if (stop.reason == StopReason::EndRecord && !facts.isEndCut)
        return facts.unread.records == 0;
    return (stop.offset == facts.fileBytes && facts.fileBytes >= facts.headerBytes)
            || (facts.format == MetafileFormat::Emf
                && stop.record == uint64_t(facts.headerRecords) + 1);
}

void repairHeader(std::span<char> file, const MetafileFacts &facts)
{
    constexpr uint32_t kNoLimit = std::numeric_limits<uint32_t>::max();
    const auto put = [file](size_t offset, int64_t value) {
        const uint32_t number = fromLittleEndian(static_cast<uint32_t>(value));
        if (offset + sizeof number <= file.size())
            std::memcpy(file.data() + offset, &number, sizeof number);
    };
    const auto size = static_cast<int64_t>(file.size());
    if (facts.format == MetafileFormat::Emf) {
        put(offsetof(ENHMETAHEADER, nSize), facts.firstRecord);
        put(offsetof(ENHMETAHEADER, nBytes), size);
        put(offsetof(ENHMETAHEADER, nRecords), kNoLimit);
        return;
    }
    const size_t start =
            facts.format == MetafileFormat::PlaceableWmf ? sizeof(METAPLACEABLEHEADER) : 0;
    // The size counts 16-bit words, and the record that reaches it is left out.
    put(start + offsetof(METAHEADER, Size), size / 2 + 1);
    put(start + offsetof(METAHEADER, MaxRecord), kNoLimit);
}

} // namespace svgtool
