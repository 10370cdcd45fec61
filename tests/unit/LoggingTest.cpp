#include "support/LogLines.h"
#include "support/TestData.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

// Every line but for its number is as it was before the untraced ways around it were made.
TEST(Trace, LinesOfASmallFileAreUnchanged)
{
    const QByteArray file = emf("rect 1 2 3 4; polygon16 box 3 1,2 3,4 5,6; beginPath;"
                                "bezier box 4 1 2 3 4 5 6 7 8; strokePath")
                                    .build();
    const QByteArray other = wmf("polyline 2 1 2 3 4", WmfBuilder()).build();
    EXPECT_EQ(linesOf(basic_logging::tracelevel, "TRACE",
                      [&] {
                          convert(file);
                          convert(other);
                      }),
              testData("trace.txt").toStdString());
}

TEST(Trace, OffForAnyOtherLevel)
{
    const auto fail = [] { EXPECT_EQ(convert(EmfBuilder().build() + '\0').result, -2); };
    for (const char *level : { "INFO", "trace", "TRACE ", "" }) {
        EXPECT_EQ(linesOf(basic_logging::tracelevel, level, fail), "") << level;
        EXPECT_EQ(linesOf(basic_logging::warnlevel, level, fail),
                  ".\\SVGTool.cpp\t\t Invalid EMF data \n");
    }
}

TEST(Log, WmfSetUpIsInfoWhateverTheLevel)
{
    EXPECT_EQ(linesOf(basic_logging::infolevel, "FATAL", [] { convert(WmfBuilder().build()); }),
              ".\\Wmf2SVG.cpp\t\t Setup WMF record names buffer \n"
              ".\\Wmf2SVG.cpp\t\t Setup WMF record handlers \n");
}

TEST(Log, ThrowingTraceSinkChangesNothing)
{
    const QByteArray file = emf("rect 1 2 3 4").build();
    const std::string quiet = convert(file).text;
    linesOf(basic_logging::tracelevel, "TRACE", [&] {
        basic_logging::tracelevel.setSink([](const std::string &) { throw 1; });
        EXPECT_EQ(convert(file).text, quiet);
    });
}

} // namespace
