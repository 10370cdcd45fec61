#pragma once

#include "core/records/EmfPlusReader.h"
#include "picture/gdi/DeviceContext.h"
#include "picture/gdiplus/Graphics.h"
#include "picture/play/EmfPlusArguments.h"
#include "picture/play/Playing.h"

#include <functional>
#include <span>
#include <string>
#include <tuple>

namespace svgtool::picture::emfplus {

/// What the records of a file are played with.
struct Play
{
    DeviceContext &context; ///< paints letters
    Graphics graphics;
    Playing &playing;
    plus::ObjectTable objects;
    plus::ObjectParts parts;
};

// What records of EMF+ do ([MS-EMFPLUS] 2.3): each function takes the fields of one and makes a
// call of them.

/// The record is cut off or makes no sense.
inline constexpr Played kDamagedRecord =
        notDone("it is damaged: too short, or with numbers that make no sense");
inline constexpr Played kNoObject = notDone("it names an object that is not there");

/// The brush of a field that is a colour or the number of an object; null where it is none.
std::shared_ptr<const plus::Brush> takeBrush(const Play &play, const PlusRecord &record,
                                             plus::PlusFields &fields);

/// The object that the low byte of the flags names; null where it is none.
template<class T>
std::shared_ptr<const T> objectOf(const Play &play, const PlusRecord &record)
{
    return plus::objectAt<T>(play.objects, record.flags & 0xFF);
}

/// A call with what is first the same for all of its kind, then the arguments that are taken one
/// after the other.
template<auto Call, auto... Take, class... First>
Played called(Play &play, const PlusRecord &record, plus::PlusFields &fields, const First &...first)
{
    const std::tuple arguments{ Take(record, fields)... }; // in their order, thanks to the braces
    if (!fields.isSound())
        return kDamagedRecord;
    return std::apply(
            [&](const auto &...argument) {
                return std::invoke(Call, play.graphics, first..., argument...);
            },
            arguments);
}

template<auto Call, auto... Take>
Played set(Play &play, const PlusRecord &record)
{
    plus::PlusFields fields(record.data);
    return called<Call, Take...>(play, record, fields);
}

/// A call with the brush that the record begins with.
template<auto Call, auto... Take>
Played fill(Play &play, const PlusRecord &record)
{
    plus::PlusFields fields(record.data);
    const auto brush = takeBrush(play, record, fields);
    return brush != nullptr ? called<Call, Take...>(play, record, fields, *brush) : kNoObject;
}

/// A call with the brush that the record begins with, and the object that its flags name.
template<class Object, auto Call>
Played fillObject(Play &play, const PlusRecord &record)
{
    plus::PlusFields fields(record.data);
    const auto brush = takeBrush(play, record, fields);
    const auto object = objectOf<Object>(play, record);
    return brush != nullptr && object != nullptr
            ? called<Call>(play, record, fields, *brush, *object)
            : kNoObject;
}

/// A call with the pen that the flags name.
template<auto Call, auto... Take>
Played draw(Play &play, const PlusRecord &record)
{
    plus::PlusFields fields(record.data);
    const auto pen = objectOf<plus::Pen>(play, record);
    return pen != nullptr ? called<Call, Take...>(play, record, fields, *pen) : kNoObject;
}

/// A call with the object that the flags name.
template<class Object, auto Call, auto... Take>
Played setObject(Play &play, const PlusRecord &record)
{
    plus::PlusFields fields(record.data);
    const auto object = objectOf<Object>(play, record);
    return object != nullptr ? called<Call, Take...>(play, record, fields, *object) : kNoObject;
}

// Where the fields do not stand in the order of the call's arguments.
Played fillPie(Graphics &graphics, const plus::Brush &brush, double start, double sweep,
               const RectD &box);
Played fillClosedCurve(Graphics &graphics, const plus::Brush &brush, double tension,
                       const std::vector<PointD> &points, bool isWinding);
Played drawPie(Graphics &graphics, const plus::Pen &pen, double start, double sweep,
               const RectD &box);
Played drawArc(Graphics &graphics, const plus::Pen &pen, double start, double sweep,
               const RectD &box);
Played drawClosedCurve(Graphics &graphics, const plus::Pen &pen, double tension,
                       const std::vector<PointD> &points);
Played drawCurve(Graphics &graphics, const plus::Pen &pen, double tension, uint32_t first,
                 uint32_t segments, const std::vector<PointD> &points);
Played beginContainer(Graphics &graphics, const RectD &to, const RectD &from, uint32_t number,
                      plus::Unit unit);
Played beginContainerNoParams(Graphics &graphics, uint32_t number);
Played setPageTransform(Graphics &graphics, double scale, plus::Unit unit);

// What does more than a call.
Played header(Play &play, const PlusRecord &record);
Played object(Play &play, const PlusRecord &record);
Played drawPath(Play &play, const PlusRecord &record);
Played setTsGraphics(Play &play, const PlusRecord &record);
Played setTsClip(Play &play, const PlusRecord &record);
/// Plays a metafile as an image: NestedMetafile.cpp.
/// @param source   pixels of its device, as its frame is, or logical units where a placeable header
///                 has a box; all that it shows where it is empty
/// @param corners  of the source: upper left, upper right, lower left, in world units
Played drawMetafile(Play &play, const std::string &file, RectD source,
                    std::span<const PointD, 3> corners);
Played drawImage(Play &play, const PlusRecord &record);
Played drawImagePoints(Play &play, const PlusRecord &record);
Played drawString(Play &play, const PlusRecord &record);
Played drawDriverString(Play &play, const PlusRecord &record);

} // namespace svgtool::picture::emfplus
