/* Is the version of the loaded library the one that is expected? A host in C, with this version's headers. */
#include "vek/api/libraryVersion.h"
#include "vek/api/vekParams2ASCII.h"

#include <stdio.h>
#include <stdlib.h>

int main(int count, char **arguments) {
    vekParamsDelete(NULL); /* of the library */
    printf("the library is %ld, the headers are %d\n", (long)vekLibraryVersion(), VEK_VERSION_NUMBER);
    return count == 2 && vekLibraryVersion() == atoi(arguments[1]) ? 0 : 1;
}
