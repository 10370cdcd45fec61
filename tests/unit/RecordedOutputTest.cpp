#include "support/TestData.h"
#include "unit/Cases.h"

#include <QCryptographicHash>

// Whole documents in which every kind of element stands many times, with numbers of every length.
// Their hashes were recorded when each element's text had been checked by itself; a change that
// makes the conversion faster leaves them alone.

using namespace svgtool;
using namespace svgtool::test;

namespace {

// The records of a file of tests/golden/ many times over, with the numbers that it asks for: the
// same ones in every run.
QString recordsOf(const char *name)
{
    QString records;
    quint32 state = 1;
    for (const QChar unit : testData(name).repeated(20)) {
        state = state * 1664525U + 1013904223U;
        if (unit == QLatin1Char('?'))
            records += QString::number(static_cast<qint32>(state) >> (state >> 8) % 31);
        else if (unit == QLatin1Char('%'))
            records += QString::number((state >> 8) % 10);
        else
            records += unit;
    }
    return records;
}

TEST(RecordedOutput, IsUnchanged)
{
    const QString emfRecords = recordsOf("every-emf.txt");
    const QString wmfRecords = recordsOf("every-wmf.txt");
    const WmfBuilder placeable = WmfBuilder().placeable(0, 0, 3000, 2000, 96);
    const std::pair<Metafile, const char *> cases[] = {
        { emf(emfRecords), "02dbfe76b9449f18bd3d53b273012d852d0b6115d23c5085c6f09226e2cb852b" },
        { emf("mapMode 8; windowExt 300 200; windowOrg 5 7;" + emfRecords),
          "87c6d025bad74cc3741988a0fad3d00b727b06fdf91e450cc36b7c5f80d68d95" },
        { emf("mapMode 8; windowExt 300 200; viewportExt 1000 900;" + emfRecords),
          "ab0dd7197dd35a80cd100a202311e8bc5b80677ad2c8e86deac3fbd929c7543d" },
        { wmf(wmfRecords, WmfBuilder()),
          "218f5186ab64ebe5fcc5d881fbaecadb6c1378bd842e23c86007787552f4126e" },
        { wmf("windowOrg 7 5; windowExt 900 1200;" + wmfRecords, placeable),
          "40f0b02648f6873cf030fd422f6059a1c529e90ad6669b3d8f7b401c76aaa9a3" },
    };
    for (const auto &[metafile, hash] : cases) {
        const QByteArray text = QByteArray::fromStdString(convert(metafile.bytes).text);
        const QByteArray sum = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
        EXPECT_EQ(sum.toHex().toStdString(), hash) << text.size() << " bytes";
    }
}

} // namespace
