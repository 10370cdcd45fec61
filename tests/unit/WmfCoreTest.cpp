#include "support/Conversion.h"
#include "support/WmfBuilder.h"
#include "wmf/Wmf2SVG.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace svgtool::test {
namespace {

    struct FrameCase
    {
        const char *name;
        WmfBuilder wmf;
        int width, height;
    };

    void PrintTo(const FrameCase &frame, std::ostream *out)
    {
        *out << frame.name;
    }

    class WmfFrame : public testing::TestWithParam<FrameCase>
    {
    };

    TEST_P(WmfFrame, FollowsThePlaceableHeader)
    {
        const Conversion conversion = convert(GetParam().wmf.build());
        EXPECT_EQ(conversion.result, 2);
        EXPECT_EQ(conversion.text, documentHead(GetParam().width, GetParam().height) + "</svg>\n");
    }

    const FrameCase kFrames[] = {
        { "standard", WmfBuilder(), 1024, 768 },
        { "placeable", WmfBuilder().placeable(0, 0, 1000, 500, 1000), 96, 48 },
        { "truncatedTowardZero", WmfBuilder().placeable(10, 5, 1009, 490, 1000), 95, 46 },
        { "upsideDown", WmfBuilder().placeable(100, 50, 0, 0, 96), -100, -50 },
        { "differenceWraps", WmfBuilder().placeable(-30000, 0, 30000, 1, 96), -5536, 1 },
        { "noResolution", WmfBuilder().placeable(0, 0, 5, 5, 0), -2147483647 - 1, -2147483647 - 1 },
    };

    INSTANTIATE_TEST_SUITE_P(WmfCore, WmfFrame, testing::ValuesIn(kFrames),
                             testing::PrintToStringParamName());

    // Lists which of the records 1, 2, 3... a conversion handled, by their names in the dump.
    std::string dumpOf(const QByteArray &wmf, qint64 totalBytes, quint32 maxRecordWords)
    {
        QTemporaryDir folder;
        RecordDump dump;
        dump.isOn = true;
        dump.file.setFileName(folder.filePath(QStringLiteral("dump")));
        EXPECT_TRUE(dump.file.open(QIODevice::ReadWrite));
        WMF2SVGConverter converter;
        converter.InitializeCoordinates(false, {});
        EXPECT_EQ(converter.ConvertWMFToSVG({ wmf.constData() + 18, wmf.size() - 18 }, totalBytes,
                                            maxRecordWords, &dump),
                  2);
        dump.file.seek(0);
        std::string text = dump.file.readAll().toStdString();
        const std::string head = "#Start Of File\n\n";
        const std::string end = "\nEnd of File\n\n";
        EXPECT_EQ(text.substr(0, head.size()), head);
        EXPECT_EQ(text.substr(text.size() - end.size()), end);
        text = text.substr(head.size(), text.size() - head.size() - end.size());
        text.erase(std::remove(text.begin(), text.end(), '\t'), text.end());
        return text;
    }

    struct WalkCase
    {
        const char *name;
        WmfBuilder wmf;
        qint64 totalBytes;
        quint32 maxRecordWords;
        const char *dump;
    };

    void PrintTo(const WalkCase &walk, std::ostream *out)
    {
        *out << walk.name;
    }

    class WmfWalk : public testing::TestWithParam<WalkCase>
    {
    };

    TEST_P(WmfWalk, HandlesWhatItReaches)
    {
        const auto &walk = GetParam();
        EXPECT_EQ(dumpOf(walk.wmf.build(), walk.totalBytes, walk.maxRecordWords), walk.dump);
    }

    // Records of 8, 10 and 14 bytes.
    WmfBuilder threeRecords()
    {
        return WmfBuilder()
                .record(0x0102, { 1 })
                .record(0x0214, { 1, 2 })
                .record(0x0418, { 4, 3, 2, 1 });
    }

    QByteArray recordHead(qint64 words, int function)
    {
        return ByteWriter().u32(words).u16(function).result();
    }

    const WalkCase kWalks[] = {
        { "all", threeRecords(), 1000, 1000, "META_SETBKMODE\nMETA_MOVETO\nMETA_ELLIPSE\n" },
        { "endRecordEnds", threeRecords().raw(recordHead(3, 0)).record(0x0213, { 0, 0 }), 1000,
          1000, "META_SETBKMODE\nMETA_MOVETO\nMETA_ELLIPSE\n" },
        { "recordThatReachesTheLength", threeRecords(), 32, 1000, "META_SETBKMODE\nMETA_MOVETO\n" },
        { "lengthOneByteMore", threeRecords(), 33, 1000,
          "META_SETBKMODE\nMETA_MOVETO\nMETA_ELLIPSE\n" },
        { "lengthOfZero", threeRecords(), 0, 1000, "" },
        { "largestRecord", threeRecords(), 1000, 7, "META_SETBKMODE\nMETA_MOVETO\nMETA_ELLIPSE\n" },
        { "largerThanLargest", threeRecords(), 1000, 6, "META_SETBKMODE\nMETA_MOVETO\n" },
        { "noEndRecord", threeRecords().withoutEnd(), 1000, 1000,
          "META_SETBKMODE\nMETA_MOVETO\nMETA_ELLIPSE\n" },
        { "sizeBelowHead", threeRecords().raw(recordHead(2, 0x0213)), 1000, 1000,
          "META_SETBKMODE\nMETA_MOVETO\nMETA_ELLIPSE\n" },
        { "bodyCutOff", WmfBuilder().record(0x0103, { 8 }).raw(recordHead(4, 0x0214)).withoutEnd(),
          1000, 1000, "META_SETMAPMODE\n" },
        { "unknownFunction", WmfBuilder().record(0x0999).record(0x0817), 1000, 1000, "META_ARC\n" },
        { "hugeRecord", WmfBuilder().raw(recordHead(0xFFFFFFFF, 0x0214)), 1LL << 40, 0xFFFFFFFF,
          "" },
    };

    INSTANTIATE_TEST_SUITE_P(WmfCore, WmfWalk, testing::ValuesIn(kWalks),
                             testing::PrintToStringParamName());

    TEST(WmfCore, HugeClaimsAllocateNothing)
    {
        EXPECT_EQ(convert(WmfBuilder().size(0x7FFFFFFF).maxRecord(0x7FFFFFFF).build()).result, 2);
        EXPECT_EQ(convert(WmfBuilder().size(0xFFFFFFFF).raw(recordHead(0xFFFFFFFF, 1)).build())
                          .result,
                  2);
    }

    TEST(WmfCore, NoRecordsGiveNothing)
    {
        WMF2SVGConverter converter;
        EXPECT_EQ(converter.ConvertWMFToSVG({}, 100, 100, nullptr), 0);
        EXPECT_EQ(converter.takeDocument(), QByteArray());
    }

} // namespace
} // namespace svgtool::test
