#include "core/base/Gzip.h"
#include "picture/api/picture.h"
#include "picture/api/picture.hpp"
#include "support/Corpus.h"
#include "support/EmfBuilder.h"
#include "support/WmfBuilder.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <cmath>
#include <cstdlib>
#include <thread>

namespace svgtool::test {
namespace {

    Picture draw(const QByteArray &file, const PictureOptions &options = {})
    {
        return drawMetafile(std::as_bytes(std::span(file.constData(), size_t(file.size()))),
                            options);
    }

    // 200 by 100 pixels at 96 dots an inch.
    EmfBuilder plain()
    {
        EmfBuilder file;
        file.device = { 960, 960, 254, 254 };
        file.frame = { 0, 0, 5292, 2646 };
        return file.record(43, { 10, 10, 60, 40 });
    }

    struct SizeCase
    {
        const char *name;
        PictureOptions options;
        double width, height; ///< 0 for options that are refused
    };

    const double kNaN = std::nan(""), kInfinite = HUGE_VAL;
    const SizeCase kSizes[] = {
        { "natural", {}, 200, 100 },
        { "byWidth", { 50, 0, 1, {} }, 50, 25 },
        { "byHeight", { 0, 50, 9, {} }, 100, 50 },
        { "ofAnotherShape", { 30, 30, 1, {} }, 30, 30 },
        { "scaled", { 0, 0, 2.5, {} }, 500, 250 },
        { "asLongAsViewersTake", { 0, 0, 1000, {} }, 5792.619, 2896.309 },
        { "asShortAsThereIsAPixel", { 0, 0, 1e-6, {} }, 1, 1 },
        { "longAsAskedFor", { 1e6, 0, 1, {} }, 1e6, 5e5 },
        { "tooLong", { 1e6 + 1, 0, 1, {} }, 0, 0 },
        { "tooShort", { 0, 1e-4, 1, {} }, 0, 0 },
        { "negative", { -1, 0, 1, {} }, 0, 0 },
        { "noNumber", { 0, kNaN, 1, {} }, 0, 0 },
        { "infinite", { kInfinite, 0, 1, {} }, 0, 0 },
        { "scaledByNothing", { 0, 0, 0, {} }, 0, 0 },
        { "scaledByNoNumber", { 0, 0, kNaN, {} }, 0, 0 },
        { "prefix", { 0, 0, 1, "a-Z_09" }, 200, 100 },
        { "prefixOfDigits", { 0, 0, 1, "9a" }, 0, 0 },
        { "prefixOfMarkup", { 0, 0, 1, "a\"" }, 0, 0 },
        { "prefixTooLong", { 0, 0, 1, std::string(65, 'a') }, 0, 0 },
        { "withoutRoom", { 0, 0, 1, {}, {}, {}, 0.009 }, 0, 0 },
        { "withoutNumberOfBytes", { 0, 0, 1, {}, {}, {}, kNaN }, 0, 0 },
    };

    void PrintTo(const SizeCase &row, std::ostream *out)
    {
        *out << row.name;
    }

    class PictureSize : public testing::TestWithParam<SizeCase>
    {
    };

    TEST_P(PictureSize, FollowsTheOptions)
    {
        const SizeCase &row = GetParam();
        const Picture picture = draw(plain().build(), row.options);
        const bool isRefused = row.width == 0;
        EXPECT_EQ(picture.error, isRefused ? PictureError::BadOptions : PictureError::None);
        EXPECT_EQ(picture.document.empty(), isRefused);
        EXPECT_NEAR(picture.width, row.width, 5e-4);
        EXPECT_NEAR(picture.height, row.height, 5e-4);
    }

    INSTANTIATE_TEST_SUITE_P(Options, PictureSize, testing::ValuesIn(kSizes),
                             testing::PrintToStringParamName());

    TEST(PicturePaper, IsAsLargeWhateverItWasPrintedFor)
    {
        const std::vector<int> devices[] = {
            { 4960, 7016, 210, 297 }, // 600 dots an inch
            { 14031, 19843, 297, 420 }, // 1200, of a larger sheet
            { 1920, 1080, 508, 286 }, // a screen, of whole pixels
        };
        for (const std::vector<int> &device : devices) {
            EmfBuilder file;
            file.device = device;
            file.frame = { 0, 0, 21000, 29700 }; // A4
            const Picture picture = draw(file.record(43, { 10, 10, 60, 40 }).build());
            EXPECT_NEAR(picture.width, 210 / 25.4 * 96, 0.6);
            EXPECT_NEAR(picture.height, 297 / 25.4 * 96, 0.6);
        }
    }
    // A file with a clip, and so with an id.
    EmfBuilder clipped(int right)
    {
        EmfBuilder file = plain();
        return file.record(59)
                .record(42, { 0, 0, right, 50 })
                .record(60)
                .record(67, { 5 })
                .record(43, { 0, 0, 90, 90 });
    }

    std::string idOf(const Picture &picture)
    {
        const size_t at = picture.document.find(" id=\"") + 5;
        return picture.document.substr(at, picture.document.find('"', at) - at);
    }

    TEST(PicturePrefix, IsOfTheContentUnlessItIsGiven)
    {
        const std::string id = idOf(draw(clipped(50).build()));
        EXPECT_EQ(id, idOf(draw(clipped(50).build())));
        EXPECT_NE(id.substr(0, 6), idOf(draw(clipped(51).build())).substr(0, 6));
        EXPECT_TRUE(id.size() > 6 && std::isalpha(id[0])) << id;
        PictureOptions options;
        options.idPrefix = "mine-";
        EXPECT_TRUE(idOf(draw(clipped(50).build(), options)).starts_with("mine-"));
    }

    // A line that is too long is left out, and what lies behind it is there.
    TEST(PictureLimit, LeavesOutWhatDoesNotFit)
    {
        constexpr int kPoints = 4000;
        ByteWriter line;
        line.u32s({ 0, 0, 0, 0, kPoints });
        for (int i = 0; i < kPoints; ++i)
            line.u16(i * 37 % 200).u16(i * 59 % 100);
        const QByteArray file =
                plain().record(87, line.result()).record(42, { 70, 10, 90, 40 }).build();
        const Picture whole = draw(file);
        EXPECT_GT(whole.document.size(), 20000U);
        EXPECT_EQ(verdictOf(whole), PictureVerdict::Complete);
        PictureOptions options;
        options.limit = 0.01;
        const Picture picture = draw(file, options);
        EXPECT_LE(picture.document.size(), 10000U);
        EXPECT_NE(picture.document.find("<rect"), std::string::npos);
        EXPECT_NE(picture.document.find("<ellipse"), std::string::npos);
        EXPECT_EQ(verdictOf(picture), PictureVerdict::Lost);
        EXPECT_EQ(picture.report.totals.drawing, 3U);
        EXPECT_EQ(picture.report.totals.drawingLost, 1U);
        const RecordLine &lost = picture.report.records.back();
        EXPECT_EQ(lost.name, "EMR_POLYLINE16");
        EXPECT_EQ(lost.fate, RecordFate::NotDone);
        EXPECT_EQ(lost.firstOffset, 112);
        EXPECT_EQ(lost.reason, "the document would get larger than it may");
    }

    // The description of a header: its text, at an offset, said to have as many units.
    Picture described(const QString &text, qint64 offset, qint64 units)
    {
        EmfBuilder file = plain();
        for (const QChar unit : text)
            file.headerExtra += ByteWriter().u16(unit.unicode()).result();
        QByteArray bytes = file.build();
        bytes.replace(60, 8, ByteWriter().u32s({ units, offset }).result());
        return draw(bytes);
    }

    TEST(PictureDescription, IsTitleAndMaker)
    {
        const QString text = QString::fromUtf16(u"A&B \0<Gr\u00F6\u00DFe>\0\0", 14);
        const std::string document = described(text, 88, 14).document;
        EXPECT_NE(document.find("<title>&lt;Gr\u00F6\u00DFe&gt;</title>"), document.npos);
        EXPECT_NE(document.find("<desc>A&amp;B</desc>"), document.npos);
        // Not in the header: the fixed part, beyond its end, longer than it.
        for (const auto &[offset, units] :
             { std::pair(40, 14), std::pair(116, 1), std::pair(88, 15), std::pair(90, 1 << 30) }) {
            const Picture picture = described(text, offset, units);
            EXPECT_EQ(picture.error, PictureError::None);
            EXPECT_EQ(picture.document.find("<title>"), document.npos) << offset;
            EXPECT_EQ(picture.document.find("<desc>"), document.npos) << offset;
        }
    }

    TEST(PictureReport, TellsWhatIsWrongWithAFile)
    {
        const QByteArray whole = plain().record(8000, { 1 }).build();
        const Picture good = draw(whole);
        EXPECT_TRUE(good.report.isWhole && !good.report.isHeaderWrong
                    && good.report.sizeGuess.empty());
        EXPECT_EQ(good.report.endRecord, 4U);
        EXPECT_EQ(good.report.endOffset, 88 + 24 + 12);
        ASSERT_EQ(good.report.records.size(), 2U);
        const RecordLine &unknown = good.report.records[1];
        EXPECT_EQ(unknown.name, "EMR 8000");
        EXPECT_EQ(unknown.fate, RecordFate::NotDone);
        EXPECT_EQ(unknown.loss, RecordLoss::Drawing);
        EXPECT_EQ(unknown.firstOffset, 112);
        EXPECT_FALSE(unknown.reason.empty());
        EXPECT_EQ(verdictOf(good), PictureVerdict::Lost);
        EXPECT_EQ(reportJson(good),
                  R"({"verdict":"lost","width":200.0,"height":100.0,)"
                  R"("totals":{"drawing":2,"drawingLost":1,"stateIgnored":0,"approximated":0},)"
                  R"("records":[{"name":"EMR_RECTANGLE","type":43,"weight":"drawing",)"
                  R"("outcome":"drawn","count":1,"firstOffset":88},{"name":"EMR 8000",)"
                  R"("type":8000,"weight":"drawing","outcome":"skipped","count":1,)"
                  R"("firstOffset":112,"reason":"its type is not known"}],)"
                  R"("end":{"reason":"end record","record":4,"offset":124}})");
        EXPECT_EQ(verdictOf(draw(plain().build())), PictureVerdict::Complete);
        EXPECT_EQ(verdictOf(draw(plain().record(37, { 9 }).build())), PictureVerdict::Approximated);
        EXPECT_EQ(reportJson(draw("no metafile")),
                  R"({"verdict":"refused","message":"this is not a metafile: )"
                  R"(it has neither an EMF nor a WMF header"})");

        const Picture cut = draw(whole.left(120));
        EXPECT_TRUE(!cut.report.isWhole && cut.report.isHeaderWrong);
        EXPECT_EQ(verdictOf(cut), PictureVerdict::Damaged);
        EXPECT_EQ(cut.report.end, RecordsEnd::RecordCut);
        EXPECT_EQ(cut.report.endOffset, 112);
        QByteArray moved = plain().build(); // its header says that it is longer
        moved.replace(4, 4, ByteWriter().u32(500).result());
        const Picture found = draw(moved);
        EXPECT_TRUE(found.report.isWhole && found.report.isHeaderWrong);
        EXPECT_EQ(found.document.substr(found.document.find("<rect")),
                  good.document.substr(good.document.find("<rect")));
        WmfBuilder wmf = WmfBuilder().placeable(0, 0, 96, 48, 96).record(0x0213, { 9, 9 });
        const Picture other = draw(wmf.build());
        EXPECT_TRUE(other.report.isWhole && !other.report.isHeaderWrong);
        EXPECT_EQ(other.report.endOffset, 22 + 18 + 10);
        wmf.size = 4; // words: the line lies beyond, even if they leave out the header
        EXPECT_TRUE(draw(wmf.build()).report.isHeaderWrong);
        EmfBuilder flat = plain();
        flat.frame = { 0, 0, 0, 0 };
        const Picture guessed = draw(flat.build());
        EXPECT_FALSE(guessed.report.sizeGuess.empty());
        EXPECT_EQ(guessed.width, 101); // its bounds, which are inclusive
    }

    TEST(Gzip, IsUnpackedIfItIsWhole)
    {
        const QByteArray file = plain().build();
        const auto size = int(file.size());
        const QByteArray head("\x1F\x8B\x08\0\0\0\0\0\0\x03\x01", 11); // one block, stored
        const uint32_t sum = libdeflate_crc32(0, file.constData(), size_t(size));
        const QByteArray packed = ByteWriter()
                                          .bytes(head)
                                          .u16s({ size, ~size })
                                          .bytes(file)
                                          .u32s({ sum, size })
                                          .result();
        const std::string document = draw(file).document;
        EXPECT_EQ(draw(packed).document, document);
        EXPECT_EQ(draw(packed + "more").document, document);
        EXPECT_EQ(draw(packed.left(packed.size() - 1)).error, PictureError::DamagedGzip);
        EXPECT_EQ(draw(QByteArray(packed).replace(50, 1, "!")).error, PictureError::DamagedGzip);
    }

    TEST(Gzip, IsRefusedWhereItIsToBecomeHuge)
    {
        const auto errorOf = [](size_t mebibytes) {
            const std::string zeros(mebibytes << 20, '\0');
            return draw(QByteArray::fromStdString(
                                packGzip({ zeros.data(), int64_t(zeros.size()) })))
                    .error;
        };
        EXPECT_EQ(errorOf(32), PictureError::NotAMetafile); // which it is when it is unpacked
        EXPECT_EQ(errorOf(33), PictureError::TooLarge);
    }

    TEST(PictureText, StaysTextWhereItHasNoOutlines)
    {
        PictureOptions options;
        options.text = PictureText::Outlines;
        // Two letters of Hebrew.
        const TextRecord text{ 10, 50, QStringLiteral("\u05D0\u05D1") };
        const Picture picture = draw(plain().record(84, text.body()).build(), options);
        EXPECT_NE(picture.document.find("<text"), std::string::npos);
        ASSERT_EQ(picture.report.records.size(), 2U);
        const RecordLine &line = picture.report.records[1];
        EXPECT_EQ(line.fate, RecordFate::Approximated);
        EXPECT_EQ(line.reason, "its letters join or change places, so that it stays text");
    }

    // A WMF of a line, with an EMF in two parts of which the second has @p cut bytes less.
    QByteArray withEmf(const QByteArray &emf, int checksum, int cut = 0)
    {
        const auto half = int(emf.size() / 2), rest = int(emf.size()) - half - cut;
        const auto part = [&](int first, int size, int left) {
            return ByteWriter()
                    .u16s({ 15, 34 + size })
                    .bytes("WMFC")
                    .u32s({ 1, 0x10000 })
                    .u16(checksum)
                    .u32s({ 0, 2, size, left, emf.size() })
                    .bytes(emf.mid(first, size))
                    .result();
        };
        return WmfBuilder()
                .placeable(0, 0, 96, 48, 96)
                .record(0x0626, part(0, half, half + cut))
                .record(0x0626, part(half, rest, 0))
                .record(0x0213, { 9, 9 })
                .build();
    }

    TEST(EmbeddedEmf, IsDrawnIfItIsWhole)
    {
        const QByteArray emf = plain().build();
        int mixed = 0;
        for (int i = 0; i < emf.size(); i += 2)
            mixed ^= (emf[i] & 0xFF) | (emf[i + 1] & 0xFF) << 8;
        const std::string alone = draw(emf).document;
        const Picture picture = draw(withEmf(emf, ~mixed));
        EXPECT_TRUE(picture.report.isOfEmbeddedEmf);
        EXPECT_EQ(picture.document, alone);

        // GDI's way: the words of the whole file, without the placeable header, make 0.
        int sum = 0;
        const QByteArray unchecked = withEmf(emf, 0);
        for (int i = 22; i < unchecked.size(); i += 2)
            sum += (unchecked[i] & 0xFF) | (unchecked[i + 1] & 0xFF) << 8;
        QByteArray summed = unchecked; // of which the first part counts
        summed.replace(22 + 18 + 22, 2, ByteWriter().u16(-sum).result());
        EXPECT_EQ(draw(summed).document, alone);

        PictureOptions asWmf;
        asWmf.source = PictureSource::Wmf;
        EXPECT_EQ(draw(withEmf(emf, ~mixed), asWmf).width, 96);
        for (const Picture &damaged :
             { draw(unchecked), draw(withEmf(emf, ~mixed, 2)), draw(withEmf(emf.left(100), 0)) }) {
            EXPECT_FALSE(damaged.report.isOfEmbeddedEmf);
            EXPECT_EQ(damaged.width, 96);
            ASSERT_EQ(damaged.report.records.size(), 2U);
            EXPECT_EQ(damaged.report.records[1].reason, "the EMF that it is a part of is damaged");
        }
    }

    TEST(PictureError, SaysWhyThereIsNone)
    {
        EXPECT_EQ(draw({}).error, PictureError::NotAMetafile);
        EXPECT_EQ(draw(QByteArray(100, 'x')).error, PictureError::NotAMetafile);
        EXPECT_EQ(draw("\x1F\x8B and no more of it").error, PictureError::DamagedGzip);
        EXPECT_STREQ(describe(PictureError::OutOfMemory), "there is not enough memory");
        EXPECT_NE(describe(static_cast<PictureError>(99)), nullptr);
    }

    // Each thread begins elsewhere, so that different files are drawn at a time. SVGTOOL_ROUNDS
    // says how often, then with the whole corpus.
    TEST(PictureThreads, GiveEqualDocuments)
    {
        std::vector<std::pair<QByteArray, std::string>> files;
        const char *const wanted = std::getenv("SVGTOOL_ROUNDS");
        const size_t rounds = wanted ? std::strtoul(wanted, nullptr, 10) : 1;
        const char *const folder =
                wanted ? SVGTOOL_SHARED_DIR "/corpus" : SVGTOOL_SHARED_DIR "/reference";
        for (const auto &[path, bytes] : metafilesBelow({ SVGTOOL_SAMPLES_DIR, folder }))
            files.emplace_back(bytes, draw(bytes).document);
        ASSERT_GE(files.size(), 3U);
        constexpr size_t kThreads = 32;
        std::vector<std::thread> threads;
        for (size_t first = 0; first < kThreads; ++first)
            threads.emplace_back([&files, first, rounds] {
                for (size_t i = 0; i < files.size() * rounds; ++i) {
                    const auto &[bytes, alone] = files[(first * 7 + i) % files.size()];
                    EXPECT_EQ(draw(bytes).document, alone) << (first * 7 + i) % files.size();
                }
            });
        for (std::thread &thread : threads)
            thread.join();
    }

    TEST(PictureInC, SaysTheSame)
    {
        const QByteArray file = plain().record(8000, { 1 }).build();
        PictureOptions options;
        options.width = 50;
        options.idPrefix = "own";
        const Picture expected = draw(file, options);
        svgtool_options wanted = SVGTOOL_OPTIONS_INIT;
        wanted.width = 50;
        wanted.id_prefix = "own";
        svgtool_picture *const picture =
                svgtool_draw(file.constData(), size_t(file.size()), &wanted);
        EXPECT_EQ(svgtool_picture_error(picture), SVGTOOL_ERROR_NONE);
        EXPECT_EQ(svgtool_picture_verdict(picture), SVGTOOL_VERDICT_LOST);
        size_t length = 0;
        EXPECT_EQ(svgtool_picture_document(picture, &length), expected.document);
        EXPECT_EQ(length, expected.document.size());
        EXPECT_EQ(svgtool_picture_width(picture), 50);
        EXPECT_EQ(svgtool_picture_height(picture), 25);
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(svgtool_picture_report(picture, &length), reportJson(expected));
        svgtool_picture_free(picture);
        EXPECT_STREQ(svgtool_error_text(SVGTOOL_ERROR_OUT_OF_MEMORY), "there is not enough memory");
        EXPECT_STREQ(svgtool_verdict_text(SVGTOOL_VERDICT_LOST), "lost");
    }

    TEST(PictureInC, TakesOptionsOfOtherVersions)
    {
        struct Later
        {
            svgtool_options known = SVGTOOL_OPTIONS_INIT;
            int64_t news = 0;
        };
        const QByteArray file = plain().build();
        const auto errorOf = [&file](const svgtool_options *options) {
            svgtool_picture *const picture =
                    svgtool_draw(file.constData(), size_t(file.size()), options);
            const svgtool_error error = svgtool_picture_error(picture);
            EXPECT_EQ(*svgtool_picture_document(picture, nullptr) == '\0', error != 0);
            svgtool_picture_free(picture);
            return error;
        };
        svgtool_options earlier = SVGTOOL_OPTIONS_INIT;
        earlier.size = offsetof(svgtool_options, scale);
        earlier.scale = -1; // is not there
        EXPECT_EQ(errorOf(&earlier), SVGTOOL_ERROR_NONE);
        earlier = SVGTOOL_OPTIONS_INIT;
        earlier.size = offsetof(svgtool_options, id_prefix) + sizeof(char *) / 2;
        earlier.id_prefix = "prefix"; // half of which is not there
        EXPECT_EQ(errorOf(&earlier), SVGTOOL_ERROR_NONE);
        Later later;
        later.known.size = sizeof later;
        EXPECT_EQ(errorOf(&later.known), SVGTOOL_ERROR_NONE);
        later.news = 1;
        EXPECT_EQ(errorOf(&later.known), SVGTOOL_ERROR_BAD_OPTIONS);
        svgtool_options wrong = SVGTOOL_OPTIONS_INIT;
        wrong.text = 2;
        EXPECT_EQ(errorOf(&wrong), SVGTOOL_ERROR_BAD_OPTIONS);
        wrong = SVGTOOL_OPTIONS_INIT;
        wrong.size = 0;
        EXPECT_EQ(errorOf(&wrong), SVGTOOL_ERROR_BAD_OPTIONS);
        EXPECT_EQ(errorOf(nullptr), SVGTOOL_ERROR_NONE);
        EXPECT_EQ(svgtool_picture_error(nullptr), SVGTOOL_ERROR_OUT_OF_MEMORY);
        EXPECT_STREQ(svgtool_picture_report(nullptr, nullptr), "");
        svgtool_picture *const empty = svgtool_draw(nullptr, 0, nullptr);
        EXPECT_EQ(svgtool_picture_error(empty), SVGTOOL_ERROR_NOT_A_METAFILE);
        EXPECT_STREQ(svgtool_picture_report(empty, nullptr),
                     R"({"verdict":"refused","message":"this is not a metafile: )"
                     R"(it has neither an EMF nor a WMF header"})");
        svgtool_picture_free(empty);
    }

} // namespace
} // namespace svgtool::test
