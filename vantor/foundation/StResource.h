// Guards that tie a resource to a scope: to read it, to write it, to delete it.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

using ResIDT = SInt16;

// Owns a resource, or any other handle. What is not found is a null handle, or with `inThrowFail`
// thrown as the Resource Manager's code, -192 where that is no error. `inGet1` looks into the
// current resource file alone, else the chain from that file on is searched.
class VANTOR_EXPORT StResource {
  public:
    explicit StResource(Handle inHandle) : mResourceH(inHandle) {}
    StResource(ResType inType, ResIDT inID, Boolean inThrowFail, Boolean inGet1);
    StResource(ResType inType, ConstStr255Param inName, Boolean inThrowFail, Boolean inGet1);
    ~StResource();
    StResource(const StResource&) = delete;
    StResource& operator=(const StResource&) = delete;

    // Each disposes of what is held, then holds and returns what it finds.
    Handle GetResource(ResType inType, ResIDT inID, Boolean inThrowFail, Boolean inGet1);
    Handle GetResource(ResType inType, ConstStr255Param inName, Boolean inThrowFail,
                       Boolean inGet1);
    Handle GetIndResource(ResType inType, SInt16 inIndex, Boolean inThrowFail, Boolean inGet1);

    operator Handle() const { return mResourceH; }
    Handle Get() const { return mResourceH; }
    // Disposes of what is held, unless it is `inHandle` itself, and takes that over.
    void Adopt(Handle inHandle);
    // Makes the resource a plain handle, which stays here.
    void Detach();
    // Releases a resource, disposes of any other handle. Null afterwards.
    void Dispose();

  protected:
    Handle Hold(Handle inHandle, Boolean inThrowFail);

    Handle mResourceH;
};

// A resource to be created or changed: it is written at the end of the scope, and the current
// resource file with it, unless Write or DontWrite came first. Errors in the destructor are lost.
class VANTOR_EXPORT StNewResource : public StResource {
  public:
    // The resource if there is one, its handle grown to `inSize` bytes if that is more, else a new
    // handle of that size. Throws MemError(), or 'nilP' for a handle that could not be had.
    StNewResource(ResType inType, ResIDT inID, Size inSize, Boolean inGet1);
    ~StNewResource();

    void SetResName(ConstStr255Param inName);
    void SetResAttrs(SInt16 inAttributes);
    void DontWrite() { mWriteOnDestroy = false; }
    bool ResourceExists() const { return mResourceExists; }

    // Adds the resource to the current file or changes it where it is, then writes its data, and
    // the file's map too if asked to. A protected resource is written as well, and has the
    // attributes that were set afterwards, or none. Throws the first Resource Manager's error, or
    // 'nilP' without a handle; there is no second attempt.
    void Write(Boolean inUpdateFile = true);

  protected:
    void ChangeExisting();

    Boolean mWriteOnDestroy;
    ResType mType;
    ResIDT mID;
    SInt16 mAttributes;
    Str255 mName;
    Boolean mAttributesChanged;
    Boolean mNameChanged;
    Boolean mResourceExists;
};

// Removes a resource from the current file at the end of the scope. Errors there are lost.
class VANTOR_EXPORT StDeleteResource : public StResource {
  public:
    StDeleteResource(ResType inType, ResIDT inID, Boolean inThrowFail, Boolean inGet1);
    ~StDeleteResource();
};
