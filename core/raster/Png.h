#pragma once

#include "core/base/Bytes.h"
#include "core/raster/PngLayout.h"

#include <cstddef>
#include <memory>

struct libdeflate_compressor;

namespace svgtool {

/// A PNG file in memory.
struct PngFile
{
    std::unique_ptr<char[]> bytes;
    int64_t size = 0;

    ByteView view() const { return { bytes.get(), size }; }
};

/// Writes PNG files, which are the same for the same pixels.
///
/// It keeps the tables that compressing takes, 200 kB, and up to 4 MiB for lines, from the
/// first file to the last.
/// @note One encoder belongs to one thread.
class PngEncoder
{
public:
    /// A file takes up to the bytes of its pixels twice while it is made, and once when done.
    /// @param bitmap  not null
    /// @throws std::bad_alloc  also when the compressed pixels take 2^31 bytes or more
    PngFile encode(const Bitmap &bitmap);

private:
    struct Free
    {
        void operator()(libdeflate_compressor *compressor) const;
    };
    /// For so many bytes.
    libdeflate_compressor *compressorFor(size_t size);

    PngBlock m_block; ///< of the lines
    std::unique_ptr<libdeflate_compressor, Free> m_storing, m_compressing;
};

} // namespace svgtool
