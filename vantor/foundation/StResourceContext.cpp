// The guards of the load flag and of the current resource file.
#include "vantor/foundation/StResourceContext.h"

namespace {

constexpr SInt16 kNoFile = -1;

}  // namespace

StResLoad::StResLoad(Boolean inLoad) : mSavedLoad(LMGetResLoad()) {
    ::SetResLoad(inLoad);
}

StResLoad::~StResLoad() {
    ::SetResLoad(mSavedLoad);
}

StCurResFile::StCurResFile(SInt16 inRefNum) : mSavedRefNum(::CurResFile()) {
    if (inRefNum != kNoFile) ::UseResFile(inRefNum);
}

StCurResFile::~StCurResFile() {
    ::UseResFile(mSavedRefNum);
}

StResourceContext* StResourceContext::sCurrentContext = nullptr;
SInt16 StResourceContext::sAppContext = ::CurResFile();

StResourceContext::StResourceContext(SInt16 inRefNum)
    : mIsValid(inRefNum != kNoFile),
      mInContext(false),
      mSavedMode(false),
      mSavedRefNum(kNoFile),
      mContextRefNum(inRefNum),
      mEnclosing(nullptr) {
    Enter();
}

StResourceContext::~StResourceContext() {
    Exit();
}

void StResourceContext::Enter() {
    mEnclosing = sCurrentContext;
    sCurrentContext = this;
    mInContext = true;
    mSavedRefNum = ::CurResFile();
    if (mIsValid) ::UseResFile(mContextRefNum);
}

void StResourceContext::Exit() {
    // Kept: leaving the outermost context does not reset the pointer to it.
    if (mInContext && mEnclosing != nullptr) {
        sCurrentContext = mEnclosing;
        mEnclosing = nullptr;
    }
    if (mSavedMode || (mIsValid && mInContext)) ::UseResFile(mSavedRefNum);
    mInContext = false;
}

void StResourceContext::Save() {
    Exit();
    mSavedRefNum = ::CurResFile();
    mContextRefNum = kNoFile;
    mSavedMode = true;
    mIsValid = false;
}

bool StResourceContext::CurrentContextIsValid() {
    return sCurrentContext != nullptr && sCurrentContext->IsValid();
}

SInt16 StResourceContext::GetCurrentRefNum() {
    return sCurrentContext != nullptr ? sCurrentContext->mContextRefNum : SInt16{0};
}
