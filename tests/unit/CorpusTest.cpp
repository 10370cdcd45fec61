#include "support/Conversion.h"
#include "svgtool/SVGTool.h"

#include <CLogSystem.h>
#include <gtest/gtest.h>

#include <QDirIterator>
#include <QFile>

#include <map>
#include <thread>

using namespace svgtool;
using namespace svgtool::test;

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

// Every metafile of the project's samples and, where it is there, of the shared collection.
std::map<QString, QByteArray> metafiles()
{
    std::map<QString, QByteArray> files;
    for (const char *folder : { SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR }) {
        QDirIterator it(QString::fromUtf8(folder),
                        { QStringLiteral("*.emf"), QStringLiteral("*.wmf") }, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            files[path] = readFile(path);
        }
    }
    return files;
}

// Two lines a file that nobody reads.
void silenceLog()
{
    basic_logging::infolevel.setSink([](const std::string &) {});
    basic_logging::warnlevel.setSink([](const std::string &) {});
}

TEST(Corpus, EveryFileConvertsOrIsRefusedWithItsCode)
{
    silenceLog();
    std::map<qint32, int> results;
    for (const auto &[path, bytes] : metafiles()) {
        QByteArray svg("before");
        const qint32 result = ConvertMetaFileToSVG(bytes, svg);
        ++results[result];
        if (result > 0) {
            EXPECT_TRUE(svg.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg "))
                    << path.toStdString();
            EXPECT_TRUE(svg.endsWith("</svg>\n")) << path.toStdString();
        } else {
            EXPECT_TRUE(result == -2 || result == -3) << path.toStdString();
            EXPECT_EQ(svg, QByteArray("before")) << path.toStdString();
        }
    }
    EXPECT_GT(results[1], 0);
    EXPECT_GT(results[2], 0);
}

// What the collection's list says of a file is what the library must say, EMF header or not.
TEST(Corpus, ResultsAreThoseOfTheList)
{
    silenceLog();
    const QString root = QStringLiteral(SVGTOOL_SHARED_DIR "/corpus/");
    if (!QFile::exists(root + QLatin1String("MANIFEST.tsv")))
        GTEST_SKIP() << "no shared collection beside the project";
    const QStringList lines = QString::fromUtf8(readFile(root + QLatin1String("MANIFEST.tsv")))
                                      .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const int column =
            int(lines[0].split(QLatin1Char('\t')).indexOf(QStringLiteral("header_result")));
    ASSERT_GE(column, 0);
    for (const QString &line : lines.mid(1)) {
        const QStringList fields = line.split(QLatin1Char('\t'));
        EXPECT_EQ(convert(readFile(root + fields[0])).result, fields[column].toInt())
                << fields[0].toStdString();
    }
}

TEST(Corpus, ThreadsDoNotInterfere)
{
    silenceLog();
    const auto files = metafiles();
    std::vector<std::pair<QString, std::string>> alone;
    for (const auto &[path, bytes] : files)
        if (bytes.size() < 100000)
            alone.emplace_back(path, convert(bytes).text);
    // Each begins elsewhere, so that different files are converted at a time.
    const auto work = [&](size_t first) {
        for (size_t i = 0; i < alone.size(); ++i) {
            const auto &[path, expected] = alone[(first + i) % alone.size()];
            EXPECT_EQ(convert(files.at(path)).text, expected) << path.toStdString();
        }
    };
    std::vector<std::thread> threads;
    for (size_t i = 0; i < 4; ++i)
        threads.emplace_back(work, i * alone.size() / 4);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace
