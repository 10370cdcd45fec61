#pragma once

#include "picture/api/picture.hpp"

#include <cstddef>
#include <span>
#include <string_view>

namespace svgtool::fuzz {

/// Draws @p metafile and requires of picture and report what holds whatever the bytes are; also
/// that it takes less than a second of work. What is dear is done for some of the metafiles, always
/// for the same ones.
///
/// Documents are kept in the folder that the environment names in SVGTOOL_FUZZ_DOCUMENTS, if any.
void drawAndCheck(std::span<const std::byte> metafile, const PictureOptions &options = {});

/// Requires that a document is well-formed, that all its numbers are finite, and that it holds no
/// element, link or script but those that drawings are made of.
void checkDocument(std::string_view svg);

} // namespace svgtool::fuzz
