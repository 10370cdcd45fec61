#include "support/EmfRecords.h"
#include "unit/Cases.h"

#include <QCryptographicHash>

// Whole documents in which every kind of element stands many times, with numbers of every length.
// Their hashes were recorded when each element's text had been checked by itself; a change that
// makes the conversion faster leaves them alone.

using namespace svgtool;
using namespace svgtool::test;

namespace {

// Numbers of all lengths and both signs, the same in every run.
class Numbers
{
public:
    qint32 next()
    {
        m_state = m_state * 1664525U + 1013904223U;
        return static_cast<qint32>(m_state) >> (m_state >> 8) % 31;
    }
    QByteArray words(int count, bool is16Bit = false)
    {
        ByteWriter bytes;
        for (int i = 0; i < count; ++i)
            is16Bit ? bytes.u16(int(next())) : bytes.u32(next());
        return bytes.result();
    }

private:
    quint32 m_state = 1;
};

QByteArray pointsOf(Numbers &numbers, int count, bool is16Bit)
{
    return ByteWriter().u32s({ 0, 0, 0, 0, count }).result() + numbers.words(2 * count, is16Bit);
}

QByteArray figuresOf(Numbers &numbers, bool is16Bit)
{
    return ByteWriter().u32s({ 0, 0, 0, 0, 3, 17, 5, 0, 12 }).result() + numbers.words(34, is16Bit);
}

void addFigures(EmfBuilder &emf, Numbers &numbers)
{
    for (const quint32 type : { 27U, 54U, 42U, 43U, 44U, 45U, 46U, 47U, 55U, 54U })
        emf.record(type, numbers.words(8));
    emf.record(41, angleArc(5, 6, 70, 30, 200));
    for (const quint32 type : { 2U, 3U, 4U, 5U, 6U }) {
        emf.record(type, pointsOf(numbers, 13, false));
        emf.record(type + 83, pointsOf(numbers, 13, true));
    }
    for (const quint32 type : { 7U, 8U }) {
        emf.record(type, figuresOf(numbers, false));
        emf.record(type + 83, figuresOf(numbers, true));
    }
    emf.record(92, pointsOf(numbers, 6, true) + QByteArray("\6\2\4\4\5\3"));
}

void addObjects(EmfBuilder &emf, Numbers &numbers, int round)
{
    emf.record(38, { 1, round % 7, round, 0, numbers.next() }).record(37, { 1 });
    emf.record(95, ByteWriter().u32s({ 2, 0, 0, 0, 0, 0x1107, 3, 0, 255, 0, 2, 4, 9 }).result());
    emf.record(37, { round % 2 != 0 ? 2 : 0x80000008 });
    emf.record(39, { 3, round % 3, numbers.next(), round % 7 }).record(37, { 3 });
    emf.record(37, { 0x80000000LL + round % 10 }).record(25, { numbers.next() });
}

void addTexts(EmfBuilder &emf, int round)
{
    const QString text = QString::fromUtf8("a<b>&\u00e9\u4e2d\U0001f600") + QChar(0xD800);
    emf.record(82, font(4, 20 - 40 * (round % 2), "Face \"<1>", round % 2 * 300));
    emf.record(37, { 4 }).record(24, { round }).record(18, { 1 + round % 2 });
    emf.record(22, { round % 32 });
    emf.record(84, TextRecord{ 10, 20, text }.body());
    emf.record(84, TextRecord{ 30, 40, text, 2, { 1, 2, 3, 4 }, { 1, 2, 30, 40 }, 4 }.body());
    emf.record(84, TextRecord{ 5, 6, QStringLiteral("\1\2\3"), 0x10 }.body());
    emf.record(108, smallText(7, 8, 3, 0x300, QByteArray("x\xe9<")));
    emf.record(40, { 4 });
}

QByteArray region(Numbers &numbers, std::initializer_list<qint64> head)
{
    ByteWriter bytes;
    bytes.u32s(head).u32s({ 32, 1, 6, 96, 0, 0, 99, 99 });
    for (int i = 0; i < 6; ++i) {
        const int x = numbers.next() % 1000;
        bytes.u32s({ x, i * 7, x + 20, i * 7 + 9 });
    }
    return bytes.result();
}

void addRegionsAndPaths(EmfBuilder &emf, Numbers &numbers)
{
    emf.record(71, region(numbers, { 0, 0, 0, 0, 128, 3 }));
    emf.record(72, region(numbers, { 0, 0, 0, 0, 128, 3, 2, 5 }));
    emf.record(75, region(numbers, { 128, 5 })).record(75, region(numbers, { 128, 2 }));
    emf.record(43, { 1, 2, 3, 4 });
    for (const quint32 end : { 64U, 62U, 67U, 68U }) {
        emf.record(59);
        addFigures(emf, numbers);
        emf.record(61).record(60).record(end);
    }
    emf.record(75, { 0, 5 });
    emf.record(35, transform({ 1.5F, 0.1F, -2.25F, 1e-7F, 1e9F, 3 }));
    emf.record(36, transform({ 0.5F, 0, 0, 0.5F, 7, 8 }, 2));
}

QByteArray everyEmfRecord()
{
    Numbers numbers;
    EmfBuilder emf;
    for (int round = 0; round < 20; ++round) {
        if (round == 10)
            emf.record(17, { 8 }).record(9, { 300, 200 }).record(10, { 5, 7 });
        if (round == 12)
            emf.record(11, { 1000, 900 });
        addObjects(emf, numbers, round);
        addFigures(emf, numbers);
        addTexts(emf, round);
        addRegionsAndPaths(emf, numbers);
    }
    return emf.build();
}

QByteArray everyWmfRecord(bool isPlaceable)
{
    Numbers numbers;
    WmfBuilder wmf;
    if (isPlaceable)
        wmf.placeable(0, 0, 3000, 2000, 96).record(0x020B, { 7, 5 }).record(0x020C, { 900, 1200 });
    for (int round = 0; round < 40; ++round) {
        wmf.record(0x02FA, { round % 7, round, 0, numbers.next(), 5 });
        wmf.record(0x02FC, { round % 3, numbers.next(), 5, round % 7 });
        wmf.record(0x02FB,
                   ByteWriter()
                           .u16s({ 20 - 40 * (round % 2), 0, 0, 0, 700, 1, 0, 0, 0 })
                           .bytes("Face <1>")
                           .result());
        for (const int index : { 0, 1, 2 })
            wmf.record(0x012D, { index });
        wmf.record(0x0102, { 1 + round % 2 });
        for (const int function : { 0x0214, 0x0213, 0x0418, 0x041B })
            wmf.record(function, numbers.words(4, true));
        for (const int function : { 0x0324, 0x0325 })
            wmf.record(function, ByteWriter().u16(9).result() + numbers.words(18, true));
        wmf.record(0x0538, ByteWriter().u16s({ 2, 4, 5 }).result() + numbers.words(18, true));
        wmf.record(0x0A32, ByteWriter().u16s({ 9, -9, 6, 0 }).bytes("a<\xe9>&b").result());
        for (const int index : { 0, 1, 2 })
            wmf.record(0x01F0, { index });
    }
    return wmf.build();
}

void expectHash(const QByteArray &file, const char *hash)
{
    const QByteArray text = QByteArray::fromStdString(convert(file).text);
    EXPECT_EQ(QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex(), hash)
            << text.size() << " bytes";
}

TEST(RecordedOutput, IsUnchanged)
{
    expectHash(everyEmfRecord(),
               "90d6f5638a9f579f44a733217a2740e3b635de54bc04d75b0f4f3b5b1141ab2d");
    expectHash(everyWmfRecord(false),
               "b867a30ca1d804f13a2ac97fbda649644335cfb6ab0102a5f5ade925f91c8be7");
    expectHash(everyWmfRecord(true),
               "692754cd93e3077e78110ab39098f644ff8f9fa9f3e23354dd9caac251598398");
}

} // namespace
