#pragma once

#include "cli/Files.h"
#include "cli/Results.h"

namespace svgtool {

/// The page before its results are in it, from gallery.html.
extern const char kGalleryPage[];

/// An HTML page that shows results, one behind the other as they come.
///
/// The page holds all that it shows and loads nothing. Pictures stand in it as images, in which no
/// script runs; names and reasons are escaped, and the page's policy allows no script but its own.
/// It appears, or changes, only when it is complete.
class Gallery
{
public:
    /// Begins the page @p path, in a folder that is made if need be. Throws Failure.
    explicit Gallery(const std::string &path);

    /// Writes one result with its document; keeps nothing of it. Throws Failure.
    void add(const FileResult &result);
    /// Ends the page and puts it in its place. Throws Failure.
    void finish();

private:
    OutputFile m_file;
    QByteArray m_end; ///< what comes behind the results
};

} // namespace svgtool
