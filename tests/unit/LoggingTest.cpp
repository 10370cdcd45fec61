#include "support/TestData.h"
#include "unit/Cases.h"

#include <CLogSystem.h>

#include <map>

using namespace svgtool;
using namespace svgtool::test;

namespace {

// Collects the lines of each level while it lives, each without its number, which changes with
// every edit, and brings the level back when it dies.
class LogCapture
{
public:
    explicit LogCapture(const std::string &level)
    {
        CLogSystem::theRootInstance->setLevel(level);
        for (const auto &[output, lines] : m_levels) {
            output->setSink([lines = lines](const std::string &line) {
                const auto number = line.find('\t') + 1;
                const auto end = line.find('\t', number);
                EXPECT_EQ(line.find_first_not_of("0123456789", number), end) << line;
                *lines += line.substr(0, number) + line.substr(end) + '\n';
            });
        }
    }
    ~LogCapture()
    {
        for (const auto &[output, lines] : m_levels)
            output->setSink({});
        CLogSystem::theRootInstance->setLevel("INFO");
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    std::string trace, info, warn;

private:
    const std::map<basic_logging::LevelOutput *, std::string *> m_levels{
        { &basic_logging::tracelevel, &trace },
        { &basic_logging::infolevel, &info },
        { &basic_logging::warnlevel, &warn }
    };
};

// Every line but for its number is as it was before the untraced ways around it were made.
TEST(Trace, LinesOfASmallFileAreUnchanged)
{
    const LogCapture log("TRACE");
    convert(emf("rect 1 2 3 4; polygon16 box 3 1,2 3,4 5,6; beginPath;"
                "bezier box 4 1 2 3 4 5 6 7 8; strokePath")
                    .build());
    convert(wmf("polyline 2 1 2 3 4", WmfBuilder()).build());
    EXPECT_EQ(log.trace, testData("trace.txt").toStdString());
}

TEST(Trace, OffForAnyOtherLevel)
{
    for (const char *level : { "INFO", "trace", "TRACE ", "" }) {
        const LogCapture log(level);
        EXPECT_EQ(convert(EmfBuilder().build() + '\0').result, -2);
        EXPECT_EQ(log.trace, "") << level;
        EXPECT_EQ(log.warn, ".\\SVGTool.cpp\t\t Invalid EMF data \n");
    }
}

TEST(Log, WmfSetUpIsInfoWhateverTheLevel)
{
    const LogCapture log("FATAL");
    EXPECT_EQ(convert(WmfBuilder().build()).result, 2);
    EXPECT_EQ(log.info,
              ".\\Wmf2SVG.cpp\t\t Setup WMF record names buffer \n"
              ".\\Wmf2SVG.cpp\t\t Setup WMF record handlers \n");
}

TEST(Log, ThrowingTraceSinkChangesNothing)
{
    const QByteArray file = emf("rect 1 2 3 4").build();
    const std::string quiet = convert(file).text;
    const LogCapture log("TRACE");
    basic_logging::tracelevel.setSink([](const std::string &) { throw 1; });
    EXPECT_EQ(convert(file).text, quiet);
}

} // namespace
