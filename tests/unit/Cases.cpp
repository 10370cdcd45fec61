#include "unit/Cases.h"

#include "core/records/EmfPlusRecordTypes.h"
#include "support/Bitmaps.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <type_traits>

namespace svgtool::test {
namespace {

    // Short names of records, each with its number in an EMF and, if it has one, in a WMF.
    constexpr char kRecords[] =
            "bezier:2 polygon:3:0x0324 polyline:4:0x0325 bezierTo:5 polylineTo:6 polyPolyline:7 "
            "polyPolygon:8:0x0538 windowExt:9:0x020C windowOrg:10:0x020B viewportExt:11:0x020E "
            "viewportOrg:12:0x020D mapMode:17:0x0103 bkMode:18:0x0102 textAlign:22 textColor:24 "
            "bkColor:25 "
            "move:27:0x0214 transform:35 modify:36 select:37:0x012D pen:38:0x02FA brush:39:0x02FC "
            "delete:40:0x01F0 angleArc:41 ellipse:42:0x0418 rect:43:0x041B roundRect:44 "
            "arc:45:0x0817 chord:46 pie:47 line:54:0x0213 arcTo:55 beginPath:59 endPath:60 "
            "closeFigure:61 fillPath:62 strokePath:64 clipPath:67 abortPath:68 fillRgn:71 "
            "frameRgn:72 clipRgn:75 bitBlt:76 maskBlt:78 stretchDib:81 font:82:0x02FB "
            "text:84:0x0A32 textOut:84 bezier16:85 polygon16:86 polyline16:87 bezierTo16:88 "
            "polylineTo16:89 polyPolyline16:90 polyPolygon16:91 polyDraw16:92 extPen:95 "
            "smallText:108 transparentBlt:116";

    qint64 number(const QString &word, qint64 least = std::numeric_limits<qint32>::min(),
                  qint64 most = std::numeric_limits<quint32>::max())
    {
        bool isNumber = false;
        const qint64 value = word.toLongLong(&isNumber, 0);
        EXPECT_TRUE(isNumber && least <= value && value <= most) << word.toStdString();
        return value;
    }

    qint64 recordNumber(const QString &word, bool isEmf)
    {
        static const QStringList kNames = QString::fromLatin1(kRecords).split(QLatin1Char(' '));
        for (const QString &name : kNames)
            if (name.startsWith(word + QLatin1Char(':')))
                return number(name.split(QLatin1Char(':')).value(isEmf ? 1 : 2));
        return number(word);
    }

    // A string as JSON writes it.
    QString string(const QString &word)
    {
        const QByteArray json = '[' + word.toUtf8() + ']';
        const QJsonArray array = QJsonDocument::fromJson(json).array();
        EXPECT_TRUE(array.size() == 1 && array.first().isString()) << word.toStdString();
        return array.first().toString();
    }

    // Hexadecimal digits.
    QByteArray bytesOf(const QString &word)
    {
        static const QRegularExpression kBytes(QStringLiteral("^(?:[0-9A-Fa-f]{2}|,)*$"));
        EXPECT_TRUE(kBytes.match(word).hasMatch()) << word.toStdString();
        return QByteArray::fromHex(word.toLatin1());
    }

    // Adds what the lines of a script say to a file.
    template<class Builder>
    class Interpreter
    {
    public:
        explicit Interpreter(Builder file) : m_file(std::move(file)) { }

        const Builder &run(const QString &script)
        {
            static const QRegularExpression kPart(QStringLiteral(
                    R"(#[^\n]*|([;\n])|("(?:[^"\\]|\\(?:["\\nrt]|u[0-9A-Fa-f]{4}))*"|[^\s;"#]+)|\S)"));
            for (auto parts = kPart.globalMatch(script); parts.hasNext();) {
                const QRegularExpressionMatch part = parts.next();
                if (part.capturedLength(1) > 0)
                    endLine();
                else if (part.capturedLength(2) > 0)
                    addWord(part.captured(2));
                else
                    EXPECT_TRUE(part.captured().startsWith(QLatin1Char('#')))
                            << script.toStdString();
            }
            endLine();
            return m_file;
        }

    private:
        static constexpr bool kIsEmf = std::is_same_v<Builder, EmfBuilder>;

        void addWord(const QString &word)
        {
            const auto key =
                    word.startsWith(QLatin1Char('"')) ? -1 : word.indexOf(QLatin1Char('='));
            EXPECT_FALSE(m_options.contains(word.left(key))) << word.toStdString();
            if (key < 0)
                m_words += word;
            else
                m_options.insert(word.left(key), word.mid(key + 1));
        }
        void endLine()
        {
            if (m_words.isEmpty() && m_options.isEmpty())
                return;
            const QString name = take();
            if (name == QLatin1String("file"))
                setFile();
            else if (name == QLatin1String("bitmap"))
                addBitmap();
            else if (name == QLatin1String("raw"))
                m_file.raw(body());
            else if (kIsEmf && name.startsWith(QLatin1Char('+')))
                addPlusRecord(name.mid(1));
            else
                addRecord(name);
            EXPECT_TRUE(m_words.isEmpty() && m_options.isEmpty()) << name.toStdString();
        }
        QString take()
        {
            EXPECT_FALSE(m_words.isEmpty());
            return m_words.isEmpty() ? QString() : m_words.takeFirst();
        }
        qint64 takeNumber() { return number(take()); }
        qint64 option(const char *key, qint64 otherwise = 0)
        {
            const QString value = m_options.take(QLatin1String(key));
            return value.isNull() ? otherwise : number(value);
        }
        // Numbers with commas between; @p otherwise gives their count, too, unless it is empty.
        std::vector<int> options(const char *key, std::vector<int> otherwise = {})
        {
            const QString value = m_options.take(QLatin1String(key));
            if (value.isNull())
                return otherwise;
            std::vector<int> result;
            for (const QString &each : value.split(QLatin1Char(',')))
                result.push_back(int(number(each)));
            const bool fits = otherwise.empty() || result.size() == otherwise.size();
            EXPECT_TRUE(fits) << key;
            return fits ? result : otherwise;
        }
        QByteArray hex(const char *key) { return bytesOf(m_options.take(QLatin1String(key))); }
        bool takeWord(const char *word) { return m_words.removeAll(QLatin1String(word)) > 0; }

        void setFile()
        {
            if constexpr (kIsEmf) {
                // The frame has 0.01 mm, and the builder's device as many pixels each way.
                const auto corner = options("corner", { 0, 0 });
                for (size_t i = 0; i < 4; ++i) {
                    m_file.bounds[i] += corner[i % 2];
                    m_file.frame[i] += corner[i % 2] * m_file.device[2] * 100 / m_file.device[0];
                }
                m_file.bounds = options("bounds", m_file.bounds);
                m_file.frame = options("frame", m_file.frame);
                m_file.device = options("device", m_file.device);
                m_file.handles = int(option("handles", m_file.handles));
                m_file.headerType = quint32(option("type", 1));
                m_file.headerExtra = hex("extra");
                m_file.recordCount = option("count", -1);
            } else {
                const bool isPlaceable = m_options.contains(QStringLiteral("placeable"));
                if (takeWord("bare") || isPlaceable)
                    m_file = WmfBuilder();
                const auto frame = options("placeable", { 0, 0, 0, 0, 0 });
                if (isPlaceable)
                    m_file.placeable(frame[0], frame[1], frame[2], frame[3], frame[4]);
                m_file.size = option("size", -1);
                m_file.maxRecord = option("maxRecord", 1000);
            }
            m_file.hasEnd = !takeWord("noEnd");
        }

        void addBitmap()
        {
            const QString name = take();
            const DibHead head{ takeNumber(),      takeNumber(),
                                int(takeNumber()), int(option("compression")),
                                option("used"),    option("header", 40) };
            const QByteArray table = hex("table") + QByteArray(int(option("zeros")), '\0');
            m_bitmaps.insert(name, { head.info(table), hex("bits"), int(option("usage")) });
        }
        Dib bitmapNamed(const QString &name)
        {
            EXPECT_TRUE(name == QLatin1String("none") || m_bitmaps.contains(name))
                    << name.toStdString();
            return m_bitmaps.value(name);
        }
        Box box(const char *key)
        {
            EXPECT_TRUE(m_options.contains(QLatin1String(key))) << key;
            const auto edges = options(key, { 0, 0, 0, 0 });
            return { edges[0], edges[1], edges[2], edges[3] };
        }

        void addRecord(const QString &name)
        {
            const auto type = quint32(recordNumber(name, kIsEmf));
            const QByteArray bytes = name == QLatin1String("textOut") ? textOut()
                    : name == QLatin1String("stretchDib")             ? stretch()
                    : name.endsWith(QLatin1String("Blt"))             ? transfer()
                                                                      : body();
            m_file.record(type, bytes);
        }
        // In a comment of its own, with its flags in front of its data.
        void addPlusRecord(const QString &name)
        {
            const std::string known = "EmfPlus" + name.toStdString();
            const auto *const type =
                    std::ranges::find(kEmfPlusRecordTypes, known, &RecordType::name);
            EXPECT_NE(type, std::end(kEmfPlusRecordTypes)) << known;
            const qint64 flags = takeNumber();
            QByteArray data = body();
            const qint64 size = data.size();
            data += QByteArray(-size & 3, '\0');
            m_file.record(70,
                          ByteWriter()
                                  .u32(data.size() + 16)
                                  .bytes("EMF+")
                                  .u16(int(type->number))
                                  .u16(int(flags))
                                  .u32(data.size() + 12)
                                  .u32(size)
                                  .bytes(data)
                                  .result());
        }
        QByteArray textOut()
        {
            TextRecord text{ int(takeNumber()), int(takeNumber()), string(take()) };
            text.options = quint32(option("options"));
            text.advances = options("advances");
            text.rect = options("rect", { 0, 0, 0, 0 });
            text.count = option("count", -1);
            return text.body();
        }
        QByteArray stretch()
        {
            return stretchDib(bitmapNamed(take()), box("to"), box("from"),
                              option("rop", kSourceCopy));
        }
        QByteArray transfer()
        {
            const Dib dib = bitmapNamed(take());
            const auto from = options("from", { 0, 0 });
            ByteWriter extra;
            for (const int value : options("extra"))
                extra.u32(value);
            const QString mask = m_options.take(QStringLiteral("mask"));
            return blt(dib, box("to"), from[0], from[1], option("rop", kSourceCopy), extra.result(),
                       mask.isNull() ? Dib{} : bitmapNamed(mask))
                    + body();
        }
        QByteArray body()
        {
            ByteWriter bytes;
            while (!m_words.isEmpty())
                append(bytes, take());
            return bytes.result();
        }
        void append(ByteWriter &bytes, const QString &word)
        {
            bool isNumber = true;
            if (word.startsWith(QLatin1Char('"'))) {
                for (const QChar unit : string(word))
                    kIsEmf ? bytes.u16(unit.unicode())
                           : bytes.bytes(QByteArray(1, unit.toLatin1()));
            } else if (word.startsWith(QLatin1Char('@'))) {
                bytes.bytes(bitmapNamed(word.mid(1)).packed());
            } else if (word == QLatin1String("box")) {
                bytes.u32s({ 0, 0, 0, 0 });
            } else if (word.startsWith(QLatin1Char('x'))) {
                bytes.bytes(bytesOf(word.mid(1)));
            } else if (word.endsWith(QLatin1String("inf")) || word == QLatin1String("nan")
                       || word.contains(QLatin1Char('.'))) {
                bytes.f32(word.toFloat(&isNumber));
            } else if (kIsEmf && !word.contains(QLatin1Char(','))) {
                bytes.u32(number(word));
            } else {
                for (const QString &each : word.split(QLatin1Char(',')))
                    bytes.u16(int(number(each, -0x8000, 0xFFFF)));
            }
            EXPECT_TRUE(isNumber) << word.toStdString();
        }

        Builder m_file;
        QHash<QString, Dib> m_bitmaps;
        QStringList m_words; ///< of the line, as far as they are not used up
        QHash<QString, QString> m_options; ///< the same of KEY=VALUE
    };

} // namespace

EmfBuilder emf(const QString &records, EmfBuilder file)
{
    return Interpreter<EmfBuilder>(std::move(file)).run(records);
}

WmfBuilder wmf(const QString &records, WmfBuilder file)
{
    return Interpreter<WmfBuilder>(std::move(file)).run(records);
}

} // namespace svgtool::test
