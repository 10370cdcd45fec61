#include "fuzz/PictureChecks.h"

#include "core/base/Bytes.h"
#include "core/records/EmfPlusRecordTypes.h"
#include "exact/svgtool/SVGInspect.h"
#include "fuzz/Harness.h"
#include "fuzz/Numbers.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <ctime>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace svgtool::fuzz {

namespace {

    using Counts = std::map<uint32_t, uint64_t>;

    constexpr uint32_t kPlaceable = 0x9AC6CDD7, kPlusComment = 0x2B464D45;
    constexpr uint32_t kComment = 70, kEmfEnd = 14;

    bool isGzip(const std::string &file)
    {
        return numberAt(file, 0, 2) == 0x8B1F;
    }

    bool isEmf(const std::string &file)
    {
        return numberAt(file, 40, 4) == 0x464D4520;
    }

    bool isWithinComments(uint32_t type)
    {
        return findRecordType(kEmfPlusRecordTypes, type) != nullptr;
    }

    // Counts the records within a comment; false if they are not one chain up to its end.
    bool countPlus(const std::string &file, size_t at, size_t end, Counts &counts)
    {
        for (size_t size = 0; at < end; at += size) {
            size = numberAt(file, at + 4, 4);
            const uint32_t type = numberAt(file, at, 2);
            if (size < 12 || size > end - at || numberAt(file, at + 8, 4) > size - 12
                || !isWithinComments(type))
                return false;
            ++counts[type];
        }
        return true;
    }

    // What a file's records are, by its bytes alone. Those within comments begin with a header.
    struct Walk
    {
        Counts records, plus;
        bool isPlusSound = true;
    };

    void walkComment(const std::string &file, size_t at, size_t size, Walk &all)
    {
        const uint32_t data = numberAt(file, at + 8, 4);
        if (size < 16 || numberAt(file, at + 12, 4) != kPlusComment)
            return;
        if (all.plus.empty() && numberAt(file, at + 16, 2) != EmfPlus::Header)
            return;
        all.isPlusSound = all.isPlusSound && data >= 4 && data <= size - 12
                && countPlus(file, at + 16, at + 12 + data, all.plus);
    }

    Walk walk(const std::string &file)
    {
        Walk all;
        const bool isWide = isEmf(file);
        const size_t head = isWide ? 8 : 6;
        size_t at =
                isWide ? numberAt(file, 4, 4) : 18 + (numberAt(file, 0, 4) == kPlaceable ? 22 : 0);
        for (size_t size = 0; at + head <= file.size(); at += size) {
            const uint32_t type = isWide ? numberAt(file, at, 4) : numberAt(file, at + 4, 2);
            size = isWide ? numberAt(file, at + 4, 4) : size_t(numberAt(file, at, 4)) * 2;
            if (type == (isWide ? kEmfEnd : 0) || size < head || size > file.size() - at)
                break;
            ++all.records[type];
            if (isWide && type == kComment)
                walkComment(file, at, size, all);
        }
        return all;
    }

    // A tally's counts are those of a walk, but for types that share an entry.
    void requireEqual(const Counts &counts, const Counts &walked)
    {
        uint64_t all = 0, allWalked = 0;
        for (const auto &[type, count] : walked)
            allWalked += count;
        for (const auto &[type, count] : counts) {
            all += count;
            const auto same = walked.find(type);
            require(type == RecordLine::kOtherTypes
                    || (same != walked.end() && same->second == count));
        }
        require(all == allWalked);
    }

    // The exact path takes the same bytes for records, though it may end before the end record.
    void checkAgreement(const std::string &file, const Counts &records)
    {
        RecordTally tally;
        QByteArray svg;
        convertMetaFile(QByteArray::fromStdString(file), svg, &tally);
        Counts counts;
        for (const RecordTally::Line &line : tally.lines())
            counts[line.type] += line.count;
        if (tally.stop().reason == StopReason::EndRecord)
            return requireEqual(counts, records);
        for (const auto &[type, count] : counts) {
            const auto same = records.find(type);
            require(type == RecordTally::kOtherTypes
                    || (same != records.end() && count <= same->second));
        }
    }

    // All records of a sound file are told of, each once. Of a damaged one more may be found than
    // its chain leads to, but no more than have room in it.
    void checkReport(const PictureReport &report, const std::string &file, bool isSampled)
    {
        Counts records, plus;
        for (const RecordLine &line : report.records) {
            const bool isWithin = isEmf(file) && isWithinComments(line.type);
            (isWithin ? plus : records)[line.type] += line.count;
        }
        if (report.isOfEmbeddedEmf || isGzip(file))
            return;
        if (!report.isWhole || report.isHeaderWrong) {
            constexpr uint64_t kShortest = 6;
            uint64_t all = 0;
            for (const auto &[type, count] : records)
                all += count;
            return require(all * kShortest <= file.size());
        }
        const Walk walked = walk(file);
        requireEqual(records, walked.records);
        // A second header may begin anew what the first one did not.
        const auto header = walked.plus.find(EmfPlus::Header);
        const bool isOne = header != walked.plus.end() && header->second == 1;
        if (!plus.empty() && walked.isPlusSound && isOne)
            requireEqual(plus, walked.plus);
        if (isSampled)
            checkAgreement(file, records);
    }

    bool isLocal(QStringView link)
    {
        return link.startsWith(u'#') || link.startsWith(u"data:image/png;base64,")
                || link.startsWith(u"data:image/jpeg;base64,");
    }

    void checkAttribute(QStringView name, QStringView value)
    {
        require(!name.startsWith(u"on"));
        if (name == u"xlink:href")
            return require(isLocal(value));
        if (name == u"font-family" || name == u"id" || name.startsWith(u"xmlns"))
            return;
        if (value.startsWith(u"url("))
            return require(value.startsWith(u"url(#"));
        require(!value.contains(u"url(") && !value.contains(u"nan") && !value.contains(u"inf"));
    }

    void keep(const std::string &document, size_t hash)
    {
        static const QString folder = qEnvironmentVariable("SVGTOOL_FUZZ_DOCUMENTS");
        if (folder.isEmpty())
            return;
        QFile file(QStringLiteral("%1/%2.svg").arg(folder).arg(hash, 16, 16, QLatin1Char('0')));
        require(file.open(QIODevice::WriteOnly)
                && file.write(document.data(), qint64(document.size())) >= 0);
    }

} // namespace

void checkDocument(std::string_view svg)
{
    static constexpr QStringView kElements[] = {
        u"svg",     u"title",          u"desc",           u"defs",   u"g",        u"path",
        u"rect",    u"line",           u"image",          u"circle", u"ellipse",  u"polyline",
        u"polygon", u"text",           u"tspan",          u"use",    u"clipPath", u"pattern",
        u"stop",    u"linearGradient", u"radialGradient",
    };
    require(svg.starts_with("<svg ") && svg.ends_with("</svg>\n"));
    QXmlStreamReader reader(QByteArray::fromRawData(svg.data(), int(svg.size())));
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        require(token != QXmlStreamReader::DTD && token != QXmlStreamReader::EntityReference
                && token != QXmlStreamReader::ProcessingInstruction);
        if (token != QXmlStreamReader::StartElement)
            continue;
        require(std::ranges::find(kElements, reader.qualifiedName()) != std::end(kElements));
        for (const QXmlStreamAttribute &attribute : reader.attributes())
            checkAttribute(attribute.qualifiedName(), attribute.value());
    }
    require(!reader.hasError());
}

void drawAndCheck(std::span<const std::byte> metafile, const PictureOptions &options)
{
    Picture picture;
    const auto drawingSeconds = [&] {
        const std::clock_t start = std::clock();
        picture = drawMetafile(metafile, options);
        return double(std::clock() - start) / CLOCKS_PER_SEC;
    };
    // Where it is the first to ask for fonts, it takes longer.
    require(drawingSeconds() < 1 || drawingSeconds() < 1);
    // Memory is not scarce here.
    require(picture.error != PictureError::OutOfMemory && picture.error != PictureError::Internal);
    require((picture.error == PictureError::None) != picture.document.empty());
    if (picture.error != PictureError::None)
        return;
    require(picture.width > 0 && std::isfinite(picture.width));
    require(picture.height > 0 && std::isfinite(picture.height));
    checkDocument(picture.document);
    const std::string file(reinterpret_cast<const char *>(metafile.data()), metafile.size());
    const size_t hash = std::hash<std::string>()(file);
    checkReport(picture.report, file, hash % 16 == 0);
    if (hash % 8 == 1)
        require(drawMetafile(metafile, options).document == picture.document);
    keep(picture.document, hash);
}

} // namespace svgtool::fuzz
