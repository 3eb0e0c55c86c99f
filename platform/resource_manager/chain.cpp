// Owns which files are open, their order, and which one is current.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <utility>

#include "file_manager/catalog/catalog.h"
#include "posix/across_forks.h"
#include "resource_manager/application_file.h"
#include "resource_manager/internal.h"

namespace carbon {

Chain::Chain() {
    mFiles.push_back(std::make_unique<ResourceFile>());
    mSystem = mCurrent = mFiles.back().get();
    mOrder.push_back(mSystem);
}

std::vector<ResourceFile*>::const_iterator Chain::PlaceOf(const ResourceFile* inFile) const {
    return std::find(mOrder.begin(), mOrder.end(), inFile);
}

std::span<ResourceFile* const> Chain::Searched() const {
    return {PlaceOf(mCurrent), mOrder.end()};
}

std::span<ResourceFile* const> Chain::CurrentAlone() const {
    return {&mCurrent, 1};
}

ResourceFile* Chain::Find(ResFileRefNum inNumber) const {
    for (const auto& file : mFiles) {
        if (file->Number() == inNumber) return file.get();
    }
    return nullptr;
}

ResourceFile* Chain::FindOpen(const FSRef& inFile, ForkKind inKind, bool inWritable) const {
    const auto isIt = [&](const auto& inEntry) {
        const ForkCarrier* carrier = inEntry->Carrier();
        return carrier && carrier->Carries(inFile, inKind) &&
               (carrier->IsWritable() || !inWritable);
    };
    const auto found = std::find_if(mFiles.rbegin(), mFiles.rend(), isIt);
    return found == mFiles.rend() ? nullptr : found->get();
}

bool Chain::Holds(const ResourceFile* inFile) const {
    return PlaceOf(inFile) != mOrder.end();
}

void Chain::Push(std::unique_ptr<ResourceFile> inFile) {
    mOrder.insert(mOrder.begin(), inFile.get());
    mCurrent = inFile.get();
    mFiles.push_back(std::move(inFile));
}

void Chain::Close(ResourceFile* inFile) {
    Detach(inFile);
    if (inFile == mApplication) mApplication = nullptr;
    std::erase_if(mFiles, [&](const auto& inEntry) { return inEntry.get() == inFile; });
}

bool Chain::Detach(ResourceFile* inFile) {
    const auto place = PlaceOf(inFile);
    if (place == mOrder.end() || inFile == mSystem) return false;
    if (inFile == mCurrent) mCurrent = place + 1 == mOrder.end() ? mSystem : *(place + 1);
    mOrder.erase(place);
    return true;
}

bool Chain::Insert(ResourceFile* inFile, RsrcChainLocation inWhere) {
    if (Holds(inFile)) return false;
    const bool above = inWhere == kRsrcChainAboveApplicationMap;
    auto place = mOrder.cbegin();
    if (inWhere == kRsrcChainBelowSystemMap) {
        place = mOrder.cend();
    } else if (inWhere != kRsrcChainAboveAllMaps) {
        // Without resources of the application's own the System file's place is theirs.
        place = PlaceOf(mApplication);
        if (place == mOrder.cend())
            place = PlaceOf(mSystem);
        else if (!above)
            ++place;
    }
    mOrder.insert(place, inFile);
    return true;
}

void Chain::Attach() {
    if (std::exchange(mIsAttached, true)) return;
    const auto found = FindApplicationFile();
    FSSpec spec;
    if (!found || SpecFromPath(found->path, &spec) != noErr) return;
    ResFileRefNum number = kResFileNotOpened;
    if (OpenOnChain(*this, spec, found->kind, fsRdPerm, &number) == noErr) mApplication = mCurrent;
}

namespace {

std::mutex& ChainMutex() {
    static auto& mutex = *new std::mutex;  // outlives static objects that call from destructors
    return mutex;
}

const HeldAcrossForks sHeld(ChainMutex());

}  // namespace

ChainAccess::ChainAccess() {
    mLock = std::unique_lock(ChainMutex());
}

Chain& ChainAccess::operator*() const {
    static auto& chain = *new Chain;
    return chain;
}

}  // namespace carbon
