// The open resource files of this process, the result of the last call, and reading a resource.
#pragma once

#include <Carbon/MacErrors.h>
#include <Carbon/Resources.h>

#include <mutex>
#include <new>
#include <string>
#include <vector>

#include "resource_manager/registry.h"
#include "resource_manager/res_error.h"
#include "resource_manager/resource_file.h"

namespace carbon {

class Chain {
  public:
    Chain();

    // Files from the current one to the System file; the current one alone.
    std::span<ResourceFile* const> Searched() const;
    std::span<ResourceFile* const> CurrentAlone() const;
    std::span<ResourceFile* const> All() const { return mOrder; }

    ResourceFile& Current() const { return *mCurrent; }
    // Null for a number that is none.
    ResourceFile* Find(ResFileRefNum inNumber) const;
    // The newest file with this fork; null without one.
    ResourceFile* FindOpen(const FSRef& inFile, ForkKind inKind, bool inWritable) const;
    bool Holds(const ResourceFile* inFile) const;

    // Takes over a file; it goes on top and becomes the current one.
    void Push(std::unique_ptr<ResourceFile> inFile);
    void Close(ResourceFile* inFile);
    void Use(ResourceFile* inFile) { mCurrent = inFile; }

    // False where it is there, or not there, already.
    bool Detach(ResourceFile* inFile);
    bool Insert(ResourceFile* inFile, RsrcChainLocation inWhere);

    // Opens the application's own resources, the first time.
    void Attach();

    bool isLoading = true;  // what SetResLoad says

  private:
    std::vector<ResourceFile*>::const_iterator PlaceOf(const ResourceFile* inFile) const;

    std::vector<std::unique_ptr<ResourceFile>> mFiles;
    std::vector<ResourceFile*> mOrder;  // newest first
    ResourceFile* mSystem;
    ResourceFile* mApplication = nullptr;
    ResourceFile* mCurrent;
    bool mIsAttached = false;
};

// The one chain of this process, for as long as this lives. Nothing in here takes it twice.
class ChainAccess {
  public:
    ChainAccess();
    Chain& operator*() const;
    Chain* operator->() const { return &**this; }

  private:
    std::unique_lock<std::mutex> mLock;
};

// Reads the data of a resource into its handle, which is empty.
OSErr FillHandle(Resource& ioResource);

// The handle of a resource, with its data where the load flag says so. Null, and a code, on
// failure.
OSErr HandleOf(Chain& inChain, Resource& ioResource, Handle* outHandle);

// Opens a fork as a resource file on top of the chain. A file that is open for writing is not
// opened for that again.
OSErr OpenOnChain(Chain& ioChain, const FSSpec& inSpec, ForkKind inKind, SInt8 inPermission,
                  ResFileRefNum* outNumber);

// Runs the body of a call and keeps its code for ResError.
template <typename Body>
OSErr Call(Body inBody) {
    OSErr error;
    try {
        error = inBody();
    } catch (const std::bad_alloc&) {
        error = memFullErr;
    }
    SetResError(error);
    return error;
}

}  // namespace carbon
