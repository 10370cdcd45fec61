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

    // Bitmaps of all kinds. The last record makes one picture of itself and the one before.
    const QString kBitmapsOfEmf = QStringLiteral(
            "bitmap one 9 2 1 table=00000000,ffffff00 bits=aa800000,55000000;"
            "bitmap four 3 1 4 used=3 table=00000000,0000ff00,00ff0000 bits=12000000;"
            "bitmap eight 2 1 8 used=2 table=00000000,0000ff00 bits=00010000;"
            "bitmap sixteen 2 1 16 bits=ff7fe003;"
            "bitmap fields 2 1 16 compression=3 table=0f000000,f0000000,000f0000 bits=0f00f00f;"
            "bitmap true 2 1 24 bits=010203040506,0000; bitmap wide 2 1 32 bits=0102030007080900;"
            "bitmap clear 2 1 32 compression=6 table=0000ff00,00ff0000,ff000000,000000ff "
            "bits=01020380,040506ff;"
            "bitmap runs 64 64 8 compression=1 used=1 table=ff000000 bits=0200,0001;"
            "bitmap png 1 1 0 compression=5 bits=89504e470d0a1a0a,00;"
            "bitmap jpeg 3 2 0 compression=4 bits=ffd8ff00;"
            "stretchDib one to=0,0,9,2 from=0,0,9,2; stretchDib four to=0,0,3,1 from=0,0,3,1;"
            "stretchDib eight to=0,0,2,1 from=0,0,2,1; stretchDib sixteen to=0,0,2,1 from=1,0,1,1;"
            "stretchDib fields to=2,0,-2,1 from=0,0,2,1; stretchDib true to=0,0,2,1 from=0,0,2,1;"
            "stretchDib wide to=0,0,2,1 from=0,0,2,1 rop=0x8800C6;"
            "stretchDib clear to=0,0,2,1 from=0,0,2,1; stretchDib runs to=0,0,4,1 from=0,0,64,64;"
            "stretchDib png to=0,0,9,9 from=0,0,1,1; stretchDib jpeg to=0,0,-2,1 from=1,0,2,1;"
            "transparentBlt eight to=0,0,2,1 rop=0xFF0000 extra=2,1;"
            "maskBlt true to=0,0,2,1 rop=0xAACC0020 extra=0,0 mask=one;"
            "bitBlt none to=0,0,2,1 rop=0xF00021; bitBlt one to=0,0,9,2 rop=0x8800C6");
    const QString kBitmapsOfWmf = QStringLiteral(
            "bitmap eight 2 1 8 used=2 table=00000000,0000ff00 bits=00010000;"
            "bitmap runs 4 1 4 compression=2 used=1 table=ff000000 bits=0200,0001;"
            "0x0F43 0x0020,0x00CC 0 1 2 0 0 2 3 2 1 @eight; 0x0940 0x0020,0x00CC 0 0 2 3 2 1 @runs;"
            "0x0922 0x0020,0x00CC 0 0 2 3 2 1  0 9 1 2 0x0101 xaa80;"
            "0x0B23 0x0020,0x00CC 1 1 0 0 2 3 2 1  0 1 1 4 0x1801 x01020300;"
            "0x0B41 0x00C6,0x0088 1 2 0 0 1 2 3 4 @eight");

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
        QByteArray withoutLast = {}; ///< the document of all records but the last one
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
        EXPECT_TRUE(isWhole || svg == before || shortage.whole.startsWith(svg)
                    || shortage.withoutLast.startsWith(svg));
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
            const QString last = QStringLiteral("; bitBlt eight to=0,0,9,2 rop=0x660046");
            const QByteArray unpaired =
                    QByteArray::fromStdString(convert(emf(kBitmapsOfEmf).build()).text);
            const QByteArray paired = emf(kBitmapsOfEmf + last).build();
            expectNothingLeft({ paired, SvgToolEmfConverted, scarcity, {}, unpaired });
            expectNothingLeft({ wmf(kBitmapsOfWmf).build(), SvgToolWmfConverted, scarcity });
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
