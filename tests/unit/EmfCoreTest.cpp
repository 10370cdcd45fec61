#include "emf/Emf2SVG.h"
#include "support/Conversion.h"
#include "support/EmfBuilder.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace svgtool::test {
namespace {

    struct SizeCase
    {
        const char *name;
        std::vector<int> frame;
        std::vector<int> device;
        int width, height;
    };

    void PrintTo(const SizeCase &size, std::ostream *out)
    {
        *out << size.name;
    }

    class DocumentSize : public testing::TestWithParam<SizeCase>
    {
    };

    TEST_P(DocumentSize, FollowsFrameAndDevice)
    {
        const auto &[name, frame, device, width, height] = GetParam();
        const QByteArray emf = EmfBuilder()
                                       .frame(frame[0], frame[1], frame[2], frame[3])
                                       .device(device[0], device[1], device[2], device[3])
                                       .build();
        EXPECT_EQ(convert(emf).text, documentHead(width, height) + "</svg>\n");
    }

    constexpr int kOutOfRange = std::numeric_limits<int>::min();

    const SizeCase kSizes[] = {
        { "halfRoundsUp", { 0, 0, 10050, 10049 }, { 1, 1, 1, 1 }, 101, 100 },
        { "negativeHalfRoundsUp", { 0, 0, -250, -251 }, { 1, 1, 1, 1 }, -2, -3 },
        // 4 pixels a millimetre across, 2 down, over 31.75 by 12.5 mm.
        { "unequalResolution", { 100, 200, 3275, 1450 }, { 1280, 480, 320, 240 }, 127, 25 },
        { "emptyFrame", { 7, 7, 7, 7 }, { 1, 1, 1, 1 }, 0, 0 },
        { "noMillimetres", { 0, 0, 100, 100 }, { 1000, 0, 0, 0 }, kOutOfRange, kOutOfRange },
        { "tooLarge", { 0, 0, 0x7FFFFFFF, 100 }, { 0x7FFFFFFF, 1, 1, 1 }, kOutOfRange, 1 },
    };

    INSTANTIATE_TEST_SUITE_P(EmfCore, DocumentSize, testing::ValuesIn(kSizes),
                             testing::PrintToStringParamName());

    const EmfBuilder::Words kBox{ 1, 2, 11, 12 };
    constexpr char kRect[] = "<rect x=\"1\" y=\"2\" width=\"10\" height=\"10\" rx=\"0\" ry=\"0\" "
                             "stroke=\"black\" stroke-width=\"1\" fill=\"none\" />\n";

    struct LoopCase
    {
        const char *name;
        EmfBuilder emf;
        int rects;
    };

    void PrintTo(const LoopCase &loop, std::ostream *out)
    {
        *out << loop.name;
    }

    class RecordLoop : public testing::TestWithParam<LoopCase>
    {
    };

    TEST_P(RecordLoop, DrawsWhatItReaches)
    {
        const Conversion conversion = convert(GetParam().emf.build());
        EXPECT_EQ(conversion.result, 1);
        std::string expected;
        for (int i = 0; i < GetParam().rects; ++i)
            expected += kRect;
        EXPECT_EQ(conversion.body(), expected);
    }

    EmfBuilder rects(int count)
    {
        EmfBuilder emf;
        for (int i = 0; i < count; ++i)
            emf.record(43, kBox);
        return emf;
    }

    QByteArray recordHead(quint32 type, qint64 size)
    {
        return ByteWriter().u32(type).u32(size).result();
    }

    const LoopCase kLoops[] = {
        { "endRecordEnds", rects(1).record(14).record(43, kBox), 1 },
        { "countEnds", rects(3).recordCount(2), 2 },
        { "countOfZeroReadsNothing", rects(3).recordCount(0), 0 },
        { "hugeCountEndsWithTheData", rects(2).recordCount(0xFFFFFFFF).withoutEnd(), 2 },
        { "countIncludesTheHeader", rects(2).recordCount(2).withoutEnd(), 2 },
        { "headerType", rects(1).headerType(99), 1 },
        { "longHeader", rects(1).headerExtra(QByteArray(20, 'd')), 1 },
        { "unsupportedTypes", EmfBuilder().record(33).record(70, { 1 }).record(0).record(43, kBox),
          1 },
        { "recordLargerThanTheData", rects(1).raw(recordHead(43, 0xFFFFFFF8)).record(43, kBox), 1 },
        { "recordOneByteTooLarge", rects(1).raw(recordHead(43, 9)).withoutEnd(), 1 },
        { "sizeOfZero", rects(1).raw(recordHead(43, 0)).record(43, kBox), 1 },
        { "sizeBelowHead", rects(1).raw(recordHead(43, 7)).record(43, kBox), 1 },
        { "headCutOff", rects(1).raw(QByteArray(7, '\x2B')).withoutEnd(), 1 },
    };

    INSTANTIATE_TEST_SUITE_P(EmfCore, RecordLoop, testing::ValuesIn(kLoops),
                             testing::PrintToStringParamName());

    TEST(EmfCore, HeaderBeyondTheDataReadsNoRecord)
    {
        QByteArray emf = rects(1).build();
        emf[7] = '\x7F';
        EXPECT_EQ(convert(emf).text, documentHead(100, 50) + "</svg>\n");
    }

    TEST(EmfCore, NoDataGiveNothing)
    {
        Emf2SvgConverter converter;
        EXPECT_EQ(converter.ConvertEMFToSVG({}, nullptr), 0);
        EXPECT_EQ(converter.takeDocument(), QByteArray());
    }

    TEST(EmfCore, DumpListsSkippedRecords)
    {
        QTemporaryDir folder;
        RecordDump dump;
        dump.isOn = true;
        dump.file.setFileName(folder.filePath(QStringLiteral("dump")));
        ASSERT_TRUE(dump.file.open(QIODevice::ReadWrite));
        // Types without a name or beyond all names add nothing; nor do those that have a handler.
        const QByteArray emf = EmfBuilder()
                                       .record(33)
                                       .record(69)
                                       .record(43, kBox)
                                       .record(120)
                                       .record(123)
                                       .record(10000)
                                       .record(117)
                                       .record(121)
                                       .build();
        Emf2SvgConverter converter;
        EXPECT_EQ(converter.ConvertEMFToSVG({ emf.constData(), emf.size() }, &dump), 1);
        dump.file.seek(0);
        EXPECT_EQ(dump.file.readAll().toStdString(),
                  "################# Start Of File ######################\n\n"
                  "EMR_SAVEDC          \nEMR_RESERVED_120        \nEMR_COLORMATCHTOTARGETW \n"
                  "\n ############### End of File ##############\n\n");
    }

} // namespace
} // namespace svgtool::test
