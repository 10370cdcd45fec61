#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace svgtool {

/// Style attributes as elements repeat them: in UTF-8, converted and searched once.
class StyleText
{
public:
    StyleText() = default;
    /// Implicit, for texts that are made for one element.
    StyleText(const QString &text)
        : m_utf8(text.toUtf8()), m_refersToClip(text.contains(QLatin1String("clip-path")))
    {
    }

    bool isEmpty() const { return m_utf8.isEmpty(); }
    /// The text, until this object changes.
    std::string_view view() const { return { m_utf8.constData(), size_t(m_utf8.size()) }; }
    /// Whether a "clip-path" is among the attributes.
    bool refersToClip() const { return m_refersToClip; }

private:
    QByteArray m_utf8;
    bool m_refersToClip = false;
};

} // namespace svgtool
