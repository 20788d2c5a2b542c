/* Loads and unloads both libraries again and again, with a thread that goes on living: static thread-local storage is
 * not used up, and no memory is left behind. Of a text with very many pieces a thread keeps what the documentation
 * says. unload VEK_PARAMS_2_ASCII VEK_INSPECT */
#define _GNU_SOURCE
#include "vek/api/vekParams2ASCII.h"
#include "vek/inspect/vekInspect.h"

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>

static const char text[] =
    "@@4130   100 7 42 {DEVICE_MEDIA_NAME_ARRAY={aaaaaaaaaa,bbbbbbbbbb,cccccccccc,dddddddddd,eeeee,};}!!";
static pthread_barrier_t turn;
static void *library;

static void fail(const char *why) {
    fprintf(stderr, "unload: %s\n", why);
    exit(1);
}

/* What a call does, and what it leaves for the thread's next one. */
static void convert(const char *text) {
    int32_t id = 0;
    void *structure = NULL;
    int32_t (*read)(const char *, int32_t *, void **) =
        (int32_t(*)(const char *, int32_t *, void **))dlsym(library, "vekStrToVal");
    int32_t (*release)(int32_t, void **) = (int32_t(*)(int32_t, void **))dlsym(library, "vekParamsDeleteStruct");
    if (read == NULL || release == NULL || read(text, &id, &structure) != 0 || structure == NULL ||
        release(id, &structure) != 0)
        fail("a call went wrong");
}

/* 24,000 names, of whose released bodies 16,384 are kept. */
static void keepSpares(void) {
    static char many[80000];
    char *end = many + sprintf(many, "@@4130 72050 7 42 {DEVICE_MEDIA_NAME_ARRAY={");
    for (int i = 0; i < 24000; ++i)
        end += sprintf(end, "aa,");
    sprintf(end, "};}!!");
    const size_t before = mallinfo2().uordblks;
    convert(many);
    const size_t kept = mallinfo2().uordblks - before;
    printf("%zu bytes are kept of a text with 24,000 pieces\n", kept);
    if (kept < 1000000 || kept > 1600000)
        fail("that is not 16,384 bodies of less than 100 bytes");
}

static void *live(void *rounds) {
    for (int round = *(int *)rounds; round > 0; --round) {
        pthread_barrier_wait(&turn);
        convert(text);
        pthread_barrier_wait(&turn);
    }
    return NULL;
}

int main(int count, char **arguments) {
    enum { rounds = 500, settled = 20 };
    int left = rounds;
    size_t before = 0;
    pthread_t thread;
    mallopt(M_ARENA_MAX, 1); /* so that one count is of all threads */
    if (count != 3 || pthread_barrier_init(&turn, NULL, 2) != 0 || pthread_create(&thread, NULL, live, &left) != 0)
        return 2;
    for (int round = 0; round < rounds; ++round) {
        library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
        void *inspecting = library != NULL ? dlopen(arguments[2], RTLD_NOW | RTLD_LOCAL) : NULL;
        if (inspecting == NULL)
            fail(dlerror());
        pthread_barrier_wait(&turn);
        convert(text);
        pthread_barrier_wait(&turn);
        if (round == 0)
            keepSpares();
        if (dlclose(library) != 0 || dlclose(inspecting) != 0) /* not the last one first */
            fail(dlerror());
        if (round == settled)
            before = mallinfo2().uordblks;
    }
    pthread_join(thread, NULL);
    const size_t after = mallinfo2().uordblks;
    printf("%zu bytes in use after %d rounds, %zu after %d\n", before, settled, after, rounds);
    return after > before + 2048 ? 1 : 0;
}
