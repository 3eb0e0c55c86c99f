// A resource fork as bytes, and what its map says.
#pragma once

#include <Carbon/Resources.h>

#include <array>
#include <span>
#include <string>
#include <vector>

namespace carbon {

struct StoredResource {
    ResID id = 0;
    UInt8 attributes = 0;
    std::string name;             // MacRoman, at most 255 characters; empty without one
    std::span<const UInt8> data;  // of somebody else's bytes
};

struct StoredType {
    ResType type = 0;
    std::vector<StoredResource> resources;
};

struct StoredFork {
    std::vector<StoredType> types;      // in the order of the map
    std::array<UInt8, 240> reserved{};  // what a fork keeps between its header and its data
};

// Reads a map; the data stay in `inFork`, which must outlive the result. eofErr when there are no
// bytes at all, mapReadErr when anything lies outside its place.
OSErr ParseFork(std::span<const UInt8> inFork, StoredFork* outFork);

// The bytes of a fork. The data of the first resource begin at kFirstData, behind their length;
// those of the others follow in the order of the map. addRefFailed when it would be too large.
OSErr BuildFork(const StoredFork& inFork, std::vector<UInt8>* outBytes);

// How long a fork becomes, in bytes; a name that several resources have is counted for each.
struct ForkSizes {
    UInt64 data = 0;
    UInt64 types = 2;  // and references
    UInt64 names = 0;

    void AddType();
    void AddResource(size_t inNameLength, size_t inDataLength);
    UInt64 Total() const;
    // Whether the references and the names are within what the map's offsets can reach.
    bool FitMap() const;
};

// What the format has room for, in bytes.
inline constexpr size_t kFirstData = 256;
inline constexpr size_t kLongestData = 0x1000000;
inline constexpr size_t kLongestMapPart = 0x10000;

}  // namespace carbon
