/* A host in C that shows a damaged message as JSON, with what is wrong and where. */
#include <vek/inspect/vekInspect.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

int main(void) {
    const char *text = "@@4112    62 7 41 {MEDIA_NAME=Violet;FOCUS_VALEU=3.250000;}!!";
    const int32_t size = vekInspectToJson(text, strlen(text), NULL, 0); /* without its NUL */
    char *json = size < 0 ? NULL : malloc((size_t)size + 1);
    if (json == NULL)
        return EXIT_FAILURE;
    vekInspectToJson(text, strlen(text), json, (size_t)size + 1);
    puts(json);
    free(json);
    return EXIT_SUCCESS;
}
