#pragma once

#include <QString>

#include <string>
#include <string_view>

// Between Qt's texts and those of the core.

namespace svgtool {

/// The units of @p text, which must outlive the view.
inline std::u16string_view unitsOf(QStringView text)
{
    return { text.utf16(), static_cast<size_t>(text.size()) };
}

inline QString toQString(std::u16string_view text)
{
    using Size = decltype(QString().size()); // int in Qt 5
    return QStringView(text.data(), static_cast<Size>(text.size())).toString();
}

} // namespace svgtool
