// One file with its data fork and its resource fork.
#include "vantor/files/LFile.h"

#include "vantor/foundation/LException.h"
#include "vantor/foundation/StHandle.h"

namespace {

constexpr SInt16 kNotOpen = -1;

// For destructors: the file is left as it is whatever goes wrong.
template <typename Close>
void CloseQuietly(Close inClose) {
    try {
        inClose();
    } catch (...) {
        // Kept: the object goes away, and the other fork is closed all the same.
    }
}

}  // namespace

LFile::LFile() : mSpec{}, mDataForkRefNum(kNotOpen), mResourceForkRefNum(kNotOpen) {}

LFile::LFile(const FSSpec& inSpec)
    : mSpec(inSpec), mDataForkRefNum(kNotOpen), mResourceForkRefNum(kNotOpen) {}

LFile::LFile(AliasHandle inAlias, Boolean& outWasChanged, FSSpec* inFromFile) : LFile() {
    ThrowIfError(ResolveAlias(inFromFile, inAlias, &mSpec, &outWasChanged));
}

LFile::~LFile() {
    CloseQuietly([this] { LFile::CloseDataFork(); });
    CloseQuietly([this] { LFile::CloseResourceFork(); });
}

void LFile::GetSpecifier(FSSpec& outSpec) const {
    outSpec = mSpec;
}

void LFile::SetSpecifier(const FSSpec& inSpec) {
    CloseDataFork();
    CloseResourceFork();
    mSpec = inSpec;
}

bool LFile::UsesSpecifier(const FSSpec& inSpec) const {
    return EqualFileSpec(mSpec, inSpec);
}

bool LFile::SpecifierExists() const {
    FInfo info;
    return FSpGetFInfo(&mSpec, &info) == noErr;
}

bool LFile::EqualFileSpec(const FSSpec& inFirst, const FSSpec& inSecond) {
    return inFirst.vRefNum == inSecond.vRefNum && inFirst.parID == inSecond.parID &&
           EqualString(inFirst.name, inSecond.name, false, true);
}

AliasHandle LFile::MakeAlias(FSSpec* inFromFile) {
    AliasHandle alias = nullptr;
    NewAlias(inFromFile, &mSpec, &alias);  // Kept: a failure shows as a null alias only.
    return alias;
}

void LFile::CreateNewFile(OSType inCreator, OSType inType, ScriptCode inScript) {
    FSpCreateResFile(&mSpec, inCreator, inType, inScript);
    ThrowIfError(ResError());
}

void LFile::CreateNewDataFile(OSType inCreator, OSType inType, ScriptCode inScript) {
    ThrowIfError(FSpCreate(&mSpec, inCreator, inType, inScript));
}

SInt16 LFile::OpenDataFork(SInt16 inPermission) {
    const OSErr err = FSpOpenDF(&mSpec, static_cast<SInt8>(inPermission), &mDataForkRefNum);
    // A file open for writing already gives its number with the error; it is not ours to close.
    if (err != noErr) mDataForkRefNum = kNotOpen;
    ThrowIfError(err);
    return mDataForkRefNum;
}

void LFile::CloseDataFork() {
    if (mDataForkRefNum == kNotOpen) return;
    const OSErr err = FSClose(mDataForkRefNum);
    mDataForkRefNum = kNotOpen;
    ThrowIfError(err);
    FlushVol(nullptr, mSpec.vRefNum);
}

Handle LFile::ReadDataFork() {
    SInt32 length = 0;
    ThrowIfError(GetEOF(mDataForkRefNum, &length));
    const StHandleBlock data(length);
    ThrowIfError(SetFPos(mDataForkRefNum, fsFromStart, 0));
    ThrowIfError(FSRead(mDataForkRefNum, &length, *data.Get()));
    return data.Release();
}

SInt32 LFile::WriteDataFork(const void* inBuffer, SInt32 inLength) {
    ThrowIfError(SetFPos(mDataForkRefNum, fsFromStart, 0));
    SInt32 count = inLength;
    const OSErr err = FSWrite(mDataForkRefNum, &count, inBuffer);
    SetEOF(mDataForkRefNum, count);  // Kept: whether this worked is not asked.
    ThrowIfError(err);
    return count;
}

SInt16 LFile::OpenResourceFork(SInt16 inPermission) {
    mResourceForkRefNum = FSpOpenResFile(&mSpec, static_cast<SInt8>(inPermission));
    // Kept: a fork that is not open without an error is an answer, -1.
    if (mResourceForkRefNum == kNotOpen) ThrowIfError(ResError());
    return mResourceForkRefNum;
}

void LFile::CloseResourceFork() {
    if (mResourceForkRefNum == kNotOpen) return;
    CloseResFile(mResourceForkRefNum);
    mResourceForkRefNum = kNotOpen;
    FlushVol(nullptr, mSpec.vRefNum);
}
