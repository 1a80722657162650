/* The results and the version as a host in C sees them: results_in_c VERSION */
#include <doccam/doccam.h>

#include <stdio.h>
#include <string.h>

#if DOCCAM_VERSION < DOCCAM_VERSION_NUMBER(1, 0, 0)
#error "the version must be comparable before compiling"
#endif

static int failures;

static void expect(int holds, const char* what) {
    if (!holds) {
        fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

/* All operations and some that do not exist, with results from far below to far above the valid
 * ones. */
static void expectTextsForEverything(void) {
    for (int operation = -2; operation <= DOCCAM_VIEW + 2; ++operation) {
        for (int result = -10100; result <= 100; ++result) {
            const char* text = doccam_result_text(operation, result);
            if (text == NULL || strlen(text) < 8 || text[strlen(text) - 1] != '.') {
                fprintf(stderr, "no sentence for operation %d, result %d\n", operation, result);
                ++failures;
            }
        }
    }
}

int main(int argc, char** argv) {
    expect(argc == 2 && strcmp(DOCCAM_VERSION_STRING, argv[1]) == 0, "the text is the version");
    expect(doccam_version() == DOCCAM_VERSION, "the library is of the headers' version");
    expect(doccam_fault_cause() == DOCCAM_CAUSE_NONE, "no fault is being told");
    expect(captureImage("page.jpg") == DOCCAM_STILL_NOT_REQUESTED, "a still needs a session");
    expectTextsForEverything();
    return failures == 0 ? 0 : 1;
}
