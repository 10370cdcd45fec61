#include "cli/Exact.h"
#include "cli/Files.h"

#include <QFile>

#include <dlfcn.h>
#include <filesystem>
#include <system_error>

namespace svgtool {

// It lies where it lies from the tool, in the build folder and where both are installed, and links
// to the tool lead there too.
static std::string modulePath()
{
    std::error_code error;
    const auto tool = std::filesystem::read_symlink("/proc/self/exe", error);
    return (tool.parent_path() / METAFILE2SVG_EXACT_MODULE).string();
}

static const ExactPath &loadExactPath()
{
    // It stays loaded: at the end of the process objects of it are destroyed.
    void *const module = dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
    const void *const path = module != nullptr ? dlsym(module, "metafile2svgExactPath") : nullptr;
    if (path == nullptr)
        throw Failure{ QString(),
                       QStringLiteral("the exact path cannot be loaded: ")
                               + QFile::decodeName(dlerror()) };
    return *static_cast<const ExactPath *>(path);
}

const ExactPath &exactPath()
{
    static const ExactPath &path = loadExactPath();
    return path;
}

} // namespace svgtool
