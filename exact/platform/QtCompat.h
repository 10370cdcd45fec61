#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QStringDecoder>
#else
#include <QTextCodec>
#endif

// The only place that asks for Qt's version. What differs between Qt 5.15 and Qt 6 and is used
// by the library gets its common name here.

namespace svgtool {

/// @p bytes decoded by the encoding of the given name; as Latin-1 where this Qt lacks it.
inline QString decode(const QByteArray &bytes, const char *encoding)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QStringDecoder decoder(encoding);
    return decoder.isValid() ? QString(decoder(bytes)) : QString::fromLatin1(bytes);
#else
    const QTextCodec *codec = QTextCodec::codecForName(encoding);
    return codec != nullptr ? codec->toUnicode(bytes) : QString::fromLatin1(bytes);
#endif
}

} // namespace svgtool
