/* A file on its way to the disc: what libisofs reads it through. Unlike libisofs' own streams it
   notices a file that vanished, shrank or changed, reads in large pieces, and says which file it
   was. */
#ifndef RECORDER_SOURCE_STREAM_H
#define RECORDER_SOURCE_STREAM_H

#include <stddef.h>
#include <sys/stat.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { kSourceBufferSize = 256 * 1024 };

/* What was wrong with a source. */
enum SourceFault {
    kSourceUnreadable, /* cannot be opened or read any more; the errno says why */
    kSourceChanged     /* its size or time is no longer what it was when the disc was planned */
};

/* One for all streams of a job; it outlives them. Called on libisofs' writer thread, one stream at
 * a time. */
struct SourceWatch {
    void* context;
    void (*opened)(void* context, const char* path);
    void (*failed)(void* context, const char* path, enum SourceFault fault, int error);
    int (*stopped)(void* context); /* not 0: the job was cancelled, reading ends with an error */
    unsigned char* buffer; /* kSourceBufferSize bytes, lent to the one stream that is open */
};

/* Makes the stream of `path`, which had these `facts` when the disc was planned. 1, or a negative
   libisofs error. The stream (an IsoStream) goes to iso_tree_add_new_file, which owns it from then
   on, or to FreeSourceStream. */
int NewSourceStream(const char* path, const struct stat* facts, const struct SourceWatch* watch,
                    void** stream);
void FreeSourceStream(void* stream);

#ifdef __cplusplus
}
#endif

#endif
