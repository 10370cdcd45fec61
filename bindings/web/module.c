#include "picture/api/picture.h"

/** svgtool_draw() with its options as arguments, so that no script need know their layout. */
svgtool_picture *svgtool_web_draw(const void *bytes, size_t size, double width, double height,
                                  double scale, const char *idPrefix, int text, int source)
{
    svgtool_options options = SVGTOOL_OPTIONS_INIT;
    options.width = width;
    options.height = height;
    options.scale = scale;
    options.id_prefix = idPrefix;
    options.text = text;
    options.source = source;
    return svgtool_draw(bytes, size, &options);
}
