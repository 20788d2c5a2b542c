/* The inspection calls from C: sizes and buffers, a message to JSON and back, changed on the way. */
#include "vek/inspect/vekInspect.h"

#include <fenv.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int failures = 0;

static void expect(int holds, const char *what) {
    if (!holds) {
        fprintf(stderr, "does not hold: %s\n", what);
        ++failures;
    }
}

#define EXPECT(condition) expect(condition, #condition)

int main(int count, char **arguments) {
    char text[1024], again[1024], small[8], *json, *value;
    size_t size;
    int32_t needed;
    FILE *file = count == 2 ? fopen(arguments[1], "rb") : NULL;
    if (file == NULL)
        return 2;
    size = fread(text, 1, sizeof text, file);
    fclose(file);

    needed = vekInspectToJson(text, size, NULL, 0);
    EXPECT(needed > 0);
    EXPECT(vekInspectToJson(text, size, small, sizeof small) == needed);
    EXPECT(strcmp(small, "{\"id\":4") == 0);
    json = malloc((size_t)needed + 1);
    if (json == NULL)
        return 2;
    EXPECT(vekInspectToJson(text, size, json, (size_t)needed + 1) == needed);
    EXPECT(strlen(json) == (size_t)needed);
    EXPECT(strstr(json, "problems") == NULL);

    EXPECT(vekInspectFromJson(json, strlen(json), again, sizeof again) == (int32_t)size);
    EXPECT(memcmp(again, text, size) == 0);
    value = strstr(json, "1024.500000");
    EXPECT(value != NULL);
    if (value != NULL) {
        *value = '9';
        EXPECT(vekInspectFromJson(json, strlen(json), again, sizeof again) == (int32_t)size);
        EXPECT(strstr(again, "FOCUS_VALUE=9024.500000;}!!") != NULL);
    }
    EXPECT(vekInspectFromJson("{\n\"id\":4112", 11, again, sizeof again) == -1);
    EXPECT(strstr(again, "line 2, column 10 (byte 11): ") == again);
    free(json);

    needed = vekInspectToJson("@@4112 9 7 41 {FOCUS_VALEU=3.000000;}!!", 39, again, sizeof again);
    EXPECT(needed > 0);
    EXPECT(strstr(again, "\"code\":\"wrong-length\"") != NULL);
    /* However the host has set up floating point. */
    needed = vekInspectToJson("@@4112 1 7 41 {FOCUS_VALUE=0.1;}!!", 34, text, sizeof text);
    feclearexcept(FE_ALL_EXCEPT);
    fesetround(FE_UPWARD);
    EXPECT(vekInspectToJson("@@4112 1 7 41 {FOCUS_VALUE=0.1;}!!", 34, again, sizeof again) == needed);
    EXPECT(fegetround() == FE_UPWARD && fetestexcept(FE_ALL_EXCEPT) == 0);
    fesetround(FE_TONEAREST);
    EXPECT(needed > 0 && strcmp(text, again) == 0);

    EXPECT(vekInspectToJson(NULL, 0, again, sizeof again) == -1);
    EXPECT(vekInspectFromJson(NULL, 0, again, sizeof again) == -1);
    EXPECT(vekInspectFromJson("[1]", 3, again, sizeof again) == -1);
    EXPECT(vekInspectCatalogue(NULL, 0) > 10000);
    return failures == 0 ? 0 : 1;
}
