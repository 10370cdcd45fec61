#include <cstdio>
#include <dlfcn.h>

#if defined(SVGTOOL_WATCHES_MALLOC)
#include "faults/Allocator.h"
#endif

// Twenty times a host that loads the library and unloads it; no memory may be left of it.

/// What is main() in samples/host/dlopen.cpp.
int convertOnce(int argc, char *argv[]);

static int fails(const char *what)
{
    std::fprintf(stderr, "%s\n", what);
    return 1;
}

int main(int argc, char *argv[])
{
    // Hosts with windows have it loaded. What it keeps for the process would be lost each time
    // that it went with the library, some 270 bytes.
    dlopen("libfontconfig.so.1", RTLD_NOW);

    constexpr int kTimes = 20;
    int status = convertOnce(argc, argv);
#if defined(SVGTOOL_WATCHES_MALLOC)
    const svgtool::test::FailingAllocator watch(0, svgtool::test::Scarcity::OneCall);
#endif
    for (int i = 1; i < kTimes && status == 0; ++i)
        status = convertOnce(argc, argv);
#if defined(SVGTOOL_WATCHES_MALLOC)
    // The loader keeps a block now and then.
    if (watch.blocksHeld() >= kTimes - 1)
        return fails("blocks are left of each time");
#endif
    if (status == 0 && dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != nullptr)
        return fails("the library stays loaded");
    return status;
}
