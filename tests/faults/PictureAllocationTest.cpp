#include "faults/Allocator.h"
#include "picture/api/picture.hpp"
#include "unit/Cases.h"

// What the picture library does when memory runs out at any one call, and when it stays out from
// there on: the whole picture or an error without any, and nothing left behind.

namespace svgtool::test {
namespace {

    QByteArray everything()
    {
        EmfBuilder screen;
        screen.device = { 960, 960, 254, 254 };
        screen.handles = 5;
        return emf("33; pen 1 2 3 0 0xFF; brush 2 2 0xFF00 4; brush 3 0 0xFF 0;"
                   "font 4 -12 0 0 0 0 0 0 \"A-face-name-longer-than-any\"; select 1; select 2;"
                   "select 4; rect 5 5 60 40; ellipse 5 5 60 40; arc 5 5 60 40 0 0 9 9;"
                   "polyPolygon16 box 2 4 1 3 1,2 3,4 5,6 7,8; line 7 8; line 9 8; line 9 9;"
                   "text box 1 1.0 1.0 10 20 4 76 2 0 0 9 9 84 \"A&B<\" 5 6 7 8;"
                   "beginPath; polygon16 box 2 1,2 3,4; endPath; strokePath;"
                   "beginPath; ellipse 0 0 40 40; endPath; clipPath 5; select 3; rect 5 5 60 40;"
                   "clipRgn 64 5 32 1 2 32 0 0 99 99 0 0 50 20 0 30 60 40; rect 6 6 61 41;"
                   "fillRgn box 48 3 32 1 1 16 1 2 3 4 1 2 3 4; 34 -1;"
                   "bitmap eight 2 1 8 used=2 table=00000000,0000ff00 bits=00010000;"
                   "bitmap clear 2 1 32 compression=6 table=0000ff00,00ff0000,ff000000,000000ff "
                   "bits=01020380,040506ff;"
                   "stretchDib eight to=0,0,2,1 from=0,0,2,1; stretchDib clear to=0,0,2,1 "
                   "from=0,0,2,1; bitBlt eight to=0,0,9,2 rop=0x660046",
                   screen)
                .build();
    }

    Picture draw(const QByteArray &file)
    {
        return drawMetafile(std::as_bytes(std::span(file.constData(), size_t(file.size()))));
    }

    // Draws with the @p failing call of the allocator failing; says whether there was one.
    bool isCalm(size_t failing, const QByteArray &file, const Picture &whole, Scarcity scarcity)
    {
        FailingAllocator allocator(failing, scarcity);
        bool isWhole = false, isNothing = false, hasFailed = false;
        {
            const Picture picture = draw(file);
            hasFailed = allocator.calls() >= failing;
            isWhole = picture.error == PictureError::None && picture.document == whole.document
                    && picture.report.records.size() == whole.report.records.size();
            isNothing = picture.error == PictureError::OutOfMemory && picture.document.empty()
                    && picture.report.records.empty();
        }
        allocator.stopFailing();
        EXPECT_TRUE(isWhole || (hasFailed && isNothing)) << failing;
        EXPECT_EQ(allocator.blocksHeld(), 0) << failing;
        return hasFailed;
    }

    void expectCalm(const QByteArray &file)
    {
        const Picture whole = draw(file); // what is made at first use is kept
        ASSERT_EQ(whole.error, PictureError::None);
        for (const RecordLine &line : whole.report.records)
            EXPECT_NE(line.fate, RecordFate::NotDone) << line.name << ": " << line.reason;
        ASSERT_TRUE(whole.report.isWhole && !testing::Test::HasFailure());
        isCalm(1, file, whole, Scarcity::OneCall); // and so is what the first exception makes
        for (const Scarcity scarcity : { Scarcity::OneCall, Scarcity::EveryCallFromThere }) {
            size_t failing = 1;
            while (isCalm(failing, file, whole, scarcity) && !testing::Test::HasFailure())
                ++failing;
            EXPECT_GT(failing, 80U);
        }
    }

    TEST(PictureAllocationFailure, LeavesNothingBehind)
    {
        expectCalm(everything());
        expectCalm(
                wmf("pen 1 3 0 0xFF 0; brush 2 0xFF 0 3; font 12 0 0 0 700 0 0x8000 0 0 \"Face\";"
                    "select 0; select 1; select 2; polyPolygon 2 3 2 1 2 3 4 5 6 7 8 9 10;"
                    "text 5 6 4 0 x613c93fa; line 30 40")
                        .build());
    }

} // namespace
} // namespace svgtool::test
