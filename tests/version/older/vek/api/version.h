/* In the place of the library's own header, for a library that is older than the program that loads it. */
#define VEK_VERSION_MAJOR 0
#define VEK_VERSION_MINOR 9
#define VEK_VERSION_PATCH 7
#define VEK_VERSION "0.9.7"
#define VEK_VERSION_NUMBER 907
