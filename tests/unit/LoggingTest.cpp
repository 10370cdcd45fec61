#include "support/LogLines.h"
#include "support/TestData.h"
#include "unit/Cases.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <algorithm>
#include <sstream>
#include <vector>

using namespace svgtool;
using namespace svgtool::test;

namespace {

// The calls that trace lines tell of, a blank before each, as in trace.txt.
std::string callsOf(const std::string &lines)
{
    static const QRegularExpression form(
            QStringLiteral(R"(\A\.\\(\w+)\.cpp\t\t (Enter|Exit) (\S+) \z)"));
    std::string calls;
    std::vector<std::string> open{ ":" };
    std::istringstream rest(lines);
    for (std::string line; std::getline(rest, line);) {
        const auto parts = form.match(QString::fromStdString(line));
        EXPECT_TRUE(parts.hasMatch()) << line;
        const std::string unit = parts.captured(1).toStdString();
        const std::string function = parts.captured(3).toStdString();
        const std::string name = unit + ':' + function;
        if (parts.captured(2) == QLatin1String("Enter")) {
            const bool isOfCaller = unit == open.back().substr(0, open.back().find(':'));
            calls += ' ' + (isOfCaller ? function : name) + '(';
            open.push_back(name);
        } else {
            EXPECT_EQ(name, open.back());
            open.resize(std::max<size_t>(1, open.size() - 1));
            calls += ')';
        }
    }
    return calls;
}

TEST(Trace, CallsOfASmallFile)
{
    const QByteArray file = emf("line 3 4; polygon16 box 1 1,2").build();
    const QByteArray other = wmf("polyline 1 1 2", WmfBuilder()).build();
    const std::string lines = linesOf(basic_logging::tracelevel, "TRACE", [&] {
        convert(file);
        convert(other);
    });
    EXPECT_EQ(callsOf(lines), ' ' + testData("trace.txt").simplified().toStdString());
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

// What a library prints unasked ends up among its host's messages.
TEST(Log, GoesNowhereByItself)
{
    static int printed;
    const auto convertBoth = [] {
        printed = 0;
        convert(WmfBuilder().build()); // has two lines of information
        convert(EmfBuilder().build() + '\0'); // has a warning
        return printed;
    };
    const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &) { ++printed; });
    EXPECT_EQ(convertBoth(), 0);
    QLoggingCategory::setFilterRules(QStringLiteral("svgtool.info=true"));
    EXPECT_EQ(convertBoth(), 2);
    QLoggingCategory::setFilterRules(QString());
    qInstallMessageHandler(before);
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
