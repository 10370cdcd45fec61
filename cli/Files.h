#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace svgtool {

/// The streams a run reads and writes. They stay open.
struct StandardStreams
{
    std::FILE *in = stdin;
    std::FILE *out = stdout;
    std::FILE *err = stderr;
};

/// Thrown where a file cannot be used.
struct Failure
{
    QString file; ///< as it may be shown; empty for the one that is converted
    QString reason;
};

/// A file's name, in messages and reports: what is no UTF-8 becomes replacement characters.
QString shownName(const std::string &name);
/// The input's name in messages.
QString shownInput(const std::string &path);

/// A name for functions of the standard library.
std::filesystem::path nativePath(const std::string &name);
/// Where the last part of a path begins.
size_t namePosition(const std::string &path);
/// What the last dot of a name begins, in small letters.
std::string endingOf(const std::string &path);
/// The name in the folder.
std::string joined(const std::string &folder, const std::string &name);

/// Whether @p path leads to a folder, also by links.
bool isFolder(const std::string &path);
/// Whether @p output is a file, and no link to one, that was changed after @p input was.
bool isNewer(const std::string &output, const std::string &input);

/// All bytes of a file, or of standard input. Throws Failure.
QByteArray readInput(const std::string &path, std::FILE *standardInput);

/// A file that is written piece by piece. It appears, or changes, only when all of it is written.
///
/// A link in its place is replaced by the file and never followed, so what it leads to stays as it
/// is. A device or a pipe is written to, and so is what /dev/stdout, /dev/stderr and /dev/fd/N
/// name.
class OutputFile
{
public:
    /// Opens a file that the user named, in a folder that is there. Throws Failure.
    explicit OutputFile(const std::string &path);
    /// Opens a file that the tool named. Throws Failure, also where no file can be because of a
    /// device or pipe.
    /// @param namedLength  how much of @p path the user named. Links are followed in this part
    ///                     only. Folders that are not there are made.
    OutputFile(const std::string &path, size_t namedLength);
    ~OutputFile(); ///< Without finish(), the file stays as it was.

    /// Appends all of @p bytes, past any buffer of this process. Throws Failure.
    void write(const QByteArray &bytes);
    /// Has the file last changed when that of @p path was, as far as its file system can tell.
    void takeTimeOf(const std::string &path);
    /// Puts the file in its place. Throws Failure.
    void finish();
    /// What it is written through until then.
    int descriptor() const { return m_file->handle(); }

private:
    struct Place;

    std::string m_path;
    std::unique_ptr<Place> m_place;
    std::unique_ptr<QFileDevice> m_file;
};

/// Makes the folders above @p path, as far as they are not there.
void makeFolders(const std::string &path);

/// Writes a file that the user named as OutputFile does, or standard output. Throws Failure.
void writeOutput(const std::string &path, std::FILE *standardOutput, const QByteArray &bytes);

/// A name or reason as it may stand in one line: control characters, and those that turn others
/// around, become question marks.
QString printable(QString text);

/// What a message is about; on a terminal the program's name has the colour of it.
enum class Tone {
    Note,
    Warning, ///< there is a document, and something is wrong with it
    Error,
};

bool isTerminal(std::FILE *stream);

/// Prints one line to standard error, made printable. Colours are left out where the environment
/// has NO_COLOR, or a terminal that is dumb.
void printMessage(const StandardStreams &streams, const QString &message, Tone tone = Tone::Error);

} // namespace svgtool
