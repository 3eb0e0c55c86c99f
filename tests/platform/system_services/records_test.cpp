// Sizes, offsets and constants that programs and records of others rely on.
#include <Carbon/Dialogs.h>
#include <Carbon/Gestalt.h>
#include <Carbon/MacErrors.h>
#include <Carbon/Notification.h>
#include <Carbon/OSUtils.h>

#include <cstddef>

// A pointer takes four bytes in the records of 32-bit programs, and more here: members keep their
// order and the two-byte packing.
constexpr size_t kWider = sizeof(void*) - 4;

static_assert(sizeof(QElem) == 8 + kWider);
static_assert(offsetof(QElem, qType) == 4 + kWider);
static_assert(offsetof(QElem, qData) == 6 + kWider);

static_assert(sizeof(NMRec) == 36 + 5 * kWider);
static_assert(offsetof(NMRec, qLink) == 0);
static_assert(offsetof(NMRec, qType) == offsetof(QElem, qType));
static_assert(offsetof(NMRec, nmFlags) == 6 + kWider);
static_assert(offsetof(NMRec, nmPrivate) == 8 + kWider);
static_assert(offsetof(NMRec, nmReserved) == 12 + kWider);
static_assert(offsetof(NMRec, nmMark) == 14 + kWider);
static_assert(offsetof(NMRec, nmIcon) == 16 + kWider);
static_assert(offsetof(NMRec, nmSound) == 20 + 2 * kWider);
static_assert(offsetof(NMRec, nmStr) == 24 + 3 * kWider);
static_assert(offsetof(NMRec, nmResp) == 28 + 4 * kWider);
static_assert(offsetof(NMRec, nmRefCon) == 32 + 5 * kWider);
static_assert(nmType == 8);

static_assert(gestaltUnknownErr == -5550 && gestaltUndefSelectorErr == -5551);
static_assert(gestaltDupSelectorErr == -5552 && gestaltLocationErr == -5553);
static_assert(nmTypErr == -299 && qErr == -1);
static_assert(gestaltSystemVersion == 0x73797376);
