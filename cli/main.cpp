#include "cli/Run.h"

#include <QCoreApplication>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <unistd.h>
#endif

namespace {

#if defined(_WIN32)
void prepareProcess()
{
    // Bytes as they are, without line feeds turned into two characters.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}
#else
void prepareProcess()
{
    // A closed standard stream gets a descriptor that can be used in the wrong direction only, so
    // that no file opened later takes its number and what is meant for it is an error, not lost.
    for (const int descriptor : { 0, 1, 2 }) {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF)
            open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
    }

    // A reader that went away and a file that grew too large are write errors to be reported.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);

    // File names are taken as UTF-8, and Qt is spared a warning, where the locale has none.
    const char *locale = std::setlocale(LC_ALL, "");
    if (locale == nullptr || std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    prepareProcess();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("metafile2svg"));
    QCoreApplication::setApplicationVersion(QStringLiteral(METAFILE2SVG_VERSION));
    return static_cast<int>(svgtool::run(svgtool::parseArguments(QCoreApplication::arguments())));
}
