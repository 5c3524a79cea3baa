/* A stand-in for the controller maker's library, for the loader's tests. It keeps no link:
 * open hands out kind * 100 + a count and writes its own text into the address buffer, and
 * an exchange echoes the command with the kind and handle that came with it. Built without
 * FAKE_VENDOR_WITH_SEND_RECV it lacks one of the three functions and must be refused. */

#include <stdio.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

static int opens;

EXPORT int fnMarluneComOpen(int kind, int mode, char* address)
{
    if (strcmp(address, "refuse") == 0)
        return 0;
    char given[200];
    snprintf(given, sizeof given, "%s", address);
    ++opens;
    snprintf(address, 256, "vendor:%d:%s", mode, given);
    return kind * 100 + opens;
}

EXPORT int fnMarluneComClose(int kind, int handle) { return kind + handle; }

#ifdef FAKE_VENDOR_WITH_SEND_RECV
EXPORT int fnMarluneComSendRecv(int kind, int handle, char* request, char* reply)
{
    const size_t length = strcspn(request, "\r");
    snprintf(reply, 6001, "%.*s kind %d handle %d\x04", (int)length, request, kind, handle);
    /* The request is the caller's copy: writing into it must not reach the caller's frame. */
    request[0] = '#';
    return 1;
}
#endif
