#include "svgtool/SVGInspect.h"
#include "svgtool/SVGTool.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

// "name outcome count @first, ... | stop record @offset"
std::string listed(MetafileFormat format, const RecordTally &tally)
{
    static constexpr const char *kOutcomes[] = { "drawn", "approximated", "skipped", "neutral" };
    static constexpr const char *kStops[] = { "none",  "end", "count", "length",
                                              "ended", "cut", "size" };
    std::string text;
    for (const RecordTally::Line &line : tally.lines())
        text += recordName(format, line.type).toStdString() + " " + kOutcomes[size_t(line.outcome)]
                + " " + std::to_string(line.count) + " @" + std::to_string(line.firstOffset) + ", ";
    const RecordTally::Stop &stop = tally.stop();
    return text + "| " + kStops[size_t(stop.reason)] + " " + std::to_string(stop.record) + " @"
            + std::to_string(stop.offset);
}

#define RECT "rect 1 2 11 12;"
#define ONE_RECT "EMR_RECTANGLE drawn 1 @88, "
#define ONE_WMF_RECT "META_RECTANGLE drawn 1 @18, "

EmfBuilder withHead(quint32 type, qint64 size)
{
    return emf(RECT).raw(ByteWriter().u32(type).u32(size).result());
}

WmfBuilder wmfRect()
{
    return wmf("rect 9 9 1 1", WmfBuilder());
}

QByteArray wmfHead(qint64 words)
{
    return ByteWriter().u32(words).u16(0x0214).result();
}

// What became of each record, told of a file that converts alike when nothing is counted.
const struct
{
    const char *name;
    Metafile file;
    const char *listed;
} kTallies[] = {
    { "EMF",
      emf(RECT "33; # no handler\n" RECT "polygon box 9; # none of the nine points is there\n"
               "arc 0 0 9 9 0 0 1 1; viewportOrg 1 1; # kept and not used\n"
               "30; # accepted and ignored\n"
               "70 4 0x2B464D46; 70 4 0x2B464D45; # drawing of the extended format\n"
               "76; # a bitmap that puts nothing into the document\n"
               "4000"),
      "EMR_POLYGON skipped 1 @144, EMR_SETVIEWPORTORGEX skipped 1 @212, "
      "EMR_INTERSECTCLIPRECT skipped 1 @228, EMR_SAVEDC skipped 1 @112, "
      "EMR_RECTANGLE drawn 2 @88, EMR_ARC approximated 1 @172, EMR_GDICOMMENT skipped 1 @252, "
      "EMR_GDICOMMENT neutral 1 @236, EMR_BITBLT skipped 1 @268, EMR 4000 skipped 1 @276, "
      "| end 13 @284" },
    { "EMF by contents",
      emf("mapMode 1; mapMode 8; mapMode 1; # the anisotropic mode stays\n"
          "pen 1 0 1 0 0; pen 1 5 1 0 0; brush 1 1 0 0; brush 1 2 0 0;"
          "select 0x80000005; select 0x80000007"),
      "EMR_SETMAPMODE drawn 2 @88, EMR_SETMAPMODE approximated 1 @112, "
      "EMR_SELECTOBJECT drawn 1 @228, EMR_SELECTOBJECT approximated 1 @240, "
      "EMR_CREATEPEN drawn 1 @124, EMR_CREATEPEN approximated 1 @152, "
      "EMR_CREATEBRUSHINDIRECT drawn 1 @180, EMR_CREATEBRUSHINDIRECT approximated 1 @204, "
      "| end 11 @252" },
    { "EMF ends", emf(RECT "14;" RECT), ONE_RECT "| end 3 @112" },
    { "EMF count", emf(RECT).recordCount(1), ONE_RECT "| count 3 @112" },
    { "EMF count of zero", emf(RECT).recordCount(0), "| count 2 @88" },
    { "EMF count beyond the data", emf(RECT).recordCount(~0U).withoutEnd(),
      ONE_RECT "| ended 3 @112" },
    { "EMF head cut", emf(RECT).recordCount(9).raw("1234567").withoutEnd(),
      ONE_RECT "| ended 3 @112" },
    { "EMF long header of another type", emf(RECT).headerExtra(QByteArray(20, 'd')).headerType(99),
      "EMR_RECTANGLE drawn 1 @108, | end 3 @132" },
    { "EMF cut", withHead(43, 9).withoutEnd(), ONE_RECT "| cut 3 @112" },
    { "EMF far too large", emf(RECT, withHead(43, 0xFFFFFFF8)), ONE_RECT "| cut 3 @112" },
    { "EMF size", emf(RECT, withHead(43, 7)), ONE_RECT "| size 3 @112" },
    { "EMF size of zero", emf(RECT, withHead(43, 0)), ONE_RECT "| size 3 @112" },
    { "WMF",
      wmf("rect 9 9 1 1; mapMode 8; pen 5 0 0 0 0; brush 0 0 0 0; font -12 0 0 0 0 0 0 0 0;"
          "0x0626 15 0; 0x0626 1 0; 0x0F43; 0x4000",
          WmfBuilder().placeable(0, 0, 99, 99, 96)),
      "META_SETMAPMODE skipped 1 @54, META_CREATEPENINDIRECT approximated 1 @62, "
      "META_CREATEFONTINDIRECT approximated 1 @92, META_CREATEBRUSHINDIRECT drawn 1 @78, "
      "META_RECTANGLE drawn 1 @40, META_ESCAPE skipped 1 @126, META_ESCAPE neutral 1 @116, "
      "META_STRETCHDIB skipped 1 @136, META 0x4000 skipped 1 @142, | end 10 @148" },
    { "WMF ends", wmf("0; rect 9 9 1 1", wmfRect()), ONE_WMF_RECT "| end 2 @32" },
    // The header and the rectangle have 32 bytes.
    { "WMF length reached", wmfRect().size(7), "| length 1 @18" },
    { "WMF length beyond", wmfRect().size(8), ONE_WMF_RECT "| end 2 @32" },
    { "WMF length of zero", wmfRect().size(0), "| length 1 @18" },
    { "WMF no end", wmfRect().size(99).withoutEnd(), ONE_WMF_RECT "| ended 2 @32" },
    { "WMF cut", wmfRect().size(99).raw(wmfHead(4)).withoutEnd(), ONE_WMF_RECT "| cut 2 @32" },
    { "WMF size", wmfRect().raw(wmfHead(2)), ONE_WMF_RECT "| size 2 @32" },
    { "WMF largest", wmfRect().maxRecord(7), ONE_WMF_RECT "| end 2 @32" },
    { "WMF larger than largest", wmfRect().maxRecord(6), "| size 1 @18" },
    { "WMF huge", WmfBuilder().raw(wmfHead(0xFFFFFFFF)).size(~0U).maxRecord(~0U), "| cut 1 @18" },
};

TEST(RecordTally, SaysWhatBecameOfEachRecord)
{
    for (const auto &[name, file, expected] : kTallies) {
        QByteArray plain;
        QByteArray counted;
        svgtool::RecordTally tally;
        const qint32 result = convertMetaFile(file.bytes, counted, &tally);
        EXPECT_GT(result, 0) << name;
        EXPECT_EQ(ConvertMetaFileToSVG(file.bytes, plain), result) << name;
        EXPECT_EQ(plain, counted) << name;
        EXPECT_EQ(listed(inspectMetaFile(file.bytes).format, tally), expected) << name;
    }
}

TEST(RecordTally, HasBoundedTypes)
{
    EmfBuilder file;
    for (int type = 1000; type < 2000; ++type)
        file.record(quint32(type));
    QByteArray svg;
    svgtool::RecordTally tally;
    EXPECT_EQ(convertMetaFile(file.build(), svg, &tally), 1);
    const auto lines = tally.lines();
    ASSERT_EQ(lines.size(), RecordTally::kLargestTypes + 1);
    EXPECT_EQ(recordName(MetafileFormat::Emf, lines.back().type), "other types");
    EXPECT_EQ(lines.back().count, 1000 - RecordTally::kLargestTypes);
}

} // namespace
