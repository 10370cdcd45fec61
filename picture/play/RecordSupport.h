#pragma once

#include "picture/gdi/Played.h"

#include <cstdint>
#include <vector>

namespace svgtool::picture {

/// What is done with sound records of one type.
struct RecordSupport
{
    uint32_t type;
    Played best; ///< what becomes of one that nothing is wrong with
};

/// All types of a format, by number: what the documentation's table is made from.
std::vector<RecordSupport> emfSupport();
std::vector<RecordSupport> wmfSupport();
std::vector<RecordSupport> emfPlusSupport();

/// Of rows of a player, whose function is @p neutral where nothing is done.
template<class Rows, class Function>
std::vector<RecordSupport> supportOf(const Rows &rows, Function neutral)
{
    std::vector<RecordSupport> list;
    for (const auto &row : rows)
        list.push_back({ row.type, row.play == neutral ? kNeutral : row.otherwise });
    return list;
}

} // namespace svgtool::picture
