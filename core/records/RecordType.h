#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace svgtool {

enum class MetafileFormat {
    Unknown, ///< neither an EMF nor a WMF header
    Emf,
    Wmf, ///< without the placeable header
    PlaceableWmf,
};

/// What a picture lacks when a record is not carried out.
enum class Loss {
    Drawing, ///< something that the record itself would have painted
    State, ///< records behind it may paint in another way or place
    Hint, ///< nothing to be seen: it comments, ends, or asks for what a device may ignore
};

/// What is known of the records of one type.
struct RecordType
{
    uint32_t number;
    const char *name; ///< as the format's description writes it
    uint16_t leastBytes; ///< a record with all of its fields, and none of what they count
    Loss loss;
};

/// The types of a format, by number; none of an unknown one.
std::span<const RecordType> recordTypes(MetafileFormat format);

/// The type with @p number in a list sorted by number; null where it has none.
const RecordType *findRecordType(std::span<const RecordType> types, uint32_t number);

/// The type with @p number of a format; that of a record within comments of an EMF too, which are
/// those of EmfPlusRecordTypes.h. Null where it has none.
const RecordType *findRecordType(MetafileFormat format, uint32_t number);

/// What reports call the records of a type: "EMR_POLYLINE16"; its number where it has no name.
std::string recordName(MetafileFormat format, uint32_t number);

} // namespace svgtool
