// Clips and regions: many of them combined, by records of both kinds.

#include "fuzz/Choices.h"
#include "fuzz/Harness.h"
#include "fuzz/PictureChecks.h"
#include "support/EmfBuilder.h"

namespace {

using svgtool::fuzz::Choices;
using svgtool::test::ByteWriter;
using svgtool::test::EmfBuilder;

void addNumbers(Choices &from, ByteWriter &to, uint32_t count)
{
    for (; count > 0; --count)
        to.u32(from.number());
}

void addReals(Choices &from, ByteWriter &to, uint32_t count)
{
    for (; count > 0; --count)
        to.f32(from.real());
}

QByteArray region(Choices &from)
{
    const uint32_t count = from.below(16);
    ByteWriter data;
    data.u32s({ 32, 1, count, count * 16, 0, 0, 100, 50 });
    addNumbers(from, data, 4 * count);
    return data.result();
}

void addFigure(Choices &from, EmfBuilder &emf)
{
    ByteWriter points;
    const uint32_t count = 1 + from.below(12);
    points.u32s({ 0, 0, 100, 50, count });
    addNumbers(from, points, 2 * count);
    switch (from.below(3)) {
    case 0:
        emf.record(from.one({ 3U, 4U, 6U }), points.result()); // polygon, polylines
        break;
    case 1:
        emf.record(from.one({ 42U, 43U }),
                   { from.number(), from.number(), from.number(), from.number() });
        break;
    default:
        emf.record(61); // close figure
    }
}

void addClip(Choices &from, EmfBuilder &emf)
{
    ByteWriter body;
    const QByteArray data = region(from);
    switch (from.below(8)) {
    case 0:
        emf.record(from.one({ 29U, 30U }),
                   { from.number(), from.number(), from.number(), from.number() });
        break;
    case 1:
        emf.record(26, { from.number(), from.number() });
        break;
    case 2:
        body.u32s({ data.size(), 1 + from.below(5) });
        emf.record(75, body.bytes(data).result());
        break;
    case 3:
        emf.record(59);
        for (uint32_t left = from.below(4); left > 0; --left)
            addFigure(from, emf);
        emf.record(60).record(67, { 1 + from.below(5) });
        break;
    case 4:
        emf.record(28); // metaregion
        break;
    case 5:
        body.u32s({ 0, 0, 100, 50, data.size() });
        emf.record(from.one({ 73U, 74U }), body.bytes(data).result());
        break;
    case 6:
        body.u32s({ 0, 0, 100, 50, data.size(), 0x80000000 + from.below(6) });
        emf.record(71, body.bytes(data).result());
        break;
    default:
        body.u32s({ 0, 0, 100, 50, data.size(), 0x80000000 + from.below(6) });
        body.u32s({ from.number(), from.number() });
        emf.record(72, body.bytes(data).result());
    }
}

void addState(Choices &from, EmfBuilder &emf)
{
    ByteWriter matrix;
    switch (from.below(4)) {
    case 0:
        emf.record(33);
        break;
    case 1:
        emf.record(34, { -1 - int(from.below(3)) });
        break;
    case 2:
        addReals(from, matrix, 6);
        emf.record(35, matrix.result());
        break;
    default:
        emf.record(19, { 1 + from.below(2) }); // fill mode
    }
}

void addPlus(EmfBuilder &emf, uint32_t type, uint32_t flags, const QByteArray &data)
{
    ByteWriter record;
    record.u32(16 + data.size()).u32(0x2B464D45);
    record.u32(flags << 16 | type).u32(12 + data.size()).u32(data.size()).bytes(data);
    emf.record(70, record.result());
}

QByteArray plusPath(Choices &from)
{
    const uint32_t count = from.below(13);
    ByteWriter path, types;
    path.u32s({ 0xDBC01002, count, 0 });
    addReals(from, path, 2 * count);
    // The first of a figure, lines, curves; some of them its last.
    for (uint32_t i = 0; i < count; ++i)
        types.bytes(QByteArray(1, char(from.one({ 0, 1, 1, 3, 3, 3, 0x81, 0x83 }))));
    return path.bytes(types.result())
            .result()
            .leftJustified(int(12 + 8 * count + (count + 3) / 4 * 4), '\0');
}

// A node of a region and those below it.
void addNode(Choices &from, ByteWriter &tree, int depth)
{
    const QByteArray path = plusPath(from);
    const uint32_t kind = from.below(depth > 0 ? 8 : 3);
    switch (kind) {
    case 0:
        tree.u32(0x10000000);
        addReals(from, tree, 4);
        break;
    case 1:
        tree.u32(0x10000001).u32(path.size()).bytes(path);
        break;
    case 2:
        tree.u32(0x10000002 + from.below(2));
        break;
    default:
        tree.u32(kind - 2);
        addNode(from, tree, depth - 1);
        addNode(from, tree, depth - 1);
    }
}

void addPlusClip(Choices &from, EmfBuilder &emf)
{
    ByteWriter body;
    const uint32_t mode = from.below(6) << 8;
    switch (from.below(8)) {
    case 0:
        addReals(from, body, 4);
        addPlus(emf, 0x4032, mode, body.result());
        break;
    case 1:
        addPlus(emf, 0x4008, 0x301, plusPath(from));
        addPlus(emf, 0x4033, mode | 1, {});
        break;
    case 2:
        body.u32s({ 0xDBC01002, from.below(32) });
        addNode(from, body, 4);
        addPlus(emf, 0x4008, 0x402, body.result());
        addPlus(emf, 0x4034, mode | 2, {});
        break;
    case 3:
        addReals(from, body, 2);
        addPlus(emf, 0x4035, 0, body.result());
        break;
    case 4:
        addPlus(emf, from.one({ 0x4025U, 0x4026U }), 0,
                ByteWriter().u32(0).result()); // saved states
        break;
    case 5:
        addReals(from, body, 6);
        addPlus(emf, from.one({ 0x402AU, 0x402CU }), 0, body.result()); // transforms
        break;
    case 6:
        addPlus(emf, 0x4013, 0x8002, ByteWriter().u32(0xFF00FF00).result()); // the region filled
        break;
    default:
        body.u32s({ 0xFF0000FF, 1 });
        addReals(from, body, 4);
        addPlus(emf, 0x400A, 0x8000, body.result()); // rectangles
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Choices from(data, size);
    EmfBuilder emf;
    const bool isPlus = from.oneIn(2);
    if (isPlus)
        addPlus(emf, 0x4001, from.below(2), ByteWriter().u32s({ 0xDBC01002, 1, 96, 96 }).result());
    while (!from.isEmpty()) {
        void (*const kAdd[])(Choices &, EmfBuilder &) = { isPlus ? addPlusClip : addClip, addClip,
                                                          addFigure, addState };
        from.one(kAdd)(from, emf);
    }
    const QByteArray metafile = emf.build();
    svgtool::fuzz::drawAndCheck(std::as_bytes(std::span(metafile)));
    return 0;
}
