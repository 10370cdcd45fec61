// Bitmaps with plausible headers in all records that transfer one or make a brush of it.

#include "fuzz/Choices.h"
#include "fuzz/Harness.h"
#include "fuzz/PictureChecks.h"
#include "support/Bitmaps.h"
#include "support/WmfBuilder.h"

namespace {

using svgtool::fuzz::Choices;
using svgtool::test::Box;
using svgtool::test::ByteWriter;
using svgtool::test::Dib;
using svgtool::test::EmfBuilder;
using svgtool::test::WmfBuilder;

// Mostly small sides and as many bytes as they ask for, and now and then neither.
Dib dib(Choices &from)
{
    svgtool::test::DibHead head{};
    head.width = from.oneIn(16) ? from.number() : int(from.below(20));
    head.height = from.oneIn(16) ? from.number() : int(from.below(20)) - int(from.below(2)) * 19;
    head.depth = from.one({ 1, 4, 8, 16, 24, 32, 0, 2 });
    head.compression = from.oneIn(2) ? 0 : int(from.below(7));
    head.coloursUsed = from.oneIn(2) ? 0 : from.below(260);
    head.headerBytes = from.one({ 40, 40, 12, 52, 56, 64, 108, 124 });
    const int used = head.coloursUsed > 0 ? int(head.coloursUsed) : 1 << std::min(head.depth, 8);
    const int colours =
            (head.depth <= 8 ? used : int(head.coloursUsed)) * (head.headerBytes == 12 ? 3 : 4);
    const int masks = head.compression == 3 && head.headerBytes == 40 ? 12 : 0;
    const qint64 line = (head.width * head.depth + 31) / 32 * 4;
    const qint64 bytes = std::abs(line * head.height) % 2000;
    const int rest = int(std::max<qint64>(head.headerBytes - 40, 0)) + masks + colours;
    return { head.info(from.bytes(rest)), from.bytes(int(bytes)), int(from.below(3)) };
}

Box box(Choices &from)
{
    return { from.number(), from.number(), from.number(), from.number() };
}

qint64 operation(Choices &from)
{
    constexpr qint64 kUsual[] = { 0x00CC0020, 0x00660046, 0x008800C6, 0x00EE0086,
                                  0x00330008, 0x00BB0226, 0x00B8074A, 0x00F00021 };
    return from.oneIn(3) ? qint64(from.below(256)) << 16 : from.one(kUsual);
}

void addBlt(Choices &from, EmfBuilder &emf)
{
    const Dib source = from.oneIn(8) ? Dib{} : dib(from);
    const Box to = box(from);
    const Dib mask = from.oneIn(2) ? Dib{} : dib(from);
    const auto extra = ByteWriter().u32s({ from.number(), from.number() }).result();
    const quint32 type = from.one({ 76U, 77U, 78U, 114U, 116U });
    const qint64 rop = type == 114 ? qint64(from.word(256, 2)) << 16 : operation(from);
    const int32_t x = from.number(), y = from.number();
    emf.record(type,
               blt(source, to, x, y, rop, type == 76 || type == 78 ? QByteArray() : extra,
                   type == 78 ? mask : Dib{}));
}

void addStretchDib(Choices &from, EmfBuilder &emf)
{
    const Dib source = dib(from);
    const Box to = box(from), part = box(from);
    emf.record(81, stretchDib(source, to, part, operation(from)));
}

void addOther(Choices &from, EmfBuilder &emf)
{
    const Dib source = dib(from);
    const qint64 info = source.info.size(), bits = source.bits.size();
    ByteWriter body, matrix;
    switch (from.below(5)) {
    case 0: // SetDIBitsToDevice
        body.u32s({ 0, 0, 0, 0, from.number(), from.number(), from.number(), from.number() });
        body.u32s({ from.number(), from.number(), 76, info, 76 + info, bits, source.usage });
        body.u32s({ from.below(20), from.below(20) });
        emf.record(80, body.bytes(source.packed()).result());
        break;
    case 1: // PlgBlt, from three corners
        body.u32s({ 0, 0, 0, 0, from.number(), from.number(), from.number(), from.number() });
        body.u32s({ from.number(), from.number(), 0, 0, from.number(), from.number() });
        body.f32(1).f32(0).f32(0).f32(1).f32(0).f32(0).u32s({ 0, source.usage });
        body.u32s({ 140, info, 140 + info, bits, 0, 0, 0, 0, 0, 0, 0 });
        emf.record(79, body.bytes(source.packed()).result());
        break;
    case 2: // brushes, and a box filled
        body.u32s({ 1, source.usage, 32, info, 32 + info, bits }).bytes(source.packed());
        emf.record(from.one({ 93U, 94U }), body.result()).record(37, { 1 });
        emf.record(43, { from.number(), from.number(), from.number(), from.number() });
        break;
    case 3:
        for (int i = 0; i < 6; ++i)
            matrix.f32(from.real());
        emf.record(35, matrix.result());
        break;
    default: // stretch mode, mixture, colours of text and ground
        emf.record(from.one({ 20U, 21U, 24U, 25U }), { from.below(17) * 0xF0F });
    }
}

QByteArray makeEmf(Choices &from)
{
    EmfBuilder emf;
    emf.handles = 2;
    while (!from.isEmpty()) {
        void (*const kAdd[])(Choices &, EmfBuilder &) = { addBlt, addStretchDib, addOther };
        from.one(kAdd)(from, emf);
    }
    return emf.build();
}

void add(Choices &from, WmfBuilder &wmf)
{
    const QByteArray packed = dib(from).packed();
    const int rop = int(operation(from));
    const auto numbers = [&from](int count) {
        ByteWriter words;
        for (; count > 0; --count)
            words.u16(from.number());
        return words.result();
    };
    switch (from.below(8)) {
    case 0:
        wmf.record(0x0940, ByteWriter().u32(rop).bytes(numbers(6)).bytes(packed).result());
        break;
    case 1:
        wmf.record(0x0B41, ByteWriter().u32(rop).bytes(numbers(8)).bytes(packed).result());
        break;
    case 2:
        wmf.record(0x0F43,
                   ByteWriter()
                           .u32(rop)
                           .u16(int(from.below(2)))
                           .bytes(numbers(8))
                           .bytes(packed)
                           .result());
        break;
    case 3:
        wmf.record(0x0D33,
                   ByteWriter().u16(int(from.below(2))).bytes(numbers(8)).bytes(packed).result());
        break;
    case 4: // a bitmap of a device: type, sides, bytes of a line, planes, depth
        wmf.record(0x0922,
                   ByteWriter()
                           .u32(rop)
                           .bytes(numbers(6))
                           .u16s({ 0, int(from.below(20)), int(from.below(20)),
                                   2 * int(from.below(8)) })
                           .bytes(from.one({ "\1\1", "\1\4", "\1\30" }))
                           .bytes(from.bytes(64))
                           .result());
        break;
    case 5: // a brush, and a box filled
        wmf.record(0x01F0, { 0 })
                .record(0x0142, ByteWriter().u16s({ 5, int(from.below(2)) }).bytes(packed).result())
                .record(0x012D, { 0 })
                .record(0x061D, ByteWriter().u32(rop).bytes(numbers(4)).result());
        break;
    default: // extents and origins, the mixture
        wmf.record(from.one({ 0x020BU, 0x020CU, 0x020DU, 0x020EU, 0x0104U }), numbers(2));
    }
}

QByteArray makeWmf(Choices &from)
{
    WmfBuilder wmf;
    wmf.maxRecord = 100000;
    wmf.placeable(0, 0, 100, 50, 96);
    while (!from.isEmpty())
        add(from, wmf);
    return wmf.build();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Choices from(data, size);
    const QByteArray metafile = from.oneIn(2) ? makeWmf(from) : makeEmf(from);
    svgtool::fuzz::drawAndCheck(std::as_bytes(std::span(metafile)));
    return 0;
}
