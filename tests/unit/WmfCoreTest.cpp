#include "unit/Cases.h"
#include "wmf/Wmf2SVG.h"

#include <QTemporaryDir>

namespace svgtool::test {
namespace {

    TEST(WmfCore, FrameFollowsThePlaceableHeader)
    {
        constexpr int kLowest = std::numeric_limits<int>::min();
        const struct
        {
            const char *name;
            WmfBuilder file;
            int width, height;
        } cases[] = {
            { "standard", WmfBuilder(), 1024, 768 },
            { "truncated toward zero", WmfBuilder().placeable(10, 5, 1009, 490, 1000), 95, 46 },
            { "upside down", WmfBuilder().placeable(100, 50, 0, 0, 96), -100, -50 },
            { "difference wraps", WmfBuilder().placeable(-30000, 0, 30000, 1, 96), -5536, 1 },
            { "no resolution", WmfBuilder().placeable(0, 0, 5, 5, 0), kLowest, kLowest },
        };
        for (const auto &[name, file, width, height] : cases)
            EXPECT_EQ(convert(file.build()).text, documentHead(width, height) + "</svg>\n") << name;
    }

    // Lists which records a conversion handled, by their names in the dump.
    std::string dumpOf(const QByteArray &file, qint64 totalBytes, quint32 maxRecordWords)
    {
        QTemporaryDir folder;
        RecordDump dump;
        dump.isOn = true;
        dump.file.setFileName(folder.filePath(QStringLiteral("dump")));
        EXPECT_TRUE(dump.file.open(QIODevice::ReadWrite));
        WMF2SVGConverter converter;
        converter.InitializeCoordinates(false, {});
        EXPECT_EQ(converter.ConvertWMFToSVG({ file.constData() + 18, file.size() - 18 }, totalBytes,
                                            maxRecordWords, &dump),
                  2);
        dump.file.seek(0);
        return dump.file.readAll().replace('\t', "").toStdString();
    }

    // Records of 8, 10 and 14 bytes.
    WmfBuilder three()
    {
        return wmf("bkMode 1; move 1 2; ellipse 4 3 2 1", WmfBuilder());
    }

    QByteArray head(qint64 words, int function)
    {
        return ByteWriter().u32(words).u16(function).result();
    }

    TEST(WmfCore, WalkHandlesWhatItReaches)
    {
        const std::string two = "META_SETBKMODE\nMETA_MOVETO\n";
        const std::string all = two + "META_ELLIPSE\n";
        const struct
        {
            const char *name;
            WmfBuilder file;
            qint64 totalBytes;
            quint32 maxRecordWords;
            std::string dump;
        } cases[] = {
            { "end record ends", wmf("line 0 0", three().raw(head(3, 0))), 1000, 1000, all },
            { "record that reaches the length", three(), 32, 1000, two },
            { "length one byte more", three(), 33, 1000, all },
            { "length of zero", three(), 0, 1000, "" },
            { "largest record", three(), 1000, 7, all },
            { "larger than largest", three(), 1000, 6, two },
            { "no end record", three().withoutEnd(), 1000, 1000, all },
            { "size below head", three().raw(head(2, 0x0213)), 1000, 1000, all },
            { "body cut off", three().raw(head(4, 0x0214)).withoutEnd(), 1000, 1000, all },
            { "unknown function", wmf("0x0999; arc; mapMode 8", WmfBuilder()), 1000, 1000,
              "META_ARC\nMETA_SETMAPMODE\n" },
            { "huge record", WmfBuilder().raw(head(0xFFFFFFFF, 0x0214)), 1LL << 40, ~0U, "" },
        };
        for (const auto &[name, file, totalBytes, maxRecordWords, dump] : cases)
            EXPECT_EQ(dumpOf(file.build(), totalBytes, maxRecordWords),
                      "#Start Of File\n\n" + dump + "\nEnd of File\n\n")
                    << name;
    }

    TEST(WmfCore, HugeClaimsAllocateNothing)
    {
        EXPECT_EQ(convert(WmfBuilder().size(0x7FFFFFFF).maxRecord(0x7FFFFFFF).build()).result, 2);
        EXPECT_EQ(convert(WmfBuilder().size(0xFFFFFFFF).raw(head(0xFFFFFFFF, 1)).build()).result,
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
