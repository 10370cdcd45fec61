#include "exact/svg/SVGWriter.h"

#include "core/base/Numeric.h"
#include "exact/logging/TraceScope.h"

#include <QColor>
#include <QIODevice>
#include <QImageWriter>

#include <algorithm>
#include <utility>

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\SVGWriter.cpp";

namespace {

    // Takes bytes and streams their base64 text on, so that a picture is never held as a whole
    // file beside its text.
    class Base64Device : public QIODevice
    {
    public:
        explicit Base64Device(DocumentText &text) : m_text(text) { open(QIODevice::WriteOnly); }

        bool isSequential() const override { return true; }
        /// Writes what is left over of the last group of three bytes.
        void finish()
        {
            m_text << m_rest.toBase64();
            m_rest.clear();
        }

    protected:
        qint64 readData(char *, qint64) override { return -1; }
        qint64 writeData(const char *data, qint64 size) override
        {
            // Pieces, so that the text of a large file does not stand twice in memory.
            constexpr qint64 kPiece = 3 << 14;
            for (qint64 done = 0; done < size; done += kPiece) {
                m_rest.append(data + done, int(std::min(kPiece, size - done)));
                const auto whole = m_rest.size() / 3 * 3;
                m_text << m_rest.left(whole).toBase64();
                m_rest.remove(0, whole);
            }
            return size;
        }

    private:
        DocumentText &m_text;
        QByteArray m_rest;
    };

    bool isSameBox(const RECTL &a, const RECTL &b)
    {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }

    // The colour of a paint, or nothing when it is a pattern or no paint.
    std::optional<QRgb> solidColour(const QString &paint)
    {
        const QColor colour(paint);
        if (!colour.isValid())
            return std::nullopt;
        return colour.rgb();
    }

    // Clears what a line of bits has behind its last pixel. Parts that were cut out have chance
    // bits there, and files would show them.
    void clearLineEnds(QImage &image)
    {
        if (image.format() != QImage::Format_Mono || image.width() % 8 == 0)
            return;
        const auto kept = static_cast<uchar>(0xFF00 >> image.width() % 8);
        for (int y = 0; y < image.height(); ++y)
            image.scanLine(y)[image.width() / 8] &= kept;
    }

    bool isLarge(const QImage &image)
    {
        return qint64(image.width()) * image.height() > kLayeredPixels;
    }

    // A pixel of a solid source, for transfers that have a colour and no bitmap.
    QImage pixelOf(QRgb colour)
    {
        QImage pixel(1, 1, QImage::Format_RGB32);
        pixel.fill(colour);
        return pixel;
    }

    constexpr RasterOperation kNothing{ 0x00AA0029 };
    constexpr RasterOperation kDestinationInvert{ 0x00550009 };
    constexpr RasterOperation kPatternCopy{ 0x00F00021 };
    constexpr RasterOperation kPatternInvert{ 0x005A0049 };

} // namespace

std::optional<Bitmap> CMySVGWriter::decode(const DibBytes &dib)
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

    QImage image = std::move(transfer.bitmap.image);
    if (place->part != image.rect())
        image = image.copy(place->part);
    if (!transfer.mask.isNull() && isLarge(image))
        return RecordFailed;
    RecordResult result = RecordHandled;
    if (transfer.transparentColour)
        clearColour(image, *transfer.transparentColour);
    if (!transfer.mask.isNull())
        result = applyMask(image, transfer, *place);
    image = std::move(image).mirrored(place->mirrorsX, place->mirrorsY);
    if (transfer.mask.isNull()) {
        if (auto whole = mergeTransfers(place->box, operation, image))
            image = std::move(*whole);
        else
            return drawOperation(std::move(image), place->box, operation);
    }
    return writeImage(std::move(image), place->box) ? result : RecordFailed;
}

RecordResult CMySVGWriter::OnRasterOperation(QImage &image, RasterOperation operation) const
{
    SVGTOOL_TRACE("CMySVGWriter::OnRasterOperation");
    const auto colour = solidColour(m_styles.brushPaint());
    const bool isExact =
            applyRasterOperation(image, operation, colour.value_or(qRgb(255, 255, 255)));
    return isExact && (colour || !operation.usesPattern()) ? RecordHandled : RecordApproximated;
}

RecordResult CMySVGWriter::drawOperation(QImage image, const RECTL &box, RasterOperation operation)
{
    const bool mayGoOn = !isLarge(image)
            && (operation == RasterOperations::SourceInvert
                || (operation == RasterOperations::SourceAnd && isBlackAndWhite(image)));
    const QImage original = mayGoOn ? image : QImage();
    const qint64 start = m_document.size();
    const RecordResult result = OnRasterOperation(image, operation);
    if (!writeImage(std::move(image), box))
        return RecordFailed;
    noteTransfer(box, start, operation, original);
    return result;
}

RecordResult CMySVGWriter::applyMask(QImage &image, const BitmapTransfer &transfer,
                                     const BitmapPlacement &place) const
{
    const auto offset = [](qint64 value) {
        constexpr qint64 kFar = 1 << 30;
        return static_cast<int>(std::clamp(value, -kFar, kFar));
    };
    const QPoint start(offset(transfer.maskX + place.part.x() - transfer.sourceX),
                       offset(transfer.maskY + place.part.y() - transfer.sourceY));
    const QImage mask = transfer.mask.copy(QRect(start, image.size()));
    QImage outside = image;
    const RecordResult inside = OnRasterOperation(image, transfer.operation);
    const RecordResult rest = OnRasterOperation(outside, transfer.operationOutsideMask);
    chooseByMask(image, outside, mask);
    return std::max(inside, rest);
}

RecordResult CMySVGWriter::drawFile(const BitmapTransfer &transfer, const BitmapPlacement &place)
{
    const QSize size = transfer.bitmap.size;
    const RECTL &box = place.box;
    const bool isWhole = place.part == QRect(QPoint(0, 0), size);
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
                   << qint64(box.bottom) - box.top << kQ << "viewBox=\"" << place.part.x() << " "
                   << place.part.y() << " " << place.part.width() << " " << place.part.height()
                   << kQ << "preserveAspectRatio=\"none\">";
        writeElement(transfer.bitmap, { 0, 0, size.width(), size.height() }, innerClip);
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

bool CMySVGWriter::writeImage(QImage image, const RECTL &box)
{
    clearLineEnds(image);
    // A resolution is in the file whatever one does; the default is that of the host's screen.
    constexpr int kDotsPerMeter = 3780;
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    Bitmap bitmap;
    bitmap.image = std::move(image);
    return WriteBlt(bitmap, box);
}

bool CMySVGWriter::WriteBlt(const Bitmap &bitmap, const RECTL &box)
{
    SVGTOOL_TRACE("CMySVGWriter::WriteBlt");
    return writeElement(bitmap, box, m_styles.clipReference());
}

bool CMySVGWriter::writeElement(const Bitmap &bitmap, const RECTL &box, const QString &clip)
{
    const qint64 start = m_document.size();
    m_document << "<image x=\"" << box.left << kQ << "y=\"" << box.top << kQ << "width=\""
               << qint64(box.right) - box.left << kQ << "height=\"" << qint64(box.bottom) - box.top
               << kQ << "preserveAspectRatio=\"none\" xlink:href=\"data:"
               << std::string_view(bitmap.mediaType) << ";base64,";
    Base64Device device(m_document);
    if (bitmap.isFile()) {
        device.write(bitmap.file.data, bitmap.file.size);
    } else if (!QImageWriter(&device, QByteArrayLiteral("png")).write(bitmap.image)) {
        m_document.truncate(start);
        return false;
    }
    device.finish();
    writeLine(kQ, clip, "/>");
    return true;
}

void CMySVGWriter::noteTransfer(const RECTL &box, qint64 start, RasterOperation operation,
                                const QImage &image)
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
    if (isOpen && !image.isNull())
        m_openTransfers.push_back(
                { box, start, m_document.size(), operation, image, m_styles.clipReference() });
}

std::optional<QImage> CMySVGWriter::mergeTransfers(const RECTL &box, RasterOperation operation,
                                                   const QImage &image)
{
    const bool inverts = operation == RasterOperations::SourceInvert || operation == kPatternInvert;
    const bool paints = operation == RasterOperations::SourceInvert
            || operation == RasterOperations::SourcePaint;
    if (m_openTransfers.empty() || !(inverts || paints))
        return std::nullopt;
    const OpenTransfer mask = m_openTransfers.back();
    if (mask.operation != RasterOperations::SourceAnd || mask.end != m_document.size()
        || mask.clip != m_styles.clipReference() || !isSameBox(mask.box, box) || isLarge(mask.image)
        || isLarge(image))
        return std::nullopt;
    const OpenTransfer &first = m_openTransfers.front();
    if (inverts && first.operation == operation && first.image == image) {
        // Inverted twice, the same pixels are gone but where the mask was between them.
        m_document.truncate(first.start);
        m_openTransfers.clear();
        return stencil(image, mask.image);
    }
    if (!paints)
        return std::nullopt;
    m_document.truncate(mask.start);
    m_openTransfers.clear();
    return combineWithMask(image, mask.image);
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
    const QRgb pattern = colour.value_or(qRgb(255, 255, 255));
    if (operation == kPatternInvert) {
        if (const auto whole = mergeTransfers(box, operation, pixelOf(pattern)))
            return writeImage(*whole, box) ? RecordHandled : RecordFailed;
    }
    // A mixture with what lies beneath is not to be had; an inversion is at least of this colour.
    const auto seen = operation.seen(pattern, 0);
    if (!seen && operation != kPatternInvert)
        return RecordFailed;
    if (seen && qAlpha(*seen) == 0)
        return RecordHandled;
    const qint64 start = m_document.size();
    fillBox(box, QColor(seen.value_or(pattern)).name());
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
