#include <QByteArray>
#include <QString>

#include <cstdio>
#include <dlfcn.h>

// Loads the library named first at run time, converts the metafile named second by its path and
// writes the SVG to standard output.
int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    void *library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    using WmfToSvg = qint32 (*)(const QString &, QByteArray &);
    const auto wmfToSvg = reinterpret_cast<WmfToSvg>(dlsym(library, "WMFToSVG"));
    if (wmfToSvg == nullptr || dlsym(library, "ConvertMetaFileToSVG") == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }

    int status = 1;
    {
        QByteArray svg;
        const qint32 result = wmfToSvg(QString::fromLocal8Bit(argv[2]), svg);
        const size_t written = std::fwrite(svg.constData(), 1, size_t(svg.size()), stdout);
        if (result > 0 && written == size_t(svg.size()) && std::fflush(stdout) == 0)
            status = 0;
    }
    if (dlclose(library) != 0)
        status = 1;
    return status;
}
