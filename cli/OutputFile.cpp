#include "cli/Files.h"
#include "cli/Options.h"

#if defined(_WIN32)
#include <QDateTime>
#include <QFileInfo>
#include <QSaveFile>
#else
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#endif

namespace svgtool {

namespace {

    Failure writeFailure(const QString &name, const QFileDevice &file)
    {
        return { name, QStringLiteral("cannot be written: ") + file.errorString() };
    }

    // Writes the whole text or throws. A device that fills up takes a part of it first and says why
    // only when asked again; and what fails in a buffer shows when it is flushed.
    void writeAll(const QString &name, QFileDevice &file, const QByteArray &svg)
    {
        qint64 done = 0;
        while (done < svg.size()) {
            const qint64 count = file.write(svg.constData() + done, svg.size() - done);
            if (count <= 0)
                throw writeFailure(name, file);
            done += count;
        }
        if (!file.flush())
            throw writeFailure(name, file);
    }

} // namespace

void makeFolders(const std::string &path)
{
    // One that cannot be made shows when a file in it is opened.
    std::error_code error;
    std::filesystem::create_directories(nativePath(path).parent_path(), error);
}

#if defined(_WIN32)

struct OutputFile::Place
{
};

OutputFile::OutputFile(const std::string &path)
    : m_path(path), m_file(std::make_unique<QSaveFile>(shownName(path)))
{
    if (!m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw writeFailure(shownName(path), *m_file);
}

OutputFile::OutputFile(const std::string &path, size_t) : OutputFile((makeFolders(path), path)) { }

void OutputFile::takeTimeOf(const std::string &path)
{
    m_file->setFileTime(QFileInfo(shownName(path)).lastModified(),
                        QFileDevice::FileModificationTime);
}

void OutputFile::finish()
{
    if (!static_cast<QSaveFile &>(*m_file).commit())
        throw writeFailure(shownName(m_path), *m_file);
}

#else

namespace {

#if defined(O_PATH)
    constexpr int kFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
    constexpr int kFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

    Failure writeFailure(const std::string &path, const QString &reason)
    {
        return { shownName(path), QStringLiteral("cannot be written: ") + reason };
    }

    Failure writeFailure(const std::string &path)
    {
        return writeFailure(path, qt_error_string(errno));
    }

    class Descriptor
    {
    public:
        explicit Descriptor(int number = -1) : m_number(number) { }
        Descriptor(const Descriptor &) = delete;
        Descriptor &operator=(const Descriptor &) = delete;
        ~Descriptor() { reset(-1); }
        void reset(int number)
        {
            if (m_number >= 0)
                close(m_number);
            m_number = number;
        }
        int number() const { return m_number; }
        int release() { return std::exchange(m_number, -1); }

    private:
        int m_number;
    };

    // The folder above path. What lies behind its first namedLength bytes is made where it is not
    // there, and no link in it is followed: each step begins at the folder that is open already, so
    // that nothing put in its place meanwhile leads away.
    void openFolder(const std::string &path, size_t namedLength, Descriptor &folder)
    {
        const size_t end = namePosition(path);
        size_t at = std::min(namedLength, end);
        const std::string named = at == 0 ? "." : path.substr(0, at);
        folder.reset(open(named.c_str(), kFolder));
        if (folder.number() < 0 && errno == ENOENT && namedLength < path.size()) {
            makeFolders(joined(named, "x"));
            folder.reset(open(named.c_str(), kFolder));
        }
        while (folder.number() >= 0 && at < end) {
            const size_t slash = path.find('/', at);
            const std::string part = path.substr(at, slash - at);
            at = slash + 1;
            if (part.empty())
                continue;
            int next = openat(folder.number(), part.c_str(), kFolder | O_NOFOLLOW);
            if (next < 0 && errno == ENOENT
                && (mkdirat(folder.number(), part.c_str(), 0777) == 0 || errno == EEXIST))
                next = openat(folder.number(), part.c_str(), kFolder | O_NOFOLLOW);
            struct stat status = {};
            const int reason = errno;
            if (next < 0
                && fstatat(folder.number(), part.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0
                && S_ISLNK(status.st_mode))
                throw writeFailure(
                        path, shownName(part) + QStringLiteral(" is a link and is not followed"));
            errno = reason;
            folder.reset(next);
        }
        if (folder.number() < 0)
            throw writeFailure(path);
    }

    // The number in the name of an open descriptor of this process, or -1. These names are links to
    // what must not be replaced, such as the terminal's own entry.
    int descriptorNamed(const std::string &path)
    {
        if (path == "/dev/stdout")
            return STDOUT_FILENO;
        if (path == "/dev/stderr")
            return STDERR_FILENO;
        for (const std::string folder : { "/dev/fd/", "/proc/self/fd/" }) {
            const std::string rest = path.substr(0, folder.size()) == folder
                    ? path.substr(folder.size())
                    : std::string();
            if (!rest.empty() && rest.size() < 8
                && rest.find_first_not_of("0123456789") == rest.npos)
                return std::atoi(rest.c_str());
        }
        return -1;
    }

    // A name that is hidden, hardly taken, and short enough for any folder.
    std::string temporaryName()
    {
        static const unsigned long long base = [] {
            std::random_device random;
            return (static_cast<unsigned long long>(random()) << 32) + random();
        }();
        static std::atomic<unsigned long long> count{ 0 };
        return ".metafile2svg-" + std::to_string(base + count++);
    }

    // A new file that has no name until it is complete, so that no run leaves parts behind.
    int openNameless(int folder)
    {
#if defined(O_TMPFILE)
        if (access("/proc/self/fd", X_OK) == 0)
            return openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0666);
#endif
        return -1;
    }

} // namespace

/// Where a new file gets its name.
struct OutputFile::Place
{
    Descriptor folder;
    std::string name;
    std::string temporary; ///< the new file's name until then, if it has one
    bool isNew = false; ///< not a device or what else is written to as it is

    ~Place() { forget(); }

    void forget()
    {
        if (!temporary.empty())
            unlinkat(folder.number(), temporary.c_str(), 0);
        temporary.clear();
    }

    // Gives a descriptor for writing what is to be known as path, or -1 and errno.
    int open(const std::string &path, bool isNamed)
    {
        struct stat there = {};
        const bool exists =
                fstatat(folder.number(), name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0;
        if (!exists || S_ISLNK(there.st_mode))
            return openNew(nullptr);
        if (S_ISDIR(there.st_mode))
            throw writeFailure(path, QStringLiteral("it is a folder"));
        if (S_ISREG(there.st_mode)) {
            // A file that must not be written is not replaced either.
            const bool isFree = faccessat(folder.number(), name.c_str(), W_OK, AT_EACCESS) == 0;
            return isFree ? openNew(&there) : -1;
        }
        if (!isNamed)
            throw writeFailure(path, QStringLiteral("it is no file"));
        return openat(folder.number(), name.c_str(), O_WRONLY | O_NOFOLLOW | O_NOCTTY | O_CLOEXEC);
    }

    // A new file; its permissions are those of the one that it replaces.
    int openNew(const struct stat *replaced)
    {
        int file = openNameless(folder.number());
        for (int tries = 0; file < 0 && tries < 100; ++tries) {
            const std::string tried = temporaryName();
            file = openat(folder.number(), tried.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC,
                          0666);
            if (file >= 0)
                temporary = tried;
            else if (errno != EEXIST)
                break;
        }
        if (file >= 0 && replaced != nullptr)
            fchmod(file, replaced->st_mode & 0777);
        isNew = true;
        return file;
    }

    // False if it does not work, and errno says why. Whatever has the name, a link too, is
    // replaced.
    bool putThere(int file)
    {
        if (temporary.empty()) {
            const std::string source = "/proc/self/fd/" + std::to_string(file);
            const auto give = [&](const std::string &to) {
                return linkat(AT_FDCWD, source.c_str(), folder.number(), to.c_str(),
                              AT_SYMLINK_FOLLOW)
                        == 0;
            };
            if (give(name))
                return true;
            for (int tries = 0; errno == EEXIST && tries < 100 && temporary.empty(); ++tries) {
                const std::string tried = temporaryName();
                if (give(tried))
                    temporary = tried;
            }
        }
        if (temporary.empty()
            || renameat(folder.number(), temporary.c_str(), folder.number(), name.c_str()) != 0)
            return false;
        temporary.clear();
        return true;
    }
};

OutputFile::OutputFile(const std::string &path) : OutputFile(path, path.npos) { }

OutputFile::OutputFile(const std::string &path, size_t namedLength)
    : m_path(path), m_place(std::make_unique<Place>())
{
    const bool isNamed = namedLength >= path.size();
    Descriptor file;
    if (const int number = descriptorNamed(path); isNamed && number >= 0) {
        file.reset(fcntl(number, F_DUPFD_CLOEXEC, 0));
    } else {
        openFolder(path, namedLength, m_place->folder);
        m_place->name = path.substr(namePosition(path));
        file.reset(m_place->open(path, isNamed));
    }
    if (file.number() < 0)
        throw writeFailure(path);
    auto opened = std::make_unique<QFile>();
    // A buffer that is flushed in part does not tell why.
    if (!opened->open(file.number(), QIODevice::WriteOnly | QIODevice::Unbuffered,
                      QFileDevice::AutoCloseHandle))
        throw writeFailure(shownName(path), *opened);
    file.release();
    m_file = std::move(opened);
}

void OutputFile::takeTimeOf(const std::string &path)
{
    struct stat other = {};
    if (stat(path.c_str(), &other) == 0) {
        const timespec times[] = { { 0, UTIME_OMIT }, other.st_mtim };
        futimens(descriptor(), times);
    }
}

void OutputFile::finish()
{
    if (!m_place->isNew)
        return;
    // A file that has its name has its bytes as well, whatever happens to the machine.
    const bool isSafe = fsync(descriptor()) == 0 || errno == EINVAL || errno == ENOSYS;
    if (!isSafe || !m_place->putThere(descriptor()))
        throw writeFailure(m_path);
}

#endif

OutputFile::~OutputFile() = default;

void OutputFile::write(const QByteArray &bytes)
{
    writeAll(shownName(m_path), *m_file, bytes);
}

void writeOutput(const std::string &path, std::FILE *standardOutput, const QByteArray &bytes)
{
    if (path == kStandardStream) {
        const QString name = QStringLiteral("standard output");
        QFile file;
        if (!file.open(standardOutput, QIODevice::WriteOnly | QIODevice::Unbuffered))
            throw writeFailure(name, file);
        return writeAll(name, file, bytes);
    }
    OutputFile file(path);
    file.write(bytes);
    file.finish();
}

} // namespace svgtool
