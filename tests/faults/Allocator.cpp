#include "faults/Allocator.h"

#include <cerrno>
#include <cstdlib>

namespace svgtool::test {

thread_local Allocations allocations;

} // namespace svgtool::test

using svgtool::test::allocations;

static bool mayGive()
{
    if (!allocations.isOn)
        return true;
    const size_t first = allocations.firstFailing;
    const size_t call = ++allocations.calls;
    const bool fails = first != 0 && (allocations.failsFromThere ? call >= first : call == first);
    if (fails)
        errno = ENOMEM;
    return !fails;
}

static void *given(void *block)
{
    if (allocations.isOn && block != nullptr)
        ++allocations.held;
    return block;
}

extern "C" {

// The C library's own allocator, under the names that it keeps for those who replace malloc.
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *block);

// These stand in for the C library's in the whole program, Qt and the C++ library included.
void *malloc(size_t size)
{
    return mayGive() ? given(__libc_malloc(size)) : nullptr;
}

void *calloc(size_t count, size_t size)
{
    return mayGive() ? given(__libc_calloc(count, size)) : nullptr;
}

void *realloc(void *block, size_t size)
{
    void *const moved = mayGive() ? __libc_realloc(block, size) : nullptr;
    return block == nullptr ? given(moved) : moved;
}

void *memalign(size_t alignment, size_t size)
{
    return mayGive() ? given(__libc_memalign(alignment, size)) : nullptr;
}

void *aligned_alloc(size_t alignment, size_t size)
{
    return memalign(alignment, size);
}

int posix_memalign(void **block, size_t alignment, size_t size)
{
    *block = memalign(alignment, size);
    return *block != nullptr ? 0 : ENOMEM;
}

void free(void *block)
{
    if (allocations.isOn && block != nullptr)
        --allocations.held;
    __libc_free(block);
}
}
