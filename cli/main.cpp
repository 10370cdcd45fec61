#include "cli/Run.h"

#include <filesystem>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <cerrno>
#include <csignal>
#include <fcntl.h>
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
}
#endif

} // namespace

// No locale is set: the tool writes numbers and messages the same everywhere, takes file names as
// bytes, and needs no application object.
#if defined(_WIN32)
int wmain(int argc, wchar_t *argv[])
#else
int main(int argc, char *argv[])
#endif
{
    prepareProcess();
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i) {
#if defined(_WIN32)
        const std::u8string argument = std::filesystem::path(argv[i]).u8string();
        arguments.emplace_back(argument.begin(), argument.end());
#else
        arguments.emplace_back(argv[i]);
#endif
    }
    return static_cast<int>(svgtool::run(svgtool::parseArguments(arguments)));
}
