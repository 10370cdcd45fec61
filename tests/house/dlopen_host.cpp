#include <QByteArray>
#include <QString>

#include <cstdio>
#include <dlfcn.h>

#if defined(SVGTOOL_WATCHES_MALLOC)
#include "faults/Allocator.h"
#endif

// Loads the library named first at run time, converts the metafile named second by its path and
// unloads the library, twenty times; no memory may be left of it. Writes the SVG to standard output
// once.

static bool fails(const char *what)
{
    std::fprintf(stderr, "%s\n", what);
    return false;
}

static bool convertOnce(const char *libraryPath, const char *metafilePath, QByteArray &svg)
{
    void *library = dlopen(libraryPath, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return fails(dlerror());
    using WmfToSvg = qint32 (*)(const QString &, QByteArray &);
    const auto wmfToSvg = reinterpret_cast<WmfToSvg>(dlsym(library, "WMFToSVG"));
    if (wmfToSvg == nullptr || dlsym(library, "ConvertMetaFileToSVG") == nullptr)
        return fails(dlerror());
    if (wmfToSvg(QString::fromLocal8Bit(metafilePath), svg) <= 0)
        return fails("it does not convert");
    if (dlclose(library) != 0 || dlopen(libraryPath, RTLD_NOW | RTLD_NOLOAD) != nullptr)
        return fails("the library stays loaded");
    return true;
}

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    // Hosts with windows have it loaded. What it keeps for the process would be lost each time
    // that it went with the library, some 270 bytes.
    dlopen("libfontconfig.so.1", RTLD_NOW);

    constexpr int kTimes = 20;
    QByteArray first;
    if (!convertOnce(argv[1], argv[2], first))
        return 1;
    {
#if defined(SVGTOOL_WATCHES_MALLOC)
        const svgtool::test::FailingAllocator watch(0, svgtool::test::Scarcity::OneCall);
#endif
        for (int i = 1; i < kTimes; ++i) {
            QByteArray svg;
            if (!convertOnce(argv[1], argv[2], svg) || svg != first)
                return 1;
        }
#if defined(SVGTOOL_WATCHES_MALLOC)
        // The loader keeps a block now and then.
        if (watch.blocksHeld() >= kTimes - 1)
            return fails("blocks are left of each time"), 1;
#endif
    }
    const size_t written = std::fwrite(first.constData(), 1, size_t(first.size()), stdout);
    return written == size_t(first.size()) && std::fflush(stdout) == 0 ? 0 : 1;
}
