#include "support/Corpus.h"
#include "support/Conversion.h"

#include <gtest/gtest.h>

#include <thread>

using namespace svgtool;
using namespace svgtool::test;

namespace {

// Every metafile of the project's samples and, where it is there, of the shared collection, whose
// list says what the library must say of each, EMF header or not.
TEST(Corpus, ConvertsAloneAndInThreads)
{
    const QString root = QStringLiteral(SVGTOOL_SHARED_DIR "/corpus/");
    std::map<QString, int> listed;
    QFile list(root + QLatin1String("MANIFEST.tsv"));
    if (list.open(QIODevice::ReadOnly)) {
        QList<QByteArray> fields = list.readLine().split('\t');
        const auto column = fields.indexOf("header_result");
        ASSERT_GE(column, 0);
        while (fields = list.readLine().split('\t'), fields.size() > column)
            listed[root + QString::fromUtf8(fields[0])] = fields[column].toInt();
    }
    std::vector<std::pair<QByteArray, std::string>> alone;
    std::map<qint32, int> results;
    for (const auto &[path, bytes] : metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR })) {
        SCOPED_TRACE(path.toStdString());
        const auto [result, text] = convert(bytes);
        ++results[result];
        const std::string head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?> <svg ";
        const bool isWhole =
                text.compare(0, head.size(), head) == 0 && text.find("</svg>\n") == text.size() - 7;
        EXPECT_TRUE(result > 0 ? isWhole : (result == -2 || result == -3) && text.empty());
        const auto row = listed.find(path);
        EXPECT_TRUE(row == listed.end() || row->second == result) << result;
        if (bytes.size() < 100000)
            alone.emplace_back(bytes, text);
    }
    EXPECT_TRUE(results[1] > 0 && results[2] > 0);

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
