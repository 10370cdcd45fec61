#pragma once

#include "core/base/Bytes.h"
#include "core/records/EmfPlusObjects.h"

#include <cstdint>
#include <optional>
#include <string>

namespace svgtool::plus {

/// Reads the data of an Object record, of any version of the format. Nothing of them is trusted.
/// @param type  ObjectType, [MS-EMFPLUS] 2.1.1.22
/// @return nothing in it where the data make no sense
Object readObject(uint32_t type, ByteView data);

/// Whether the object in a slot says something, which is not so where it could not be read.
inline bool isEmpty(const Object &object)
{
    return std::holds_alternative<std::monostate>(object);
}

/// Puts together objects whose data are divided among several records ([MS-EMFPLUS] 2.3.5.1).
class ObjectParts
{
public:
    /// Takes the data of an Object record.
    /// @param flags  of the record; bit 15 says that it holds a part
    /// @return the data of a whole object, to be used before the next call; nothing as long as
    ///         parts are missing
    std::optional<ByteView> add(uint16_t flags, ByteView data);
    /// Drops what waits for more.
    void drop();

private:
    uint16_t m_flags = 0; ///< of the object that waits, without bit 15
    uint32_t m_total = 0; ///< its bytes, or 0 where none waits
    std::string m_data; ///< no more than there was in records
    std::string m_whole; ///< the last object that was put together
};

} // namespace svgtool::plus
