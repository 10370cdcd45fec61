// What it costs to write the bitmaps in the records of real metafiles as PNG files into memory,
// with Qt's writer and with ours. Both get their pixels in the layout that the decoder gives them.

#include "core/raster/DibDecoder.h"
#include "core/raster/Png.h"
#include "core/records/EmfObjectRecords.h"
#include "core/records/WmfRecords.h"
#include "support/Corpus.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QImage>
#include <QImageWriter>

#include <cstring>
#include <optional>
#include <vector>

namespace svgtool::bench {
namespace {

    struct Picture
    {
        QImage image;
        Bitmap bitmap;
    };

    QImage imageOf(const Bitmap &bitmap)
    {
        constexpr QImage::Format kFormats[] = { QImage::Format_Mono, QImage::Format_Indexed8,
                                                QImage::Format_BGR888, QImage::Format_RGB32,
                                                QImage::Format_ARGB32 };
        QImage image(bitmap.width(), bitmap.height(), kFormats[int(bitmap.format())]);
        for (int y = 0; y < bitmap.height(); ++y)
            std::memcpy(image.scanLine(y), bitmap.line(y), size_t(bitmap.lineBytes()));
        if (bitmap.isIndexed())
            image.setColorTable({ bitmap.colours().begin(), bitmap.colours().end() });
        return image;
    }

    void add(const std::optional<DibBytes> &dib, std::vector<Picture> &pictures)
    {
        int64_t runLengthPixels = kRunLengthPixels;
        auto bitmap = dib ? ConvertTo32Bits(*dib, runLengthPixels) : std::nullopt;
        if (bitmap && !bitmap->isFile())
            pictures.push_back({ imageOf(bitmap->pixels), std::move(bitmap->pixels) });
    }

    template<class Record>
    std::optional<DibBytes> sourceOf(ByteView record)
    {
        const auto blt = readPadded<Record>(record);
        const auto info = slice(record, blt.offBmiSrc, blt.cbBmiSrc);
        const auto bits = slice(record, blt.offBitsSrc, blt.cbBitsSrc);
        if (!info || !bits)
            return std::nullopt;
        return DibBytes{ *info, *bits, blt.iUsageSrc };
    }

    void addEmf(ByteView data, std::vector<Picture> &pictures)
    {
        while (data.size >= int64_t(sizeof(EMR))) {
            const auto head = readPadded<EMR>(data);
            const auto record = slice(data, 0, head.nSize);
            if (!record || head.nSize < sizeof head)
                return;
            if (head.iType == 76 || head.iType == 77 || head.iType == 78 || head.iType == 116)
                add(sourceOf<EMRBITBLT>(*record), pictures);
            else if (head.iType == 81)
                add(sourceOf<EMRSTRETCHDIBITS>(*record), pictures);
            data = tail(data, head.nSize);
        }
    }

    void addWmf(ByteView data, std::vector<Picture> &pictures)
    {
        data = tail(data, readPadded<uint32_t>(data) == 0x9AC6CDD7 ? 22 + 18 : 18);
        while (data.size >= int64_t(sizeof(WMR))) {
            const auto head = readPadded<WMR>(data);
            const int64_t size = int64_t(head.rdSize) * 2;
            const auto record = slice(data, 0, size);
            if (!record || size < int64_t(sizeof head))
                return;
            if (head.rdFunction == 0x0940)
                add(splitPackedDib(tail(*record, WMRBITBLT::kBitmapOffset), 0), pictures);
            else if (head.rdFunction == 0x0B41)
                add(splitPackedDib(tail(*record, sizeof(WMRDIBSTRETCHBLT)), 0), pictures);
            else if (head.rdFunction == 0x0F43)
                add(splitPackedDib(tail(*record, sizeof(WMRSTRETCHBLT)), 0), pictures);
            data = tail(data, size);
        }
    }

    const std::vector<Picture> &pictures()
    {
        static const std::vector<Picture> all = [] {
            std::vector<Picture> found;
            for (const auto &[path, bytes] : test::metafilesBelow(
                         { SVGTOOL_SHARED_DIR "/corpus", SVGTOOL_SHARED_DIR "/reference/gdi" })) {
                const ByteView data{ bytes.constData(), bytes.size() };
                path.endsWith(QLatin1String(".emf")) ? addEmf(data, found) : addWmf(data, found);
            }
            return found;
        }();
        return all;
    }

    qint64 writeWithQt(const Picture &picture)
    {
        QByteArray file;
        QBuffer device(&file);
        device.open(QIODevice::WriteOnly);
        QImageWriter(&device, QByteArrayLiteral("png")).write(picture.image);
        return file.size();
    }

    // One encoder for all, as a document has it.
    qint64 write(const Picture &picture)
    {
        static PngEncoder encoder;
        return encoder.encode(picture.bitmap).size;
    }

    // Writes all pictures of so many pixels.
    void run(benchmark::State &state, qint64 (*writePicture)(const Picture &))
    {
        const qint64 least = state.range(0);
        const qint64 most = state.range(1);
        std::vector<const Picture *> chosen;
        qint64 pixels = 0;
        qint64 bytes = 0;
        for (const Picture &picture : pictures()) {
            const qint64 count = picture.bitmap.pixelCount();
            if (count < least || count > most)
                continue;
            chosen.push_back(&picture);
            pixels += count;
            bytes += writePicture(picture);
        }
        for (auto _ : state)
            for (const Picture *picture : chosen)
                benchmark::DoNotOptimize(writePicture(*picture));
        state.counters["pictures"] = double(chosen.size());
        state.counters["pixels"] = double(pixels);
        state.counters["bytes"] = double(bytes);
    }

} // namespace
} // namespace svgtool::bench

int main(int argc, char *argv[])
{
    using namespace svgtool::bench;
    const std::pair<const char *, qint64 (*)(const Picture &)> writers[] = { { "qt", &writeWithQt },
                                                                             { "ours", &write } };
    for (const auto &[name, writePicture] : writers)
        benchmark::RegisterBenchmark(name, &run, writePicture)
                ->Args({ 0, 1 << 30 })
                ->Args({ 0, 256 })
                ->Args({ 257, 16384 })
                ->Args({ 16385, 1 << 30 })
                ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
