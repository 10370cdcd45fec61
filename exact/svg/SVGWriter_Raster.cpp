#include "exact/svg/SVGWriter.h"

#include "core/base/Base64.h"
#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"

#include <algorithm>
#include <utility>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGWriter.cpp";

namespace {

    bool isSameBox(const RECTL &a, const RECTL &b)
    {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }

    // The colour of a paint, or nothing when it is a pattern or no paint.
    std::optional<Argb> solidColour(const QString &paint)
    {
        // The names that stock brushes have.
        constexpr std::pair<const char *, Argb> kNamed[] = {
            { "white", kWhite },        { "lightgray", 0xFFD3D3D3 }, { "gray", 0xFF808080 },
            { "darkgray", 0xFFA9A9A9 }, { "black", kBlack },
        };
        for (const auto &[name, colour] : kNamed) {
            if (paint == QLatin1String(name))
                return colour;
        }
        constexpr int kLength = 7; // #rrggbb
        bool isNumber = false;
        const Argb colour = paint.mid(1).toUInt(&isNumber, 16);
        if (!isNumber || paint.size() != kLength || paint[0] != QLatin1Char('#'))
            return std::nullopt;
        return colour | kAlphaBits;
    }

    QString paintOf(Argb colour)
    {
        const QString digits = QString::number(colour & kColourBits, 16);
        return QLatin1Char('#') + digits.rightJustified(6, QLatin1Char('0'));
    }

    bool isLarge(const Bitmap &bitmap)
    {
        return bitmap.pixelCount() > kLayeredPixels;
    }

    // A pixel of a solid source, for transfers that have a colour and no bitmap.
    Bitmap pixelOf(Argb colour)
    {
        Bitmap pixel(PixelFormat::Bgra32, { 1, 1 });
        pixel.writeLine(0, &colour);
        pixel.dropAlpha();
        return pixel;
    }

    constexpr RasterOperation kNothing{ 0x00AA0029 };
    constexpr RasterOperation kDestinationInvert{ 0x00550009 };
    constexpr RasterOperation kPatternCopy{ 0x00F00021 };
    constexpr RasterOperation kPatternInvert{ 0x005A0049 };

} // namespace

std::optional<DecodedBitmap> CMySVGWriter::decode(const DibBytes &dib)
{
    SVGTOOL_TRACE("CMySVGWriter::decode");
    return ConvertTo32Bits(dib, m_runLengthPixels);
}

RecordResult CMySVGWriter::DrawBitmap(BitmapTransfer transfer)
{
    SVGTOOL_TRACE("CMySVGWriter::DrawBitmap");
    const RasterOperation operation = transfer.operation;
    if (!operation.usesSource() && transfer.mask.isNull())
        return PatBlt(transfer.corners, operation);
    const auto place = placeBitmap(transfer);
    if (!place)
        return RecordHandled;
    if (transfer.bitmap.isFile())
        return drawFile(transfer, *place);

    Bitmap bitmap = std::move(transfer.bitmap.pixels);
    if (place->part != IntRect{ 0, 0, bitmap.width(), bitmap.height() })
        bitmap = bitmap.cut(place->part);
    if (!transfer.mask.isNull() && isLarge(bitmap))
        return RecordFailed;
    RecordResult result = RecordHandled;
    if (transfer.transparentColour)
        clearColour(bitmap, *transfer.transparentColour);
    if (!transfer.mask.isNull())
        result = applyMask(bitmap, transfer, *place);
    bitmap.mirror(place->mirrorsX, place->mirrorsY);
    if (transfer.mask.isNull()) {
        if (auto whole = mergeTransfers(place->box, operation, bitmap))
            bitmap = std::move(*whole);
        else
            return drawOperation(std::move(bitmap), place->box, operation);
    }
    writePixels(std::move(bitmap), place->box);
    return result;
}

RecordResult CMySVGWriter::OnRasterOperation(Bitmap &bitmap, RasterOperation operation) const
{
    SVGTOOL_TRACE("CMySVGWriter::OnRasterOperation");
    const auto colour = solidColour(m_styles.brushPaint());
    const bool isExact = applyRasterOperation(bitmap, operation, colour.value_or(kWhite));
    return isExact && (colour || !operation.usesPattern()) ? RecordHandled : RecordApproximated;
}

RecordResult CMySVGWriter::drawOperation(Bitmap bitmap, const RECTL &box, RasterOperation operation)
{
    const bool mayGoOn = !isLarge(bitmap)
            && (operation == RasterOperations::SourceInvert
                || (operation == RasterOperations::SourceAnd && isBlackAndWhite(bitmap)));
    Bitmap original = mayGoOn ? bitmap : Bitmap();
    const qint64 start = m_document.size();
    const RecordResult result = OnRasterOperation(bitmap, operation);
    writePixels(std::move(bitmap), box);
    noteTransfer(box, start, operation, std::move(original));
    return result;
}

RecordResult CMySVGWriter::applyMask(Bitmap &bitmap, const BitmapTransfer &transfer,
                                     const BitmapPlacement &place) const
{
    const auto offset = [](qint64 value) {
        constexpr qint64 kFar = 1 << 30;
        return static_cast<qint32>(std::clamp(value, -kFar, kFar));
    };
    const IntRect part{ offset(transfer.maskX + place.part.x - transfer.sourceX),
                        offset(transfer.maskY + place.part.y - transfer.sourceY), bitmap.width(),
                        bitmap.height() };
    const Bitmap mask = transfer.mask.cut(part);
    Bitmap outside = bitmap;
    const RecordResult inside = OnRasterOperation(bitmap, transfer.operation);
    const RecordResult rest = OnRasterOperation(outside, transfer.operationOutsideMask);
    chooseByMask(bitmap, outside, mask);
    return std::max(inside, rest);
}

RecordResult CMySVGWriter::drawFile(const BitmapTransfer &transfer, const BitmapPlacement &place)
{
    const IntSize size = transfer.bitmap.size;
    const RECTL &box = place.box;
    const bool isWhole = place.part == IntRect{ 0, 0, size.width, size.height };
    const bool isMirrored = place.mirrorsX || place.mirrorsY;
    // A clip counts in the document's units, so it stands around what changes them.
    const QString &clip = m_styles.clipReference();
    const bool isGrouped = (isMirrored || !isWhole) && !clip.isEmpty();
    if (isGrouped)
        m_document.append("<g ", clip, ">");
    const QString innerClip = isGrouped ? QString() : clip;
    // The bytes stay as they are, so what pixels would be cut and mirrored for is left to the
    // viewer: an inner picture shows a part, and a transform turns it round in its place.
    if (isMirrored) {
        m_document << "<g transform=\"translate("
                   << (place.mirrorsX ? qint64(box.left) + box.right : 0) << ","
                   << (place.mirrorsY ? qint64(box.top) + box.bottom : 0) << ") scale("
                   << (place.mirrorsX ? -1 : 1) << "," << (place.mirrorsY ? -1 : 1) << ")\">";
    }
    if (isWhole) {
        writeElement(transfer.bitmap, box, innerClip);
    } else {
        m_document << "<svg x=\"" << box.left << kQ << "y=\"" << box.top << kQ << "width=\""
                   << qint64(box.right) - box.left << kQ << "height=\""
                   << qint64(box.bottom) - box.top << kQ << "viewBox=\"" << place.part.x << " "
                   << place.part.y << " " << place.part.width << " " << place.part.height << kQ
                   << "preserveAspectRatio=\"none\">";
        writeElement(transfer.bitmap, { 0, 0, size.width, size.height }, innerClip);
        writeLine("</svg>");
    }
    if (isMirrored)
        writeLine("</g>");
    if (isGrouped)
        writeLine("</g>");
    const bool isExact = transfer.operation == RasterOperations::SourceCopy
            && transfer.mask.isNull() && !transfer.transparentColour;
    return isExact ? RecordHandled : RecordApproximated;
}

void CMySVGWriter::writePixels(Bitmap bitmap, const RECTL &box)
{
    DecodedBitmap picture;
    picture.size = bitmap.size();
    picture.pixels = std::move(bitmap);
    WriteBlt(picture, box);
}

bool CMySVGWriter::WriteBlt(const DecodedBitmap &bitmap, const RECTL &box)
{
    SVGTOOL_TRACE("CMySVGWriter::WriteBlt");
    writeElement(bitmap, box, m_styles.clipReference());
    return true;
}

void CMySVGWriter::writeElement(const DecodedBitmap &bitmap, const RECTL &box, const QString &clip)
{
    PngFile png;
    if (!bitmap.isFile())
        png = m_pngEncoder.encode(bitmap.pixels);
    m_document << "<image x=\"" << box.left << kQ << "y=\"" << box.top << kQ << "width=\""
               << qint64(box.right) - box.left << kQ << "height=\"" << qint64(box.bottom) - box.top
               << kQ << "preserveAspectRatio=\"none\" xlink:href=\"data:"
               << std::string_view(bitmap.mediaType) << ";base64,";
    appendBase64(m_document, bitmap.isFile() ? bitmap.file : png.view());
    writeLine(kQ, clip, "/>");
}

void CMySVGWriter::noteTransfer(const RECTL &box, qint64 start, RasterOperation operation,
                                Bitmap bitmap)
{
    const bool isOpen = operation == RasterOperations::SourceInvert || operation == kPatternInvert
            || operation == RasterOperations::SourceAnd;
    // One mask may follow what was inverted; more are never put together.
    const bool goesOn = m_openTransfers.size() == 1 && m_openTransfers.back().end == start
            && isSameBox(m_openTransfers.back().box, box)
            && m_openTransfers.back().clip == m_styles.clipReference()
            && m_openTransfers.back().operation != RasterOperations::SourceAnd
            && operation == RasterOperations::SourceAnd;
    if (!goesOn)
        m_openTransfers.clear();
    if (isOpen && !bitmap.isNull())
        m_openTransfers.push_back({ box, start, m_document.size(), operation, std::move(bitmap),
                                    m_styles.clipReference() });
}

std::optional<Bitmap> CMySVGWriter::mergeTransfers(const RECTL &box, RasterOperation operation,
                                                   const Bitmap &bitmap)
{
    const bool inverts = operation == RasterOperations::SourceInvert || operation == kPatternInvert;
    const bool paints = operation == RasterOperations::SourceInvert
            || operation == RasterOperations::SourcePaint;
    if (m_openTransfers.empty() || !(inverts || paints))
        return std::nullopt;
    const OpenTransfer &mask = m_openTransfers.back();
    if (mask.operation != RasterOperations::SourceAnd || mask.end != m_document.size()
        || mask.clip != m_styles.clipReference() || !isSameBox(mask.box, box)
        || isLarge(mask.bitmap) || isLarge(bitmap))
        return std::nullopt;
    const OpenTransfer &first = m_openTransfers.front();
    // Inverted twice, the same pixels are gone but where the mask was between them.
    const bool isStencil = inverts && first.operation == operation && first.bitmap == bitmap;
    if (!isStencil && !paints)
        return std::nullopt;
    Bitmap whole = isStencil ? stencil(bitmap, mask.bitmap) : combineWithMask(bitmap, mask.bitmap);
    m_document.truncate(isStencil ? first.start : mask.start);
    m_openTransfers.clear();
    return whole;
}

RecordResult CMySVGWriter::PatBlt(const RECTL &corners, RasterOperation operation)
{
    SVGTOOL_TRACE("CMySVGWriter::PatBlt");
    const auto [left, right] = std::minmax(corners.left, corners.right);
    const auto [top, bottom] = std::minmax(corners.top, corners.bottom);
    const RECTL box{ left, top, right, bottom };
    if (operation == kNothing || left == right || top == bottom)
        return RecordHandled;
    // What needs pixels that are not there, and what only inverts what lies beneath.
    if (operation.usesSource() || operation == kDestinationInvert)
        return RecordFailed;

    const QString paint = m_styles.brushPaint();
    if (operation.usesPattern() && (paint.isEmpty() || paint == QLatin1String("none")))
        return paint.isEmpty() ? RecordApproximated : RecordHandled;
    const auto colour = solidColour(paint);
    if (operation.usesPattern() && !colour) {
        if (operation != kPatternCopy)
            return RecordFailed;
        fillBox(box, paint);
        return RecordHandled;
    }
    const Argb pattern = colour.value_or(kWhite);
    if (operation == kPatternInvert) {
        if (auto whole = mergeTransfers(box, operation, pixelOf(pattern))) {
            writePixels(std::move(*whole), box);
            return RecordHandled;
        }
    }
    // A mixture with what lies beneath is not to be had; an inversion is at least of this colour.
    const auto seen = operation.seen(pattern, 0);
    if (!seen && operation != kPatternInvert)
        return RecordFailed;
    if (seen && alphaOf(*seen) == 0)
        return RecordHandled;
    const qint64 start = m_document.size();
    fillBox(box, paintOf(seen.value_or(pattern)));
    noteTransfer(box, start, operation, pixelOf(pattern));
    return seen ? RecordHandled : RecordApproximated;
}

void CMySVGWriter::fillBox(const RECTL &box, const QString &paint)
{
    DrawRect(box.left, box.top, wrapSub(box.right, box.left), wrapSub(box.bottom, box.top),
             QString(QLatin1String("stroke=\"none\" fill=\"") + paint + QLatin1String("\" ")
                     + m_styles.clipReference()),
             0, 0);
}

} // namespace svgtool
