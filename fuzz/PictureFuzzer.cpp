// The picture of a whole metafile, and its report. Where a format is linked in,
// fuzz/RecordMutator.cpp keeps sizes and counts plausible; else the bytes are any.

#include "core/records/EmfPlusRecordTypes.h"
#include "core/records/MetafileFacts.h"
#include "fuzz/Harness.h"
#include "picture/api/picture.hpp"

#include <cmath>
#include <map>
#include <span>
#include <string_view>

namespace {

using svgtool::Picture;
using svgtool::PictureError;
using svgtool::fuzz::require;

// Names of fonts, the bytes of images and prefixes of ids may hold any letters.
bool hasBrokenNumber(std::string_view tag)
{
    for (size_t at = tag.find("=\""); at != tag.npos; at = tag.find("=\"", at)) {
        const std::string_view name = tag.substr(0, at);
        const size_t end = tag.find('"', at + 2);
        const std::string_view value = tag.substr(at, end - at);
        const bool isNumeric = !name.ends_with(" xlink:href") && !name.ends_with(" font-family")
                && !name.ends_with(" id") && !value.starts_with("=\"url(#");
        if (isNumeric && (value.find("nan") != value.npos || value.find("inf") != value.npos))
            return true;
        at = end;
    }
    return false;
}

// One element, with nothing left open, whose attributes hold no number that is none.
void checkDocument(std::string_view svg)
{
    require(svg.starts_with("<svg ") && svg.ends_with("</svg>\n"));
    int64_t depth = 0;
    for (size_t at = svg.find('<'); at != svg.npos; at = svg.find('<', at + 1)) {
        const size_t end = svg.find('>', at);
        require(end != svg.npos);
        const std::string_view tag = svg.substr(at, end - at);
        require(!hasBrokenNumber(tag));
        const bool isComment = tag.starts_with("<!") || tag.starts_with("<?");
        if (tag.starts_with("</"))
            --depth;
        else if (!isComment && !tag.ends_with('/'))
            ++depth;
        require(depth > 0 || end + 2 == svg.size());
    }
    require(depth == 0);
}

bool isWithinComments(uint32_t type)
{
    return svgtool::findRecordType(svgtool::kEmfPlusRecordTypes, type) != nullptr;
}

// All records are told of, each once, if they are the file's; of those within comments it is not
// known how many there are. Of a damaged file more may be found than its chain leads to, but no
// more than have room in it.
void checkReport(const Picture &picture, svgtool::ByteView file)
{
    std::map<uint32_t, uint64_t> counts;
    if (picture.report.isOfEmbeddedEmf)
        return;
    for (const svgtool::RecordLine &line : picture.report.records)
        counts[line.type] += line.count;
    constexpr uint64_t kShortest = 6;
    if (!picture.report.isWhole) {
        uint64_t records = 0;
        for (const auto &[type, count] : counts)
            records += isWithinComments(type) ? 0 : count;
        require(records * kShortest <= uint64_t(file.size));
        return;
    }
    const svgtool::MetafileFacts facts = svgtool::inspectMetafile(file);
    for (const auto &line : facts.records.lines()) {
        const uint64_t count = counts[line.type];
        require(count == line.count || (count > line.count && isWithinComments(line.type)));
        counts.erase(line.type);
    }
    for (const auto &[type, count] : counts)
        require(isWithinComments(type));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto bytes = std::as_bytes(std::span(data, size));
    svgtool::PictureOptions options;
    options.scale = size % 3 == 0 ? 0.25 : 1;
    const Picture picture = svgtool::drawMetafile(bytes, options);
    // Memory is not scarce here.
    require(picture.error != PictureError::OutOfMemory && picture.error != PictureError::Internal);
    require((picture.error == PictureError::None) != picture.document.empty());
    if (picture.error != PictureError::None)
        return 0;
    require(picture.width > 0 && std::isfinite(picture.width));
    require(picture.height > 0 && std::isfinite(picture.height));
    checkDocument(picture.document);
    checkReport(picture, { reinterpret_cast<const char *>(data), int64_t(size) });
    require(svgtool::drawMetafile(bytes, options).document == picture.document);
    return 0;
}
