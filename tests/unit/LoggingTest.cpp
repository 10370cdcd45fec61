#include "unit/Cases.h"

#include <CLogSystem.h>

#include <QCryptographicHash>
#include <QStringList>

#include <vector>

using namespace svgtool;
using namespace svgtool::test;

namespace {

using Lines = std::vector<std::string>;

// Puts sinks of its own in place while it lives, and brings the level back when it dies.
class LogCapture
{
public:
    explicit LogCapture(const std::string &level)
    {
        CLogSystem::theRootInstance->setLevel(level);
        const auto collectIn = [](Lines &lines) {
            return [&lines](const std::string &line) { lines.push_back(line); };
        };
        basic_logging::tracelevel.setSink(collectIn(trace));
        basic_logging::infolevel.setSink(collectIn(info));
        basic_logging::warnlevel.setSink(collectIn(warn));
    }
    ~LogCapture()
    {
        for (auto *output :
             { &basic_logging::tracelevel, &basic_logging::infolevel, &basic_logging::warnlevel })
            output->setSink({});
        CLogSystem::theRootInstance->setLevel("INFO");
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    Lines trace;
    Lines info;
    Lines warn;
};

// The line without its number, which changes with every edit.
std::string withoutNumber(const std::string &line)
{
    const auto first = line.find('\t');
    const auto second = line.find('\t', first + 1);
    EXPECT_NE(second, std::string::npos) << line;
    for (auto i = first + 1; i < second; ++i)
        EXPECT_TRUE(isdigit(static_cast<unsigned char>(line[i]))) << line;
    return line.substr(0, first + 1) + line.substr(second);
}

// Exits match entries; and every line but for its number is as it was before the untraced ways
// around it were made.
TEST(Trace, LinesOfASmallFileAreUnchanged)
{
    LogCapture log("TRACE");
    convert(emf("rect 1 2 3 4; polygon16 box 3 1,2 3,4 5,6; beginPath;"
                "bezier box 4 1 2 3 4 5 6 7 8; strokePath")
                    .build());
    convert(wmf("polyline 2 1 2 3 4", WmfBuilder()).build());
    QByteArray lines;
    QStringList open;
    for (const std::string &line : log.trace) {
        lines += QByteArray::fromStdString(withoutNumber(line)) + '\n';
        const auto words = QString::fromStdString(line).simplified().split(QLatin1Char(' '));
        ASSERT_EQ(words.size(), 4) << line;
        if (words[2] == QLatin1String("Enter"))
            open += words[3];
        else
            EXPECT_EQ(open.isEmpty() ? QString() : open.takeLast(), words[3]) << line;
    }
    EXPECT_TRUE(open.isEmpty());
    EXPECT_TRUE(lines.startsWith(".\\SVGTool.cpp\t\t Enter ConvertMetaFileToSVG \n"));
    EXPECT_EQ(QCryptographicHash::hash(lines, QCryptographicHash::Sha256).toHex().toStdString(),
              "47208c8d1331545a6726a43dbcc63c964822cb1b1b5082b367d3ac7fb29e3d85")
            << lines.toStdString();
}

TEST(Trace, OffForAnyOtherLevel)
{
    for (const char *level : { "INFO", "trace", "TRACE ", "" }) {
        LogCapture log(level);
        EXPECT_EQ(convert(EmfBuilder().build() + '\0').result, -2);
        EXPECT_TRUE(log.trace.empty()) << level;
        ASSERT_EQ(log.warn.size(), 1U);
        EXPECT_EQ(withoutNumber(log.warn[0]), ".\\SVGTool.cpp\t\t Invalid EMF data ");
    }
}

TEST(Log, WmfSetUpIsInfoWhateverTheLevel)
{
    LogCapture log("FATAL");
    EXPECT_EQ(convert(WmfBuilder().build()).result, 2);
    ASSERT_EQ(log.info.size(), 2U);
    EXPECT_EQ(withoutNumber(log.info[0]), ".\\Wmf2SVG.cpp\t\t Setup WMF record names buffer ");
    EXPECT_EQ(withoutNumber(log.info[1]), ".\\Wmf2SVG.cpp\t\t Setup WMF record handlers ");
}

TEST(Log, ThrowingTraceSinkChangesNothing)
{
    const QByteArray file = emf("rect 1 2 3 4").build();
    const Conversion quiet = convert(file);
    LogCapture log("TRACE");
    basic_logging::tracelevel.setSink([](const std::string &) { throw 1; });
    const Conversion noisy = convert(file);
    EXPECT_EQ(noisy.result, 1);
    EXPECT_EQ(noisy.text, quiet.text);
}

} // namespace
