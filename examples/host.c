/* A host of the library in C: reads a device status, adds a text to it, and writes it again. */
#include "vek/api/vekParams2ASCII.h"

#include <stdio.h>

/* The device status of a text message, to be released by the caller; NULL when the text is something else. */
static vekDeviceStatus *readStatus(const char *text) {
    int32_t id = 0;
    void *structure = NULL;
    if (vekStrToVal(text, &id, &structure) != 0) {
        fprintf(stderr, "no message\n");
        return NULL;
    }
    if (id != VEK_MSG_DEVICE_STATUS) {
        fprintf(stderr, "message %d is no device status\n", (int)id);
        vekParamsDeleteStruct(id, &structure);
        return NULL;
    }
    return structure;
}

static void addText(vekDeviceStatus *status, const char *text) {
    const int32_t room = sizeof status->msgs / sizeof status->msgs[0];
    if (status->numOfMessages >= 0 && status->numOfMessages < room)
        snprintf(status->msgs[status->numOfMessages++], sizeof status->msgs[0], "%s", text);
}

/* Writes the status as a text message on standard output. Returns 0, or -1 when memory ran out. */
static int printStatus(vekDeviceStatus *status) {
    char *text = NULL;
    const int32_t result = vekValToStr(VEK_MSG_DEVICE_STATUS, status, &text);
    if (result == 0)
        puts(text);
    vekParamsDelete(text);
    return result;
}

int main(void) {
    vekDeviceStatus *status =
        readStatus("@@4161    96 7 41 {STATUS=3;LOW_STATUS=17;SEVERITY=2;NUM_OF_MESSAGES=1;MSGS={Drum stopped,};}!!");
    if (status == NULL)
        return 1;
    printf("Status %d: %s\n", (int)status->status, status->msgs[0]);
    addText(status, "Close the door");
    const int result = printStatus(status);

    void *released = status;
    vekParamsDeleteStruct(VEK_MSG_DEVICE_STATUS, &released);
    return result == 0 ? 0 : 1;
}
