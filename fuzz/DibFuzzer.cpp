// The bitmap decoder and what is done to its pictures. The first bytes say how a record would use
// the bitmap that follows.

#include "exact/svg/SVGWriter.h"
#include "fuzz/Harness.h"

#include <QtEndian>

namespace {

// How a record would use the bitmap; what the input does not cover is zero.
struct Use
{
    quint8 form; // which decoder, and of what bytes
    quint8 usage;
    quint8 operation;
    quint8 otherOperation;
    qint16 source[4];
    qint16 corners[4];
};
static_assert(sizeof(Use) == 20);

std::optional<svgtool::DecodedBitmap> decode(svgtool::ByteView bytes, const Use &use,
                                             int64_t &pixelsLeft)
{
    using namespace svgtool;
    if (use.form % 3 == 0)
        return decodeBitmap16(bytes);
    if (use.form % 3 == 1) {
        const auto dib = splitPackedDib(bytes, use.usage % 4);
        return dib ? ConvertTo32Bits(*dib, pixelsLeft) : std::nullopt;
    }
    // Bits before the header.
    const qint64 infoAt = bytes.size / 2;
    return ConvertTo32Bits({ tail(bytes, infoAt), { bytes.data, infoAt }, use.usage % 4U },
                           pixelsLeft);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace svgtool;
    using svgtool::fuzz::require;
    const QByteArray input = fuzz::bytesOf(data, size);
    const ByteView all{ input.constData(), input.size() };
    const auto use = readPadded<Use>(all);
    const ByteView bytes = tail(all, sizeof(Use));

    constexpr qint64 kAllowance = 1 << 16;
    int64_t pixelsLeft = kAllowance;
    auto bitmap = decode(bytes, use, pixelsLeft);
    require(pixelsLeft >= 0 && pixelsLeft <= kAllowance);
    if (!bitmap)
        return 0;
    require(bitmap->size.width > 0 && bitmap->size.height > 0);
    if (!bitmap->isFile()) {
        const Bitmap &pixels = bitmap->pixels;
        require(pixels.size() == bitmap->size);
        require(pixels.lineBytes() * pixels.height() <= bytes.size * 256 + kAllowance);
    }

    CMySVGWriter writer;
    BitmapTransfer transfer;
    transfer.bitmap = *bitmap;
    transfer.operation = RasterOperation(quint32(use.operation) << 16);
    transfer.operationOutsideMask = RasterOperation(quint32(use.otherOperation) << 16);
    transfer.sourceX = use.source[0];
    transfer.sourceY = use.source[1];
    transfer.sourceWidth = use.source[2];
    transfer.sourceHeight = use.source[3];
    transfer.countsFromBottom = use.form / 3 % 2 != 0;
    transfer.corners = { use.corners[0], use.corners[1], use.corners[2], use.corners[3] };
    if (use.form / 6 % 2 != 0)
        transfer.transparentColour = argb(use.usage, use.operation, 0);
    if (use.form / 12 % 2 != 0 && bitmap->isMask()) {
        transfer.mask = bitmap->pixels;
        transfer.maskX = use.source[1];
    }
    // The same again with another operation, which may make one picture of both.
    writer.DrawBitmap(transfer);
    transfer.operation = RasterOperation(quint32(use.otherOperation) << 16);
    writer.DrawBitmap(transfer);
    writer.PatBlt(transfer.corners, RasterOperation(quint32(use.operation) << 16));
    return 0;
}
