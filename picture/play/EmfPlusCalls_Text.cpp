#include "picture/gdiplus/GraphicsText.h"
#include "picture/play/EmfPlusCalls.h"

namespace svgtool::picture::emfplus {

using plus::PlusFields;

Played drawString(Play &play, const PlusRecord &record)
{
    PlusFields fields(record.data);
    const auto font = objectOf<plus::Font>(play, record);
    const auto brush = takeBrush(play, record, fields);
    const auto format = plus::objectAt<plus::StringFormat>(play.objects, fields.dword());
    const uint32_t length = fields.dword();
    const RectD box = fields.rect();
    const std::u16string text = fields.text(length);
    if (font == nullptr || brush == nullptr)
        return kNoObject;
    if (!fields.isSound())
        return kDamagedRecord;
    return GraphicsText(play.graphics, play.context)
            .drawString(text, *font, *brush, format != nullptr ? *format : plus::StringFormat(),
                        box);
}

Played drawDriverString(Play &play, const PlusRecord &record)
{
    PlusFields fields(record.data);
    const auto font = objectOf<plus::Font>(play, record);
    const auto brush = takeBrush(play, record, fields);
    const uint32_t options = fields.dword();
    const bool hasMatrix = fields.dword() != 0;
    const uint32_t count = fields.dword();
    const std::u16string codes = fields.text(count);
    const auto places = fields.points(count, PlusFields::PointForm::Real);
    const Affine matrix = hasMatrix ? fields.matrix() : Affine();
    if (font == nullptr || brush == nullptr)
        return kNoObject;
    if (!fields.isSound())
        return kDamagedRecord;
    return GraphicsText(play.graphics, play.context)
            .drawDriverString(codes, *font, *brush, options, places, matrix);
}

} // namespace svgtool::picture::emfplus
