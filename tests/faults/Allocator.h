#pragma once

#include <cstddef>

namespace svgtool::test {

/// Whether calls after the first failing one fail too.
enum class Scarcity { OneCall, EveryCallFromThere };

/// While it lives, this thread's calls of malloc and its kin are counted, the n-th of them gives
/// nothing, and what they gave is watched.
class FailingAllocator
{
public:
    /// @param failing  number of the call that fails, from 1 on; 0 for none
    FailingAllocator(size_t failing, Scarcity scarcity);
    ~FailingAllocator();
    FailingAllocator(const FailingAllocator &) = delete;
    FailingAllocator &operator=(const FailingAllocator &) = delete;

    /// From now on calls only count.
    void stopFailing();
    /// Bytes that were asked for so far, given back or not.
    size_t bytesGiven() const;
    /// Calls so far.
    size_t calls() const;
    /// Bytes that memmove was asked for, as it is to put something into the middle of a text.
    size_t bytesMoved() const;
    /// Blocks that were given and not taken back; a block from before that was taken back counts
    /// as minus one.
    long blocksHeld() const;
};

} // namespace svgtool::test
