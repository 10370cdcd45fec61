#pragma once

#include <QByteArray>
#include <QString>
#include <QTextStream>
#include <QtGlobal>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QStringDecoder>
#else
#include <QTextCodec>
#endif

// The only place that asks for Qt's version. What differs between Qt 5.15 and Qt 6 and is used
// by the library gets its common name here.

namespace svgtool {

/// Sets the encoding that @p stream writes to UTF-8.
inline void setUtf8(QTextStream &stream)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    stream.setEncoding(QStringConverter::Utf8);
#else
    stream.setCodec("UTF-8");
#endif
}

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
