#include "support/Corpus.h"
#include "support/Conversion.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <thread>

using namespace svgtool;
using namespace svgtool::test;

namespace {

// Every metafile of the project's samples and, where it is there, of the shared collection.
std::map<QString, QByteArray> metafiles()
{
    return metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR });
}

TEST(Corpus, EveryFileConvertsOrIsRefusedWithItsCode)
{
    const SilentLogs silence;
    std::map<qint32, int> results;
    for (const auto &[path, bytes] : metafiles()) {
        const auto [result, text] = convert(bytes);
        ++results[result];
        const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg ";
        const bool isWhole =
                text.compare(0, head.size(), head) == 0 && text.find("</svg>\n") == text.size() - 7;
        const bool isRefused = (result == -2 || result == -3) && text.empty();
        EXPECT_TRUE(result > 0 ? isWhole : isRefused) << path.toStdString();
    }
    EXPECT_GT(results[1], 0);
    EXPECT_GT(results[2], 0);
}

// What the collection's list says of a file is what the library must say, EMF header or not.
TEST(Corpus, ResultsAreThoseOfTheList)
{
    const SilentLogs silence;
    const QString root = QStringLiteral(SVGTOOL_SHARED_DIR "/corpus/");
    QFile list(root + QLatin1String("MANIFEST.tsv"));
    if (!list.open(QIODevice::ReadOnly))
        GTEST_SKIP() << "no shared collection beside the project";
    const auto files = metafiles();
    QList<QByteArray> fields = list.readLine().split('\t');
    const auto column = fields.indexOf("header_result");
    ASSERT_GE(column, 0);
    while (fields = list.readLine().split('\t'), fields.size() > column)
        EXPECT_EQ(convert(files.at(root + QString::fromUtf8(fields[0]))).result,
                  fields[column].toInt())
                << fields[0].toStdString();
}

TEST(Corpus, ThreadsDoNotInterfere)
{
    const SilentLogs silence;
    std::vector<std::pair<QByteArray, std::string>> alone;
    for (const auto &[path, bytes] : metafiles())
        if (bytes.size() < 100000)
            alone.emplace_back(bytes, convert(bytes).text);
    // Each begins elsewhere, so that different files are converted at a time.
    const auto work = [&](size_t first) {
        for (size_t i = 0; i < alone.size(); ++i) {
            const auto &[bytes, expected] = alone[(first + i) % alone.size()];
            EXPECT_EQ(convert(bytes).text, expected) << (first + i) % alone.size();
        }
    };
    std::vector<std::thread> threads;
    for (size_t i = 0; i < 4; ++i)
        threads.emplace_back(work, i * alone.size() / 4);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace
