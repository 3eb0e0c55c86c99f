/* Owns the table of functions through which libisofs reads our files. It is C because libisofs'
   structure has a member called "class". */
#include "source_stream.h"

#include <errno.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <libisofs/libisofs.h>

/* Ours among the file system identifiers of libisofs, which uses small numbers itself. */
enum { kFileSystemId = 77 };

struct SourceStream {
    char* path;
    off_t size;
    struct timespec modified;
    dev_t device;
    ino_t inode;
    const struct SourceWatch* watch;
    int fd;
    off_t unread;      /* of the file, beyond the buffer */
    size_t have, used; /* of the buffer */
};

static struct SourceStream* Source(IsoStream* stream) {
    return stream->data;
}

static int Fail(struct SourceStream* source, enum SourceFault fault, int error) {
    source->watch->failed(source->watch->context, source->path, fault, error);
    return (int)ISO_FILE_READ_ERROR;
}

static int StillTheSame(const struct SourceStream* source, const struct stat* now) {
    return S_ISREG(now->st_mode) && now->st_size == source->size && now->st_dev == source->device &&
           now->st_ino == source->inode && now->st_mtim.tv_sec == source->modified.tv_sec &&
           now->st_mtim.tv_nsec == source->modified.tv_nsec;
}

static int CheckUnchanged(struct SourceStream* source) {
    struct stat now;
    if (fstat(source->fd, &now) != 0) return Fail(source, kSourceUnreadable, errno);
    if (!StillTheSame(source, &now)) return Fail(source, kSourceChanged, 0);
    return 1;
}

static void CloseFile(struct SourceStream* source) {
    if (source->fd >= 0) close(source->fd);
    source->fd = -1;
}

static int Open(IsoStream* stream) {
    struct SourceStream* source = Source(stream);
    /* Not blocking: a pipe may have taken the place of the file. */
    source->fd = open(source->path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (source->fd < 0) return Fail(source, kSourceUnreadable, errno);
    const int result = CheckUnchanged(source);
    if (result < 0) {
        CloseFile(source);
        return result;
    }
    source->unread = source->size;
    source->have = source->used = 0;
    source->watch->opened(source->watch->context, source->path);
    return 1;
}

static int Close(IsoStream* stream) {
    struct SourceStream* source = Source(stream);
    if (source->fd < 0) return 1;
    const int result = CheckUnchanged(source); /* libisofs ignores it; the watch does not */
    CloseFile(source);
    return result;
}

static int Refill(struct SourceStream* source) {
    const size_t wanted =
        source->unread < kSourceBufferSize ? (size_t)source->unread : (size_t)kSourceBufferSize;
    size_t have = 0;
    while (have < wanted) {
        const ssize_t count = read(source->fd, source->watch->buffer + have, wanted - have);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return Fail(source, kSourceUnreadable, errno);
        if (count == 0) return Fail(source, kSourceChanged, 0);
        have += (size_t)count;
    }
    source->have = have;
    source->used = 0;
    source->unread -= (off_t)have;
    return 1;
}

static int Read(IsoStream* stream, void* buf, size_t count) {
    struct SourceStream* source = Source(stream);
    if (source->used == source->have) {
        if (source->watch->stopped(source->watch->context)) return (int)ISO_CANCELED;
        if (source->unread == 0) return 0;
        const int result = Refill(source);
        if (result < 0) return result;
    }
    const size_t left = source->have - source->used;
    const size_t taken = count < left ? count : left;
    memcpy(buf, source->watch->buffer + source->used, taken);
    source->used += taken;
    return (int)taken;
}

static off_t GetSize(IsoStream* stream) {
    return Source(stream)->size;
}

static int IsRepeatable(IsoStream* stream) {
    (void)stream;
    return 1;
}

/* By device and inode: a file with several names, or added twice, is read and stored once. */
static void GetId(IsoStream* stream, unsigned int* fileSystem, dev_t* device, ino_t* inode) {
    *fileSystem = kFileSystemId;
    *device = Source(stream)->device;
    *inode = Source(stream)->inode;
}

static void Free(IsoStream* stream) {
    CloseFile(Source(stream));
    free(Source(stream)->path);
    free(stream->data);
}

/* The size stays what was planned; a difference is found when the file's turn comes. */
static int UpdateSize(IsoStream* stream) {
    (void)stream;
    return 1;
}

static IsoStream* GetInputStream(IsoStream* stream, int flag) {
    (void)stream;
    (void)flag;
    return NULL;
}

static IsoStreamIface sSourceStreamInterface = {
    2,    {'u', 's', 'e', 'r'}, Open,           Close, GetSize, Read, IsRepeatable, GetId,
    Free, UpdateSize,           GetInputStream, NULL,  NULL};

int NewSourceStream(const char* path, const struct stat* facts, const struct SourceWatch* watch,
                    void** out) {
    struct SourceStream* source = calloc(1, sizeof *source);
    IsoStream* stream = calloc(1, sizeof *stream);
    char* copy = strdup(path);
    if (source == NULL || stream == NULL || copy == NULL) {
        free(source);
        free(stream);
        free(copy);
        return (int)ISO_OUT_OF_MEM;
    }
    *source = (struct SourceStream){
        copy, facts->st_size, facts->st_mtim, facts->st_dev, facts->st_ino, watch, -1, 0, 0, 0};
    *stream = (IsoStream){&sSourceStreamInterface, 1, source};
    *out = stream;
    return 1;
}

void FreeSourceStream(void* stream) {
    iso_stream_unref(stream);
}
