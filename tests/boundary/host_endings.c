/* A host that exits, or unloads the library, with its session still open. */
#include <doccam/doccam.h>

#include <dlfcn.h>
#include <semaphore.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

static sem_t frames;
static int exitInCallback;
static atomic_int held; /* the streaming thread, in its callback */

static void onFrame(unsigned char* pixels, int width, int height) {
    (void)pixels, (void)width, (void)height;
    sem_post(&frames);
    if (exitInCallback) {
        exit(0);
    }
    while (atomic_load(&held)) {
        usleep(1000);
    }
}

static void awaitFrames(int count) {
    for (int i = 0; i < count; ++i) {
        while (sem_wait(&frames) != 0) {
        }
    }
}

static void* operation(void* library, const char* name) {
    void* found = dlsym(library, name);
    if (found == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        exit(1);
    }
    return found;
}

static void openFirstCamera(void* library) {
    int (*count)(void);
    int (*setCallback)(FrameCallback);
    int (*open)(int, int, int);
    *(void**)&count = operation(library, "getDeviceCount");
    *(void**)&setCallback = operation(library, "SetDataCallback");
    *(void**)&open = operation(library, "openCamera");
    setCallback(onFrame);
    if (count() < 1 || open(0, 640, 480) != 0) {
        fprintf(stderr, "no camera could be opened\n");
        exit(1);
    }
}

/*
 * The exit of a forked child must not stop its parent's stream. The fork happens while the parent's
 * threads are idle: a lock that another library's thread held would stay locked in the child and
 * hang its exit.
 */
static int forkAndGoOn(void) {
    atomic_store(&held, 1);
    usleep(300000);
    const pid_t child = fork();
    if (child == 0) {
        exit(0);
    }
    int status = 1;
    if (waitpid(child, &status, 0) != child || status != 0) {
        return 1;
    }
    while (sem_trywait(&frames) == 0) {
    }
    atomic_store(&held, 0);
    awaitFrames(5);
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: host_endings LIBRARY exit|exit-in-callback|unload|fork\n");
        return 2;
    }
    void* library = dlopen(argv[1], RTLD_NOW);
    if (library == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    sem_init(&frames, 0, 0);
    exitInCallback = strcmp(argv[2], "exit-in-callback") == 0;
    openFirstCamera(library);
    awaitFrames(2);
    if (strcmp(argv[2], "unload") == 0) {
        dlclose(library);
        awaitFrames(3);
    } else if (strcmp(argv[2], "fork") == 0) {
        return forkAndGoOn();
    } else if (exitInCallback) {
        for (;;) {
            pause();
        }
    }
    return 0;
}
