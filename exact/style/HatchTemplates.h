#pragma once

namespace svgtool {

/// The pattern definitions of hatched brushes, by GDI hatch style. "%1" stands for the background
/// colour, "%2" for the colour of the lines, "%3" for the pattern's number.
///
/// Quirk: the ids BACKGROUND and HATCH_... repeat in every definition made, and the six texts
/// differ in small ways (the blank after the opening tag, the background's stroke, the fill of the
/// diagonal cross); hosts compare documents byte by byte.
// clang-format off
inline constexpr const char *kHatchTemplates[] = {
        // HS_HORIZONTAL
        "<defs> "
        "\t\t<polygon id=\"BACKGROUND\" fill=\"%1\" stroke=\"white\" points=\"0 0, 8 0, 8 8, "
        "0 8, 0 0\" /> "
        "\t\t<path id=\"HATCH_HORIZONTAL\" stroke-width=\"1.0\" fill=\"#000000\" "
        "stroke=\"%2\" fill-opacity=\"1.0\" d=\"m0,8 l8,0\" /> "
        "\t\t<pattern id=\"BRUSH_%3\" width=\"8\" height=\"8\" "
        "patternUnits=\"userSpaceOnUse\" > "
        "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
        "xlink:href=\"#HATCH_HORIZONTAL\"/> "
        "\t\t</g></g></pattern></defs>",
        // HS_VERTICAL
        "<defs> "
        "\t\t<polygon id=\"BACKGROUND\" fill=\"%1\" stroke=\"none\" points=\"0 0, 8 0, 8 8, "
        "0 8, 0 0\" /> "
        "\t\t<path id=\"HATCH_VERTICAL\" stroke-width=\"1.0\" fill=\"#000000\" stroke=\"%2\" "
        "fill-opacity=\"1.0\" d=\"m4,0 l0,8\" /> "
        "\t\t<pattern id=\"BRUSH_%3\" width=\"8\" height=\"8\" "
        "patternUnits=\"userSpaceOnUse\" > "
        "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
        "xlink:href=\"#HATCH_VERTICAL\"/> "
        "\t\t</g></g></pattern></defs>",
        // HS_FDIAGONAL
        "<defs> "
        "\t\t<polygon id=\"BACKGROUND\" fill=\"%1\" stroke=\"white\" points=\"0 0, 8 0, 8 8, "
        "0 8, 0 0\" /> "
        "\t\t<path id=\"HATCH_FDIAGONAL\" stroke-width=\"1.0\" fill=\"#000000\" "
        "stroke=\"%2\" fill-opacity=\"1.0\" d=\"m0,0 l8,8\" /> "
        "\t\t<pattern id=\"BRUSH_%3\" width=\"8\" height=\"8\" "
        "patternUnits=\"userSpaceOnUse\" > "
        "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
        "xlink:href=\"#HATCH_FDIAGONAL\"/> "
        "\t\t</g></g></pattern></defs>",
        // HS_BDIAGONAL
        "<defs> "
        "\t\t<polygon id=\"BACKGROUND\" fill=\"%1\" stroke=\"white\" points=\"0 0, 8 0, 8 8, "
        "0 8, 0 0\" /> "
        "\t\t<path id=\"HATCH_BDIAGONAL\" stroke-width=\"1.0\" fill=\"#000000\" "
        "stroke=\"%2\" fill-opacity=\"1.0\" d=\"m0,8 l8,-8\" /> "
        "\t\t<pattern id=\"BRUSH_%3\" width=\"8\" height=\"8\" "
        "patternUnits=\"userSpaceOnUse\" > "
        "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
        "xlink:href=\"#HATCH_BDIAGONAL\"/> "
        "\t\t</g></g></pattern></defs>",
        // HS_CROSS
        "<defs> "
        "\t\t<polygon id=\"BACKGROUND\" fill=\"%1\" stroke=\"white\" points=\"0 0, 8 0, 8 8, "
        "0 8, 0 0\" /> "
        "\t\t<path id=\"HATCH_CROSS\" stroke-width=\"1.0\" fill=\"#000000\" stroke=\"%2\" "
        "fill-opacity=\"1.0\" d=\"m8,0 l0,16 m-8,-8 l16,0\" /> "
        "\t\t<pattern id=\"BRUSH_%3\" width=\"8\" height=\"8\" "
        "patternUnits=\"userSpaceOnUse\" > "
        "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
        "xlink:href=\"#HATCH_CROSS\"/> "
        "\t\t</g></g></pattern></defs>",
        // HS_DIAGCROSS
        "<defs>"
        "\t\t<polygon id=\"BACKGROUND\" fill=\"%1\" stroke=\"white\" points=\"0 0, 8 0, 8 8, "
        "0 8, 0 0\" /> "
        "\t\t<path id=\"HATCH_DICROSS\" stroke-width=\"1.0\" fill=\"white\" stroke=\"%2\" "
        "fill-opacity=\"1.0\" d=\"m0,0 l8,8 m-8,0 l8,-8\" /> "
        "\t\t<pattern id=\"BRUSH_%3\" width=\"8\" height=\"8\" "
        "patternUnits=\"userSpaceOnUse\" > "
        "\t\t<g><g><use x=\"0\" y=\"0\" xlink:href=\"#BACKGROUND\" /><use x=\"0\" y=\"0\" "
        "xlink:href=\"#HATCH_DICROSS\"/> "
        "\t\t</g></g></pattern></defs>",
};
// clang-format on
static_assert(sizeof(kHatchTemplates) / sizeof(kHatchTemplates[0]) == 6);

} // namespace svgtool
