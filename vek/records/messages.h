/*
 * The ids of the messages, and the plain message structures. Usable from C99 and C++.
 *
 * Messages 4096 to 4136, 4188 and 4193 to 4195 are C++ objects; their structures are declared in the C++ headers of
 * this folder. All the others are the plain structures below. Everything here is data: who owns what, and which thread
 * may touch it, is the caller's affair (see vek/api/vekParams2ASCII.h for what the calls hand out).
 */
#ifndef VEK_MESSAGES_H
#define VEK_MESSAGES_H

#include "vek/records/enumerations.h"
#include "vek/text/members.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Message ids. Ids that have no structure go by their number. */
enum vekMessageId {
    VEK_MSG_DEVICE_INFO = 4096,
    VEK_MSG_VERSION = 4097,
    VEK_MSG_MEDIA = 4098,
    VEK_MSG_PUNCH_SYSTEM = 4099,
    VEK_MSG_CASSETTE = 4100,
    VEK_MSG_CASSETTE_ARRAY = 4101,
    VEK_MSG_PUNCH_ARRAY = 4102,
    VEK_MSG_MEDIA_OUTPUT = 4103,
    VEK_MSG_EXPOSE_RESOLUTION = 4104,
    VEK_MSG_RES_INT_TABLE = 4105,
    VEK_MSG_TABLE_REF = 4106,
    VEK_MSG_RES_INT_ARRAY = 4107,
    VEK_MSG_DELAY_VALUE_TABLE = 4110,
    VEK_MSG_RES_MOTOR_TABLE = 4111,
    VEK_MSG_FOCUS_VALUE = 4112,
    VEK_MSG_RES_INT_SPEED = 4113,
    VEK_MSG_MEDIA_GROUP = 4114,
    VEK_MSG_MEDIA_GROUP_ARRAY = 4115,
    VEK_MSG_MEDIA_ARRAY = 4116,
    VEK_MSG_BYTE_ID = 4117,
    VEK_MSG_DEVICE_STATE = 4118,
    VEK_MSG_DATA_PATH_PORT = 4119,
    VEK_MSG_CYLINDER_JOB = 4129,
    VEK_MSG_DEVICE_MEDIA_NAME_ARRAY = 4130,
    VEK_MSG_CYLINDER_SIZE = 4131,
    VEK_MSG_NARROW_MODE = 4132,
    VEK_MSG_SUPPORT_DATA_PORTS = 4135, /* vekParamsDeleteStruct does not take it: use its virtual destructor */
    VEK_MSG_DEVICE_INFO_2 = 4136,      /* likewise */
    VEK_MSG_ID_RECORD_4160 = 4160,
    VEK_MSG_DEVICE_STATUS = 4161,
    VEK_MSG_LAYOUT = 4163,
    VEK_MSG_EXPOSE_JOB = 4164,
    VEK_MSG_EXPOSE_PARAMS = 4165,
    VEK_MSG_COLOR_TABLE = 4171,
    VEK_MSG_IMAGE_TOP_LEFT = 4172,
    VEK_MSG_MEDIA_PARAMS = 4182,
    VEK_MSG_MEDIA_CONTENT = 4183,
    VEK_MSG_BITMAP_TYPE = 4188,
    VEK_MSG_ID_RECORD_4189 = 4189,
    VEK_MSG_ID_RECORD_4192 = 4192,
    VEK_MSG_JOB_SEP_LIST = 4193,
    VEK_MSG_JOB_PORT = 4194,
    VEK_MSG_GDAPI_DATA_PATH = 4195,
    VEK_MSG_INFO = 4202
};

/* The plain structures. A text in a character array ends at its NUL or with the array; reading a message cuts longer
 * texts. Enumerations are 32-bit integers with the constants of vek/records/enumerations.h; units are on the page
 * docs/messages.md. In C++ all members begin as zeros (vek/text/members.h). */

typedef struct vekSize {
    VEK_BY_NAME(double, width);
    double height VEK_ZEROED;
} vekSize;

/* A pair of integers that is stored height first. */
typedef struct vekHeightWidth {
    VEK_BY_NAME(int32_t, height);
    int32_t width VEK_ZEROED;
} vekHeightWidth;

typedef struct vekPixelSize {
    VEK_BY_NAME(int32_t, width);
    int32_t height VEK_ZEROED;
} vekPixelSize;

/* 4160, 4189 and 4192 */
typedef struct vekIdRecord {
    int32_t id VEK_ZEROED;
} vekIdRecord;

/* 4161. numOfMessages texts are written without a check: it must not be above 10. Reading keeps it there. */
typedef struct vekDeviceStatus {
    int32_t status VEK_ZEROED;
    int32_t lowStatus VEK_ZEROED;
    int32_t severity VEK_ZEROED;
    int32_t numOfMessages VEK_ZEROED;
    char msgs[10][255] VEK_ZEROED;
} vekDeviceStatus;

/* 4163 */
typedef struct vekLayout {
    int32_t layoutNum VEK_ZEROED;
    int32_t jobId VEK_ZEROED;
    char jobticketName[256] VEK_ZEROED;
    char sepsArray[256] VEK_ZEROED;
} vekLayout;

/* 4182, and in 4164 */
typedef struct vekMediaParams {
    VEK_ENUM(enum vekMediaType) mediaType VEK_ZEROED;
    int32_t unloadMediaType VEK_ZEROED;
    int32_t unloadPolicy VEK_ZEROED;
    double filmFeed VEK_ZEROED;
    char cassetteName[32] VEK_ZEROED;
} vekMediaParams;

/* In 4164. numSystems counts the indexes in use. It is written as it is; of the indexes no more than 10. */
typedef struct vekPunchParams {
    int32_t numSystems VEK_ZEROED;
    int32_t align VEK_ZEROED;
    int32_t activeSystems[10] VEK_ZEROED;
} vekPunchParams;

/* 4164 */
typedef struct vekExposeJob {
    int32_t drumId VEK_ZEROED;
    int32_t numPasses VEK_ZEROED;
    int32_t endlessScreen VEK_ZEROED;
    int32_t loadFlag VEK_ZEROED;
    int32_t unloadFlag VEK_ZEROED;
    char bitmapFilename[256] VEK_ZEROED;
    double marginTop VEK_ZEROED;
    double marginLeft VEK_ZEROED;
    double marginBottom VEK_ZEROED;
    double marginRight VEK_ZEROED;
    vekSize offset VEK_ZEROED;
    vekSize size VEK_ZEROED;
    vekSize cylinderSize VEK_ZEROED;
    vekMediaParams mediaParams VEK_ZEROED;
    vekPunchParams punchParams VEK_ZEROED;
} vekExposeJob;

/* 4165. sizePixel stands in the text as reals. */
typedef struct vekExposeParams {
    int32_t drumId VEK_ZEROED;
    int32_t exposeId VEK_ZEROED;
    double spinnerSpeed VEK_ZEROED;
    double dataFreq VEK_ZEROED;
    double ld VEK_ZEROED;
    double ls VEK_ZEROED;
    int32_t laserIntensity VEK_ZEROED;
    int32_t negative VEK_ZEROED;
    int32_t mirror VEK_ZEROED;
    int32_t bitmapByPass VEK_ZEROED;
    double focus VEK_ZEROED;
    double resMotor VEK_ZEROED;
    double ddbDelay VEK_ZEROED;
    int32_t firstLaserNum VEK_ZEROED;
    int32_t lastLaserNum VEK_ZEROED;
    vekPixelSize sizePixel VEK_ZEROED;
    vekSize size VEK_ZEROED;
    vekSize offset VEK_ZEROED;
    vekSize res VEK_ZEROED;
    char ctMapFile[256] VEK_ZEROED;
    char lwMapFile[256] VEK_ZEROED;
    char oliMapFile[256] VEK_ZEROED;
    char screenType[256] VEK_ZEROED;
} vekExposeParams;

typedef struct vekColorValue {
    double value VEK_ZEROED;
    int32_t flags VEK_ZEROED;
} vekColorValue;

/* 4171. All 256 entries are written. */
typedef struct vekColorTable {
    int32_t drumId VEK_ZEROED;
    int32_t index VEK_ZEROED;
    vekColorValue colorTable[256] VEK_ZEROED;
} vekColorTable;

/* 4172. A name of 256 characters or more runs on into separation, over which the separation's text is then written;
 * name is read as one text up to its NUL or the end of the structure. */
typedef struct vekImageTopLeft {
    int32_t drumId VEK_ZEROED;
    int32_t index VEK_ZEROED;
    vekHeightWidth topLeft VEK_ZEROED;
    vekHeightWidth imageTopLeft VEK_ZEROED;
    vekHeightWidth mirror VEK_ZEROED;
    char name[256] VEK_ZEROED;
    char separation[132] VEK_ZEROED;
} vekImageTopLeft;

/* 4183 */
typedef struct vekMediaContent {
    VEK_ENUM(enum vekMediaType) mediaType VEK_ZEROED;
    double inputContent VEK_ZEROED;
    double outputContent VEK_ZEROED;
    double maxInput VEK_ZEROED;
    double maxOutput VEK_ZEROED;
    double oneExposeMaxSize VEK_ZEROED;
    double inOutRatio VEK_ZEROED;
    int32_t inputType VEK_ZEROED;
    int32_t outputType VEK_ZEROED;
} vekMediaContent;

/* 4202. info is released with the structure; NULL is not written. To write another text, fill a vekInfo of your own. */
typedef struct vekInfo {
    uint8_t type VEK_ZEROED;
    char *info VEK_ZEROED;
} vekInfo;

#ifdef __cplusplus
}
#endif

#endif
