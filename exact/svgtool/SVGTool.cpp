#include "exact/svgtool/SVGTool.h"

#include "core/base/Bytes.h"
#include "exact/emf/Emf2SVG.h"
#include "exact/logging/TraceScope.h"
#include "exact/records/BEndTools.h"
#include "exact/records/RecordDump.h"
#include "exact/svgtool/SVGInspect.h"
#include "exact/wmf/Wmf2SVG.h"

#include <QFile>

#include <algorithm>
#include <memory>
#include <new>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGTool.cpp";

namespace {

    // Lives from the library's loading to its unloading; only startRecordDump switches it on.
    RecordDump recordDump;

    // A block of our own with a copy of bytes in it, or nothing without memory.
    std::unique_ptr<char[]> copyOf(ByteView bytes)
    {
        std::unique_ptr<char[]> copy(new (std::nothrow) char[size_t(bytes.size)]);
        if (copy != nullptr && bytes.size > 0)
            std::memcpy(copy.get(), bytes.data, size_t(bytes.size));
        return copy;
    }

    qint32 ConvertEMFToSVG(ByteView data, QByteArray &svgOut, RecordTally *tally)
    {
        SVGTOOL_TRACE("ConvertEMFToSVG");
        try {
            Emf2SvgConverter converter;
            const auto header = readRecord(data, &InitEnhMetaHeader);
            if (qint64(header.nBytes) != data.size) {
                logWarning(kTraceUnit, "Invalid EMF data");
                return SvgToolInvalidEmf;
            }
            converter.setTally(tally);
            const qint32 result = converter.ConvertEMFToSVG(data, &recordDump);
            svgOut = converter.takeDocument();
            return result;
        } catch (...) {
            logFatal(kTraceUnit, "Exception occured while converting EMF data to SVG");
            return SvgToolException;
        }
    }

    qint32 ConvertWMFToSVG(ByteView data, QByteArray &svgOut, RecordTally *tally)
    {
        SVGTOOL_TRACE("ConvertWMFToSVG");
        try {
            WMF2SVGConverter converter;
            const auto placeable = readRecord(data, &InitPlaceableMetaHeader);
            const bool hasKey = placeable.Key == kPlaceableKey;
            const bool counts = converter.InitializeCoordinates(hasKey, placeable) != 0;
            const auto header =
                    readRecord(tail(data, hasKey ? qint64(sizeof(METAPLACEABLEHEADER)) : 0),
                               &InitWindowsMetaHeader);
            if (header.HeaderSize != 9 || header.NumberOfMembers != 0)
                return SvgToolInvalidWmf;

            // Quirk: the length comes from the header alone, whatever the data have, and decides
            // which record is the last. The records end with the data all the same.
            const qint64 placeableBytes = counts ? qint64(sizeof(METAPLACEABLEHEADER)) : 0;
            const qint64 totalBytes = qint64(header.Size) * 2 + placeableBytes;
            const qint64 firstRecord = placeableBytes + qint64(sizeof(METAHEADER));
            // Data that end with the headers have no record, but they are not missing.
            const qint64 start = std::min<int64_t>(firstRecord, data.size);
            if (tally != nullptr)
                tally->begin(start, 1);
            converter.setTally(tally);
            const qint32 result =
                    converter.ConvertWMFToSVG({ data.data + start, data.size - start }, totalBytes,
                                              header.MaxRecord, &recordDump);
            svgOut = converter.takeDocument();
            return result;
        } catch (...) {
            // Quirk: the message names EMF here too; hosts look for it.
            logFatal(kTraceUnit, "Exception occured while converting EMF data to SVG");
            return SvgToolException;
        }
    }

} // namespace

qint32 convertMetaFile(const QByteArray &metafileData, QByteArray &svgOut, RecordTally *tally)
{
    SVGTOOL_TRACE("ConvertMetaFileToSVG");
    constexpr qint64 kSmallestFile = sizeof(METAHEADER);
    const ByteView data{ metafileData.constData(), metafileData.size() };
    if (data.size < kSmallestFile)
        return SvgToolUnusableInput;
    const auto copy = copyOf(data);
    if (copy == nullptr)
        return SvgToolUnusableInput;
    const ByteView block{ copy.get(), data.size };

    const Emf2SvgConverter detector;
    // Data too short for an EMF header leave it zero, and so are never taken for one.
    ENHMETAHEADER header{};
    if (block.size >= qint64(sizeof header))
        header = readPadded<ENHMETAHEADER>(block);
    InitEnhMetaHeader(&header);
    return detector.IsValidEMFFile(header) != -2 ? ConvertEMFToSVG(block, svgOut, tally)
                                                 : ConvertWMFToSVG(block, svgOut, tally);
}

void setLogLevel(const QByteArray &name)
{
    SVGTOOL_TRACE("setLogLevel");
    CLogSystem::theRootInstance->setLevel(name.toStdString());
}

bool startRecordDump(int descriptor, QString *reason)
{
    SVGTOOL_TRACE("startRecordDump");
    recordDump.isOn = recordDump.file.open(descriptor, QIODevice::WriteOnly);
    if (!recordDump.isOn)
        *reason = recordDump.file.errorString();
    return recordDump.isOn;
}

bool stopRecordDump(QString *reason)
{
    SVGTOOL_TRACE("stopRecordDump");
    recordDump.isOn = false;
    // What failed before and what fails now, in the buffer, both show here.
    const bool isWhole = recordDump.file.flush() && recordDump.file.error() == QFile::NoError;
    if (!isWhole)
        *reason = recordDump.file.errorString();
    recordDump.file.close();
    return isWhole;
}

} // namespace svgtool

// What the functions behind these do not catch themselves, such as memory that runs out before a
// conversion begins, ends here: no exception crosses the library's border.

qint32 ConvertMetaFileToSVG(const QByteArray &metafileData, QByteArray &svgOut)
{
    try {
        return svgtool::convertMetaFile(metafileData, svgOut, nullptr);
    } catch (...) {
        return SvgToolException;
    }
}

qint32 WMFToSVG(const QString &filePath, QByteArray &svgOut)
{
    try {
        QFile file(filePath);
        if (!file.exists() || !file.open(QIODevice::ReadOnly))
            return SvgToolUnusableInput;
        const QByteArray bytes = file.readAll();
        file.close();
        return ConvertMetaFileToSVG(bytes, svgOut);
    } catch (...) {
        return SvgToolException;
    }
}
