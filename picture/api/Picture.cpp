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

#include <algorithm>
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

    // Passes over the scene, up to what can be seen.
    void arrange(Playback &playback, const PictureOptions &options)
    {
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
        picture::cutFar(scene);
        picture::dropUnseen(scene);
    }

    // The other passes, and the document.
    // @param[out] leftOut  numbers of records of which it lacks something
    Picture finished(picture::Scene &scene, ByteView file, const PictureOptions &options,
                     std::vector<uint32_t> &leftOut)
    {
        Picture result;
        result.width = scene.width;
        result.height = scene.height;
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

    // The box around what is drawn, wherever it lies.
    template<class Play>
    RectD drawnAnywhere(const picture::Shown &shown, bool isClipped, Play play)
    {
        picture::Device device = shown.everywhere();
        device.isClipped = isClipped;
        picture::Scene all = play(device, nullptr);
        all.width = device.view.width() / device.unitsPerPixel;
        all.height = device.view.height() / device.unitsPerPixel;
        return picture::drawnBounds(all);
    }

    // Whether what would not be seen, outside the picture or cut off, is shown all the same.
    enum class Unseen : uint8_t { Stays, IsShown };

    template<class Play>
    void showUnseen(picture::Shown &shown, const MetafileFacts &facts, Play play)
    {
        const RectD drawn = drawnAnywhere(shown, true, play);
        if (!drawn.isEmpty())
            return shown.moveHere(drawn);
        // Where recorders tell what is painted, clips that leave nothing of it are damaged.
        const HeaderBox &bounds = facts.bounds;
        if (facts.format != MetafileFormat::Emf || bounds.left >= bounds.right
            || bounds.top >= bounds.bottom)
            return;
        const RectD whole = drawnAnywhere(shown, false, play);
        if (!whole.isEmpty())
            shown.leaveUnclipped(whole);
    }

    // @param play  plays the file in a device
    template<class Play>
    Playback playShown(picture::Shown &shown, Unseen unseen, const MetafileFacts &facts, Play play)
    {
        if (unseen == Unseen::IsShown)
            showUnseen(shown, facts, play);
        RecordTally records;
        picture::Scene scene = play(shown.device, &records);
        return { std::move(scene), { shown.width, shown.height }, shown.guess, std::move(records) };
    }

    Playback playEmf(ByteView file, const MetafileFacts &facts, const PictureOptions &options,
                     Unseen unseen)
    {
        auto shown = picture::EmfPlayer::shownOf(facts);
        const auto play = [&](const picture::Device &device, RecordTally *tally) {
            picture::SceneBuilder builder(device.unitsPerPixel, file);
            picture::Playing playing(file.size, options.source == PictureSource::Emf,
                                     options.text == PictureText::Outlines);
            picture::EmfPlayer::playFile(file, facts, device, builder, picture::kNone, playing,
                                         tally);
            picture::Scene scene = builder.take();
            scene.view = device.view;
            return scene;
        };
        Playback playback = playShown(shown, unseen, facts, play);
        const ByteView header = slice(file, 0, facts.firstRecord).value_or(file);
        EmfDescription description = readDescription(header);
        playback.scene.title = std::move(description.title);
        playback.scene.description = std::move(description.program);
        return playback;
    }

    Playback playWmf(ByteView file, const MetafileFacts &facts, const WmfEscapes &escapes,
                     const PictureOptions &options, Unseen unseen)
    {
        auto picture = picture::WmfPlayer::pictureOf(file, facts);
        const auto play = [&](const picture::Device &device, RecordTally *tally) {
            picture::SceneBuilder builder(device.unitsPerPixel, file);
            picture::DeviceContext context(device, 1, builder);
            if (options.text == PictureText::Outlines)
                context.drawOutlines();
            picture::WmfPlayer(context, picture, escapes).playAll(file, facts, tally);
            picture::Scene scene = builder.take();
            scene.view = device.view;
            return scene;
        };
        if (picture.showsAll)
            picture.show(drawnAnywhere(picture, true, play));
        return playShown(picture, unseen, facts, play);
    }

    // Whether there are records that should be seen.
    bool hasDrawn(MetafileFormat format, const RecordTally &tally)
    {
        const auto lines = tally.lines();
        return std::ranges::any_of(lines, [format](const RecordTally::Line &line) {
            const RecordType *const type = findRecordType(format, line.type);
            return type != nullptr && type->loss == Loss::Drawing
                    && line.outcome != RecordOutcome::Skipped;
        });
    }

    // @param play  plays the file once more
    template<class Play>
    Picture drawPlayed(Playback playback, Play play, ByteView file, const MetafileFacts &facts,
                       const PictureOptions &options, std::string_view comment, RecordTally &tally)
    {
        arrange(playback, options);
        if (playback.scene.nodes.empty() && hasDrawn(facts.format, playback.records)) {
            playback = play(Unseen::IsShown);
            arrange(playback, options);
        }
        playback.scene.comment = comment;
        tally = std::move(playback.records);
        std::vector<uint32_t> leftOut;
        Picture result = finished(playback.scene, file, options, leftOut);
        noteLeftOut(leftOut, file, facts, tally);
        result.report = reportOf(facts, tally);
        result.report.sizeGuess = playback.sizeGuess;
        return result;
    }

    Picture drawEmf(ByteView file, const MetafileFacts &facts, const PictureOptions &options,
                    std::string_view comment, RecordTally &tally)
    {
        const auto play = [&](Unseen unseen) { return playEmf(file, facts, options, unseen); };
        return drawPlayed(play(Unseen::Stays), play, file, facts, options, comment, tally);
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
        const auto play = [&](Unseen unseen) {
            return playWmf(file, facts, escapes, options, unseen);
        };
        Playback playback = play(Unseen::Stays);
        // Those records come behind it, and may be lost.
        if (holdsEmf && playback.scene.nodes.empty())
            return drawInner();
        return drawPlayed(std::move(playback), play, file, facts, options, comment, tally);
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
        return "its gzip data unpack to more than 32 MiB and 32 times their length";
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
