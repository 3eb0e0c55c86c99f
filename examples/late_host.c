/* Finds the library while it runs, and does without discs where there is none.
 *
 *     late_host */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>

#include "vantor/api/Vantor.h"

int main(void) {
    void* library = dlopen("libvantor.so.1", RTLD_NOW);
    if (library == NULL) {
        fprintf(stderr, "late_host: no discs here: %s\n", dlerror());
        return EXIT_FAILURE;
    }
    /* POSIX lets a function's address come as a pointer to data; C alone has no cast for it. */
    Boolean (*isFound)(void);
    *(void**)&isFound = dlsym(library, "VantorIsMirelFound");
    if (isFound == NULL) {
        fprintf(stderr, "late_host: another library: %s\n", dlerror());
        return EXIT_FAILURE;
    }
    /* The library is never closed: its process is known to others until it ends. */
    puts(isFound() ? "Discs can be written." : "There is no recording application.");
    return EXIT_SUCCESS;
}
