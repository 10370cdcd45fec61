#pragma once

#include <cstddef>

namespace svgtool::test {

/// While it is on, a thread's calls of malloc and its kin are counted, some of them give nothing,
/// and what they gave is watched.
struct Allocations
{
    bool isOn = false;
    size_t firstFailing = 0; ///< from 1 on; 0 for none
    bool failsFromThere = false; ///< not that call only
    size_t calls = 0; ///< so far
    long held = 0; ///< blocks given and not taken back; one from before that was counts minus one
};
extern thread_local Allocations allocations;

} // namespace svgtool::test
