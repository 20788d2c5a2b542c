/* Loaded before the C library: the allocation that FAIL_AT counts from the beginning of main fails, and all behind it.
 * When fewer are made, something is written to the file descriptor 9. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stdatomic.h>
#include <stdlib.h>
#include <unistd.h>

void *__libc_malloc(size_t size);
void *__libc_realloc(void *block, size_t size);

static atomic_long left = -1;

typedef int main_t(int, char **, char **);
static main_t *theMain;

static int countedMain(int count, char **arguments, char **environment) {
    const char *at = getenv("FAIL_AT");
    left = at != NULL ? atol(at) : -1;
    return theMain(count, arguments, environment);
}

int __libc_start_main(main_t *program, int count, char **arguments, void (*init)(void), void (*fini)(void),
                      void (*linkerFini)(void), void *stackEnd) {
    int (*start)(main_t *, int, char **, void (*)(void), void (*)(void), void (*)(void), void *) =
        (int (*)(main_t *, int, char **, void (*)(void), void (*)(void), void (*)(void), void *))dlsym(
            RTLD_NEXT, "__libc_start_main");
    theMain = program;
    return start(countedMain, count, arguments, init, fini, linkerFini, stackEnd);
}

__attribute__((destructor)) static void end(void) {
    if (left > 0 && write(9, "x", 1) != 1)
        _exit(99);
}

static int fails(void) {
    if (left < 0 || (left > 0 && --left > 0))
        return 0;
    errno = ENOMEM;
    return 1;
}

void *malloc(size_t size) {
    return fails() ? NULL : __libc_malloc(size);
}
void *realloc(void *block, size_t size) {
    return fails() ? NULL : __libc_realloc(block, size);
}
