#include "cli/Picture.h"

#include "cli/Files.h"
#include "picture/api/Drawing.h"

#include <algorithm>

namespace svgtool {

QByteArray drawPicture(const QByteArray &metafile, const Options &options,
                       const QByteArray &comment, FileResult &result)
{
    // The library takes nothing smaller, and nobody sees a difference.
    constexpr double kLeastSide = 0.001, kLeastScale = 1e-6, kLeastLimit = 0.01;
    PictureOptions wanted;
    wanted.width = options.width > 0 ? std::max(options.width, kLeastSide) : 0;
    wanted.height = options.height > 0 ? std::max(options.height, kLeastSide) : 0;
    wanted.scale = std::max(options.scale, kLeastScale);
    wanted.text = options.isOutlined ? PictureText::Outlines : PictureText::Characters;
    wanted.source = options.source;
    wanted.idPrefix = options.idPrefix;
    wanted.limit = std::max(options.limit, kLeastLimit);
    RecordTally records;
    const Picture picture = drawInspected({ metafile.constData(), metafile.size() }, result.facts,
                                          wanted, comment.toStdString(), records);
    if (picture.error != PictureError::None)
        throw Failure{ result.input, QString::fromUtf8(describe(picture.error)) };
    result.report = picture.report;
    result.ending = records.stop().reason;
    result.width = picture.width;
    result.height = picture.height;
    result.sizeGuess = QString::fromStdString(picture.report.sizeGuess);
    return QByteArray::fromStdString(picture.document);
}

} // namespace svgtool
