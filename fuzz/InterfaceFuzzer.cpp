// The interface for C: options of any size and with any values, any bytes as the metafile, and
// what is asked of a picture in any order.

#include "fuzz/Choices.h"
#include "fuzz/Harness.h"
#include "fuzz/PictureChecks.h"
#include "picture/api/picture.h"
#include "support/EmfBuilder.h"

#include <nlohmann/json.hpp>

#include <cstring>
#include <memory>
#include <vector>

namespace {

using svgtool::fuzz::Choices;
using svgtool::fuzz::require;

double size(Choices &from)
{
    constexpr double kSizes[] = { 0, 0, 0, 1, 100, 0.001, 0.0009, 1e6, 1.1e6, -1, 1e300 };
    return from.oneIn(4) ? double(from.real()) : from.one(kSizes);
}

// A caller's options, which may have less than ours or more behind them.
std::vector<unsigned char> takeOptions(Choices &from, const char *prefix)
{
    svgtool_options options = SVGTOOL_OPTIONS_INIT;
    options.width = size(from);
    options.height = size(from);
    options.scale = from.oneIn(2) ? 1 : size(from);
    options.id_prefix = prefix;
    options.text = from.oneIn(8) ? from.number() : int32_t(from.below(2));
    options.source = from.oneIn(8) ? from.number() : int32_t(from.below(3));
    constexpr size_t kSizes[] = {
        sizeof options,     sizeof options, sizeof options, 0, 4, sizeof(size_t), 24, 36,
        sizeof options + 16
    };
    options.size = from.one(kSizes);
    std::vector<unsigned char> bytes(std::max(options.size, sizeof options.size));
    std::memcpy(bytes.data(), &options, std::min(bytes.size(), sizeof options));
    if (bytes.size() > sizeof options && from.oneIn(2))
        bytes.back() = 1;
    return bytes;
}

void checkTexts(svgtool_picture *picture)
{
    size_t length = 0;
    const char *const document = svgtool_picture_document(picture, &length);
    require(document[length] == '\0' && document == svgtool_picture_document(picture, nullptr));
    const bool isDrawn = svgtool_picture_error(picture) == SVGTOOL_ERROR_NONE;
    require(isDrawn == (length > 0) && isDrawn == (svgtool_picture_width(picture) > 0)
            && isDrawn == (svgtool_picture_height(picture) > 0)
            && isDrawn == (svgtool_picture_verdict(picture) != SVGTOOL_VERDICT_REFUSED));
    if (isDrawn)
        svgtool::fuzz::checkDocument({ document, length });
    const char *const report = svgtool_picture_report(picture, &length);
    require(report[length] == '\0' && report == svgtool_picture_report(picture, nullptr));
    require(nlohmann::json::accept(report, report + length));
    require(svgtool_picture_error(picture) != SVGTOOL_ERROR_OUT_OF_MEMORY
            && svgtool_picture_error(picture) != SVGTOOL_ERROR_INTERNAL);
}

// Sound records of any contents, or any bytes.
QByteArray metafile(Choices &from)
{
    if (from.oneIn(4))
        return from.bytes(int(from.below(300)));
    svgtool::test::EmfBuilder emf;
    while (!from.isEmpty()) {
        const uint32_t type = from.below(123);
        emf.record(type, from.bytes(4 * int(from.below(32))));
    }
    return emf.build();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Choices from(data, size);
    const QByteArray prefix =
            from.oneIn(2) ? QByteArray(from.one({ "a", "p-1_" })) : from.bytes(int(from.below(70)));
    const auto options = takeOptions(from, from.oneIn(4) ? nullptr : prefix.constData());
    const bool hasOptions = !from.oneIn(4);
    const QByteArray bytes = metafile(from);
    const std::unique_ptr<svgtool_picture, decltype(&svgtool_picture_free)> picture(
            svgtool_draw(bytes.isEmpty() ? nullptr : bytes.constData(), size_t(bytes.size()),
                         hasOptions ? reinterpret_cast<const svgtool_options *>(options.data())
                                    : nullptr),
            &svgtool_picture_free);
    require(picture != nullptr);
    checkTexts(picture.get());
    svgtool_picture_free(nullptr);
    require(svgtool_error_text(svgtool_error(from.below(8)))[0] != '\0'
            && svgtool_verdict_text(svgtool_verdict(from.below(8)))[0] != '\0');
    require(svgtool_picture_error(nullptr) == SVGTOOL_ERROR_OUT_OF_MEMORY);
    return 0;
}
