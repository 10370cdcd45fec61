#include "core/base/Base64.h"

#include <array>
#include <cstring>

namespace svgtool {

namespace {

    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

    // Two digits for each 12 bits.
    constexpr auto kPairs = [] {
        std::array<std::array<char, 2>, 4096> pairs{};
        for (size_t i = 0; i < pairs.size(); ++i)
            pairs[i] = { kDigits[i >> 6], kDigits[i & 63] };
        return pairs;
    }();

    uint32_t byteAt(ByteView bytes, int64_t at)
    {
        return at < bytes.size ? static_cast<uint8_t>(bytes.data[at]) : 0;
    }

    char *putPair(char *out, uint32_t bits)
    {
        std::memcpy(out, kPairs[bits].data(), 2);
        return out + 2;
    }

} // namespace

char *putBase64(char *out, ByteView bytes)
{
    for (int64_t at = 0; at < bytes.size; at += 3) {
        const uint32_t group =
                byteAt(bytes, at) << 16 | byteAt(bytes, at + 1) << 8 | byteAt(bytes, at + 2);
        out = putPair(out, group >> 12);
        out = putPair(out, group & 0xFFF);
    }
    // What is missing of the last group of three bytes.
    for (int64_t missing = (3 - bytes.size % 3) % 3; missing > 0; --missing)
        out[-missing] = '=';
    return out;
}

} // namespace svgtool
