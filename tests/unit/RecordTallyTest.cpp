#include "support/Conversion.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"
#include "svgtool/SVGInspect.h"
#include "svgtool/SVGTool.h"

#include <gtest/gtest.h>

namespace svgtool::test {
namespace {

    // "name outcome count @first, ... | stop record @offset"
    std::string listed(MetafileFormat format, const RecordTally &tally)
    {
        static constexpr const char *kOutcomes[] = { "drawn", "approximated", "skipped",
                                                     "neutral" };
        static constexpr const char *kStops[] = { "none",  "end", "count", "length",
                                                  "ended", "cut", "size" };
        std::string text;
        for (const RecordTally::Line &line : tally.lines())
            text += recordName(format, line.type).toStdString() + " "
                    + kOutcomes[size_t(line.outcome)] + " " + std::to_string(line.count) + " @"
                    + std::to_string(line.firstOffset) + ", ";
        const RecordTally::Stop &stop = tally.stop();
        return text + "| " + kStops[size_t(stop.reason)] + " " + std::to_string(stop.record) + " @"
                + std::to_string(stop.offset);
    }

    struct TallyCase
    {
        const char *name;
        QByteArray bytes;
        const char *listed;
    };

    void PrintTo(const TallyCase &tally, std::ostream *out)
    {
        *out << tally.name;
    }

    class Tally : public testing::TestWithParam<TallyCase>
    {
    };

    TEST_P(Tally, SaysWhatBecameOfEachRecord)
    {
        QByteArray plain;
        QByteArray counted;
        RecordTally tally;
        const qint32 result = convertMetaFile(GetParam().bytes, counted, &tally);
        EXPECT_GT(result, 0);
        EXPECT_EQ(ConvertMetaFileToSVG(GetParam().bytes, plain), result);
        EXPECT_EQ(plain, counted);
        const MetafileFacts facts = inspectMetaFile(GetParam().bytes);
        EXPECT_EQ(listed(facts.format, tally), GetParam().listed);
    }

    const EmfBuilder::Words kBox{ 1, 2, 11, 12 };

    const TallyCase kTallies[] = {
        { "emf",
          EmfBuilder()
                  .record(43, kBox)
                  .record(33) // no handler
                  .record(43, kBox)
                  .record(3, { 0, 0, 0, 0, 9 }) // nine points and none there
                  .record(45, { 0, 0, 9, 9, 0, 0, 1, 1 })
                  .record(12, { 1, 1 }) // kept and not used
                  .record(30, kBox) // accepted and ignored
                  .record(70, { 4, 0x2B464D46 })
                  .record(70, { 4, 0x2B464D45 }) // drawing of the extended format
                  .record(76) // a bitmap that puts nothing into the document
                  .record(4000)
                  .build(),
          "EMR_POLYGON skipped 1 @144, EMR_SETVIEWPORTORGEX skipped 1 @212, "
          "EMR_INTERSECTCLIPRECT skipped 1 @228, EMR_SAVEDC skipped 1 @112, "
          "EMR_RECTANGLE drawn 2 @88, EMR_ARC approximated 1 @172, EMR_GDICOMMENT skipped 1 @268, "
          "EMR_GDICOMMENT neutral 1 @252, EMR_BITBLT skipped 1 @284, EMR 4000 skipped 1 @292, "
          "| end 13 @300" },
        { "emfByContents",
          EmfBuilder()
                  .record(17, { 1 })
                  .record(17, { 8 })
                  .record(17, { 1 }) // the anisotropic mode stays
                  .record(38, { 1, 0, 1, 0, 0 })
                  .record(38, { 1, 5, 1, 0, 0 })
                  .record(39, { 1, 1, 0, 0 })
                  .record(39, { 1, 2, 0, 0 })
                  .record(37, { 0x80000005 })
                  .record(37, { 0x80000007 })
                  .build(),
          "EMR_SETMAPMODE drawn 2 @88, EMR_SETMAPMODE approximated 1 @112, "
          "EMR_SELECTOBJECT drawn 1 @228, EMR_SELECTOBJECT approximated 1 @240, "
          "EMR_CREATEPEN drawn 1 @124, EMR_CREATEPEN approximated 1 @152, "
          "EMR_CREATEBRUSHINDIRECT drawn 1 @180, EMR_CREATEBRUSHINDIRECT approximated 1 @204, "
          "| end 11 @252" },
        { "emfCount", EmfBuilder().record(43, kBox).recordCount(1).build(),
          "EMR_RECTANGLE drawn 1 @88, | count 3 @112" },
        { "emfEnded", EmfBuilder().recordCount(9).raw("1234567").withoutEnd().build(),
          "| ended 2 @88" },
        { "emfCut", EmfBuilder().raw(ByteWriter().u32s({ 43, 9 }).result()).withoutEnd().build(),
          "| cut 2 @88" },
        { "emfSize", EmfBuilder().raw(ByteWriter().u32s({ 43, 7 }).result()).build(),
          "| size 2 @88" },
        { "wmf",
          WmfBuilder()
                  .placeable(0, 0, 99, 99, 96)
                  .record(0x041B, { 9, 9, 1, 1 })
                  .record(0x0103, { 8 }) // ignored
                  .record(0x02FA, { 5, 0, 0, 0, 0 })
                  .record(0x02FC, { 0, 0, 0, 0 })
                  .record(0x02FB, { -12, 0, 0, 0, 0, 0, 0, 0, 0 })
                  .record(0x0626, { 15, 0 })
                  .record(0x0626, { 1, 0 })
                  .record(0x0F43, {})
                  .record(0x4000, {})
                  .build(),
          "META_SETMAPMODE skipped 1 @54, META_CREATEPENINDIRECT approximated 1 @62, "
          "META_CREATEFONTINDIRECT approximated 1 @92, META_CREATEBRUSHINDIRECT drawn 1 @78, "
          "META_RECTANGLE drawn 1 @40, META_ESCAPE skipped 1 @126, META_ESCAPE neutral 1 @116, "
          "META_STRETCHDIB skipped 1 @136, META 0x4000 skipped 1 @142, | end 10 @148" },
        { "wmfLength", WmfBuilder().size(5).record(0x041B, { 9, 9, 1, 1 }).build(),
          "| length 1 @18" },
        { "wmfEnded", WmfBuilder().size(99).record(0x041B, { 9, 9, 1, 1 }).withoutEnd().build(),
          "META_RECTANGLE drawn 1 @18, | ended 2 @32" },
        { "wmfCut", WmfBuilder().size(99).raw(ByteWriter().u32(9).u16(0x041B).result()).build(),
          "| cut 1 @18" },
        { "wmfSize", WmfBuilder().maxRecord(6).record(0x041B, { 9, 9, 1, 1 }).build(),
          "| size 1 @18" },
    };

    INSTANTIATE_TEST_SUITE_P(RecordTally, Tally, testing::ValuesIn(kTallies),
                             testing::PrintToStringParamName());

    TEST(RecordTally, HasBoundedTypes)
    {
        EmfBuilder emf;
        for (int type = 1000; type < 2000; ++type)
            emf.record(quint32(type));
        const QByteArray bytes = emf.build();
        QByteArray svg;
        svgtool::RecordTally tally;
        EXPECT_EQ(convertMetaFile(bytes, svg, &tally), 1);
        const auto lines = tally.lines();
        ASSERT_EQ(lines.size(), RecordTally::kLargestTypes + 1);
        EXPECT_EQ(recordName(MetafileFormat::Emf, lines.back().type), "other types");
        EXPECT_EQ(lines.back().count, 1000 - RecordTally::kLargestTypes);
    }

} // namespace
} // namespace svgtool::test
