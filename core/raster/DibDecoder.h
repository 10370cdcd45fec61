#pragma once

#include "core/base/Bytes.h"
#include "core/base/Limits.h"
#include "core/raster/Bitmap.h"

#include <cstdint>
#include <optional>
#include <span>

namespace svgtool {

/// A device-independent bitmap as a record holds it ([MS-WMF] 2.2.2.9).
struct DibBytes
{
    ByteView info; ///< the header, its masks and its colour table
    ByteView bits;
    uint32_t usage =
            0; ///< of the colour table: 0 colours, 1 palette indices, 2 none; [MS-EMF] 2.1.9
    /// What indices of a palette mean; empty where that is not known: shades of grey.
    std::span<const Argb> palette = {};
    /// The bits stay where they are as long as what is decoded, which then borrows them.
    bool isLasting = false;
};

/// What a record's bitmap holds: pixels, or a whole PNG or JPEG file.
struct DecodedBitmap
{
    Bitmap pixels; ///< upright; null when the bitmap is a file
    ByteView file; ///< lies in the record that was decoded
    const char *mediaType = "image/png";
    IntSize size;

    bool isFile() const { return file.data != nullptr; }
    /// Whether it can be the mask of a transfer, which has one bit a pixel.
    bool isMask() const { return !pixels.isNull() && pixels.format() == PixelFormat::Indexed1; }
};

/// How many pixels the run-length encoded bitmaps of one document may have beyond those that
/// their bytes paint; each bitmap takes its share.
constexpr int64_t kRunLengthPixels = limits::kRunLengthPixels;

/// Splits a bitmap whose colour table is followed by its bits.
/// @return nothing when the header is unknown or the table reaches past the end
std::optional<DibBytes> splitPackedDib(ByteView packed, uint32_t usage);

/// Decodes a bitmap of untrusted bytes.
///
/// Headers: BITMAPCOREHEADER, BITMAPINFOHEADER and its successors up to BITMAPV5HEADER. Depths: 1,
/// 4, 8, 16, 24 and 32 bits, plain or with bit fields, run lengths of 4 and 8 bits, and embedded
/// PNG and JPEG files, which are not looked into. An alpha channel counts only when a mask of the
/// header names it and any pixel uses it.
///
/// Despite its name the function leaves bitmaps with colour tables, and those of 24 bits, as narrow
/// as they are, and widens those of 16 bits to 24 unless they have alpha.
/// @param[in,out] runLengthPixels  what is left of kRunLengthPixels
/// @return nothing when the header is unknown or impossible, or the bits are too few
/// @throws std::bad_alloc
std::optional<DecodedBitmap> ConvertTo32Bits(const DibBytes &dib, int64_t &runLengthPixels);

/// Decodes a device-dependent bitmap ([MS-WMF] 2.2.2.1) of one plane and any depth of the above.
/// The palette of its device is not known: up to 8 bits it becomes black, white and grey.
/// @return nothing when it makes no sense or its bits are too few
/// @throws std::bad_alloc
std::optional<DecodedBitmap> decodeBitmap16(ByteView bytes);

} // namespace svgtool
