// Conversion between big-endian (B), little-endian (L) and the machine's own (N) byte order.
// Descriptor data, resources and files are big-endian: convert with ..._NtoB where a number enters
// them, ..._BtoN where it leaves them.
#ifndef CARBON_ENDIAN_H
#define CARBON_ENDIAN_H

#include <Carbon/MacTypes.h>

#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define EndianU16_BtoN(value) ((UInt16)__builtin_bswap16((UInt16)(value)))
#define EndianU32_BtoN(value) ((UInt32)__builtin_bswap32((UInt32)(value)))
#define EndianU64_BtoN(value) ((UInt64)__builtin_bswap64((UInt64)(value)))
#define EndianU16_LtoN(value) ((UInt16)(value))
#define EndianU32_LtoN(value) ((UInt32)(value))
#define EndianU64_LtoN(value) ((UInt64)(value))
#else
#define EndianU16_BtoN(value) ((UInt16)(value))
#define EndianU32_BtoN(value) ((UInt32)(value))
#define EndianU64_BtoN(value) ((UInt64)(value))
#define EndianU16_LtoN(value) ((UInt16)__builtin_bswap16((UInt16)(value)))
#define EndianU32_LtoN(value) ((UInt32)__builtin_bswap32((UInt32)(value)))
#define EndianU64_LtoN(value) ((UInt64)__builtin_bswap64((UInt64)(value)))
#endif

#define EndianS16_BtoN(value) ((SInt16)EndianU16_BtoN(value))
#define EndianS32_BtoN(value) ((SInt32)EndianU32_BtoN(value))
#define EndianS64_BtoN(value) ((SInt64)EndianU64_BtoN(value))
#define EndianS16_LtoN(value) ((SInt16)EndianU16_LtoN(value))
#define EndianS32_LtoN(value) ((SInt32)EndianU32_LtoN(value))
#define EndianS64_LtoN(value) ((SInt64)EndianU64_LtoN(value))

// Each conversion is its own inverse.
#define EndianU16_NtoB(value) EndianU16_BtoN(value)
#define EndianU32_NtoB(value) EndianU32_BtoN(value)
#define EndianU64_NtoB(value) EndianU64_BtoN(value)
#define EndianU16_NtoL(value) EndianU16_LtoN(value)
#define EndianU32_NtoL(value) EndianU32_LtoN(value)
#define EndianU64_NtoL(value) EndianU64_LtoN(value)
#define EndianS16_NtoB(value) EndianS16_BtoN(value)
#define EndianS32_NtoB(value) EndianS32_BtoN(value)
#define EndianS64_NtoB(value) EndianS64_BtoN(value)
#define EndianS16_NtoL(value) EndianS16_LtoN(value)
#define EndianS32_NtoL(value) EndianS32_LtoN(value)
#define EndianS64_NtoL(value) EndianS64_LtoN(value)

#endif
