#include "faults/Allocator.h"

#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"
#include "svgtool/SVGTool.h"

#include <CLogSystem.h>
#include <gtest/gtest.h>

// What the exported function does when memory runs out at any one call of a conversion, and when it
// stays out from there on.

namespace svgtool::test {
namespace {

    QByteArray smallEmf()
    {
        return EmfBuilder()
                .record(38, { 1, 2, 3, 0, 0xFF })
                .record(39, { 2, 2, 0xFF00, 4 })
                .record(82, font(3, -12, "A face name longer than any"))
                .record(37, { 1 })
                .record(37, { 2 })
                .record(37, { 3 })
                .record(43, { 5, 5, 60, 40 })
                .record(91, figures({ 1, 3 }, { { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 } }, true))
                .record(84, TextRecord{ 10, 20, "A&B<", 2, { 5, 6, 7, 8 }, { 0, 0, 9, 9 } }.body())
                .record(59)
                .record(86, pointList16({ { 1, 2 }, { 3, 4 } }))
                .record(60)
                .record(64)
                .record(75,
                        ByteWriter().u32s({ 48, 5, 32, 1, 1, 16, 0, 0, 9, 9, 1, 2, 3, 4 }).result())
                .record(54, { 30, 40 })
                .build();
    }

    // Its font is one of symbols: Qt leaves other 8-bit texts to ICU and does not say whether that
    // lacked the encoding or the memory.
    QByteArray smallWmf()
    {
        return WmfBuilder()
                .placeable(0, 0, 100, 50, 96)
                .record(0x02FA, { 1, 3, 0, 0xFF, 0 })
                .record(0x02FC, { 2, 0xFF, 0, 3 })
                .record(0x02FB,
                        ByteWriter()
                                .u16s({ 12, 0, 0, 0, 700, 0, 2 << 8, 0, 0 })
                                .bytes("Face")
                                .result())
                .record(0x012D, { 0 })
                .record(0x012D, { 1 })
                .record(0x012D, { 2 })
                .record(0x0538, { 2, 3, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 })
                .record(0x0A32, ByteWriter().u16s({ 5, 6, 4, 0 }).bytes("a<\xE0z").result())
                .record(0x0213, { 30, 40 })
                .build();
    }

    class AllocationFailure : public testing::Test
    {
    protected:
        void SetUp() override
        {
            for (auto *level : { &basic_logging::tracelevel, &basic_logging::infolevel,
                                 &basic_logging::fatallevel, &basic_logging::warnlevel })
                level->setSink([](const std::string &) {});
        }
        void TearDown() override
        {
            for (auto *level : { &basic_logging::tracelevel, &basic_logging::infolevel,
                                 &basic_logging::fatallevel, &basic_logging::warnlevel })
                level->setSink({});
        }
    };

    // Ends the lines that have begun. The loggers keep the room that the longest has taken.
    void endLogLines(const std::string &text = {})
    {
        CLogSystem &root = *CLogSystem::theRootInstance;
        for (auto *logger : { &root.trace, &root.info, &root.warn, &root.fatal })
            *logger << text << basic_logging::Logger::end;
    }

    // Qt's constructor of a region of one rectangle drops a block when its second call fails; an
    // EMF comes to it @p leaksOfQt times.
    void failAtEachCall(const QByteArray &metafile, qint32 success, Scarcity scarcity,
                        int leaksOfQt)
    {
        QByteArray whole;
        // Once before, for what is made at first use and kept.
        ASSERT_EQ(ConvertMetaFileToSVG(metafile, whole), success);
        {
            // So is what the first exception makes.
            const FailingAllocator allocator(1, scarcity);
            QByteArray none;
            ASSERT_NE(ConvertMetaFileToSVG(metafile, none), success);
        }
        endLogLines(std::string(1000, '-'));
        const QByteArray before("what the caller had");
        size_t failing = 0;
        qint32 result = 0;
        do {
            ++failing;
            QByteArray svg = before;
            size_t calls = 0;
            long held = 0;
            {
                FailingAllocator allocator(failing, scarcity);
                result = ConvertMetaFileToSVG(metafile, svg);
                calls = allocator.calls();
                allocator.stopFailing();
                endLogLines();
                // A document handed back is the caller's.
                const long document =
                        svg.capacity() == 0 || svg.constData() == before.constData() ? 0 : 1;
                held = allocator.blocksHeld() - document;
            }
            EXPECT_TRUE(held == 0 || (held == 1 && leaksOfQt-- > 0))
                    << held << " blocks leak after call " << failing << ", result " << result;
            if (calls < failing) {
                ASSERT_EQ(result, success);
                ASSERT_EQ(svg, whole);
                break;
            }
            // A line of the log is all that may fail without notice.
            ASSERT_TRUE(result == SvgToolUnusableInput || result == SvgToolException
                        || (result == success && svg == whole))
                    << "result " << result << " after call " << failing;
            ASSERT_TRUE(svg == before || (result <= 0 && whole.startsWith(svg)) || svg == whole)
                    << "after call " << failing << ": " << svg.toStdString();
        } while (true);
        EXPECT_GT(failing, 50U);

        std::string line;
        basic_logging::infolevel.setSink([&line](const std::string &text) { line = text; });
        endLogLines("still here");
        EXPECT_EQ(line, "still here ");
        testing::Test::RecordProperty("calls", int(failing));
    }

    TEST_F(AllocationFailure, OfOneCallEmf)
    {
        failAtEachCall(smallEmf(), SvgToolEmfConverted, Scarcity::OneCall, 2);
    }

    TEST_F(AllocationFailure, OfOneCallWmf)
    {
        failAtEachCall(smallWmf(), SvgToolWmfConverted, Scarcity::OneCall, 0);
    }

    TEST_F(AllocationFailure, FromOneCallOnEmf)
    {
        failAtEachCall(smallEmf(), SvgToolEmfConverted, Scarcity::EveryCallFromThere, 2);
    }

    TEST_F(AllocationFailure, FromOneCallOnWmf)
    {
        failAtEachCall(smallWmf(), SvgToolWmfConverted, Scarcity::EveryCallFromThere, 0);
    }

} // namespace
} // namespace svgtool::test
