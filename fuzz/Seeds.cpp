// Writes the first inputs of the fuzz targets into FOLDER/<target>: metafiles that between them
// reach every handler, from the builders that the tests use.
// usage: fuzz_seeds FOLDER

#include "support/Bitmaps.h"
#include "support/EmfRecords.h"
#include "support/WmfBuilder.h"

#include <QDir>
#include <QFile>

#include <utility>
#include <vector>

using namespace svgtool::test;

namespace {

using Seeds = std::vector<std::pair<const char *, QByteArray>>;

// Region data of one rectangle, the length behind which it stands included.
QByteArray region(qint64 left, qint64 top, qint64 right, qint64 bottom)
{
    return ByteWriter()
            .u32s({ 32, 1, 1, 16, left, top, right, bottom, left, top, right, bottom })
            .result();
}

QByteArray regionRecord(std::initializer_list<qint64> head, const QByteArray &data)
{
    return ByteWriter().u32s(head).bytes(data).result();
}

const char kFourColours[] = "00000000 0000ff00 00ff0000 ff000000";

const Dib kMask = dib({ 3, 2, 1 }, "00000000 ffffff00", "a0000000 40000000");
const Dib kPicture =
        dib({ 3, 2, 24 }, "", "000000 808080 ffffff 000000 0000ff 00ff00 ff0000 000000");
const Dib kRuns = dib({ 4, 2, 8, 1, 4 }, kFourColours, "0401 0000 0003 010203 00 0100 0001");

Seeds emfSeeds()
{
    const QByteArray rects = region(1, 2, 30, 40);
    const qint64 length = rects.size();
    return {
        { "bitmaps",
          EmfBuilder()
                  .record(81, stretchDib(kRuns, { 0, 0, 40, 20 }, { 0, 0, 4, 2 }))
                  .record(81, stretchDib(kMask, { 5, 5, 20, 10 }, { 0, 0, 3, 2 }, 0x008800C6))
                  .record(81, stretchDib(kPicture, { 5, 5, 20, 10 }, { 0, 0, 3, 2 }, 0x00EE0086))
                  .record(76, blt({}, { 9, 9, 9, 9 }, 0, 0, 0x00F00021))
                  .record(77,
                          blt(kPicture, { 9, 9, -9, 9 }, 0, 0, 0x00330008,
                              ByteWriter().u32s({ 3, 2 }).result()))
                  .record(116,
                          blt(kPicture, { 9, 9, 9, 9 }, 0, 0, 0xFF00,
                              ByteWriter().u32s({ 3, 2 }).result()))
                  .record(78,
                          blt(kPicture, { 9, 9, 3, 2 }, 0, 0, 0xAACC0020,
                              ByteWriter().u32s({ 0, 0 }).result(), kMask))
                  .build() },
        { "figures",
          EmfBuilder()
                  .record(42, { 0, 0, 40, 30 })
                  .record(43, { 5, 5, 60, 40 })
                  .record(44, { 5, 5, 60, 40, 8, 6 })
                  .record(27, { 3, 4 })
                  .record(54, { 30, 40 })
                  .record(41, angleArc(50, 25, 20, 10, 400))
                  .build() },
        { "arcs",
          EmfBuilder()
                  .record(45, { 0, 0, 40, 30, 0, 0, 40, 40 })
                  .record(55, { 0, 0, 40, 30, 1, 9, 9, 1 })
                  .record(46, { 0, 0, 40, 30, 20, 0, 20, 0 })
                  .record(47, { 40, 30, 0, 0, 40, 15, 0, 15 })
                  .build() },
        { "points",
          EmfBuilder()
                  .record(3, pointList({ { 1, 2 }, { 3, 4 }, { 5, 6 } }))
                  .record(86, pointList16({ { 1, 2 }, { 3, 4 }, { 5, 6 } }))
                  .record(6, pointList({ { 1, 2 }, { 3, 4 } }))
                  .record(87, pointList16({ { 1, 2 }, { 3, 4 } }))
                  .record(2, pointList({ { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 } }))
                  .record(88, pointList16({ { 1, 2 }, { 3, 4 }, { 5, 6 } }))
                  .record(92, mixedFigure({ { 1, 2 }, { 3, 4 }, { 5, 6 } }, "\6\2\3"))
                  .build() },
        { "sharedPoints",
          EmfBuilder()
                  .record(7, figures({ 2, 2 }, { { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 } }))
                  .record(91, figures({ 1, 3 }, { { 1, 2 }, { 3, 4 }, { 5, 6 }, { 7, 8 } }, true))
                  .build() },
        { "objects",
          EmfBuilder()
                  .record(38, { 1, 2, 3, 0, 0xFF })
                  .record(39, { 2, 2, 0xFF00, 4 })
                  .record(95, { 3, 0, 0, 0, 0, 0x2107, 2, 0, 0xFF, 0, 3, 4, 2, 1 })
                  .record(37, { 1 })
                  .record(37, { 2 })
                  .record(37, { 3 })
                  .record(37, { 0x80000005 })
                  .record(43, { 5, 5, 60, 40 })
                  .record(40, { 1 })
                  .build() },
        { "text",
          EmfBuilder()
                  .record(82, font(1, -12, "Arial", 450))
                  .record(37, { 1 })
                  .record(24, { 0xFF })
                  .record(25, { 0xFF00 })
                  .record(22, { 7 })
                  .record(84,
                          TextRecord{ 10, 20, "A&B<", 2, { 5, 6, 7, 8 }, { 0, 0, 9, 9 } }.body())
                  .record(18, { 1 })
                  .record(84, TextRecord{ 10, 20, "\1\2", 0x10 }.body())
                  .record(108, smallText(1, 2, 3, 0x300, "abc"))
                  .build() },
        { "mapping",
          EmfBuilder()
                  .record(17, { 8 })
                  .record(9, { 200, 100 })
                  .record(10, { 5, 6 })
                  .record(11, { 100, -50 })
                  .record(12, { 7, 8 })
                  .record(35, transform({ 1, 0.5F, -0.5F, 1, 10, 20 }))
                  .record(36, transform({ 2, 0, 0, 2, 0, 0 }, 2))
                  .record(43, { 5, 5, 60, 40 })
                  .build() },
        { "paths",
          EmfBuilder()
                  .record(59)
                  .record(27, { 3, 4 })
                  .record(89, pointList16({ { 1, 2 }, { 3, 4 } }))
                  .record(61)
                  .record(60)
                  .record(64)
                  .record(59)
                  .record(86, pointList16({ { 1, 2 }, { 3, 4 } }))
                  .record(60)
                  .record(67, { 5 })
                  .record(62)
                  .record(68)
                  .build() },
        { "regions",
          EmfBuilder()
                  .record(39, { 2, 0, 0xFF00, 0 })
                  .record(75, regionRecord({ length, 5 }, rects))
                  .record(75, regionRecord({ length, 1 }, region(9, 9, 50, 20)))
                  .record(71, regionRecord({ 0, 0, 0, 0, length, 2 }, rects))
                  .record(72, regionRecord({ 0, 0, 0, 0, length, 2, 3, 1 }, rects))
                  .record(75, { 0, 5 })
                  .build() },
    };
}

// Bitmaps behind the bytes that say what becomes of them.
Seeds dibSeeds()
{
    const auto seed = [](int form, const QByteArray &bitmap) {
        return ByteWriter().u16s({ form, 0xEECC, 0, 0, 4, 4, 0, 0, 30, 20 }).bytes(bitmap).result();
    };
    const Dib fields = dib({ 2, 1, 16, 3 }, "00f80000 e0070000 1f000000", "00f8 e007");
    const Dib alpha =
            dib({ 2, 1, 32, 6 }, "0000ff00 00ff0000 ff000000 000000ff", "01020380 040506ff");
    return {
        { "bits1", seed(1, kMask.packed()) },
        { "mask1", seed(13, kMask.packed()) },
        { "bits4", seed(1, dib({ 3, -2, 4, 0, 4 }, kFourColours, "12300000 03210000").packed()) },
        { "bits8", seed(1, dib({ 2, 1, 8, 0, 4 }, kFourColours, "01020000").packed()) },
        { "bits16", seed(1, fields.packed()) },
        { "bits24", seed(4, kPicture.packed()) },
        { "bits32", seed(7, alpha.packed()) },
        { "runs8", seed(1, kRuns.packed()) },
        { "runs4",
          seed(1, dib({ 5, 2, 4, 2, 4 }, kFourColours, "0512 0000 0005 123120 00 0001").packed()) },
        { "file", seed(1, dib({ 3, 2, 0, 4 }, "", "ffd8ff00 1122").packed()) },
        { "device", seed(0, ByteWriter().u16s({ 0, 3, 2, 2, 0x101, 0x00a0, 0x0040 }).result()) },
        { "bitsBeforeInfo", seed(2, kPicture.bits + QByteArray(16, '\0') + kPicture.info) },
    };
}

Seeds wmfSeeds()
{
    const auto plain = [] { return WmfBuilder().placeable(0, 0, 100, 50, 96); };
    return {
        { "bitmaps",
          WmfBuilder()
                  .record(0x0F43,
                          ByteWriter()
                                  .u32(kSourceCopy)
                                  .u16s({ 0, 2, 3, 0, 0, 30, 45, 1, 0 })
                                  .bytes(kPicture.packed())
                                  .result())
                  .record(0x0B41,
                          ByteWriter()
                                  .u32(kSourceCopy)
                                  .u16s({ 2, 3, 0, 0, 30, 45, 1, 0 })
                                  .bytes(kMask.packed())
                                  .result())
                  .record(0x0922,
                          ByteWriter()
                                  .u32(kSourceCopy)
                                  .u16s({ 0, 0, 2, 3, 1, 0 })
                                  .u16s({ 0, 3, 2, 2, 0x101, 0x00a0, 0x0040 })
                                  .result())
                  .record(0x061D, { 0x0042, 0, 30, 45, 1, 0 })
                  .build() },
        { "figures",
          plain().record(0x020B, { 0, 0 })
                  .record(0x020C, { 50, 100 })
                  .record(0x0214, { 1, 2 })
                  .record(0x0213, { 30, 40 })
                  .record(0x041B, { 40, 30, 20, 10 })
                  .record(0x0418, { 11, 31, 2, 10 })
                  .record(0x0324, { 3, 1, 2, 3, 4, 5, 6 })
                  .record(0x0325, { 2, 1, 2, -3, -4 })
                  .record(0x0538, { 2, 3, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10 })
                  .build() },
        { "objects",
          WmfBuilder()
                  .record(0x02FA, { 1, 3, 0, 0xFF, 0 })
                  .record(0x02FC, { 2, 0xFF, 0, 3 })
                  .record(0x012D, { 0 })
                  .record(0x012D, { 1 })
                  .record(0x0102, { 1 })
                  .record(0x041B, { 40, 30, 20, 10 })
                  .record(0x01F0, { 1 })
                  .build() },
        { "text",
          plain().record(0x02FB,
                         ByteWriter()
                                 .u16s({ -12, 0, 450, 0, 700, 0x0101, 204 << 8, 0, 0 })
                                 .bytes("Arial\0")
                                 .result())
                  .record(0x012D, { 0 })
                  .record(0x0A32, ByteWriter().u16s({ 5, 6, 3, 0 }).bytes("a<\xE0\0").result())
                  .record(0x0A32,
                          ByteWriter().u16s({ 5, 6, 2, 4, 0, 0, 9, 9 }).bytes("bc").result())
                  .build() },
        { "noPlaceable", WmfBuilder().record(0x0325, { 2, 100, 200, 300, 400 }).build() },
    };
}

bool write(const Seeds &seeds, const QString &folder)
{
    if (!QDir().mkpath(folder))
        return false;
    for (const auto &[name, bytes] : seeds) {
        QFile file(folder + QLatin1Char('/') + QLatin1String(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const bool isWritten = write(emfSeeds(), folder + QLatin1String("/emf"))
            && write(wmfSeeds(), folder + QLatin1String("/wmf"))
            && write(dibSeeds(), folder + QLatin1String("/dib"));
    return isWritten ? 0 : 1;
}
