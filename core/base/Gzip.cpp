#include "core/base/Gzip.h"

#include "core/base/ByteOrder.h"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <new>

namespace svgtool {

namespace {

    // No more than what an input that is not packed may have. Drawings are packed to a tenth, empty
    // pages to a thousandth; of these any of a usual size have room, and a short file cannot ask
    // for much more than what two seconds are enough for.
    constexpr int64_t kMostBytes = int64_t(1) << 30, kUsualBytes = int64_t(32) << 20;
    constexpr int64_t kMostTimes = 32;

    struct Free
    {
        void operator()(libdeflate_decompressor *each) const { libdeflate_free_decompressor(each); }
        void operator()(libdeflate_compressor *each) const { libdeflate_free_compressor(each); }
    };

} // namespace

bool isGzip(ByteView file)
{
    constexpr uint16_t kMagic = 0x8B1F;
    constexpr int64_t kHead = 10;
    return file.size >= kHead && fromLittleEndian(readPadded<uint16_t>(file)) == kMagic;
}

Unpacking unpackGzip(ByteView file, std::string &bytes)
{
    const std::unique_ptr<libdeflate_decompressor, Free> decompressor(
            libdeflate_alloc_decompressor());
    if (!decompressor)
        throw std::bad_alloc();
    const int64_t most = std::min(kMostBytes, std::max(kUsualBytes, file.size * kMostTimes));
    // The last bytes tell the size, if they are to be believed: what is much more than is usual has
    // to show that it is there.
    constexpr int64_t kUsualTimes = 16;
    const uint32_t named = fromLittleEndian(readPadded<uint32_t>(tail(file, file.size - 4)));
    const int64_t usual = std::min(most, file.size * kUsualTimes);
    for (int64_t room = std::clamp<int64_t>(named, 1, usual);; room = std::min(room * 4, most)) {
        bytes.clear(); // so that nothing is copied
        bytes.resize(size_t(room));
        size_t taken = 0;
        size_t given = 0;
        switch (libdeflate_gzip_decompress_ex(decompressor.get(), file.data, size_t(file.size),
                                              bytes.data(), bytes.size(), &taken, &given)) {
        case LIBDEFLATE_SUCCESS:
            bytes.resize(given);
            return Unpacking::Done;
        case LIBDEFLATE_INSUFFICIENT_SPACE:
            if (room == most)
                return Unpacking::TooLarge;
            break;
        default:
            return Unpacking::Damaged;
        }
    }
}

std::string packGzip(ByteView bytes)
{
    constexpr int kLevel = 9;
    const std::unique_ptr<libdeflate_compressor, Free> compressor(
            libdeflate_alloc_compressor(kLevel));
    if (!compressor)
        throw std::bad_alloc();
    std::string packed(libdeflate_gzip_compress_bound(compressor.get(), size_t(bytes.size)), '\0');
    packed.resize(libdeflate_gzip_compress(compressor.get(), bytes.data, size_t(bytes.size),
                                           packed.data(), packed.size()));
    return packed;
}

} // namespace svgtool
