#include "picture/play/WmfPlayer.h"

#include "core/base/Limits.h"
#include "core/base/Numeric.h"
#include "core/records/RecordRecovery.h"
#include "core/records/WmfRecordTypes.h"
#include "picture/play/WmfCalls.h"

#include <algorithm>
#include <cmath>

namespace svgtool::picture {

namespace {

    constexpr double kPixelsPerInch = 96, kTwipsPerInch = 1440;

    struct Size
    {
        double width = 0, height = 0;

        bool isEmpty() const { return width == 0 || height == 0; }
        double longer() const { return std::max(width, height); }
    };

    Size sizeOf(PointL extent)
    {
        return { std::abs(double(extent.x)), std::abs(double(extent.y)) };
    }

    // What the records say of the size, and of what a unit is.
    struct Hints
    {
        Size window, viewport; ///< extents of the first ones that count
        PointL viewportOrigin;
        int tallestFont = 0;
    };

    Hints hintsOf(ByteView file, const MetafileFacts &facts)
    {
        Hints hints;
        bool hasExtents = true; // in the mode of maps in force
        RecordRecovery records(file, facts);
        while (const auto record = records.next()) {
            Fields fields(record->bytes, wmf::kBody);
            switch (record->type) {
            case Meta::SetMapMode:
                hasExtents = fields.word() >= uint16_t(MapMode::Isotropic);
                break;
            case Meta::SetWindowExt:
                if (hasExtents && hints.window.isEmpty())
                    hints.window = sizeOf(wmf::takePair(fields));
                break;
            case Meta::SetViewportOrg:
                if (hints.viewport.isEmpty())
                    hints.viewportOrigin = wmf::takePair(fields);
                break;
            case Meta::SetViewportExt:
                if (hasExtents && hints.viewport.isEmpty())
                    hints.viewport = sizeOf(wmf::takePair(fields));
                break;
            case Meta::CreateFontIndirect:
                hints.tallestFont = std::max(hints.tallestFont, std::abs(int(fields.shortInt())));
                break;
            default:
                break;
            }
        }
        return hints;
    }

    // Without a header that tells, units are twips. Some programs take those of the screen: what
    // would be no larger than a letter, with text too small to read or none, is not what they
    // meant.
    bool isMeantInPixels(const Hints &hints)
    {
        constexpr double kLeastSide = 10, kLeastText = 3; // pixels
        constexpr double kPixel = kTwipsPerInch / kPixelsPerInch;
        return hints.window.longer() < kLeastSide * kPixel
                && hints.tallestFont < kLeastText * kPixel;
    }

    void setSize(WmfPlayer::Picture &picture, Size units, double unitsPerInch)
    {
        const auto pixels = [unitsPerInch](double length) {
            return std::max(1.0, std::floor(length / unitsPerInch * kPixelsPerInch + 0.5));
        };
        picture.width = pixels(units.width);
        picture.height = pixels(units.height);
    }

    void setDevice(WmfPlayer::Picture &picture)
    {
        constexpr double kMillimetersPerPixel = 25.4 / kPixelsPerInch;
        Device &device = picture.device;
        device.pixelsX = picture.width;
        device.pixelsY = picture.height;
        device.millimetersX = picture.width * kMillimetersPerPixel;
        device.millimetersY = picture.height * kMillimetersPerPixel;
        device.view = { 0, 0, picture.width, picture.height };
        device.unitsPerPixel =
                std::max(1.0, std::max(picture.width, picture.height) / limits::kViewedSide);
    }

    // Viewports are for who plays a file to set. Some files have one all the same, that of a device
    // with smaller pixels, and are to be seen whole.
    void showViewport(WmfPlayer::Picture &picture, const Hints &hints)
    {
        constexpr double kFiner = 2;
        const Size &viewport = hints.viewport;
        if (viewport.width < kFiner * picture.width || viewport.height < kFiner * picture.height)
            return;
        Device &device = picture.device;
        const double left = hints.viewportOrigin.x, top = hints.viewportOrigin.y;
        device.view = { left, top, left + viewport.width, top + viewport.height };
        device.unitsPerPixel *=
                std::max(viewport.width / picture.width, viewport.height / picture.height);
        device.pixelsX = viewport.width;
        device.pixelsY = viewport.height;
    }

} // namespace

WmfPlayer::Picture WmfPlayer::pictureOf(ByteView file, const MetafileFacts &facts)
{
    constexpr Size kScreen{ 1024, 768 };
    Picture picture;
    const HeaderBox &box = facts.bounds;
    const Size boxSize{ std::abs(double(box.right) - box.left),
                        std::abs(double(box.bottom) - box.top) };
    const Hints hints = hintsOf(file, facts);
    if (!boxSize.isEmpty()) {
        setSize(picture, boxSize, facts.unitsPerInch != 0 ? facts.unitsPerInch : kTwipsPerInch);
    } else if (hints.window.isEmpty()) {
        setSize(picture, kScreen, kPixelsPerInch);
        picture.guess = "no window is set, so all that is drawn is shown";
        picture.showsAll = true;
    } else if (isMeantInPixels(hints)) {
        setSize(picture, hints.window, kPixelsPerInch);
        picture.guess = "its units are taken for pixels, as it would be too small in others";
    } else {
        setSize(picture, hints.window, kTwipsPerInch);
        if (facts.format == MetafileFormat::PlaceableWmf)
            picture.guess = "the box of the header is empty, so the first window is shown";
    }
    setDevice(picture);
    picture.viewport = { truncateToInt32(picture.width), truncateToInt32(picture.height) };
    picture.windowExtent = picture.viewport;
    if (facts.format == MetafileFormat::PlaceableWmf) {
        picture.windowOrigin = { box.left, box.top };
        picture.windowExtent = { wrapSub(box.right, box.left), wrapSub(box.bottom, box.top) };
    }
    if (!picture.showsAll)
        showViewport(picture, hints);
    return picture;
}

void WmfPlayer::Picture::show(const RectD &drawn)
{
    device.view = { 0, 0, width, height };
    if (drawn.isEmpty())
        return;
    device.view = { std::floor(drawn.left), std::floor(drawn.top), std::ceil(drawn.right),
                    std::ceil(drawn.bottom) };
    width = device.view.width();
    height = device.view.height();
}

} // namespace svgtool::picture
