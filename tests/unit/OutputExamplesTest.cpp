// The examples of docs/output.md and of the files in tests/golden, whose README says how they are
// written: each one is a test.

#include "core/records/MetafileFacts.h"
#include "exact/svgtool/SVGInspect.h"
#include "exact/svgtool/SVGTool.h"
#include "picture/api/picture.hpp"
#include "support/Bitmaps.h"
#include "unit/Cases.h"

#include <QColor>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryFile>

#include <cstdio>
#include <map>
#include <memory>
#include <span>
#include <sstream>
#include <vector>

using namespace svgtool;
using namespace svgtool::test;

namespace {

// A block of records, or of a bitmap, and the block that says what becomes of it.
struct Example
{
    std::string name;
    std::string place;
    QString kind;
    QString script;
    QString expectedKind = {};
    std::string expected = {};
};

void PrintTo(const Example &example, std::ostream *out)
{
    *out << example.name;
}

// A heading as a part of a test's name: "Arcs of no extent" is "ArcsOfNoExtent".
QString camelCase(const QString &heading)
{
    static const QRegularExpression kOther(QStringLiteral("[^A-Za-z0-9]+"));
    QString name;
    for (const QString &word : heading.split(kOther))
        name += word.left(1).toUpper() + word.mid(1);
    return name;
}

std::string shown(const QStringList &block)
{
    return (block.join(QLatin1Char('\n')) + QLatin1Char('\n'))
            .mid(block.isEmpty() ? 1 : 0)
            .replace(QStringLiteral("␄\n"), QString())
            .replace(QStringLiteral("␣"), QStringLiteral(" "))
            .replace(QStringLiteral("⇥"), QStringLiteral("\t"))
            .replace(QStringLiteral("␍"), QStringLiteral("\r"))
            .toStdString();
}

// A heading or a fenced block of a page.
struct Block
{
    QString kind;
    int line;
    QStringList lines = {};
};

// A transcript, of a kind such as "emf svg", comes as pairs of blocks: its lines marked "> " are
// records, and those behind them say what becomes of them.
std::vector<Block> blocksOf(const QStringList &lines)
{
    const QString mark = QStringLiteral("> ");
    std::vector<Block> blocks;
    for (int i = 0; i < lines.size(); ++i) {
        const bool isFence = lines[i].startsWith(QLatin1String("```"));
        const QString kinds = isFence ? lines[i].mid(3) : lines[i];
        const bool isTranscript = isFence && kinds.contains(QLatin1Char(' '));
        if ((isFence && !isTranscript) || lines[i].startsWith(QLatin1Char('#')))
            blocks.push_back({ kinds, i + 1 });
        for (QString last; isFence && ++i < lines.size() && lines[i] != QLatin1String("```");) {
            const bool isMarked = isTranscript && lines[i].startsWith(mark);
            const int part = isMarked ? 0 : 1;
            const QString kind = kinds.section(QLatin1Char(' '), part, part);
            if (isTranscript && kind != last)
                blocks.push_back({ kind, i + 1 });
            last = kind;
            blocks.back().lines += lines[i].mid(isMarked ? mark.size() : 0);
        }
        if (i == lines.size())
            blocks.push_back({ QStringLiteral("without an end"), i });
    }
    return blocks;
}

// Blocks that are out of place, and pages that are missing or empty, become examples, too, which
// fail.
std::vector<Example> examplesOf(const QString &path)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    const QString page = path.section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
    static const QStringList kAnswers{ QStringLiteral("svg"),     QStringLiteral("tally"),
                                       QStringLiteral("dump"),    QStringLiteral("picture"),
                                       QStringLiteral("report"),  QStringLiteral("pixels"),
                                       QStringLiteral("outlines") };
    std::vector<Example> examples;
    std::map<QString, int> names;
    QString heading;
    QString before;
    size_t answered = 0;
    for (const Block &block : blocksOf(lines)) {
        const QString text = block.lines.join(QLatin1Char('\n'));
        if (block.kind.startsWith(QLatin1Char('#'))) {
            heading = camelCase(block.kind);
            if (!block.kind.startsWith(QLatin1String("###")))
                before.clear();
        } else if (block.kind == QLatin1String("before")) {
            before = text + QLatin1Char('\n');
        } else if (kAnswers.contains(block.kind) && answered < examples.size()) {
            for (; answered < examples.size(); ++answered) {
                examples[answered].expectedKind = block.kind;
                examples[answered].expected = shown(block.lines);
            }
        } else {
            QString name = page + QLatin1Char('_') + heading;
            if (const int number = ++names[name]; number > 1)
                name += QLatin1Char('_') + QString::number(number);
            examples.push_back({ name.toStdString(),
                                 path.toStdString() + ':' + std::to_string(block.line), block.kind,
                                 before + text });
        }
    }
    if (examples.empty())
        examples.push_back({ "Nothing" + camelCase(page).toStdString(),
                             path.toStdString(),
                             QStringLiteral("nothing"),
                             {} });
    return examples;
}

std::vector<Example> allExamples(const QString &folder, const QString &pages)
{
    std::vector<Example> examples;
    QStringList paths;
    for (QDirIterator found(folder, { pages }, QDir::Files); found.hasNext();)
        paths.append(found.next());
    paths.sort();
    if (paths.isEmpty())
        paths.append(folder + QLatin1Char('/') + pages);
    for (const QString &path : paths)
        for (const Example &example : examplesOf(path))
            examples.push_back(example);
    return examples;
}

std::vector<Example> documented()
{
    return allExamples(QStringLiteral(SVGTOOL_DOCS_DIR), QStringLiteral("output.md"));
}

std::vector<Example> golden(const QString &folder)
{
    return allExamples(QStringLiteral(SVGTOOL_GOLDEN_DIR) + folder, QStringLiteral("*.md"));
}

// A screen of 96 dots an inch, on which a unit is a pixel of the picture, and a frame that shows
// the usual bounds, and with some handles.
EmfBuilder screen()
{
    EmfBuilder file;
    file.device = { 960, 960, 254, 254 };
    file.frame = { 0, 0, 2646, 1323 };
    file.handles = 16;
    return file;
}

bool isOfPicture(const Example &example)
{
    return example.expectedKind == QLatin1String("picture")
            || example.expectedKind == QLatin1String("outlines")
            || example.expectedKind == QLatin1String("report")
            || example.expectedKind == QLatin1String("pixels");
}

// The whole of a bitmap drawn by an EMF and, unless its usage is one that only an EMF has, by a
// 16-bit record, which holds it in one piece. Without a placeable header a pixel is 15 units.
std::vector<QByteArray> filesOfBitmap(const QString &bitmap)
{
    const QString definition = QStringLiteral("bitmap it ") + bitmap;
    const qint64 width = bitmap.section(QLatin1Char(' '), 0, 0).toLongLong();
    const qint64 height = qAbs(bitmap.section(QLatin1Char(' '), 1, 1).toLongLong());
    const QString size = QStringLiteral("0,0,%1,%2").arg(width).arg(height);
    std::vector<QByteArray> files{
        emf(definition + QStringLiteral("\nstretchDib it to=%1 from=%1").arg(size)).build()
    };
    const QString usage = bitmap.section(QStringLiteral("usage="), 1).left(1);
    if (usage != QLatin1String("2"))
        files.push_back(wmf(QStringLiteral("file bare\n") + definition
                            + QStringLiteral("\n0x0F43 0x0020,0x00CC %1 %2 %3 0 0 %4 %5 1 0 @it")
                                      .arg(usage.isEmpty() ? QStringLiteral("0") : usage)
                                      .arg(height)
                                      .arg(width)
                                      .arg(height * 15)
                                      .arg(width * 15))
                                .build());
    return files;
}

std::vector<QByteArray> filesOf(const Example &example)
{
    if (example.kind == QLatin1String("emf"))
        return { emf(example.script, isOfPicture(example) ? screen() : EmfBuilder()).build() };
    if (example.kind == QLatin1String("wmf"))
        return { wmf(example.script).build() };
    if (example.kind == QLatin1String("bitmap"))
        return filesOfBitmap(example.script);
    return {};
}

// The document, whole or without its head and tail.
std::string svgOf(const QByteArray &file, bool isWhole)
{
    const Conversion conversion = convert(file);
    EXPECT_EQ(conversion.result, file.mid(40, 4) == " EMF" ? 1 : 2);
    if (isWhole)
        return conversion.text;
    const std::string body = conversion.body();
    // A WMF without a placeable header has a size of its own.
    return withPixels(body == conversion.text ? conversion.body(1024, 768) : body);
}

// What became of each record, told of a file that converts alike when nothing is counted.
std::string tallyOf(const QByteArray &file)
{
    static constexpr const char *kOutcomes[] = { "drawn", "approximated", "skipped", "neutral" };
    static constexpr const char *kStops[] = { "none",  "end", "count", "length",
                                              "ended", "cut", "size" };
    QByteArray plain;
    QByteArray counted;
    svgtool::RecordTally tally;
    const qint32 result = convertMetaFile(file, counted, &tally);
    EXPECT_GT(result, 0);
    EXPECT_EQ(ConvertMetaFileToSVG(file, plain), result);
    EXPECT_EQ(plain, counted);
    const MetafileFormat format = inspectMetafile({ file.constData(), file.size() }).format;
    std::ostringstream text;
    for (const RecordTally::Line &line : tally.lines())
        text << recordName(format, line.type) << ' ' << kOutcomes[size_t(line.outcome)] << ' '
             << line.count << " @" << line.firstOffset << '\n';
    const RecordTally::Stop &stop = tally.stop();
    text << kStops[size_t(stop.reason)] << ' ' << stop.record << " @" << stop.offset << '\n';
    return text.str();
}

Picture pictureOf(const QByteArray &file, PictureText text = PictureText::Characters)
{
    PictureOptions options;
    options.idPrefix = "p";
    options.text = text;
    Picture picture =
            drawMetafile(std::as_bytes(std::span(file.constData(), size_t(file.size()))), options);
    EXPECT_EQ(picture.error, PictureError::None);
    return picture;
}

// The picture's document, whole or without its first line and its last.
std::string pictureText(const QByteArray &file, PictureText text, bool isWhole)
{
    const std::string document = withPixels(pictureOf(file, text).document);
    const size_t start = document.find('\n') + 1;
    const std::string end = "</svg>\n";
    EXPECT_TRUE(document.starts_with("<svg ") && document.ends_with(end)) << document;
    return isWhole ? document : document.substr(start, document.size() - start - end.size());
}

// What the report of a picture says, a line each.
std::string reportOf(const QByteArray &file)
{
    static constexpr const char *kFates[] = { "drawn", "approximated", "not done", "neutral" };
    const PictureReport report = pictureOf(file).report;
    std::ostringstream text;
    for (const RecordLine &line : report.records)
        text << (line.name.empty() ? "EMR " + std::to_string(line.type) : line.name) << ' '
             << kFates[size_t(line.fate)] << ' ' << line.count << " @" << line.firstOffset
             << (line.reason.empty() ? "" : ": ") << line.reason << '\n';
    for (const DamagedBytes &damaged : report.damaged)
        text << "damaged " << damaged.count << " @" << damaged.offset << '\n';
    text << (report.isWhole ? "whole\n" : "not whole\n");
    return text.str();
}

// The document as a viewer shows it on white paper.
QImage rendered(const QByteArray &document)
{
    QTemporaryFile file;
    if (!file.open() || file.write(document) != document.size() || !file.flush())
        return {};
    const std::string command =
            "rsvg-convert --background-color=white " + file.fileName().toStdString();
    const std::unique_ptr<FILE, int (*)(FILE *)> pipe(popen(command.c_str(), "r"), pclose);
    QFile png;
    return pipe && png.open(pipe.get(), QIODevice::ReadOnly) ? QImage::fromData(png.readAll())
                                                             : QImage();
}

// The colours that the picture has at the points of the lines "X,Y COLOUR".
std::string pixelsOf(const QByteArray &file, const std::string &asked)
{
    const QImage image = rendered(QByteArray::fromStdString(pictureOf(file).document));
    std::istringstream lines(asked);
    std::ostringstream text;
    for (std::string line; std::getline(lines, line);) {
        const QStringList point = QString::fromStdString(line)
                                          .section(QLatin1Char(' '), 0, 0)
                                          .split(QLatin1Char(','));
        const QColor color = image.pixelColor(point.value(0).toInt(), point.value(1).toInt());
        text << point.join(QLatin1Char(',')).toStdString() << ' '
             << color.name().mid(1).toStdString() << '\n';
    }
    return text.str();
}

std::string dumpOf(const QByteArray &file)
{
    QTemporaryFile dump;
    QString reason;
    QByteArray svg;
    EXPECT_TRUE(dump.open() && startRecordDump(dump.handle(), &reason)) << reason.toStdString();
    EXPECT_GT(convertMetaFile(file, svg, nullptr), 0);
    EXPECT_TRUE(stopRecordDump(&reason)) << reason.toStdString();
    EXPECT_TRUE(dump.seek(0));
    return dump.readAll().toStdString();
}

class Output : public testing::TestWithParam<Example>
{
};

TEST_P(Output, IsExact)
{
    const Example &example = GetParam();
    SCOPED_TRACE(example.place);
    const std::vector<QByteArray> files = filesOf(example);
    ASSERT_FALSE(files.empty()) << "a block out of place: " << example.kind.toStdString();
    ASSERT_FALSE(example.expectedKind.isEmpty()) << "nothing says what becomes of the block";
    for (const QByteArray &file : files) {
        if (example.expectedKind == QLatin1String("tally"))
            EXPECT_EQ(tallyOf(file), example.expected);
        else if (example.expectedKind == QLatin1String("dump"))
            EXPECT_EQ(dumpOf(file), example.expected);
        else if (example.expectedKind == QLatin1String("picture"))
            EXPECT_EQ(pictureText(file, PictureText::Characters,
                                  example.expected.starts_with("<svg ")),
                      example.expected);
        else if (example.expectedKind == QLatin1String("outlines"))
            EXPECT_EQ(
                    pictureText(file, PictureText::Outlines, example.expected.starts_with("<svg ")),
                    example.expected);
        else if (example.expectedKind == QLatin1String("report"))
            EXPECT_EQ(reportOf(file), example.expected);
        else if (example.expectedKind == QLatin1String("pixels"))
            EXPECT_EQ(pixelsOf(file, example.expected), example.expected);
        else
            EXPECT_EQ(svgOf(file, example.expected.rfind("<?xml", 0) == 0), example.expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Documented, Output, testing::ValuesIn(documented()),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Golden, Output, testing::ValuesIn(golden({})),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Picture, Output, testing::ValuesIn(golden(QStringLiteral("/picture"))),
                         testing::PrintToStringParamName());

} // namespace
