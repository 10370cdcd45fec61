#include "faults/Allocator.h"

#include "exact/svgtool/SVGTool.h"
#include "unit/Cases.h"

#include <CLogSystem.h>

#include <optional>

// What the exported function does when memory runs out at any one call of a conversion, and when it
// stays out from there on.

namespace svgtool::test {
namespace {

    QByteArray smallEmf()
    {
        return emf("pen 1 2 3 0 0xFF; brush 2 2 0xFF00 4; "
                   "font 3 -12 0 0 0 0 0 0 \"A-face-name-longer-than-any\"; "
                   "select 1; select 2; select 3; rect 5 5 60 40;"
                   "polyPolygon16 box 2 4 1 3 1,2 3,4 5,6 7,8;"
                   "text box 1 1.0 1.0 10 20 4 76 2 0 0 9 9 84 \"A&B<\" 5 6 7 8;"
                   "beginPath; polygon16 box 2 1,2 3,4; endPath; strokePath;"
                   "clipRgn 48 5 32 1 1 16 0 0 9 9 1 2 3 4; line 30 40")
                .build();
    }

    // Its font is Japanese, which takes a decoder for pairs of bytes.
    QByteArray smallWmf()
    {
        return wmf("pen 1 3 0 0xFF 0; brush 2 0xFF 0 3; font 12 0 0 0 700 0 0x8000 0 0 \"Face\";"
                   "select 0; select 1; select 2; polyPolygon 2 3 2 1 2 3 4 5 6 7 8 9 10;"
                   "text 5 6 4 0 x613c93fa; line 30 40",
                   WmfBuilder().placeable(0, 0, 100, 50, 96))
                .build();
    }

    // Ends the lines that have begun. The loggers keep the room that the longest has taken.
    void endLogLines(const std::string &text = {})
    {
        CLogSystem &root = *CLogSystem::theRootInstance;
        for (auto *logger : { &root.trace, &root.info, &root.warn, &root.fatal })
            *logger << text << basic_logging::Logger::end;
    }

    struct Shortage
    {
        QByteArray metafile;
        qint32 success;
        Scarcity scarcity;
        QByteArray whole = {};
    };

    // Converts with the @p failing call of the allocator failing, and checks what the caller has
    // then. Gives the blocks that leak, or nothing when there were fewer calls.
    std::optional<long> leakAfter(size_t failing, const Shortage &shortage)
    {
        const QByteArray before("what the caller had");
        QByteArray svg = before;
        FailingAllocator allocator(failing, shortage.scarcity);
        const qint32 result = ConvertMetaFileToSVG(shortage.metafile, svg);
        const bool hasFailed = allocator.calls() >= failing;
        allocator.stopFailing();
        endLogLines();
        // A document handed back is the caller's.
        const bool isOurs = svg.capacity() != 0 && svg.constData() != before.constData();
        const long held = allocator.blocksHeld() - (isOurs ? 1 : 0);
        const bool isWhole = result == shortage.success && svg == shortage.whole;
        // A line of the log, or to get room for the document at once, may fail without notice.
        EXPECT_TRUE(
                isWhole
                || (hasFailed && (result == SvgToolUnusableInput || result == SvgToolException)));
        EXPECT_TRUE(isWhole || svg == before || shortage.whole.startsWith(svg));
        return hasFailed ? std::optional(held) : std::nullopt;
    }

    void expectNothingLeft(Shortage shortage)
    {
        // Once before, for what is made at first use and kept; so is what the first exception
        // makes.
        ASSERT_EQ(ConvertMetaFileToSVG(shortage.metafile, shortage.whole), shortage.success);
        leakAfter(1, shortage);
        endLogLines(std::string(1000, '-'));
        // Qt's constructor of a region of one rectangle drops a block when its second call fails;
        // an EMF comes to it twice.
        int leaksOfQt = shortage.success == SvgToolEmfConverted ? 2 : 0;
        size_t failing = 1;
        while (const std::optional<long> held = leakAfter(failing, shortage)) {
            ASSERT_TRUE(*held == 0 || (*held == 1 && leaksOfQt-- > 0))
                    << *held << " at " << failing;
            ASSERT_FALSE(testing::Test::HasFailure()) << failing;
            ++failing;
        }
        EXPECT_GT(failing, 50U);
    }

    TEST(AllocationFailure, LeavesNothingBehind)
    {
        for (const Scarcity scarcity : { Scarcity::OneCall, Scarcity::EveryCallFromThere }) {
            SCOPED_TRACE(scarcity == Scarcity::OneCall ? "of one call" : "from one call on");
            expectNothingLeft({ smallEmf(), SvgToolEmfConverted, scarcity });
            expectNothingLeft({ smallWmf(), SvgToolWmfConverted, scarcity });
        }
        std::string line;
        basic_logging::infolevel.setSink([&line](const std::string &text) { line = text; });
        endLogLines("still here");
        basic_logging::infolevel.setSink({});
        EXPECT_EQ(line, "still here ");
    }

    // Writing a text is linear work however many entities it takes.
    TEST(LongText, IsNotMovedAgainAndAgain)
    {
        constexpr int kLetters = 1 << 20;
        const TextRecord text{ 1, 2, QString(kLetters, QLatin1Char('&')) };
        const QByteArray file = EmfBuilder().record(84, text.body()).build();
        QByteArray svg;
        const FailingAllocator watch(0, Scarcity::OneCall);
        EXPECT_EQ(ConvertMetaFileToSVG(file, svg), SvgToolEmfConverted);
        EXPECT_GT(svg.size(), 5 * kLetters);
        EXPECT_LT(watch.bytesMoved(), 20U * kLetters);
    }

} // namespace
} // namespace svgtool::test
