#include "cli/Files.h"

#include "cli/Options.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#if defined(_WIN32)
#include <io.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace svgtool {

namespace {

    // Everything that the open file still has.
    QByteArray readAll(const QString &name, QFile &file)
    {
        // A Qt 5 byte array ends at 2 GiB, and an input that never ends must not fill the memory.
        constexpr qint64 kLargestInput = qint64(1) << 30;
        constexpr qint64 kLeastRoom = qint64(1) << 16;
        // With room for a byte more than the file tells of, it is read at once to its end.
        const qint64 told = std::clamp(file.size(), kLeastRoom, kLargestInput) + 1;
        QByteArray bytes(int(told), Qt::Uninitialized);
        qint64 size = 0;
        qint64 count = 0;
        while ((count = file.read(bytes.data() + size, bytes.size() - size)) > 0) {
            size += count;
            if (size > kLargestInput)
                throw Failure{ name, QStringLiteral("is larger than 1 GiB") };
            if (size == bytes.size())
                bytes.resize(int(std::min(2 * size, kLargestInput + 1)));
        }
        if (count < 0)
            throw Failure{ name, QStringLiteral("cannot be read: ") + file.errorString() };
        bytes.truncate(int(size));
        return bytes;
    }

} // namespace

// Turns letters behind it around, which may hide how a name ends.
static bool turnsText(QChar character)
{
    switch (character.direction()) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
        return true;
    default:
        return false;
    }
}

QString printable(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control || turnsText(character))
            character = QLatin1Char('?');
    }
    return text;
}

QString shownName(const std::string &name)
{
    return QString::fromUtf8(name.data(), int(name.size()));
}

QString shownInput(const std::string &path)
{
    return path == kStandardStream ? QStringLiteral("standard input") : shownName(path);
}

std::filesystem::path nativePath(const std::string &name)
{
#if defined(_WIN32)
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
#else
    return name;
#endif
}

size_t namePosition(const std::string &path)
{
#if defined(_WIN32)
    constexpr const char *kSeparators = "/\\";
#else
    constexpr const char *kSeparators = "/";
#endif
    return path.find_last_of(kSeparators) + 1;
}

std::string endingOf(const std::string &path)
{
    const size_t dot = path.rfind('.');
    if (dot == path.npos || dot < namePosition(path))
        return {};
    std::string ending = path.substr(dot + 1);
    for (char &letter : ending)
        letter = letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
    return ending;
}

std::string joined(const std::string &folder, const std::string &name)
{
    return namePosition(folder) == folder.size() ? folder + name : folder + '/' + name;
}

bool isFolder(const std::string &path)
{
    std::error_code error;
    return std::filesystem::is_directory(nativePath(path), error);
}

bool isNewer(const std::string &output, const std::string &input)
{
    const std::filesystem::path file = nativePath(output);
    std::error_code error;
    if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(file, error)))
        return false;
    const auto written = std::filesystem::last_write_time(file, error);
    if (error)
        return false;
    const auto changed = std::filesystem::last_write_time(nativePath(input), error);
    return !error && written > changed;
}

QByteArray readInput(const std::string &path, std::FILE *standardInput)
{
    QFile file;
    const QString name = shownInput(path);
    const auto failure = [&] {
        return Failure{ name, QStringLiteral("cannot be read: ") + file.errorString() };
    };
    if (path == kStandardStream) {
        if (!file.open(standardInput, QIODevice::ReadOnly | QIODevice::Unbuffered))
            throw failure();
        return readAll(name, file);
    }
    if (isFolder(path))
        throw Failure{ name, QStringLiteral("is a folder") };
#if defined(_WIN32)
    file.setFileName(name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw failure();
#else
    // Qt takes no name that it cannot decode.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 && (errno == ENOENT || errno == ENOTDIR))
        throw Failure{ name, QStringLiteral("no such file") };
    if (descriptor < 0)
        throw Failure{ name, QStringLiteral("cannot be read: ") + qt_error_string(errno) };
    if (!file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                   QFileDevice::AutoCloseHandle))
        throw failure();
#endif
    return readAll(name, file);
}

bool isTerminal(std::FILE *stream)
{
#if defined(_WIN32)
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

static bool wantsColors(std::FILE *stream)
{
    const char *const refusal = std::getenv("NO_COLOR");
    const char *const terminal = std::getenv("TERM");
    return isTerminal(stream) && (refusal == nullptr || *refusal == '\0')
            && (terminal == nullptr || std::string_view(terminal) != "dumb");
}

void printMessage(const StandardStreams &streams, const QString &message, Tone tone)
{
    static constexpr const char *kColors[] = { "", "\033[33m", "\033[31m" };
    const bool isColored = tone != Tone::Note && wantsColors(streams.err);
    const std::string line = printable(message).toStdString();
    std::fprintf(streams.err, "%smetafile2svg:%s %s\n", isColored ? kColors[size_t(tone)] : "",
                 isColored ? "\033[0m" : "", line.c_str());
}

} // namespace svgtool
