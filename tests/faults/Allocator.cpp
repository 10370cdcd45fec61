#include "faults/Allocator.h"

#include <cerrno>
#include <cstdlib>

// Of this thread; nothing here allocates.
struct State
{
    bool isWatching = false;
    bool failsOn = false;
    size_t failing = 0;
    size_t calls = 0;
    long held = 0;
    size_t moved = 0;
    size_t given = 0;
};
static thread_local State state;

namespace svgtool::test {

FailingAllocator::FailingAllocator(size_t failing, Scarcity scarcity)
{
    state = { true, scarcity == Scarcity::EveryCallFromThere, failing };
}

FailingAllocator::~FailingAllocator()
{
    state = {};
}

void FailingAllocator::stopFailing()
{
    state.failing = 0;
}

size_t FailingAllocator::calls() const
{
    return state.calls;
}

size_t FailingAllocator::bytesGiven() const
{
    return state.given;
}

size_t FailingAllocator::bytesMoved() const
{
    return state.moved;
}

long FailingAllocator::blocksHeld() const
{
    return state.held;
}

} // namespace svgtool::test

static bool mayGive(size_t bytes)
{
    if (!state.isWatching)
        return true;
    ++state.calls;
    state.given += bytes;
    const bool fails = state.failing != 0
            && (state.failsOn ? state.calls >= state.failing : state.calls == state.failing);
    if (fails)
        errno = ENOMEM;
    return !fails;
}

static void *given(void *block)
{
    if (state.isWatching && block != nullptr)
        ++state.held;
    return block;
}

extern "C" {

// The C library's own allocator, under the names that it keeps for those who replace malloc.
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *block);
void *__memmove_chk(void *to, const void *from, size_t size, size_t room);

// These stand in for the C library's in the whole program, Qt and the C++ library included.
void *malloc(size_t size)
{
    return mayGive(size) ? given(__libc_malloc(size)) : nullptr;
}

void *calloc(size_t count, size_t size)
{
    return mayGive(count * size) ? given(__libc_calloc(count, size)) : nullptr;
}

void *realloc(void *block, size_t size)
{
    void *const moved = mayGive(size) ? __libc_realloc(block, size) : nullptr;
    return block == nullptr ? given(moved) : moved;
}

void *memalign(size_t alignment, size_t size)
{
    return mayGive(size) ? given(__libc_memalign(alignment, size)) : nullptr;
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
    if (state.isWatching && block != nullptr)
        --state.held;
    __libc_free(block);
}

void *memmove(void *to, const void *from, size_t size)
{
    state.moved += size;
    return __memmove_chk(to, from, size, size);
}
}
