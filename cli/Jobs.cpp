#include "cli/Jobs.h"

#include "cli/Files.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <unordered_map>

namespace svgtool {

namespace {

    namespace fs = std::filesystem;

    const std::string kSuffix = ".svg";

    bool hasMetafileEnding(const std::string &name)
    {
        static constexpr std::string_view kEndings[] = { "emf", "emz", "wmf", "wmz" };
        return std::count(std::begin(kEndings), std::end(kEndings), endingOf(name)) > 0;
    }

    std::string nameOf(const fs::directory_entry &entry)
    {
#if defined(_WIN32)
        const std::u8string name = entry.path().filename().u8string();
        return { name.begin(), name.end() };
#else
        // The last part of a native path, without a path made of it.
        const std::string &path = entry.path().native();
        return path.substr(path.rfind('/') + 1);
#endif
    }

    // Collects the metafiles below an input folder.
    class FolderReader
    {
    public:
        FolderReader(const Options &options, const std::string &outputFolder, Plan &plan)
            : m_outputFolder(outputFolder), m_isRecursive(options.isRecursive), m_plan(plan)
        {
        }

        void read(const std::string &folder)
        {
            const size_t before = m_plan.jobs.size();
            m_namedLength = m_outputFolder.empty() ? folder.size() : m_outputFolder.size();
            readFolder(folder, m_outputFolder);
            if (m_plan.jobs.size() == before)
                addProblem(folder,
                           m_isRecursive ? QStringLiteral("holds no metafiles")
                                         : QStringLiteral("holds no metafiles; -r looks into its "
                                                          "folders too"));
        }

    private:
        struct Found
        {
            std::string name;
            bool isLink;
            bool operator<(const Found &other) const { return name < other.name; }
        };

        // The folder's files come first, then its folders, each by name. Links to folders are not
        // followed, so the way ends.
        void readFolder(const std::string &folder, const std::string &outputFolder)
        {
            std::vector<Found> files;
            std::vector<std::string> folders;
            std::error_code error;
            for (fs::directory_iterator each(nativePath(folder), error), end; !error && each != end;
                 each.increment(error))
                sort(*each, files, folders);
            if (error)
                addProblem(folder,
                           QStringLiteral("cannot be read: ")
                                   + QString::fromStdString(error.message()));
            std::sort(files.begin(), files.end());
            for (const Found &file : files) {
                const std::string input = joined(folder, file.name);
                m_plan.jobs.push_back(
                        { input,
                          (outputFolder.empty() ? input : joined(outputFolder, file.name))
                                  + kSuffix,
                          m_namedLength,
                          file.isLink,
                          {} });
            }
            std::sort(folders.begin(), folders.end());
            for (const std::string &name : folders)
                readFolder(joined(folder, name),
                           outputFolder.empty() ? std::string() : joined(outputFolder, name));
        }

        // Puts an entry where it belongs. What a file system tells along with the name is not asked
        // for again.
        void sort(const fs::directory_entry &entry, std::vector<Found> &files,
                  std::vector<std::string> &folders)
        {
            std::string name = nameOf(entry);
            std::error_code error;
            const bool isLink = entry.is_symlink(error);
            const bool isHidden = name[0] == '.';
            if (!isLink && entry.is_directory(error)) {
                if (m_isRecursive && isHidden)
                    leaveOut(LeftOut::HiddenFolder);
                else if (m_isRecursive)
                    folders.push_back(std::move(name));
                return;
            }
            const bool isMetafile = hasMetafileEnding(name);
            if (!isMetafile && !(isLink && m_isRecursive))
                return;
            const fs::file_type type = isLink      ? fs::status(entry.path(), error).type()
                    : entry.is_regular_file(error) ? fs::file_type::regular
                                                   : entry.symlink_status(error).type();
            if (type == fs::file_type::directory) {
                if (m_isRecursive)
                    leaveOut(LeftOut::LinkedFolder);
            } else if (!isMetafile) {
                return;
            } else if (isHidden) {
                leaveOut(LeftOut::HiddenFile);
            } else if (type == fs::file_type::not_found
                       || error == std::errc::too_many_symbolic_link_levels) {
                leaveOut(LeftOut::DanglingLink);
            } else if (isLink ? fs::is_other(fs::file_status(type))
                              : type != fs::file_type::regular) {
                leaveOut(LeftOut::SpecialFile);
            } else {
                // Where it could not be looked at, trying to read it tells why.
                files.push_back({ std::move(name), isLink });
            }
        }

        void leaveOut(LeftOut kind) { ++m_plan.leftOut[size_t(kind)]; }

        void addProblem(const std::string &folder, const QString &problem)
        {
            Job job;
            job.input = folder;
            job.problem = problem;
            m_plan.jobs.push_back(job);
        }

        std::string m_outputFolder;
        size_t m_namedLength = 0;
        bool m_isRecursive;
        Plan &m_plan;
    };

    // Tells whether two paths name the same entry of the same folder. It is an entry that a
    // document replaces: a link, not what it leads to.
    class Entries
    {
    public:
        struct Owner
        {
            const std::string *input;
            bool isOutput;
        };

        // Gives who has the entry of a path, and if nobody does, gives it to an owner. The path
        // lives as long as this does.
        const Owner *claim(const std::string &path, const Owner &owner)
        {
            const auto [at, isNew] = m_owners.try_emplace(keyOf(path), owner);
            return isNew ? nullptr : &at->second;
        }

        // As claim(), for an entry that is only asked for.
        const Owner *find(const std::string &path)
        {
            const auto at = m_owners.find(keyOf(path));
            return at == m_owners.end() ? nullptr : &at->second;
        }

    private:
        struct Key
        {
            size_t folder;
            std::string_view name;
            bool operator==(const Key &) const = default;
        };
        struct Hash
        {
            size_t operator()(const Key &key) const
            {
                return std::hash<std::string_view>()(key.name) + key.folder * 0x9E3779B97F4A7C15U;
            }
        };

        Key keyOf(const std::string &path)
        {
            const size_t split = namePosition(path);
            return { folderOf(path.substr(0, split)), std::string_view(path).substr(split) };
        }

        // A folder's number, whatever way leads there; it need not exist yet.
        size_t folderOf(const std::string &path)
        {
            const auto [at, isNew] = m_ways.try_emplace(path, 0);
            if (isNew) {
                std::error_code error;
                const fs::path absolute = fs::absolute(nativePath(path + '.'), error);
                fs::path folder = fs::weakly_canonical(absolute, error);
                if (error)
                    folder = absolute;
                at->second = m_folders.try_emplace(folder.native(), m_folders.size()).first->second;
            }
            return at->second;
        }

        std::unordered_map<std::string, size_t> m_ways;
        std::unordered_map<fs::path::string_type, size_t> m_folders;
        std::unordered_map<Key, Owner, Hash> m_owners;
    };

    // Whether a file takes the place of this name, and not what is written to as it is.
    bool isReplaced(const std::string &output)
    {
        std::error_code error;
        return !output.empty() && output != kStandardStream
                && !fs::is_other(fs::symlink_status(nativePath(output), error));
    }

    // Two metafiles must not share an output, and nothing that is written may replace a metafile or
    // a document.
    QString clashOf(const std::vector<Job> &jobs, const Options &options)
    {
        Entries entries;
        std::vector<std::string> targets;
        targets.reserve(size_t(std::count_if(jobs.begin(), jobs.end(),
                                             [](const Job &job) { return job.isLink; })));
        for (const Job &job : jobs) {
            if (!job.problem.isEmpty() || job.input == kStandardStream)
                continue;
            entries.claim(job.input, { &job.input, false });
            std::error_code error;
            if (job.isLink) {
                targets.push_back(fs::canonical(nativePath(job.input), error).string());
                entries.claim(targets.back(), { &job.input, false });
            }
        }
        for (const Job &job : jobs) {
            // Made names were found to be files, or show it when they are written.
            if (job.output.empty() || (!job.hasMadeName() && !isReplaced(job.output)))
                continue;
            const Entries::Owner *owner = entries.claim(job.output, { &job.input, true });
            if (owner == nullptr)
                continue;
            const QString output = shownName(job.output);
            return owner->isOutput ? QStringLiteral("both %1 and %2 would become ")
                                             .arg(shownName(*owner->input), shownName(job.input))
                            + output
                                   : output + QStringLiteral(" would replace a metafile");
        }
        if (isReplaced(options.gallery)
            && entries.claim(options.gallery, { &options.gallery, true }))
            return shownName(options.gallery) + QStringLiteral(" would replace a metafile");
        if (isReplaced(options.dumpFile) && entries.find(options.dumpFile) != nullptr)
            return QStringLiteral("--dump-skipped would replace ") + shownName(options.dumpFile);
        return {};
    }

    bool isFile(const std::string &path)
    {
        std::error_code error;
        return fs::is_regular_file(nativePath(path), error);
    }

    // Names of what the tool does not write.
    bool hasForeignEnding(const std::string &path)
    {
        static constexpr std::string_view kEndings[] = { "bmp",  "emf", "emz",  "eps",  "gif",
                                                         "gz",   "htm", "html", "jpeg", "jpg",
                                                         "pdf",  "png", "ps",   "tif",  "tiff",
                                                         "webp", "wmf", "wmz" };
        return std::count(std::begin(kEndings), std::end(kEndings), endingOf(path)) > 0;
    }

    // Whether a second input is hardly one but meant to be written: there is none, or it is the
    // document of an earlier try.
    bool isMeantAsOutput(const std::vector<std::string> &inputs)
    {
        if (inputs.size() != 2 || endingOf(inputs[1]) != "svg")
            return false;
        std::error_code error;
        return !fs::exists(nativePath(inputs[1]), error)
                || (isFile(inputs[1])
                    && std::ifstream(nativePath(inputs[1]), std::ios::binary).peek() == '<');
    }

    // What is wrong with -o, as far as that depends on what is there.
    QString outputProblem(const Options &options, bool isBatch, bool isInFolder)
    {
        const std::string &output = options.output;
        const QString shown = shownName(output);
        std::error_code error;
        if (output.empty()) {
            if (isMeantAsOutput(options.inputs))
                return QStringLiteral("%1 is no metafile; to write it, say -o %1")
                        .arg(shownName(options.inputs[1]));
        } else if (output == kStandardStream) {
            if (isBatch)
                return QStringLiteral("several documents cannot go to standard output");
        } else if (hasMetafileEnding(output) && isFile(output)) {
            // What an unquoted "-o *.emf" names is hardly meant to be replaced.
            return shown + QStringLiteral(" would be replaced, and is a metafile");
        } else if (isInFolder && fs::exists(nativePath(output), error) && !isFolder(output)) {
            return shown + QStringLiteral(" is to hold documents and is no folder");
        } else if (namePosition(output) != output.size() && !isFolder(output)) {
            if (hasForeignEnding(output))
                return shown
                        + QStringLiteral(": documents are SVG; give a name that ends in .svg, and "
                                         "convert that further");
            if (isInFolder && (endingOf(output) == "svg" || endingOf(output) == "svgz"))
                return shown
                        + QStringLiteral(" cannot hold several documents; give a folder, whose "
                                         "name ends in /");
        }
        return {};
    }

} // namespace

Plan makePlan(const Options &options)
{
    Plan plan;
    plan.isBatch = options.inputs.size() > 1;
    for (const std::string &input : options.inputs)
        plan.isBatch = plan.isBatch || (input != kStandardStream && isFolder(input));
    const std::string &output = options.output;
    const bool isInFolder = !output.empty() && output != kStandardStream
            && (plan.isBatch || namePosition(output) == output.size() || isFolder(output));
    plan.problem = outputProblem(options, plan.isBatch, isInFolder);
    if (isInFolder && options.inputs[0] == kStandardStream)
        plan.problem = QStringLiteral("standard input has no name, so -o needs one for a file");
    if (hasMetafileEnding(options.dumpFile) && isFile(options.dumpFile))
        plan.problem = shownName(options.dumpFile)
                + QStringLiteral(" would be replaced, and is a metafile");
    if (!plan.problem.isEmpty())
        return plan;

    const std::string outputFolder = isInFolder ? output : std::string();
    for (const std::string &input : options.inputs) {
        if (input != kStandardStream && isFolder(input)) {
            FolderReader(options, outputFolder, plan).read(input);
            continue;
        }
        std::error_code error;
        Job job;
        job.input = input;
        job.isLink = input != kStandardStream && fs::is_symlink(nativePath(input), error);
        job.output = output.empty() ? kStandardStream : output;
        if (isInFolder || plan.isBatch) {
            job.output = (isInFolder ? joined(output, input.substr(namePosition(input))) : input)
                    + kSuffix;
            job.namedLength = isInFolder ? output.size() : namePosition(input);
        }
        plan.jobs.push_back(job);
    }
    const auto forgetOutputs = [&plan] {
        for (Job &job : plan.jobs)
            job.output.clear();
    };
    if (options.report == Options::Report::Facts)
        forgetOutputs();
    plan.problem = clashOf(plan.jobs, options);
    if (!options.writes)
        forgetOutputs();
    return plan;
}

QString leftOutText(const Plan &plan)
{
    static constexpr const char *kNames[] = { "hidden folder", "hidden file", "linked folder",
                                              "dangling link", "special file" };
    QString text;
    for (size_t i = 0; i < plan.leftOut.size(); ++i) {
        const size_t count = plan.leftOut[i];
        if (count == 0)
            continue;
        text += QLatin1String(text.isEmpty() ? "; left out " : ", ") + QString::number(count)
                + QLatin1Char(' ') + QLatin1String(kNames[i])
                + QLatin1String(count == 1 ? "" : "s");
    }
    return text;
}

} // namespace svgtool
