#include "exact/style/XmlText.h"

#include "exact/logging/TraceScope.h"

namespace svgtool {

static constexpr char kTraceUnit[] = ".\\XmlText.cpp";

QString withoutForbiddenCharacters(const QString &text)
{
    SVGTOOL_TRACE("withoutForbiddenCharacters");
    QString kept;
    kept.reserve(text.size());
    for (auto it = text.cbegin(); it != text.cend(); ++it) {
        const bool isPair =
                it->isHighSurrogate() && it + 1 != text.cend() && (it + 1)->isLowSurrogate();
        if (isPair) {
            kept += *it++;
            kept += *it;
            continue;
        }
        const ushort unit = it->unicode();
        const bool isControl = unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r';
        if (!isControl && !it->isSurrogate() && unit < 0xFFFE)
            kept += *it;
    }
    return kept;
}

} // namespace svgtool
