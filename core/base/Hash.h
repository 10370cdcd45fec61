#pragma once

#include "core/base/ByteOrder.h"
#include "core/base/Bytes.h"

#include <cstdint>
#include <string>
#include <utility>

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

/// Bytes in an order that mostly needs no look at them: of their hashes. Whoever makes the bytes
/// cannot make a table of these slow, as they could one that has a place for each hash.
class HashedBytes
{
public:
    explicit HashedBytes(std::string bytes)
        : m_hash(hashOf({ bytes.data(), int64_t(bytes.size()) }, 0)), m_bytes(std::move(bytes))
    {
    }
    const std::string &bytes() const { return m_bytes; }
    bool operator<(const HashedBytes &other) const
    {
        return m_hash != other.m_hash ? m_hash < other.m_hash : m_bytes < other.m_bytes;
    }

private:
    uint64_t m_hash;
    std::string m_bytes;
};

} // namespace svgtool
