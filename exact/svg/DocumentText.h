#pragma once

#include "core/base/TextBuffer.h"

#include <QByteArray>

namespace svgtool {

/// The text of a document, which hosts take as a QByteArray; a copy would cost a third of the time
/// of polygons.
using DocumentText = BasicTextBuffer<QByteArray>;

} // namespace svgtool
