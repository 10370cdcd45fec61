#include "picture/api/picture.hpp"

#include "core/records/Fields.h"
#include "core/records/MetafileFacts.h"
#include "picture/play/EmfPlayer.h"
#include "picture/scene/Passes.h"
#include "picture/svg/SvgWriter.h"

#include <new>

namespace svgtool {

namespace {

    void fillReport(PictureReport &report, const RecordTally &tally, const MetafileFacts &facts)
    {
        const auto types = recordTypes(facts.format);
        for (const RecordTally::Line &line : tally.lines()) {
            const RecordType *const type = findRecordType(types, line.type);
            report.records.push_back({ line.type, type != nullptr ? type->name : "",
                                       RecordFate(line.outcome), line.count, line.firstOffset,
                                       line.why });
        }
        report.isWhole = tally.stop().reason == StopReason::EndRecord && facts.unread.records == 0;
    }

    Picture draw(ByteView file, const PictureOptions &options)
    {
        Picture result;
        const MetafileFacts facts = inspectMetafile(file);
        if (facts.format != MetafileFormat::Emf) {
            result.error = PictureError::NotAMetafile;
            return result;
        }
        const auto picture = picture::EmfPlayer::pictureOf(facts);
        constexpr int64_t kHandles = 56; // the header's nHandles
        picture::DeviceContext context(picture.device, Fields(file, kHandles).word());
        RecordTally tally;
        picture::EmfPlayer(context).playAll(file, facts.firstRecord, &tally);
        picture::Scene scene = context.take();
        scene.width = picture.width * options.scale;
        scene.height = picture.height * options.scale;
        picture::joinLines(scene);
        picture::alignLineEnds(scene);
        result.width = scene.width;
        result.height = scene.height;
        result.document =
                picture::writeSvg(scene, options.idPrefix.empty() ? "p" : options.idPrefix);
        fillReport(result.report, tally, facts);
        return result;
    }

} // namespace

Picture drawMetafile(std::span<const std::byte> metafile, const PictureOptions &options) noexcept
try {
    // Bytes are what char may look at.
    const auto *const data = reinterpret_cast<const char *>(metafile.data());
    return draw({ data, int64_t(metafile.size()) }, options);
} catch (const std::bad_alloc &) {
    Picture result;
    result.error = PictureError::OutOfMemory;
    return result;
}

} // namespace svgtool
