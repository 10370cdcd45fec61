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

#if defined(SVGTOOL_WATCHES_MALLOC)
struct Watch
{
    svgtool::test::FailingAllocator allocator{ 0, svgtool::test::Scarcity::OneCall };
    long blocksHeld() const { return allocator.blocksHeld(); }
};
#else
struct Watch
{
    long blocksHeld() const { return 0; }
};
#endif

static bool convertOnce(const char *libraryPath, const char *metafilePath, QByteArray &svg)
{
    void *library = dlopen(libraryPath, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    using WmfToSvg = qint32 (*)(const QString &, QByteArray &);
    const auto wmfToSvg = reinterpret_cast<WmfToSvg>(dlsym(library, "WMFToSVG"));
    if (wmfToSvg == nullptr || dlsym(library, "ConvertMetaFileToSVG") == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    const bool isConverted = wmfToSvg(QString::fromLocal8Bit(metafilePath), svg) > 0;
    if (dlclose(library) != 0)
        return false;
    if (dlopen(libraryPath, RTLD_NOW | RTLD_NOLOAD) != nullptr) {
        std::fprintf(stderr, "the library stays loaded\n");
        return false;
    }
    return isConverted;
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
    const Watch watch;
    for (int i = 1; i < kTimes; ++i) {
        QByteArray svg;
        if (!convertOnce(argv[1], argv[2], svg) || svg != first)
            return 1;
    }
    // The loader keeps a block now and then.
    if (watch.blocksHeld() >= kTimes - 1) {
        std::fprintf(stderr, "%ld blocks are left of %d times\n", watch.blocksHeld(), kTimes);
        return 1;
    }
    const size_t written = std::fwrite(first.constData(), 1, size_t(first.size()), stdout);
    return written == size_t(first.size()) && std::fflush(stdout) == 0 ? 0 : 1;
}
