// Property lists read by libplist, and turned into objects.
#include "core_foundation/property_lists/property_list.h"

#include <fcntl.h>
#include <plist/plist.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "core_foundation/internal.h"
#include "core_foundation/object.h"
#include "posix/UniqueFd.h"

namespace carbon {

namespace {

struct FreePlist {
    void operator()(void* inNode) const { plist_free(inNode); }
};
using PlistPtr = std::unique_ptr<void, FreePlist>;

struct FreeBlock {
    void operator()(void* inBlock) const { std::free(inBlock); }
};
using TextPtr = std::unique_ptr<char, FreeBlock>;

Owned<CFTypeRef> Convert(plist_t inNode);

Owned<CFTypeRef> FromText(plist_t inNode, void (*inGet)(plist_t, char**)) {
    char* text = nullptr;
    inGet(inNode, &text);
    const TextPtr owner(text);
    return Owned<CFTypeRef>(text ? StringFromUtf8(text) : nullptr);
}

Owned<CFTypeRef> FromInteger(plist_t inNode) {
    UInt64 value = 0;
    plist_get_uint_val(inNode, &value);
    return Owned<CFTypeRef>(CFNumberCreate(nullptr, kCFNumberSInt64Type, &value));
}

Owned<CFTypeRef> FromReal(plist_t inNode) {
    double value = 0;
    plist_get_real_val(inNode, &value);
    return Owned<CFTypeRef>(CFNumberCreate(nullptr, kCFNumberFloat64Type, &value));
}

Owned<CFTypeRef> FromBoolean(plist_t inNode) {
    UInt8 value = 0;
    plist_get_bool_val(inNode, &value);
    return Owned<CFTypeRef>(value ? kCFBooleanTrue : kCFBooleanFalse);
}

Owned<CFTypeRef> FromDate(plist_t inNode) {
    SInt32 seconds = 0, microseconds = 0;
    plist_get_date_val(inNode, &seconds, &microseconds);
    return Owned<CFTypeRef>(CFDateCreate(nullptr, seconds + microseconds / 1e6));
}

Owned<CFTypeRef> FromData(plist_t inNode) {
    char* bytes = nullptr;
    UInt64 size = 0;
    plist_get_data_val(inNode, &bytes, &size);
    const TextPtr owner(bytes);
    if (!bytes && size > 0) return {};
    return Owned<CFTypeRef>(
        CFDataCreate(nullptr, reinterpret_cast<const UInt8*>(bytes), static_cast<CFIndex>(size)));
}

Owned<CFTypeRef> FromArray(plist_t inNode) {
    Owned<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    for (UInt32 i = 0; i < plist_array_get_size(inNode); ++i) {
        const auto value = Convert(plist_array_get_item(inNode, i));
        if (value) CFArrayAppendValue(array.Get(), value.Get());
    }
    return Owned<CFTypeRef>(array.Detach());
}

Owned<CFTypeRef> FromDictionary(plist_t inNode) {
    Owned<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(inNode, &iterator);
    const std::unique_ptr<void, FreeBlock> owner(iterator);
    while (iterator) {
        char* name = nullptr;
        plist_t node = nullptr;
        plist_dict_next_item(inNode, iterator, &name, &node);
        const TextPtr nameOwner(name);
        if (!node) break;
        const Owned<CFStringRef> key(name ? StringFromUtf8(name) : nullptr);
        const auto value = Convert(node);
        if (key && value) CFDictionarySetValue(dictionary.Get(), key.Get(), value.Get());
    }
    return Owned<CFTypeRef>(dictionary.Detach());
}

// Null for what has no object here; it is left out of its container.
Owned<CFTypeRef> Convert(plist_t inNode) {
    switch (plist_get_node_type(inNode)) {
        case PLIST_STRING:
            return FromText(inNode, plist_get_string_val);
        case PLIST_KEY:
            return FromText(inNode, plist_get_key_val);
        case PLIST_UINT:
            return FromInteger(inNode);
        case PLIST_REAL:
            return FromReal(inNode);
        case PLIST_BOOLEAN:
            return FromBoolean(inNode);
        case PLIST_DATE:
            return FromDate(inNode);
        case PLIST_DATA:
            return FromData(inNode);
        case PLIST_ARRAY:
            return FromArray(inNode);
        case PLIST_DICT:
            return FromDictionary(inNode);
        default:
            return {};
    }
}

PlistPtr Read(std::string_view inBytes) {
    plist_t root = nullptr;
    const auto size = static_cast<UInt32>(inBytes.size());
    if (inBytes.size() > kLargestPropertyList) return nullptr;
    if (inBytes.starts_with("bplist")) {
        if (IsHarmlessBinary(inBytes)) plist_from_bin(inBytes.data(), size, &root);
    } else if (IsHarmlessXML(inBytes)) {
        plist_from_xml(inBytes.data(), size, &root);
    }
    return PlistPtr(root);
}

}  // namespace

CFDictionaryRef DictionaryFromPropertyList(std::string_view inBytes) {
    const PlistPtr root = Read(inBytes);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return nullptr;
    return static_cast<CFDictionaryRef>(FromDictionary(root.get()).Detach());
}

std::optional<std::string> ReadWholeFile(const std::string& inPath) {
    const UniqueFd file(open(inPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info;
    if (!file || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
    if (info.st_size > static_cast<off_t>(kLargestPropertyList)) return std::nullopt;
    std::string bytes(static_cast<size_t>(info.st_size), '\0');
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = read(file.Get(), bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno != EINTR) return std::nullopt;
        if (count == 0) break;
        if (count > 0) done += static_cast<size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

}  // namespace carbon
