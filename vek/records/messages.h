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
 * docs/messages.md. */

typedef struct vekSize {
    double width;
    double height;
} vekSize;

/* A pair of integers that is stored height first. */
typedef struct vekHeightWidth {
    int32_t height;
    int32_t width;
} vekHeightWidth;

typedef struct vekPixelSize {
    int32_t width;
    int32_t height;
} vekPixelSize;

/* 4160, 4189 and 4192 */
typedef struct vekIdRecord {
    int32_t id;
} vekIdRecord;

/* 4161. numOfMessages texts are written without a check: it must not be above 10. Reading keeps it there. */
typedef struct vekDeviceStatus {
    int32_t status;
    int32_t lowStatus;
    int32_t severity;
    int32_t numOfMessages;
    char msgs[10][255];
} vekDeviceStatus;

/* 4163 */
typedef struct vekLayout {
    int32_t layoutNum;
    int32_t jobId;
    char jobticketName[256];
    char sepsArray[256];
} vekLayout;

/* 4182, and in 4164 */
typedef struct vekMediaParams {
    int32_t mediaType; /* enum vekMediaType */
    int32_t unloadMediaType;
    int32_t unloadPolicy;
    double filmFeed;
    char cassetteName[32];
} vekMediaParams;

/* In 4164. numSystems counts the indexes in use. It is written as it is; of the indexes no more than 10. */
typedef struct vekPunchParams {
    int32_t numSystems;
    int32_t align;
    int32_t activeSystems[10];
} vekPunchParams;

/* 4164 */
typedef struct vekExposeJob {
    int32_t drumId;
    int32_t numPasses;
    int32_t endlessScreen;
    int32_t loadFlag;
    int32_t unloadFlag;
    char bitmapFilename[256];
    double marginTop;
    double marginLeft;
    double marginBottom;
    double marginRight;
    vekSize offset;
    vekSize size;
    vekSize cylinderSize;
    vekMediaParams mediaParams;
    vekPunchParams punchParams;
} vekExposeJob;

/* 4165. sizePixel stands in the text as reals. */
typedef struct vekExposeParams {
    int32_t drumId;
    int32_t exposeId;
    double spinnerSpeed;
    double dataFreq;
    double ld;
    double ls;
    int32_t laserIntensity;
    int32_t negative;
    int32_t mirror;
    int32_t bitmapByPass;
    double focus;
    double resMotor;
    double ddbDelay;
    int32_t firstLaserNum;
    int32_t lastLaserNum;
    vekPixelSize sizePixel;
    vekSize size;
    vekSize offset;
    vekSize res;
    char ctMapFile[256];
    char lwMapFile[256];
    char oliMapFile[256];
    char screenType[256];
} vekExposeParams;

typedef struct vekColorValue {
    double value;
    int32_t flags;
} vekColorValue;

/* 4171. All 256 entries are written. */
typedef struct vekColorTable {
    int32_t drumId;
    int32_t index;
    vekColorValue colorTable[256];
} vekColorTable;

/* 4172. A name of 256 characters or more runs on into separation, over which the separation's text is then written;
 * name is read as one text up to its NUL or the end of the structure. */
typedef struct vekImageTopLeft {
    int32_t drumId;
    int32_t index;
    vekHeightWidth topLeft;
    vekHeightWidth imageTopLeft;
    vekHeightWidth mirror;
    char name[256];
    char separation[132];
} vekImageTopLeft;

/* 4183 */
typedef struct vekMediaContent {
    int32_t mediaType; /* enum vekMediaType */
    double inputContent;
    double outputContent;
    double maxInput;
    double maxOutput;
    double oneExposeMaxSize;
    double inOutRatio;
    int32_t inputType;
    int32_t outputType;
} vekMediaContent;

/* 4202. info is released with the structure; NULL is not written. To write another text, fill a vekInfo of your own. */
typedef struct vekInfo {
    uint8_t type;
    char *info;
} vekInfo;

#ifdef __cplusplus
}
#endif

#endif
