// The guard that writes a resource when its scope ends.
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StResource.h"
#include "vantor/strings/LString.h"

namespace {

void ThrowIfResourceError() {
    ThrowIfError(ResError());
}

bool IsNameOf(Handle inResource, ConstStr255Param inName) {
    Str255 name = {};
    ::GetResInfo(inResource, nullptr, nullptr, name);
    return EqualString(name, inName, true, true);
}

}  // namespace

StNewResource::StNewResource(ResType inType, ResIDT inID, Size inSize, Boolean inGet1)
    : StResource(inType, inID, false, inGet1),
      mWriteOnDestroy(true),
      mType(inType),
      mID(inID),
      mAttributes(0),
      mName{},
      mAttributesChanged(false),
      mNameChanged(false),
      mResourceExists(mResourceH != nullptr) {
    if (!mResourceExists) {
        mResourceH = ::NewHandle(inSize);
        if (mResourceH == nullptr) LException::Throw('nilP');
    } else if (::GetHandleSize(mResourceH) < inSize) {
        ::SetHandleSize(mResourceH, inSize);
        ThrowIfError(MemError());
    }
}

StNewResource::~StNewResource() {
    if (!mWriteOnDestroy) return;
    try {
        Write(true);
    } catch (...) {
        // Nobody can be told here; who wants to know calls Write.
    }
}

void StNewResource::SetResName(ConstStr255Param inName) {
    LString::CopyPStr(inName, mName, sizeof mName);
    mNameChanged = true;
}

void StNewResource::SetResAttrs(SInt16 inAttributes) {
    mAttributes = inAttributes;
    mAttributesChanged = true;
}

void StNewResource::ChangeExisting() {
    if (::GetResAttrs(mResourceH) & resProtected) {
        ::SetResAttrs(mResourceH, 0);
        // Kept: a protected resource ends with the attributes that were set here, or with none.
        mAttributesChanged = true;
    }
    ::ChangedResource(mResourceH);
    if (mNameChanged && !IsNameOf(mResourceH, mName)) ::SetResInfo(mResourceH, mID, mName);
}

void StNewResource::Write(Boolean inUpdateFile) {
    mWriteOnDestroy = false;
    if (mResourceH == nullptr) LException::Throw('nilP');
    if (mResourceExists) {
        ChangeExisting();
    } else {
        ::AddResource(mResourceH, mType, mID, mName);
        mResourceExists = true;
    }
    ThrowIfResourceError();
    ::WriteResource(mResourceH);
    ThrowIfResourceError();
    if (mAttributesChanged) {
        ::SetResAttrs(mResourceH, mAttributes);
        ThrowIfResourceError();
    }
    if (inUpdateFile) {
        ::UpdateResFile(::CurResFile());
        ThrowIfResourceError();
    }
}
