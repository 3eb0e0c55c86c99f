/* Owns the MD5 that libisofs computes with: its iso_md5_* functions are ordinary dynamic symbols,
   and the ones of this program come first. libisofs sums every block twice, for its file and for
   the session; each sum is one long chain of dependent steps, so computing two side by side takes
   little longer than one. Were libisofs ever linked so that it no longer finds these, it would use
   its own, with the same sums. */
#include <pthread.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <libisofs/libisofs.h>

enum { kChunk = 64, kBlock = 2048 };

struct Md5 {
    uint32_t state[4];
    uint64_t length;
    unsigned char partial[kChunk];
    unsigned char
        queued[kBlock]; /* waiting for a second sum to be computed beside; only in sWaiting */
};

static pthread_mutex_t sLock = PTHREAD_MUTEX_INITIALIZER;
static struct Md5* sWaiting;

static inline uint32_t Word(const unsigned char* data, int index) {
    uint32_t word;
    memcpy(&word, data + 4 * index, sizeof word);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    word = __builtin_bswap32(word);
#endif
    return word;
}

#define F(x, y, z) ((z) ^ ((x) & ((y) ^ (z))))
#define G(x, y, z) (((x) & (z)) + ((y) & ~(z)))
#define H(x, y, z) ((x) ^ (y) ^ (z))
#define I(x, y, z) ((y) ^ ((x) | ~(z)))
#define TURN(x, n) (((x) << (n)) | ((x) >> (32 - (n))))
#define STEP(f, a, b, c, d, p, k, s, t) \
    (a = TURN(a + f(b, c, d) + Word(p, k) + (uint32_t)(t), s) + b)

/* One step of one or of two sums; each round is the same sixteen steps with its own function, order
 * and turns. */
#define ONE(f, a, b, c, d, k, s, t) STEP(f, a, b, c, d, p, k, s, t);
#define TWO(f, a, b, c, d, k, s, t)  \
    STEP(f, a, b, c, d, p, k, s, t); \
    STEP(f, a##2, b##2, c##2, d##2, p2, k, s, t);

/* The steps, one a line. */
/* clang-format off */
#define ROUNDS(S)                        \
    S(F, a, b, c, d, 0, 7, 0xd76aa478)   \
    S(F, d, a, b, c, 1, 12, 0xe8c7b756)  \
    S(F, c, d, a, b, 2, 17, 0x242070db)  \
    S(F, b, c, d, a, 3, 22, 0xc1bdceee)  \
    S(F, a, b, c, d, 4, 7, 0xf57c0faf)   \
    S(F, d, a, b, c, 5, 12, 0x4787c62a)  \
    S(F, c, d, a, b, 6, 17, 0xa8304613)  \
    S(F, b, c, d, a, 7, 22, 0xfd469501)  \
    S(F, a, b, c, d, 8, 7, 0x698098d8)   \
    S(F, d, a, b, c, 9, 12, 0x8b44f7af)  \
    S(F, c, d, a, b, 10, 17, 0xffff5bb1) \
    S(F, b, c, d, a, 11, 22, 0x895cd7be) \
    S(F, a, b, c, d, 12, 7, 0x6b901122)  \
    S(F, d, a, b, c, 13, 12, 0xfd987193) \
    S(F, c, d, a, b, 14, 17, 0xa679438e) \
    S(F, b, c, d, a, 15, 22, 0x49b40821) \
    S(G, a, b, c, d, 1, 5, 0xf61e2562)   \
    S(G, d, a, b, c, 6, 9, 0xc040b340)   \
    S(G, c, d, a, b, 11, 14, 0x265e5a51) \
    S(G, b, c, d, a, 0, 20, 0xe9b6c7aa)  \
    S(G, a, b, c, d, 5, 5, 0xd62f105d)   \
    S(G, d, a, b, c, 10, 9, 0x02441453)  \
    S(G, c, d, a, b, 15, 14, 0xd8a1e681) \
    S(G, b, c, d, a, 4, 20, 0xe7d3fbc8)  \
    S(G, a, b, c, d, 9, 5, 0x21e1cde6)   \
    S(G, d, a, b, c, 14, 9, 0xc33707d6)  \
    S(G, c, d, a, b, 3, 14, 0xf4d50d87)  \
    S(G, b, c, d, a, 8, 20, 0x455a14ed)  \
    S(G, a, b, c, d, 13, 5, 0xa9e3e905)  \
    S(G, d, a, b, c, 2, 9, 0xfcefa3f8)   \
    S(G, c, d, a, b, 7, 14, 0x676f02d9)  \
    S(G, b, c, d, a, 12, 20, 0x8d2a4c8a) \
    S(H, a, b, c, d, 5, 4, 0xfffa3942)   \
    S(H, d, a, b, c, 8, 11, 0x8771f681)  \
    S(H, c, d, a, b, 11, 16, 0x6d9d6122) \
    S(H, b, c, d, a, 14, 23, 0xfde5380c) \
    S(H, a, b, c, d, 1, 4, 0xa4beea44)   \
    S(H, d, a, b, c, 4, 11, 0x4bdecfa9)  \
    S(H, c, d, a, b, 7, 16, 0xf6bb4b60)  \
    S(H, b, c, d, a, 10, 23, 0xbebfbc70) \
    S(H, a, b, c, d, 13, 4, 0x289b7ec6)  \
    S(H, d, a, b, c, 0, 11, 0xeaa127fa)  \
    S(H, c, d, a, b, 3, 16, 0xd4ef3085)  \
    S(H, b, c, d, a, 6, 23, 0x04881d05)  \
    S(H, a, b, c, d, 9, 4, 0xd9d4d039)   \
    S(H, d, a, b, c, 12, 11, 0xe6db99e5) \
    S(H, c, d, a, b, 15, 16, 0x1fa27cf8) \
    S(H, b, c, d, a, 2, 23, 0xc4ac5665)  \
    S(I, a, b, c, d, 0, 6, 0xf4292244)   \
    S(I, d, a, b, c, 7, 10, 0x432aff97)  \
    S(I, c, d, a, b, 14, 15, 0xab9423a7) \
    S(I, b, c, d, a, 5, 21, 0xfc93a039)  \
    S(I, a, b, c, d, 12, 6, 0x655b59c3)  \
    S(I, d, a, b, c, 3, 10, 0x8f0ccc92)  \
    S(I, c, d, a, b, 10, 15, 0xffeff47d) \
    S(I, b, c, d, a, 1, 21, 0x85845dd1)  \
    S(I, a, b, c, d, 8, 6, 0x6fa87e4f)   \
    S(I, d, a, b, c, 15, 10, 0xfe2ce6e0) \
    S(I, c, d, a, b, 6, 15, 0xa3014314)  \
    S(I, b, c, d, a, 13, 21, 0x4e0811a1) \
    S(I, a, b, c, d, 4, 6, 0xf7537e82)   \
    S(I, d, a, b, c, 11, 10, 0xbd3af235) \
    S(I, c, d, a, b, 2, 15, 0x2ad7d2bb)  \
    S(I, b, c, d, a, 9, 21, 0xeb86d391)
/* clang-format on */

static void SumOne(struct Md5* sum, const unsigned char* p, size_t size) {
    uint32_t a = sum->state[0], b = sum->state[1], c = sum->state[2], d = sum->state[3];
    for (const unsigned char* end = p + size; p != end; p += kChunk) {
        ROUNDS(ONE)
        a = sum->state[0] += a, b = sum->state[1] += b, c = sum->state[2] += c,
        d = sum->state[3] += d;
    }
}

static void SumTwo(struct Md5* sum, const unsigned char* p, struct Md5* sum2,
                   const unsigned char* p2, size_t size) {
    uint32_t a = sum->state[0], b = sum->state[1], c = sum->state[2], d = sum->state[3];
    uint32_t a2 = sum2->state[0], b2 = sum2->state[1], c2 = sum2->state[2], d2 = sum2->state[3];
    for (const unsigned char* end = p + size; p != end; p += kChunk, p2 += kChunk) {
        ROUNDS(TWO)
        a = sum->state[0] += a, b = sum->state[1] += b, c = sum->state[2] += c,
        d = sum->state[3] += d;
        a2 = sum2->state[0] += a2, b2 = sum2->state[1] += b2, c2 = sum2->state[2] += c2,
        d2 = sum2->state[3] += d2;
    }
}

/* The lock is held. */
static void Flush(struct Md5* sum) {
    if (sWaiting != sum) return;
    sWaiting = NULL;
    SumOne(sum, sum->queued, kBlock);
}

/* A whole block: computed beside the one that waits, or left to wait for another. */
static void AddBlock(struct Md5* sum, const unsigned char* data) {
    Flush(sum);
    if (sWaiting == NULL) {
        memcpy(sum->queued, data, kBlock);
        sWaiting = sum;
        return;
    }
    SumTwo(sWaiting, sWaiting->queued, sum, data, kBlock);
    sWaiting = NULL;
}

static void AddBytes(struct Md5* sum, const unsigned char* data, size_t size) {
    Flush(sum);
    const size_t held = (sum->length - size) % kChunk;
    if (held + size < kChunk) {
        memcpy(sum->partial + held, data, size);
        return;
    }
    if (held != 0) {
        memcpy(sum->partial + held, data, kChunk - held);
        SumOne(sum, sum->partial, kChunk);
        data += kChunk - held;
        size -= kChunk - held;
    }
    SumOne(sum, data, size - size % kChunk);
    memcpy(sum->partial, data + (size - size % kChunk), size % kChunk);
}

static void Finish(struct Md5* sum) {
    static const unsigned char padding[kChunk] = {0x80};
    unsigned char bits[8];
    const uint64_t total = sum->length * 8;
    for (int i = 0; i < 8; ++i) bits[i] = (unsigned char)(total >> (8 * i));
    const size_t held = sum->length % kChunk;
    const size_t fill = (held < 56 ? 56 : 120) - held;
    sum->length += fill;
    AddBytes(sum, padding, fill);
    sum->length += sizeof bits;
    AddBytes(sum, bits, sizeof bits);
}

__attribute__((visibility("default"))) int iso_md5_start(void** context) {
    struct Md5* sum = malloc(sizeof *sum);
    if (sum == NULL) return (int)ISO_OUT_OF_MEM;
    *sum = (struct Md5){.state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}};
    *context = sum;
    return 1;
}

__attribute__((visibility("default"))) int iso_md5_compute(void* context, char* data, int size) {
    if (context == NULL) return (int)ISO_NULL_POINTER;
    struct Md5* sum = context;
    const unsigned char* bytes = (const unsigned char*)data;
    pthread_mutex_lock(&sLock);
    const int whole = size == kBlock && sum->length % kChunk == 0;
    sum->length += (uint64_t)size;
    if (whole)
        AddBlock(sum, bytes);
    else
        AddBytes(sum, bytes, (size_t)size);
    pthread_mutex_unlock(&sLock);
    return 1;
}

__attribute__((visibility("default"))) int iso_md5_clone(void* old, void** context) {
    if (old == NULL) return (int)ISO_NULL_POINTER;
    struct Md5* sum = malloc(sizeof *sum);
    if (sum == NULL) return (int)ISO_OUT_OF_MEM;
    pthread_mutex_lock(&sLock);
    Flush(old);
    *sum = *(struct Md5*)old;
    pthread_mutex_unlock(&sLock);
    *context = sum;
    return 1;
}

__attribute__((visibility("default"))) int iso_md5_end(void** context, char result[16]) {
    if (*context == NULL) return (int)ISO_NULL_POINTER;
    struct Md5* sum = *context;
    pthread_mutex_lock(&sLock);
    Finish(sum);
    pthread_mutex_unlock(&sLock);
    for (int i = 0; i < 16; ++i) result[i] = (char)(sum->state[i / 4] >> (8 * (i % 4)));
    free(sum);
    *context = NULL;
    return 1;
}
