#include "picture/api/Drawing.h"
#include "picture/api/Options.h"
#include "picture/api/Report.h"

#include "core/base/Gzip.h"
#include "core/records/EmfDescription.h"
#include "core/records/EmfRecords.h"
#include "core/records/Fields.h"
#include "core/records/RecordRecovery.h"
#include "core/records/WmfEscapes.h"
#include "picture/play/EmfPlayer.h"
#include "picture/play/WmfPlayer.h"
#include "picture/scene/Grounds.h"
#include "picture/scene/Images.h"
#include "picture/scene/Passes.h"
#include "picture/svg/SvgLimit.h"

#include <cstddef>
#include <new>
#include <stdexcept>

namespace svgtool {

namespace {

    Picture failure(PictureError error)
    {
        Picture picture;
        picture.error = error;
        return picture;
    }

    // What comes of playing a file of either format.
    struct Playback
    {
        picture::Scene scene;
        PictureSize natural;
        std::string_view sizeGuess;
        RecordTally records;
    };

    // Passes over the scene, and the document.
    // @param[out] leftOut  numbers of records of which it lacks something
    Picture finished(Playback playback, ByteView file, const PictureOptions &options,
                     std::vector<uint32_t> &leftOut)
    {
        Picture result;
        picture::Scene &scene = playback.scene;
        // Lines' ends lie by the pixels of the natural size, whatever is asked for.
        scene.width = playback.natural.width;
        scene.height = playback.natural.height;
        picture::ensureSize(scene);
        picture::joinLines(scene);
        picture::joinPixels(scene);
        picture::alignLineEnds(scene);
        const PictureSize size = sizeOf(playback.natural, options);
        scene.width = size.width;
        scene.height = size.height;
        picture::ensureSize(scene);
        result.width = scene.width;
        result.height = scene.height;
        picture::cutFar(scene);
        picture::dropUnseen(scene);
        picture::dropClips(scene);
        picture::fillGaps(scene);
        picture::joinFigures(scene);
        picture::enlargeImages(scene);
        picture::layPaper(scene);
        constexpr double kMega = 1e6;
        result.document = picture::writeWithin(
                scene, options.idPrefix.empty() ? idPrefixOf(file) : options.idPrefix,
                int64_t(options.limit * kMega), leftOut);
        return result;
    }

    // @param numbers  of records that were counted as drawn, rising
    void noteLeftOut(std::span<const uint32_t> numbers, ByteView file, const MetafileFacts &facts,
                     RecordTally &tally)
    {
        RecordRecovery records(file, facts);
        uint32_t number = facts.format == MetafileFormat::Emf ? 2 : 1; // as they are played
        for (auto next = numbers.begin(); next != numbers.end(); ++number) {
            const auto record = records.next();
            if (!record)
                return;
            if (number != *next)
                continue;
            tally.lose(record->type, record->offset, kBeyondLimit);
            ++next;
        }
    }

    Playback playEmf(ByteView file, const MetafileFacts &facts, const PictureOptions &options)
    {
        const auto picture = picture::EmfPlayer::pictureOf(facts);
        picture::SceneBuilder builder(picture.device.unitsPerPixel);
        builder.lend(file);
        picture::Playing playing;
        playing.bytes += file.size;
        playing.prefersEmf = options.source == PictureSource::Emf;
        playing.drawsOutlines = options.text == PictureText::Outlines;
        RecordTally records;
        picture::EmfPlayer::playFile(file, facts, picture.device, builder, picture::kNone, playing,
                                     &records);
        picture::Scene scene = builder.take();
        scene.view = picture.device.view;
        const ByteView header = slice(file, 0, facts.firstRecord).value_or(file);
        EmfDescription description = readDescription(header);
        scene.title = std::move(description.title);
        scene.description = std::move(description.program);
        return {
            std::move(scene), { picture.width, picture.height }, picture.guess, std::move(records)
        };
    }

    picture::Scene playIn(const picture::WmfPlayer::Picture &picture, ByteView file,
                          const MetafileFacts &facts, const WmfEscapes &escapes,
                          const PictureOptions &options, RecordTally *tally)
    {
        picture::SceneBuilder builder(picture.device.unitsPerPixel);
        builder.lend(file);
        picture::DeviceContext context(picture.device, 1, builder);
        if (options.text == PictureText::Outlines)
            context.drawOutlines();
        picture::WmfPlayer(context, picture, escapes).playAll(file, facts, tally);
        picture::Scene scene = builder.take();
        scene.view = picture.device.view;
        return scene;
    }

    Playback playWmf(ByteView file, const MetafileFacts &facts, const WmfEscapes &escapes,
                     const PictureOptions &options)
    {
        auto picture = picture::WmfPlayer::pictureOf(file, facts);
        if (picture.showsAll) {
            picture::Scene all = playIn(picture, file, facts, escapes, options, nullptr);
            picture::ensureSize(all);
            picture.show(picture::drawnBounds(all));
        }
        RecordTally records;
        picture::Scene scene = playIn(picture, file, facts, escapes, options, &records);
        return {
            std::move(scene), { picture.width, picture.height }, picture.guess, std::move(records)
        };
    }

    Picture drawPlayed(Playback playback, ByteView file, const MetafileFacts &facts,
                       const PictureOptions &options, std::string_view comment, RecordTally &tally)
    {
        playback.scene.comment = comment;
        tally = std::move(playback.records);
        const std::string_view sizeGuess = playback.sizeGuess;
        std::vector<uint32_t> leftOut;
        Picture result = finished(std::move(playback), file, options, leftOut);
        noteLeftOut(leftOut, file, facts, tally);
        result.report = reportOf(facts, tally);
        result.report.sizeGuess = sizeGuess;
        return result;
    }

    Picture drawEmf(ByteView file, const MetafileFacts &facts, const PictureOptions &options,
                    std::string_view comment, RecordTally &tally)
    {
        return drawPlayed(playEmf(file, facts, options), file, facts, options, comment, tally);
    }

    Picture drawWmf(ByteView file, const MetafileFacts &facts, const PictureOptions &options,
                    std::string_view comment, RecordTally &tally)
    {
        WmfEscapes escapes = readEscapes(file, facts);
        const ByteView emf{ escapes.emf.data(), int64_t(escapes.emf.size()) };
        const bool isWanted = emf.size > 0 && options.source != PictureSource::Wmf;
        const MetafileFacts inner = isWanted ? inspectMetafile(emf) : MetafileFacts();
        const bool holdsEmf = inner.format == MetafileFormat::Emf;
        if (isWanted && inner.records.stop().reason != StopReason::EndRecord)
            escapes.isEmfDamaged = true;
        const auto drawInner = [&] {
            Picture result = drawEmf(emf, inner, options, comment, tally);
            result.report.isOfEmbeddedEmf = true;
            return result;
        };
        if (holdsEmf && !escapes.isEmfDamaged)
            return drawInner();
        Playback playback = playWmf(file, facts, escapes, options);
        // Those records come behind it, and may be lost.
        if (holdsEmf && playback.scene.nodes.empty())
            return drawInner();
        return drawPlayed(std::move(playback), file, facts, options, comment, tally);
    }

    Picture drawAny(ByteView file, const MetafileFacts &facts, const PictureOptions &options,
                    std::string_view comment, RecordTally &tally)
    {
        switch (facts.format) {
        case MetafileFormat::Emf:
            return drawEmf(file, facts, options, comment, tally);
        case MetafileFormat::Wmf:
        case MetafileFormat::PlaceableWmf:
            return drawWmf(file, facts, options, comment, tally);
        case MetafileFormat::Unknown:
            break;
        }
        return failure(PictureError::NotAMetafile);
    }

    Picture drawBytes(ByteView file, const PictureOptions &options)
    {
        RecordTally tally;
        return drawAny(file, inspectMetafile(file), options, {}, tally);
    }

    Picture drawPacked(ByteView file, const PictureOptions &options)
    {
        std::string bytes;
        switch (unpackGzip(file, bytes)) {
        case Unpacking::Done:
            return drawBytes({ bytes.data(), int64_t(bytes.size()) }, options);
        case Unpacking::TooLarge:
            return failure(PictureError::TooLarge);
        case Unpacking::Damaged:
            break;
        }
        return failure(PictureError::DamagedGzip);
    }

    // Nothing that is thrown passes this.
    template<class Draw>
    Picture guarded(const PictureOptions &options, Draw draw) noexcept
    try {
        return isValid(options) ? draw() : failure(PictureError::BadOptions);
    } catch (const std::bad_alloc &) {
        return failure(PictureError::OutOfMemory);
    } catch (const std::length_error &) {
        return failure(PictureError::OutOfMemory);
    } catch (...) {
        return failure(PictureError::Internal);
    }

} // namespace

const char *describe(PictureError error) noexcept
{
    switch (error) {
    case PictureError::None:
        return "there is no error";
    case PictureError::NotAMetafile:
        return "this is not a metafile: it has neither an EMF nor a WMF header";
    case PictureError::DamagedGzip:
        return "its gzip data are damaged";
    case PictureError::TooLarge:
        return "its gzip data unpack to more than 1 GiB";
    case PictureError::BadOptions:
        return "the options ask for a size, a limit or a prefix that is not allowed";
    case PictureError::OutOfMemory:
        return "there is not enough memory";
    case PictureError::Internal:
        break;
    }
    return "an internal fault ended the drawing";
}

Picture drawInspected(ByteView metafile, const MetafileFacts &facts, const PictureOptions &options,
                      std::string_view comment, RecordTally &tally) noexcept
{
    return guarded(options, [&] { return drawAny(metafile, facts, options, comment, tally); });
}

Picture drawMetafile(std::span<const std::byte> metafile, const PictureOptions &options) noexcept
{
    // Bytes are what char may look at.
    const ByteView file{ reinterpret_cast<const char *>(metafile.data()),
                         int64_t(metafile.size()) };
    return guarded(options, [&] {
        return isGzip(file) ? drawPacked(file, options) : drawBytes(file, options);
    });
}

} // namespace svgtool
