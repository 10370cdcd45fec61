#include "cli/Jobs.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <filesystem>

namespace svgtool {

namespace {

    const QString kSuffix = QStringLiteral(".svg");

    // Collects the metafiles below an input folder.
    class FolderReader
    {
    public:
        FolderReader(const QString &outputFolder, bool isRecursive, std::vector<Job> &jobs)
            : m_outputFolder(outputFolder), m_isRecursive(isRecursive), m_jobs(jobs)
        {
        }

        void read(const QString &folder)
        {
            const size_t before = m_jobs.size();
            readFolder(folder, m_outputFolder);
            if (m_jobs.size() == before)
                m_jobs.push_back({ folder,
                                   {},
                                   false,
                                   m_isRecursive ? QStringLiteral("holds no metafiles")
                                                 : QStringLiteral("holds no metafiles; -r looks "
                                                                  "into its folders too") });
        }

    private:
        // The folder's files come first, then its folders, each by name. Links to folders are not
        // followed, so the way ends.
        void readFolder(const QString &folder, const QString &outputFolder)
        {
            const QFileInfo info(folder);
            if (!info.isReadable() || !info.isExecutable()) {
                m_jobs.push_back(
                        { folder, {}, false, QStringLiteral("cannot be read: Permission denied") });
                return;
            }
            const QDir dir(folder);
            addUnreadableNames(folder);
            const QStringList patterns{ QStringLiteral("*.emf"), QStringLiteral("*.wmf") };
            for (const QString &name : dir.entryList(patterns, QDir::Files, QDir::Name)) {
                const QString input = dir.filePath(name);
                const QString output = outputFolder.isEmpty()
                        ? input + kSuffix
                        : QDir(outputFolder).filePath(name + kSuffix);
                m_jobs.push_back({ input, output, true, {} });
            }
            if (!m_isRecursive)
                return;
            const auto kinds = QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks;
            for (const QString &name : dir.entryList(kinds, QDir::Name))
                readFolder(dir.filePath(name),
                           outputFolder.isEmpty() ? QString() : QDir(outputFolder).filePath(name));
        }

        // Qt leaves out names that are no text in the encoding of file names.
        void addUnreadableNames(const QString &folder)
        {
#if !defined(_WIN32)
            std::error_code error;
            const std::filesystem::path path(QFile::encodeName(folder).toStdString());
            for (std::filesystem::directory_iterator each(path, error), end; !error && each != end;
                 each.increment(error)) {
                const QByteArray bytes =
                        QByteArray::fromStdString(each->path().filename().string());
                const QString name = QFile::decodeName(bytes);
                const bool isMetafile = name.endsWith(QLatin1String(".emf"), Qt::CaseInsensitive)
                        || name.endsWith(QLatin1String(".wmf"), Qt::CaseInsensitive);
                if (isMetafile && QFile::encodeName(name) != bytes)
                    m_jobs.push_back({ folder + QLatin1Char('/') + name,
                                       {},
                                       false,
                                       QStringLiteral("its name is not UTF-8") });
            }
#endif
        }

        QString m_outputFolder;
        bool m_isRecursive;
        std::vector<Job> &m_jobs;
    };

    // Where a path leads, although its last part need not exist.
    QString identity(const QString &path)
    {
        const QFileInfo info(path);
        if (info.exists())
            return info.canonicalFilePath();
        const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
        return folder.isEmpty() ? QDir::cleanPath(info.absoluteFilePath())
                                : QDir(folder).filePath(info.fileName());
    }

    // Two metafiles must not share an output, nor one with the page, and none may replace a
    // metafile.
    QString clashOf(const std::vector<Job> &jobs, const QString &page)
    {
        QHash<QString, QString> owners;
        for (const Job &job : jobs) {
            if (job.problem.isEmpty() && job.input != kStandardStream)
                owners.insert(identity(job.input), {});
        }
        if (!page.isEmpty()) {
            if (owners.contains(identity(page)))
                return QStringLiteral("%1 would replace a metafile").arg(page);
            owners.insert(identity(page), QStringLiteral("the gallery"));
        }
        for (const Job &job : jobs) {
            const bool isFile = job.output != kStandardStream
                    && (QFileInfo(job.output).isFile() || !QFileInfo::exists(job.output));
            if (job.output.isEmpty() || !isFile)
                continue;
            const QString place = identity(job.output);
            const auto owner = owners.constFind(place);
            if (owner != owners.constEnd())
                return owner->isEmpty()
                        ? QStringLiteral("%1 would replace a metafile").arg(job.output)
                        : QString(QLatin1String("both ") + *owner + QLatin1String(" and ")
                                  + job.input + QLatin1String(" would become ") + job.output);
            owners.insert(place, job.input);
        }
        return {};
    }

    // A list of records must not replace a metafile or a document.
    QString dumpClashOf(const QString &dumpFile, const std::vector<Job> &jobs)
    {
        const QFileInfo info(dumpFile);
        if (info.exists() && !info.isFile())
            return {};
        const QString place = identity(dumpFile);
        for (const Job &job : jobs) {
            for (const QString &path : { job.input, job.output }) {
                if (!path.isEmpty() && path != kStandardStream && identity(path) == place)
                    return QStringLiteral("--dump-skipped would replace ") + path;
            }
        }
        return {};
    }

    // What an unquoted "-o *.emf" names is hardly meant to be replaced.
    bool isMetafile(const QString &path)
    {
        const QString suffix = QFileInfo(path).suffix().toLower();
        return (suffix == QLatin1String("emf") || suffix == QLatin1String("wmf"))
                && QFileInfo(path).isFile();
    }

    bool namesFolder(const QString &path)
    {
        return path.endsWith(QLatin1Char('/')) || path.endsWith(QDir::separator())
                || QFileInfo(path).isDir();
    }

} // namespace

Plan makePlan(const Options &options)
{
    Plan plan;
    plan.isBatch = options.inputs.size() > 1;
    for (const QString &input : options.inputs)
        plan.isBatch = plan.isBatch || (input != kStandardStream && QFileInfo(input).isDir());
    const bool isFolder = !options.output.isEmpty()
            && (namesFolder(options.output) || (plan.isBatch && options.output != kStandardStream));
    const QString outputFolder = isFolder ? options.output : QString();
    if (plan.isBatch && options.output == kStandardStream)
        plan.problem = QStringLiteral("several documents cannot go to standard output");
    if (isFolder && options.inputs.contains(kStandardStream))
        plan.problem = QStringLiteral("standard input has no name, so -o needs one for a file");
    if (isFolder && QFileInfo::exists(options.output) && !QFileInfo(options.output).isDir())
        plan.problem = options.output + QStringLiteral(" is to hold documents and is no folder");
    for (const QString &path : { options.output, options.dumpFile }) {
        if (isMetafile(path))
            plan.problem = path + QStringLiteral(" would be replaced, and is a metafile");
    }
    if (!plan.problem.isEmpty())
        return plan;

    for (const QString &input : options.inputs) {
        if (input != kStandardStream && QFileInfo(input).isDir()) {
            FolderReader(outputFolder, options.isRecursive, plan.jobs).read(input);
            continue;
        }
        Job job{ input, options.output, false, {} };
        if (isFolder)
            job.output = QDir(outputFolder).filePath(QFileInfo(input).fileName() + kSuffix);
        else if (plan.isBatch)
            job.output = input + kSuffix;
        else if (options.output.isEmpty())
            job.output = kStandardStream;
        job.mayBeUpToDate = isFolder || plan.isBatch;
        plan.jobs.push_back(job);
    }
    const auto forgetOutputs = [&plan] {
        for (Job &job : plan.jobs)
            job.output.clear();
    };
    if (options.report == Options::Report::Facts)
        forgetOutputs();
    plan.problem = clashOf(plan.jobs, options.gallery);
    if (plan.problem.isEmpty() && !options.dumpFile.isEmpty())
        plan.problem = dumpClashOf(options.dumpFile, plan.jobs);
    if (!options.writes)
        forgetOutputs();
    return plan;
}

} // namespace svgtool
