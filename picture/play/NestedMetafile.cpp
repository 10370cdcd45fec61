#include "picture/play/EmfPlayer.h"
#include "picture/play/EmfPlusCalls.h"
#include "picture/play/WmfPlayer.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace svgtool::picture::emfplus {

namespace {

    constexpr Played kTooMuch = notDone("there is too much in the metafiles within this one");

    /// The device and the view of a metafile, in its own pixels.
    struct Frame
    {
        Device device;
        RectD view;

        explicit Frame(const Device &own) : device(own)
        {
            const auto toPixels = own.toPicture.inverse();
            view = toPixels ? mapBounds(*toPixels, own.view) : own.view;
        }
    };

    /// The rectangle in whose units a part of a metafile is told: of one with a placeable header
    /// its box, in logical units, and else its pixels.
    RectD boundsOf(const MetafileFacts &facts, const RectD &view)
    {
        const auto &[left, top, right, bottom] = facts.bounds;
        if (facts.format != MetafileFormat::PlaceableWmf || left == right || top == bottom)
            return view;
        return { double(std::min(left, right)), double(std::min(top, bottom)),
                 double(std::max(left, right)), double(std::max(top, bottom)) };
    }

    std::array<PointD, 3> cornersOf(const RectD &box)
    {
        return { PointD{ box.left, box.top }, PointD{ box.right, box.top },
                 PointD{ box.left, box.bottom } };
    }

    /// From a rectangle to the parallelogram of three of its corners.
    Affine onto(const RectD &from, std::span<const PointD, 3> corners)
    {
        const PointD &start = corners[0];
        const Affine unit{ corners[1].x - start.x,
                           corners[1].y - start.y,
                           corners[2].x - start.x,
                           corners[2].y - start.y,
                           start.x,
                           start.y };
        return Affine::translation(-from.left, -from.top)
                .then(Affine::scale(1 / from.width(), 1 / from.height()))
                .then(unit);
    }

} // namespace

Played drawMetafile(Play &play, const std::string &file, RectD source,
                    std::span<const PointD, 3> corners)
{
    Playing &playing = play.playing;
    const ByteView bytes{ file.data(), int64_t(file.size()) };
    if (playing.depth >= limits::kNestedMetafiles)
        return notDone("metafiles are nested too deep");
    if (!playing.spend(limits::kNestedCost + bytes.size))
        return kTooMuch;
    const MetafileFacts facts = inspectMetafile(bytes);
    if (facts.format == MetafileFormat::Unknown)
        return notDone("its metafile is none");
    const bool isEmf = facts.format == MetafileFormat::Emf;
    if (isEmf && !playing.spend(int64_t(EmfPlayer::handlesOf(bytes)) * limits::kNestedSlotCost))
        return kTooMuch;

    std::optional<WmfPlayer::Picture> wmf;
    if (!isEmf)
        wmf = WmfPlayer::pictureOf(bytes, facts);
    Frame frame(isEmf ? EmfPlayer::shownOf(facts).device : wmf->device);
    const RectD bounds = boundsOf(facts, frame.view);
    if (source.isEmpty())
        source = bounds;
    Graphics &graphics = play.graphics;
    Device &device = frame.device;
    const Affine fromBounds = onto(source, corners).then(graphics.toPicture());
    device.toPicture = onto(frame.view, cornersOf(bounds)).then(fromBounds);
    device.view = mapBounds(device.toPicture, frame.view);
    device.unitsPerPixel = play.context.device().unitsPerPixel;
    if (!device.toPicture.isFinite() || graphics.isClippedAway())
        return kDone;
    Area shown;
    shown.path.addRect(source);
    shown.path.transform(fromBounds);
    const Index clip = graphics.clipTo(shown);
    SceneBuilder &builder = play.context.builder();
    const size_t first = builder.mark().nodes;
    ++playing.depth;
    if (isEmf) {
        EmfPlayer::playFile(bytes, facts, device, builder, clip, playing, nullptr);
    } else {
        DeviceContext context(device, 1, builder, clip);
        if (playing.drawsOutlines)
            context.drawOutlines();
        const WmfEscapes escapes = readEscapes(bytes, facts);
        WmfPlayer(context, *wmf, escapes).playAll(bytes, facts, nullptr);
    }
    --playing.depth;
    const uint32_t record = graphics.newNode().record; // the one of the whole file
    std::vector<Node> &nodes = builder.scene().nodes;
    for (size_t i = first; i < nodes.size(); ++i) // a flood may have joined some
        nodes[i].record = record;
    return kDone;
}

} // namespace svgtool::picture::emfplus
