// What a file can ask for with few bytes is bounded over the whole document.

#include "core/records/RecordType.h"
#include "exact/svgtool/SVGInspect.h"
#include "exact/svgtool/SVGTool.h"
#include "unit/Cases.h"

using namespace svgtool;
using namespace svgtool::test;

namespace {

int countOf(const char *element, const EmfBuilder &file)
{
    return int(QByteArray::fromStdString(convert(file.build()).text).count(element));
}

constexpr quint32 kClipRegion = 75;
enum ClipMode { kAnd = 1, kOr, kXor, kDiff, kCopy };

// A clip of upright or lying bars.
QByteArray bars(ClipMode mode, int count, bool lying)
{
    ByteWriter data;
    data.u32s({ 32 + count * 16, mode, 32, 1, count, count * 16, 0, 0, 0, 0 });
    for (int i = 0; i < 2 * count; i += 2)
        lying ? data.u32s({ 0, i, 9999, i + 1 }) : data.u32s({ i, 0, i + 1, 9999 });
    return data.result();
}

// Crossing bars cut each other into a number of rectangles that is the product of theirs, and a
// large region can be written again by a small record; neither may outgrow the file.
TEST(ClipRegions, DoNotMultiply)
{
    EmfBuilder file = EmfBuilder().record(kClipRegion, bars(kCopy, 2000, false));
    const EmfBuilder crossed = EmfBuilder(file).record(kClipRegion, bars(kXor, 2000, true));
    EXPECT_EQ(countOf("<clipPath", crossed), 1);
    for (int i = 0; i < 200; ++i)
        file.record(kClipRegion, bars(kOr, 0, false));
    // Of 41756 + 100000 rectangles the first takes 2000 and each further one 4000.
    EXPECT_EQ(countOf("<clipPath", file), 35);
}

// What is refused for its size takes up what the file has left, or each further record could
// have as much work done for nothing.
TEST(ClipRegions, RefusedOnesAreNotTriedAgain)
{
    const QByteArray one = bars(kCopy, 1, false);
    EmfBuilder file = EmfBuilder().record(kClipRegion, bars(kCopy, 400, false));
    EXPECT_EQ(countOf("<clipPath", EmfBuilder(file).record(kClipRegion, one)), 2);
    file.record(kClipRegion, bars(kAnd, 400, true));
    EXPECT_EQ(countOf("<clipPath", file.record(kClipRegion, one)), 1);
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

// Pixels that few bytes can ask for are counted over the whole document.
TEST(RunLengths, ShareOneAllowance)
{
    const auto bitmap = QStringLiteral("bitmap giant 8192 4096 8 compression=1 bits=0001 "
                                       "table=00000000,0000ff00,00ff0000,ff000000");
    const auto giant = QStringLiteral("; stretchDib giant to=0,0,1,1 from=0,0,1,1");
    EXPECT_EQ(countOf("<image", emf(bitmap + giant.repeated(3))), 2)
            << "three have more than 64 Mi pixels";
}

} // namespace
