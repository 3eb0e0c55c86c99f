// Following a bundle in the desktop file from a file type to its icon.
#include "vantor/files/DesktopFileIcons.h"

#include <cstring>
#include <optional>

#include "vantor/files/DesktopFile.h"
#include "vantor/files/VolumeInfo.h"
#include "vantor/foundation/BigEndian.h"

namespace {

// Numbers in a resource; beyond its end there are none.
class ResourceReader {
  public:
    explicit ResourceReader(Handle inResource)
        : mResource(inResource), mSize(GetHandleSize(inResource)) {}

    template <typename T>
    std::optional<T> At(Size inOffset) const {
        if (inOffset < 0 || inOffset > mSize - Size(sizeof(T))) return std::nullopt;
        T value;
        std::memcpy(&value, *mResource + inOffset, sizeof value);
        return NativeFromBigEndian(value);
    }
    std::optional<OSType> TypeAt(Size inOffset) const { return At<OSType>(inOffset); }
    std::optional<SInt16> WordAt(Size inOffset) const { return At<SInt16>(inOffset); }

  private:
    Handle mResource;
    Size mSize;
};

// One resource type of a bundle: which resource stands for each local number.
struct Mappings {
    Size start;
    SInt32 count;
};

constexpr Size kBundleTypes = 8, kTypeHead = 6, kMapping = 4;

bool IsBundleOf(Handle inBundle, OSType inCreator) {
    const ResourceReader bundle(inBundle);
    return bundle.TypeAt(0) == inCreator && bundle.WordAt(6).value_or(-1) >= 0 &&
           bundle.WordAt(12).value_or(-1) >= 0;
}

Handle FindBundle(OSType inCreator) {
    const SInt16 count = Count1Resources('BNDL');
    for (SInt16 i = 1; i <= count; ++i) {
        const Handle bundle = Get1IndResource('BNDL', i);
        if (bundle != nullptr && IsBundleOf(bundle, inCreator)) return bundle;
    }
    return nullptr;
}

// A negative count marks an entry that is of no use.
std::optional<Mappings> FindType(const ResourceReader& inBundle, OSType inType) {
    Size entry = kBundleTypes;
    for (SInt32 types = inBundle.WordAt(6).value_or(-1); types >= 0; --types) {
        const std::optional<SInt16> last = inBundle.WordAt(entry + 4);
        if (!last || *last < -1) break;
        if (*last >= 0 && inBundle.TypeAt(entry) == inType) {
            return Mappings{entry + kTypeHead, *last + 1};
        }
        entry += kMapping * *last + kTypeHead + kMapping;
    }
    return std::nullopt;
}

// The local number of the icon, if this resource is about the file type.
std::optional<SInt16> IconOf(SInt16 inReferenceID, OSType inFileType) {
    const Handle resource = Get1Resource('FREF', inReferenceID);
    if (resource == nullptr) return std::nullopt;
    const ResourceReader reference(resource);
    if (reference.TypeAt(0) != inFileType) return std::nullopt;
    return reference.WordAt(4);
}

std::optional<SInt16> FindLocalIcon(const ResourceReader& inBundle, OSType inFileType) {
    const std::optional<Mappings> references = FindType(inBundle, 'FREF');
    if (!references) return std::nullopt;
    for (SInt32 i = 0; i < references->count; ++i) {
        const std::optional<SInt16> id = inBundle.WordAt(references->start + kMapping * i + 2);
        const std::optional<SInt16> icon = id ? IconOf(*id, inFileType) : std::nullopt;
        if (icon) return icon;
    }
    return std::nullopt;
}

std::optional<SInt16> FindIconID(const ResourceReader& inBundle, SInt16 inLocalIcon) {
    const std::optional<Mappings> icons = FindType(inBundle, 'ICN#');
    if (!icons) return std::nullopt;
    for (SInt32 i = 0; i < icons->count; ++i) {
        const Size mapping = icons->start + kMapping * i;
        if (inBundle.WordAt(mapping) == inLocalIcon) return inBundle.WordAt(mapping + 2);
    }
    return std::nullopt;
}

ResType ResourceTypeOf(SInt16 inIconType) {
    constexpr ResType kTypes[] = {0, 'ICN#', 'icl4', 'icl8', 'ics#', 'ics4', 'ics8'};
    return inIconType >= kLargeIcon && inIconType <= kSmall8BitIcon ? kTypes[inIconType] : 0;
}

// Keeps a bundle where it is, and leaves it as it was.
class StLockedBundle {
  public:
    explicit StLockedBundle(Handle inBundle) : mBundle(inBundle), mState(HGetState(inBundle)) {
        HLock(mBundle);
    }
    ~StLockedBundle() { HSetState(mBundle, mState); }
    StLockedBundle(const StLockedBundle&) = delete;
    StLockedBundle& operator=(const StLockedBundle&) = delete;

  private:
    Handle mBundle;
    SInt8 mState;
};

OSErr CopyIcon(ResType inType, SInt16 inID, Handle* outIcon) {
    Handle icon = Get1Resource(inType, inID);
    if (icon == nullptr || HandToHand(&icon) != noErr) return afpItemNotFound;
    *outIcon = icon;
    return noErr;
}

OSErr FindIcon(SInt16 inIconType, OSType inCreator, OSType inFileType, Handle* outIcon) {
    const Handle bundle = FindBundle(inCreator);
    if (bundle == nullptr) return afpItemNotFound;
    const StLockedBundle locked(bundle);
    const ResourceReader reader(bundle);
    const std::optional<SInt16> local = FindLocalIcon(reader, inFileType);
    const std::optional<SInt16> id = local ? FindIconID(reader, *local) : std::nullopt;
    if (!id) return afpItemNotFound;
    const ResType type = ResourceTypeOf(inIconType);
    if (type == 0) return noErr;  // Kept: a kind of icon that is unknown here is no error, and none
    return CopyIcon(type, *id, outIcon);
}

OSErr FindIconOnVolume(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum, SInt16 inIconType,
                       OSType inCreator, OSType inFileType, Handle* outIcon) {
    FSVolumeRefNum volume;
    OSErr err = DetermineVRefNum(inVolumeName, inVRefNum, &volume);
    if (err != noErr) return err;
    Str255 name;
    err = GetDesktopFileName(volume, name);
    if (err != noErr) return err;
    const StDesktopFile desktop(volume, name);
    return desktop.IsOpen() ? FindIcon(inIconType, inCreator, inFileType, outIcon)
                            : desktop.Error();
}

}  // namespace

OSErr GetIconFromDesktopFile(ConstStr255Param inVolumeName, FSVolumeRefNum inVRefNum,
                             SInt16 inIconType, OSType inCreator, OSType inFileType,
                             Handle* outIcon) {
    *outIcon = nullptr;
    const OSErr err =
        FindIconOnVolume(inVolumeName, inVRefNum, inIconType, inCreator, inFileType, outIcon);
    return err == noErr || err == memFullErr ? err : OSErr{afpItemNotFound};
}
