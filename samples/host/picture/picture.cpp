#include <svgtool/picture.hpp>

#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

// Draws the metafile named first, 800 pixels wide, on standard output, and tells on standard error
// what the picture lacks.
int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    std::ifstream file(argv[1], std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});

    svgtool::PictureOptions options;
    options.width = 800;
    const svgtool::Picture picture =
            svgtool::drawMetafile(std::as_bytes(std::span(bytes)), options);
    if (picture.error != svgtool::PictureError::None) {
        std::cerr << argv[1] << ": " << svgtool::describe(picture.error) << '\n';
        return 1;
    }
    for (const svgtool::RecordLine &line : picture.report.records) {
        if (line.fate == svgtool::RecordFate::NotDone && line.loss != svgtool::RecordLoss::Hint)
            std::cerr << line.count << ' ' << line.name << ", first at " << line.firstOffset << ": "
                      << line.reason << '\n';
    }
    if (!picture.report.isWhole)
        std::cerr << "it is damaged at " << picture.report.endOffset << '\n';
    std::cout << picture.document << std::flush;
    return std::cout ? 0 : 1;
}
