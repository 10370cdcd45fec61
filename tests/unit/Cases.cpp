#include "unit/Cases.h"

#include "support/Bitmaps.h"

#include <QRegularExpression>
#include <QStringList>

#include <type_traits>

namespace svgtool::test {
namespace {

    // Short names of records, each with its number in an EMF and, if it has one, in a WMF.
    constexpr char kRecords[] =
            "bezier:2 polygon:3:0x0324 polyline:4:0x0325 bezierTo:5 polylineTo:6 polyPolyline:7 "
            "polyPolygon:8:0x0538 windowExt:9:0x020C windowOrg:10:0x020B viewportExt:11 "
            "viewportOrg:12 mapMode:17:0x0103 bkMode:18:0x0102 textAlign:22 textColor:24 "
            "bkColor:25 "
            "move:27:0x0214 transform:35 modify:36 select:37:0x012D pen:38:0x02FA brush:39:0x02FC "
            "delete:40:0x01F0 angleArc:41 ellipse:42:0x0418 rect:43:0x041B roundRect:44 "
            "arc:45:0x0817 chord:46 pie:47 line:54:0x0213 arcTo:55 beginPath:59 endPath:60 "
            "closeFigure:61 fillPath:62 strokePath:64 clipPath:67 abortPath:68 fillRgn:71 "
            "frameRgn:72 clipRgn:75 font:82:0x02FB text:84:0x0A32 bezier16:85 polygon16:86 "
            "polyline16:87 bezierTo16:88 polylineTo16:89 polyPolyline16:90 polyPolygon16:91 "
            "polyDraw16:92 extPen:95 smallText:108";

    int recordNumber(const QString &word, bool isEmf)
    {
        static const QStringList kNames = QString::fromLatin1(kRecords).split(QLatin1Char(' '));
        QString number = word;
        for (const QString &name : kNames) {
            if (name.startsWith(word + QLatin1Char(':')))
                number = name.section(QLatin1Char(':'), isEmf ? 1 : 2, isEmf ? 1 : 2);
        }
        bool isNumber = false;
        const int result = number.toInt(&isNumber, 0);
        EXPECT_TRUE(isNumber) << word.toStdString();
        return result;
    }

    void append(ByteWriter &body, const QString &word, bool isEmf)
    {
        bool isNumber = true;
        if (word.startsWith(QLatin1Char('"'))) {
            for (const QChar unit : word.mid(1, word.size() - 2))
                isEmf ? body.u16(unit.unicode()) : body.bytes(QByteArray(1, unit.toLatin1()));
        } else if (word == QLatin1String("box")) {
            body.u32s({ 0, 0, 0, 0 });
        } else if (word.startsWith(QLatin1Char('x'))) {
            body.bytes(QByteArray::fromHex(word.mid(1).toLatin1()));
        } else if (word.endsWith(QLatin1String("inf")) || word == QLatin1String("nan")
                   || word.contains(QLatin1Char('.'))) {
            body.f32(word.toFloat(&isNumber));
        } else {
            const QStringList numbers = word.split(QLatin1Char(','));
            for (const QString &number : numbers) {
                const qint64 value = number.toLongLong(&isNumber, 0);
                EXPECT_TRUE(isNumber) << word.toStdString();
                isEmf &&numbers.size() == 1 ? body.u32(value) : body.u16(int(value));
            }
        }
        EXPECT_TRUE(isNumber) << word.toStdString();
    }

    template<class Builder>
    Builder withRecords(const QString &records, Builder file)
    {
        constexpr bool isEmf = std::is_same_v<Builder, EmfBuilder>;
        const auto lines = records.split(QRegularExpression(QStringLiteral("[;\n]")));
        for (const QString &each : lines) {
            const QString line = each.section(QLatin1Char('#'), 0, 0).simplified();
            if (line.isEmpty())
                continue;
            QStringList words = line.split(QLatin1Char(' '));
            const auto number = recordNumber(words.takeFirst(), isEmf);
            ByteWriter body;
            for (const QString &word : words)
                append(body, word, isEmf);
            if constexpr (isEmf)
                file.record(quint32(number), body.result());
            else
                file.record(number, body.result());
        }
        return file;
    }

} // namespace

EmfBuilder emf(const QString &records, EmfBuilder file)
{
    return withRecords(records, std::move(file));
}

WmfBuilder wmf(const QString &records, WmfBuilder file)
{
    return withRecords(records, std::move(file));
}

TEST_P(Document, IsExact)
{
    const QByteArray &bytes = GetParam().metafile.bytes;
    const Conversion conversion = convert(bytes);
    EXPECT_EQ(conversion.result, bytes.mid(40, 4) == " EMF" ? 1 : 2);
    const std::string body = conversion.body();
    // A WMF without a placeable header has a size of its own.
    EXPECT_EQ(withPixels(body == conversion.text ? conversion.body(1024, 768) : body),
              GetParam().body);
}

} // namespace svgtool::test
