#pragma once

#include <QByteArray>

#include <random>

namespace svgtool::test {

/// A small metafile of records that draw, create and select, with numbers that are likely to matter
/// (0, small, negative, huge). The same state of @p random gives the same file.
QByteArray randomEmf(std::mt19937 &random);
QByteArray randomWmf(std::mt19937 &random);

} // namespace svgtool::test
