#pragma once

#include "picture/api/picture.hpp"

#include <string>
#include <vector>

namespace svgtool {

/// Stands for standard input or output in place of a file's name.
inline const std::string kStandardStream = "-";

inline constexpr char kVersion[] = METAFILE2SVG_VERSION;

/// What a command line asks for. File names are bytes as the system has them, in no known encoding;
/// on Windows UTF-8.
struct Options
{
    enum class Action { Convert, PrintText, RejectUsage };
    enum class Report {
        None,
        Records, ///< --report: what became of the records
        Facts, ///< --info: the header too; nothing is written
    };

    Action action = Action::Convert;
    std::string text; ///< PrintText: what to print. RejectUsage: what is wrong. UTF-8 but for names

    std::vector<std::string> inputs; ///< files and folders, or kStandardStream alone
    std::string output; ///< file or folder; empty without -o
    std::string dumpFile; ///< where to list records; empty for nowhere
    std::string logLevel; ///< empty for none
    std::string gallery; ///< the page of all results; empty for none
    Report report = Report::None;
    bool isJson = false; ///< reports as JSON
    bool isExact = false; ///< what the library gives, and only of what it accepts
    bool isRecursive = false;
    bool isForced = false; ///< convert what is converted already
    bool isQuiet = false;
    bool isStrict = false; ///< lost drawing and damage are failures
    bool failsFast = false; ///< try no further file after one that failed
    bool keepsDocuments = false; ///< in the results, for what is made of them
    bool writes = true; ///< false for --check and --info
    int threads = 1; ///< files converted at the same time
    double width = 0; ///< of the root element, as height; 0 leaves it
    double height = 0;
    double scale = 1;
    std::string idPrefix; ///< of the document's ids; empty for one by the metafile
    double limit = 300; ///< of a document, in millions of bytes
    bool isOutlined = false; ///< letters are drawn as shapes
    PictureSource source = PictureSource::Best; ///< of a picture
};

/// Reads the arguments, without the program's name.
Options parseArguments(const std::vector<std::string> &arguments);

} // namespace svgtool
