#include "picture/play/EmfPlusCalls.h"

namespace svgtool::picture::emfplus {

using plus::PlusFields;

namespace {

    /// What both records of images begin with ([MS-EMFPLUS] 2.3.4.8, 2.3.4.9).
    struct ImageCall
    {
        std::shared_ptr<const plus::Image> image;
        std::shared_ptr<const plus::ImageAttributes> attributes;
        RectD source;

        ImageCall(const Play &play, const PlusRecord &record, PlusFields &fields)
            : image(objectOf<plus::Image>(play, record))
        {
            attributes = plus::objectAt<plus::ImageAttributes>(play.objects, fields.dword());
            fields.skip(4); // the unit, which is a pixel
            source = fields.rect();
        }
        const plus::NestedMetafile *metafile() const
        {
            return std::get_if<plus::NestedMetafile>(image.get());
        }
    };

} // namespace

Played drawImage(Play &play, const PlusRecord &record)
{
    PlusFields fields(record.data);
    const ImageCall call(play, record, fields);
    const RectD to = box(record, fields);
    if (call.image == nullptr)
        return kNoObject;
    if (!fields.isSound())
        return kDamagedRecord;
    if (const auto *const metafile = call.metafile()) {
        const std::array corners{ PointD{ to.left, to.top }, PointD{ to.right, to.top },
                                  PointD{ to.left, to.bottom } };
        return drawMetafile(play, metafile->file, call.source, corners);
    }
    return play.graphics.drawImage(call.image, call.attributes.get(), call.source, to);
}

Played drawImagePoints(Play &play, const PlusRecord &record)
{
    constexpr uint32_t kCorners = 3;
    PlusFields fields(record.data);
    const ImageCall call(play, record, fields);
    const auto all = fields.dword() == kCorners ? takePoints(record, fields, kCorners)
                                                : std::vector<PointD>();
    if (call.image == nullptr)
        return kNoObject;
    if (!fields.isSound() || all.size() != kCorners)
        return kDamagedRecord;
    const std::span<const PointD, kCorners> corners(all);
    if (const auto *const metafile = call.metafile())
        return drawMetafile(play, metafile->file, call.source, corners);
    return play.graphics.drawImagePoints(call.image, call.attributes.get(), call.source, corners);
}

} // namespace svgtool::picture::emfplus
