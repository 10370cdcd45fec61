#include "picture/api/Options.h"

#include "core/base/Hash.h"
#include "core/base/Limits.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace svgtool {

namespace {

    constexpr std::string_view kCharacters =
            "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    constexpr size_t kLetters = 52; // of them, the first ones

    // Not-a-number lies nowhere.
    bool isWithin(double value, double least, double most)
    {
        return value >= least && value <= most;
    }

    bool isSide(double side)
    {
        return side == 0 || isWithin(side, limits::kLeastSide, limits::kMostSide);
    }

    bool isPrefix(std::string_view prefix)
    {
        const auto isAllowed = [](char c) {
            return kCharacters.find(c) != kCharacters.npos || c == '-' || c == '_';
        };
        return prefix.empty()
                || (prefix.size() <= limits::kPrefix && kCharacters.find(prefix[0]) < kLetters
                    && std::ranges::all_of(prefix, isAllowed));
    }

} // namespace

bool isValid(const PictureOptions &options)
{
    return isSide(options.width) && isSide(options.height)
            && isWithin(options.scale, limits::kLeastScale, limits::kMostScale)
            && isWithin(options.limit, limits::kLeastLimit, limits::kMostLimit)
            && isPrefix(options.idPrefix);
}

// The other side by the shape, as far as it is one that could be asked for.
static double follow(double given, double ratio)
{
    return std::clamp(given * ratio, limits::kLeastSide, limits::kMostSide);
}

PictureSize sizeOf(PictureSize natural, const PictureOptions &options)
{
    const auto &[width, height] = natural;
    if (!isWithin(width, 1e-9, 1e12) || !isWithin(height, 1e-9, 1e12))
        return sizeOf({ 1, 1 }, options);
    if (options.width > 0 && options.height > 0)
        return { options.width, options.height };
    if (options.width > 0)
        return { options.width, follow(options.width, height / width) };
    if (options.height > 0)
        return { follow(options.height, width / height), options.height };
    const double scale = std::min({ options.scale, limits::kNaturalSide / std::max(width, height),
                                    std::sqrt(limits::kNaturalArea / (width * height)) });
    return { std::max(width * scale, 1.0), std::max(height * scale, 1.0) };
}

std::string idPrefixOf(ByteView metafile)
{
    uint64_t hash = hashOf(metafile, 0);
    constexpr size_t kDigits = 6;
    std::string prefix;
    for (size_t base = kLetters; prefix.size() < kDigits; base = kCharacters.size()) {
        prefix += kCharacters[hash % base];
        hash /= base;
    }
    return prefix;
}

} // namespace svgtool
