// What is drawn of damaged files.

#include "core/records/RecordIterator.h"
#include "picture/api/picture.hpp"
#include "support/Corpus.h"
#include "support/Mutants.h"

#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

using namespace svgtool;
using namespace svgtool::test;

namespace {

enum class Drawing { None, Some, Invalid };

// Whether a document shows anything.
Drawing drawingOf(const std::string &file)
{
    const Picture picture = drawMetafile(std::as_bytes(std::span(file)));
    QXmlStreamReader xml(QByteArray::fromStdString(picture.document));
    bool draws = false;
    while (!xml.atEnd()) {
        xml.readNext();
        const QString name = xml.name().toString();
        if (!xml.isStartElement())
            continue;
        if (name == QLatin1String("defs") || name == QLatin1String("title")
            || name == QLatin1String("desc"))
            xml.skipCurrentElement();
        else
            draws = draws || (name != QLatin1String("svg") && name != QLatin1String("g"));
    }
    if (xml.hasError() || picture.error != PictureError::None)
        return Drawing::Invalid;
    return draws ? Drawing::Some : Drawing::None;
}

// Whether a cut metafile has records left, whole ones, that draw.
bool hasDrawing(const std::string &file, size_t bytes)
{
    const MetafileFacts facts = inspectMetafile({ file.data(), int64_t(bytes) });
    RecordIterator records(facts.format, { file.data(), int64_t(bytes) }, facts.firstRecord);
    while (records.next()) { }
    return drawingOf(file.substr(0, size_t(records.offset()))) == Drawing::Some;
}

// Of the samples and the shared collection, cut and changed. Those do not count that are cut
// before anything is drawn. SVGTOOL_MUTANTS says how many; SVGTOOL_MUTANTS_DIR where to put the
// ones of which nothing is drawn.
TEST(Recovery, DamagedFilesAreDrawn)
{
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto &[path, bytes] :
         metafilesBelow({ SVGTOOL_SAMPLES_DIR, SVGTOOL_SHARED_DIR "/corpus/emf",
                          SVGTOOL_SHARED_DIR "/corpus/wmf" })) {
        const std::string file = bytes.toStdString();
        if (file.size() < 1'000'000 && drawingOf(file) == Drawing::Some)
            files.emplace_back(path.section(QLatin1Char('/'), -1).toStdString(), file);
    }
    ASSERT_FALSE(files.empty());
    const char *const wanted = std::getenv("SVGTOOL_MUTANTS");
    const char *const folder = std::getenv("SVGTOOL_MUTANTS_DIR");
    const auto count = uint32_t(wanted != nullptr ? std::atoi(wanted) : 400);
    uint32_t missed = 0, empty = 0;
    for (uint32_t number = 0; number < count; ++number) {
        const auto &[name, file] = files[number / 2 % files.size()];
        const std::string mutant = mutantOf(file, number);
        const Drawing drawing = drawingOf(mutant);
        EXPECT_NE(drawing, Drawing::Invalid) << name << ' ' << number;
        if (drawing == Drawing::Some)
            continue;
        if (mutant.size() < file.size() && !hasDrawing(file, mutant.size())) {
            ++empty;
            continue;
        }
        ++missed;
        std::cout << "nothing is drawn of " << name << ", mutant " << number << '\n';
        if (folder != nullptr)
            std::ofstream(std::string(folder) + '/' + std::to_string(number) + '-' + name,
                          std::ios::binary)
                    << mutant;
    }
    std::cout << "of " << count << ", " << empty << " are cut before anything is drawn, " << missed
              << " are lost\n";
    EXPECT_LE(missed, (count - empty) / 100);
}

} // namespace
