#include "fuzz/RecordMutator.h"

#include <algorithm>

namespace svgtool::fuzz {

static constexpr size_t kHead = 6; // of a record: size in words and function
static constexpr size_t kHeaderSize = 18;
static constexpr size_t kPlaceableSize = 22;
static constexpr uint32_t kPlaceableKey = 0x9AC6CDD7;

static constexpr uint32_t kTypes[] = { 0x0102, 0x0103, 0x012D, 0x01F0, 0x020B, 0x020C, 0x0213,
                                       0x0214, 0x02FA, 0x02FB, 0x02FC, 0x0324, 0x0325, 0x0418,
                                       0x041B, 0x0538, 0x061D, 0x0817, 0x0922, 0x0940, 0x0A32,
                                       0x0B23, 0x0B41, 0x0F43, 0x0000 };

static size_t headSize(const std::string &bytes)
{
    return kHeaderSize + (numberAt(bytes, 0, 4) == kPlaceableKey ? kPlaceableSize : 0);
}

static Metafile parse(const std::string &bytes)
{
    Metafile metafile;
    size_t at = headSize(bytes);
    metafile.head = padded(bytes, at);
    while (at + kHead <= bytes.size()) {
        const size_t size =
                std::clamp(size_t(numberAt(bytes, at, 4)) * 2, kHead, bytes.size() - at);
        metafile.records.push_back(
                { numberAt(bytes, at + 4, 2), bytes.substr(at + kHead, size - kHead) });
        at += size;
    }
    return metafile;
}

static std::string join(const Metafile &metafile)
{
    std::string bytes = metafile.head;
    for (const Metafile::Record &record : metafile.records) {
        const std::string padding(record.body.size() % 2 != 0 ? 1 : 0, '\0');
        std::string head(kHead, '\0');
        setNumberAt(head, 0, 4, uint32_t(kHead + record.body.size() + padding.size()) / 2);
        setNumberAt(head, 4, 2, record.type);
        bytes += head + record.body + padding;
    }
    const size_t header = headSize(bytes) - kHeaderSize;
    setNumberAt(bytes, header + 2, 2, 9);
    // The record that reaches the length is not handled, so it lies behind the last.
    setNumberAt(bytes, header + 6, 4, uint32_t(bytes.size() - header) / 2 + 1);
    setNumberAt(bytes, header + 12, 4, 0x7FFFFFFF);
    setNumberAt(bytes, header + 16, 2, 0);
    return bytes;
}

static void mendCounts(Metafile::Record &record, Random &random)
{
    std::string &body = record.body;
    const uint32_t room = roomFrom(body, 2);
    if (record.type == 0x0324 || record.type == 0x0325) {
        setNumberAt(body, 0, 2, room / 4);
    } else if (record.type == 0x0538) {
        const uint32_t figures = std::min<uint32_t>(room / 6, 1 + random() % 8);
        setNumberAt(body, 0, 2, figures);
        for (size_t i = 0; i < figures; ++i)
            setNumberAt(body, 2 + i * 2, 2, (room - figures * 2) / 4 / figures);
    } else if (record.type == 0x0A32) {
        setNumberAt(body, 4, 2, room);
    }
}

} // namespace svgtool::fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned int seed)
{
    using namespace svgtool::fuzz;
    static constexpr Format kFormat{ kTypes, &parse, &join, &mendCounts };
    return mutateRecords(kFormat, data, size, maxSize, seed);
}
