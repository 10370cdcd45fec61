#include "support/Conversion.h"
#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"

#include <CLogSystem.h>
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QStringList>

#include <vector>

namespace svgtool::test {
namespace {

    using Lines = std::vector<std::string>;

    // Puts sinks of its own in place while it lives, and brings the level back when it dies.
    class LogCapture
    {
    public:
        explicit LogCapture(const std::string &level)
        {
            CLogSystem::theRootInstance->setLevel(level);
            basic_logging::tracelevel.setSink(
                    [this](const std::string &line) { trace.push_back(line); });
            basic_logging::infolevel.setSink(
                    [this](const std::string &line) { info.push_back(line); });
            basic_logging::warnlevel.setSink(
                    [this](const std::string &line) { warn.push_back(line); });
        }
        ~LogCapture()
        {
            for (auto *output : { &basic_logging::tracelevel, &basic_logging::infolevel,
                                  &basic_logging::warnlevel })
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

    // The names on the way into a conversion, with a check that every exit matches its entry.
    QStringList checkNesting(const Lines &lines)
    {
        QStringList open;
        QStringList entered;
        for (const std::string &line : lines) {
            EXPECT_EQ(line.back(), ' ');
            const QStringList items = QString::fromStdString(line)
                                              .section(QLatin1Char('\t'), 2)
                                              .trimmed()
                                              .split(QLatin1Char(' '));
            if (items.size() != 2) {
                ADD_FAILURE() << line;
                break;
            }
            if (items[0] == QLatin1String("Enter")) {
                open += items[1];
                entered += items[1];
            } else {
                EXPECT_EQ(items[0], QStringLiteral("Exit"));
                if (open.isEmpty()) {
                    ADD_FAILURE() << "exit without entry: " << line;
                    break;
                }
                EXPECT_EQ(open.takeLast(), items[1]);
            }
        }
        EXPECT_TRUE(open.isEmpty());
        return entered;
    }

    TEST(Trace, NestsForEmf)
    {
        LogCapture log("TRACE");
        ASSERT_EQ(convert(EmfBuilder().record(43, { 1, 2, 3, 4 }).build()).result, 1);
        const QStringList entered = checkNesting(log.trace);
        for (const char *name :
             { "ConvertMetaFileToSVG", "Emf2SvgConverter::IsValidEMFFile", "ConvertEMFToSVG",
               "Emf2SvgConverter::ConvertEMFToSVG", "Emf2SvgConverter::HandleEnhMetaRecordData",
               "Emf2SvgConverter::OnRectangle", "CMySVGWriter::CreateXML", "InitEnhMetaHeader" })
            EXPECT_TRUE(entered.contains(QLatin1String(name))) << name;
        EXPECT_EQ(withoutNumber(log.trace.front()),
                  ".\\SVGTool.cpp\t\t Enter ConvertMetaFileToSVG ");
        EXPECT_EQ(withoutNumber(log.trace.back()), ".\\SVGTool.cpp\t\t Exit ConvertMetaFileToSVG ");
    }

    TEST(Trace, NestsForWmf)
    {
        LogCapture log("TRACE");
        ASSERT_EQ(convert(WmfBuilder().record(0x041B, { 4, 3, 2, 1 }).build()).result, 2);
        const QStringList entered = checkNesting(log.trace);
        for (const char *name :
             { "ConvertWMFToSVG", "WMF2SVGConverter::ConvertWMFToSVG",
               "WMF2SVGConverter::InitializeCoordinates", "WMF2SVGConverter::OnMetaRectangle" })
            EXPECT_TRUE(entered.contains(QLatin1String(name))) << name;
    }

    // Every line but for its number, as it was before the untraced ways around it were made.
    TEST(Trace, LinesOfASmallFileAreUnchanged)
    {
        const auto emf = EmfBuilder()
                                 .record(43, { 1, 2, 3, 4 })
                                 .record(86, pointList16({ { 1, 2 }, { 3, 4 }, { 5, 6 } }))
                                 .record(59)
                                 .record(2, pointList({ { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 } }))
                                 .record(64);
        const auto wmf = WmfBuilder().record(0x0325, { 2, 1, 2, 3, 4 });
        LogCapture log("TRACE");
        convert(emf.build());
        convert(wmf.build());
        QByteArray lines;
        for (const std::string &line : log.trace)
            lines += QByteArray::fromStdString(withoutNumber(line)) + '\n';
        EXPECT_EQ(QCryptographicHash::hash(lines, QCryptographicHash::Sha256).toHex().toStdString(),
                  "47208c8d1331545a6726a43dbcc63c964822cb1b1b5082b367d3ac7fb29e3d85")
                << lines.toStdString();
    }

    TEST(Trace, OffForAnyOtherLevel)
    {
        for (const char *level : { "INFO", "trace", "TRACE ", "" }) {
            LogCapture log(level);
            QByteArray grown = EmfBuilder().build();
            grown.append('\0');
            EXPECT_EQ(convert(grown).result, -2);
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
        const QByteArray emf = EmfBuilder().record(43, { 1, 2, 3, 4 }).build();
        const Conversion quiet = convert(emf);
        LogCapture log("TRACE");
        basic_logging::tracelevel.setSink([](const std::string &) { throw 1; });
        const Conversion noisy = convert(emf);
        EXPECT_EQ(noisy.result, 1);
        EXPECT_EQ(noisy.text, quiet.text);
    }

} // namespace
} // namespace svgtool::test
