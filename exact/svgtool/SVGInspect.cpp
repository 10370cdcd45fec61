#include "exact/svgtool/SVGInspect.h"

#include "core/base/Bytes.h"
#include "core/records/EmfRecordNames.h"
#include "core/records/EmfRecords.h"
#include "core/records/WmfRecordNames.h"
#include "core/records/WmfRecords.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"

#include <QtEndian>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGInspect.cpp";

namespace {

    // Walks a chain of records of which only the heads are read. The function sizes a record and
    // names its type.
    template<class Head, class SizeAndType>
    void walkHeads(ByteView data, qint64 offset, RecordTally &records, quint64 first,
                   SizeAndType sizeAndType)
    {
        records.begin(std::min<int64_t>(offset, data.size), first);
        ByteView rest = tail(data, offset);
        while (rest.size >= qint64(sizeof(Head))) {
            const auto [size, type, isEnd] = sizeAndType(readPadded<Head>(rest));
            if (isEnd)
                return records.end(StopReason::EndRecord);
            if (size < qint64(sizeof(Head)) || size > rest.size)
                return records.end(size > rest.size ? StopReason::RecordCut : StopReason::BadSize);
            records.note(type, RecordOutcome::Skipped, static_cast<quint32>(size));
            rest = tail(rest, size);
        }
        records.end(StopReason::DataEnded);
    }

    struct HeadFacts
    {
        qint64 size;
        quint32 type;
        bool isEnd;
    };

    HeaderBox boxOf(const RECTL &rect)
    {
        return { rect.left, rect.top, rect.right, rect.bottom };
    }

    void readEmf(ByteView data, MetafileFacts &facts)
    {
        const auto header = readRecord(data, &InitEnhMetaHeader);
        facts.format = MetafileFormat::Emf;
        facts.headerBytes = header.nBytes;
        facts.headerRecords = header.nRecords;
        facts.bounds = boxOf(header.rclBounds);
        facts.frame = boxOf(header.rclFrame);
        facts.devicePixels[0] = header.szlDevice.cx;
        facts.devicePixels[1] = header.szlDevice.cy;
        facts.deviceMillimeters[0] = header.szlMillimeters.cx;
        facts.deviceMillimeters[1] = header.szlMillimeters.cy;
        walkHeads<EMR>(data, header.nSize, facts.records, 2, [](EMR head) {
            constexpr quint32 kEnd = 14; // EMR_EOF
            InitEMR(&head);
            return HeadFacts{ qint64(head.nSize), head.iType, head.iType == kEnd };
        });
    }

    void readWmf(ByteView data, MetafileFacts &facts)
    {
        constexpr quint32 kPlaceableKey = 0x9AC6CDD7;
        const auto placeable = readRecord(data, &InitPlaceableMetaHeader);
        const bool isPlaceable = placeable.Key == kPlaceableKey;
        const qint64 start = isPlaceable ? qint64(sizeof placeable) : 0;
        const auto header = readRecord(tail(data, start), &InitWindowsMetaHeader);
        if (header.HeaderSize != 9 || header.NumberOfMembers != 0)
            return;
        facts.format = isPlaceable ? MetafileFormat::PlaceableWmf : MetafileFormat::Wmf;
        facts.headerBytes = qint64(header.Size) * 2 + start;
        if (isPlaceable) {
            facts.bounds = { placeable.Left, placeable.Top, placeable.Right, placeable.Bottom };
            facts.unitsPerInch = placeable.Inch;
        }
        const qint64 firstRecord = start + qint64(sizeof header);
        walkHeads<WMR>(data, firstRecord, facts.records, 1, [](const WMR &source) {
            WMR head = source;
            InitWMR(&head, &source);
            return HeadFacts{ qint64(head.rdSize) * 2, head.rdFunction, head.rdFunction == 0 };
        });
    }

} // namespace

MetafileFacts inspectMetaFile(const QByteArray &metafileData)
{
    SVGTOOL_TRACE("inspectMetaFile");
    constexpr quint32 kSignature = 0x464D4520; // " EMF"
    const ByteView data{ metafileData.constData(), metafileData.size() };
    MetafileFacts facts;
    facts.fileBytes = data.size;
    if (data.size >= qint64(sizeof(ENHMETAHEADER))
        && qFromLittleEndian(readPadded<ENHMETAHEADER>(data).dSignature) == kSignature)
        readEmf(data, facts);
    else if (data.size >= qint64(sizeof(METAHEADER)))
        readWmf(data, facts);
    return facts;
}

QByteArray withRepairedHeader(const QByteArray &metafileData, MetafileFormat format)
{
    SVGTOOL_TRACE("withRepairedHeader");
    constexpr quint32 kNoLimit = 0xFFFFFFFF;
    const bool isEmf = format == MetafileFormat::Emf;
    const size_t start = format == MetafileFormat::PlaceableWmf ? sizeof(METAPLACEABLEHEADER) : 0;
    // The size of a WMF counts 16-bit words, and its record that reaches the size is left out.
    const auto size =
            static_cast<quint32>(isEmf ? metafileData.size() : metafileData.size() / 2 + 1);
    QByteArray copy = metafileData;
    const auto put = [&copy](size_t offset, quint32 value) {
        if (offset + sizeof value <= size_t(copy.size()))
            qToLittleEndian(value, copy.data() + offset);
    };
    put(isEmf ? offsetof(ENHMETAHEADER, nBytes) : start + offsetof(METAHEADER, Size), size);
    put(isEmf ? offsetof(ENHMETAHEADER, nRecords) : start + offsetof(METAHEADER, MaxRecord),
        kNoLimit);
    return copy;
}

void setLogLevel(const QByteArray &name)
{
    SVGTOOL_TRACE("setLogLevel");
    CLogSystem::theRootInstance->setLevel(name.toStdString());
}

QByteArray recordName(MetafileFormat format, quint32 type)
{
    SVGTOOL_TRACE("recordName");
    if (type == RecordTally::kOtherTypes)
        return QByteArrayLiteral("other types");
    if (format == MetafileFormat::Emf) {
        if (type < std::size(kEmfRecordNames) && kEmfRecordNames[type] != nullptr)
            return QByteArray(kEmfRecordNames[type]).trimmed();
        return QByteArrayLiteral("EMR ") + QByteArray::number(type);
    }
    for (const WmfRecordName &entry : kWmfRecordNames) {
        if (entry.function == type)
            return QByteArray(entry.name).trimmed();
    }
    return QByteArrayLiteral("META 0x") + QByteArray::number(type, 16);
}

} // namespace svgtool
