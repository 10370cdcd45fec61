#pragma once

#include <QString>

namespace svgtool {

/// @p text without the characters that no XML document may hold: controls other than tab, line feed
/// and carriage return, unpaired surrogates, U+FFFE and U+FFFF.
QString withoutForbiddenCharacters(const QString &text);

} // namespace svgtool
