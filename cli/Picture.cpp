#include "cli/Picture.h"

#include "cli/Files.h"
#include "picture/api/Drawing.h"

namespace svgtool {

QByteArray drawPicture(const QByteArray &metafile, const Options &options,
                       const QByteArray &comment, FileResult &result)
{
    PictureOptions wanted;
    wanted.width = options.width;
    wanted.height = options.height;
    wanted.scale = options.scale;
    RecordTally records;
    const Picture picture = drawInspected({ metafile.constData(), metafile.size() }, result.facts,
                                          wanted, comment.toStdString(), records);
    if (picture.error != PictureError::None)
        throw Failure{ result.input, QString::fromUtf8(describe(picture.error)) };
    result.records = records;
    result.width = picture.width;
    result.height = picture.height;
    result.isSizeGuessed = picture.report.isSizeGuessed;
    return QByteArray::fromStdString(picture.document);
}

} // namespace svgtool
