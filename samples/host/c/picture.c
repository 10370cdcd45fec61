#include <svgtool/picture.h>

#include <stdio.h>
#include <stdlib.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

/* All bytes of a file; NULL, and a message, where it cannot be read. */
static void *contents(const char *path, size_t *size)
{
    enum { CHUNK = 65536 };
    FILE *file = fopen(path, "rb");
    char *bytes = NULL;
    size_t got = 1;
    for (*size = 0; file != NULL && got > 0; *size += got) {
        char *more = realloc(bytes, *size + CHUNK);
        if (more == NULL)
            break;
        bytes = more;
        got = fread(bytes + *size, 1, CHUNK, file);
    }
    if (file == NULL || ferror(file) || got > 0) {
        perror(path);
        free(bytes);
        bytes = NULL;
    }
    if (file != NULL)
        fclose(file);
    return bytes;
}

/* Draws the metafile named first, 800 pixels wide, on standard output, and tells on standard error
   what became of it. */
int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY); /* or ends of lines would change */
#endif
    size_t size = 0;
    void *bytes = contents(argv[1], &size);
    if (bytes == NULL)
        return 1;

    svgtool_options options = SVGTOOL_OPTIONS_INIT;
    options.width = 800;
    svgtool_picture *picture = svgtool_draw(bytes, size, &options);
    free(bytes);

    int status = 1;
    const svgtool_error error = svgtool_picture_error(picture);
    if (error != SVGTOOL_ERROR_NONE) {
        fprintf(stderr, "%s: %s\n", argv[1], svgtool_error_text(error));
    } else {
        size_t length = 0;
        const char *document = svgtool_picture_document(picture, &length);
        if (fwrite(document, 1, length, stdout) == length && fflush(stdout) == 0)
            status = 0;
        if (svgtool_picture_verdict(picture) != SVGTOOL_VERDICT_COMPLETE)
            fprintf(stderr, "%s: %s\n", argv[1], svgtool_picture_report(picture, NULL));
    }
    svgtool_picture_free(picture);
    return status;
}
