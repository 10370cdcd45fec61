#include "picture/api/ReportJson.h"

#include <cmath>

namespace svgtool {

using Json = nlohmann::ordered_json;

const char *wordOf(RecordFate fate)
{
    switch (fate) {
    case RecordFate::Drawn:
        return "drawn";
    case RecordFate::Approximated:
        return "approximated";
    case RecordFate::NotDone:
        return "skipped";
    case RecordFate::Neutral:
        break;
    }
    return "neutral";
}

const char *wordOf(RecordsEnd end)
{
    switch (end) {
    case RecordsEnd::EndRecord:
        return "end record";
    case RecordsEnd::RecordCut:
        return "record cut off";
    case RecordsEnd::BadSize:
        return "bad record size";
    case RecordsEnd::DataEnded:
        break;
    }
    return "end of data";
}

static const char *wordOf(RecordLoss loss)
{
    switch (loss) {
    case RecordLoss::Drawing:
        return "drawing";
    case RecordLoss::State:
        return "state";
    case RecordLoss::Hint:
        break;
    }
    return "hint";
}

static Json jsonOf(const RecordLine &line)
{
    Json json{ { "name", line.name },           { "type", line.type },
               { "weight", wordOf(line.loss) }, { "outcome", wordOf(line.fate) },
               { "count", line.count },         { "firstOffset", line.firstOffset } };
    if (!line.reason.empty())
        json["reason"] = line.reason;
    return json;
}

Json jsonOf(const PictureReport &report)
{
    Json records = Json::array();
    for (const RecordLine &line : report.records)
        records.push_back(jsonOf(line));
    const RecordTotals &totals = report.totals;
    Json json{ { "totals",
                 { { "drawing", totals.drawing },
                   { "drawingLost", totals.drawingLost },
                   { "stateIgnored", totals.stateIgnored },
                   { "approximated", totals.approximated } } },
               { "records", std::move(records) },
               { "end",
                 { { "reason", wordOf(report.end) },
                   { "record", report.endRecord },
                   { "offset", report.endOffset } } } };
    for (const DamagedBytes &damage : report.damaged)
        json["damaged"].push_back({ { "offset", damage.offset }, { "bytes", damage.count } });
    if (report.unreadRecords > 0)
        json["unreadRecords"] = report.unreadRecords;
    if (report.isOfEmbeddedEmf)
        json["isOfEmbeddedEmf"] = true;
    return json;
}

// JSON may hold the controls from U+007F on as they are, but a terminal takes them for orders.
std::string textOf(const Json &json)
{
    const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::string escaped;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text[i] == '\xC2' && text[i + 1] < '\xA0';
        if (isPair || text[i] == '\x7F') {
            constexpr const char *kDigits = "0123456789abcdef";
            const auto code = uint8_t(text[isPair ? ++i : i]);
            escaped += { '\\', 'u', '0', '0', kDigits[code >> 4], kDigits[code & 15] };
        } else {
            escaped += text[i];
        }
    }
    return escaped;
}

std::string reportJson(const Picture &picture)
{
    Json json{ { "verdict", describe(verdictOf(picture)) } };
    if (picture.error != PictureError::None) {
        json["message"] = describe(picture.error);
        return textOf(json);
    }
    const auto rounded = [](double pixels) { return std::round(pixels * 1000) / 1000; };
    json["width"] = rounded(picture.width);
    json["height"] = rounded(picture.height);
    if (!picture.report.sizeGuess.empty())
        json["sizeGuess"] = picture.report.sizeGuess;
    json.update(jsonOf(picture.report));
    return textOf(json);
}

} // namespace svgtool
