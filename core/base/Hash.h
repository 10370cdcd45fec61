#pragma once

#include "core/base/ByteOrder.h"
#include "core/base/Bytes.h"

#include <cstdint>

namespace svgtool {

/// A number that is another one for nearly all other bytes. Whoever made the bytes can make others
/// of the same.
///
/// Four numbers of eight bytes each are taken at a time, as a multiplication need not wait for
/// those of its neighbours then: of large bitmaps a hash is a share of the work that shows.
/// @param seed  of which the result depends, too
inline uint64_t hashOf(ByteView bytes, uint64_t seed)
{
    constexpr uint64_t kOdd = 0x9E3779B97F4A7C15;
    constexpr int64_t kWord = sizeof(uint64_t), kLanes = 4;
    const auto mixed = [](uint64_t hash, uint64_t word) {
        hash = (hash ^ word) * kOdd;
        return hash ^ hash >> 32;
    };
    uint64_t hash = seed ^ uint64_t(bytes.size);
    uint64_t lanes[kLanes] = { hash, hash + 1, hash + 2, hash + 3 };
    int64_t at = 0;
    for (; at + kLanes * kWord <= bytes.size; at += kLanes * kWord) {
        for (int64_t i = 0; i < kLanes; ++i)
            lanes[i] = mixed(lanes[i], fromLittleEndian(elementAt<uint64_t>(tail(bytes, at), i)));
    }
    for (const uint64_t lane : lanes)
        hash = mixed(hash, lane);
    for (; at < bytes.size; at += kWord)
        hash = mixed(hash, fromLittleEndian(readPadded<uint64_t>(tail(bytes, at))));
    return hash;
}

} // namespace svgtool
