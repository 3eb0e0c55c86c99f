// A drive in memory that does what a test wants of it.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstring>
#include <functional>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "burn/DriveShelf.h"

// Shared by the test and the drives; the functions run on the engine's thread.
struct DriveScript {
    std::function<void(UInt64 inOffset)> beforeWrite;  // of each piece
    std::function<void(UInt64 inOffset)> beforeRead;   // of each piece read back
    std::function<void(std::vector<UInt8>& ioDisc)> afterWrite;
    std::function<void()> beforeFinish;
    std::atomic<bool> hasBlank = true;
    UInt64 capacity = ~UInt64(0);
    std::atomic<bool> finished = false, abandoned = false;
    std::vector<UInt8> disc;
};

class FakeRecording : public recorder::Recording {
  public:
    explicit FakeRecording(DriveScript& ioScript) : mScript(ioScript) {}
    ~FakeRecording() override {
        if (!mScript.finished) mScript.abandoned = true;
    }
    void Reserve(UInt64 inBytes) override {
        if (inBytes > mScript.capacity)
            throw recorder::BurnFailure(dskFulErr, "The disc is too small.");
        mScript.disc.resize(inBytes);
    }
    void Write(recorder::ImageStream& inStream, const recorder::JobContext& inContext) override {
        for (size_t offset = 0; offset < mScript.disc.size(); offset += kChunk) {
            inContext.CheckStop();
            if (mScript.beforeWrite) mScript.beforeWrite(offset);
            inStream.Read(mScript.disc.data() + offset,
                          std::min(kChunk, mScript.disc.size() - offset));
        }
        if (mScript.afterWrite) mScript.afterWrite(mScript.disc);
    }
    void PrepareReadBack() override {}
    void ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) override {
        if (mScript.beforeRead) mScript.beforeRead(inOffset);
        if (inOffset + inSize > mScript.disc.size())
            throw recorder::BurnFailure(dataVerErr, "Beyond the end.");
        std::memcpy(outData, mScript.disc.data() + inOffset, inSize);
    }
    std::string Finish() override {
        if (mScript.beforeFinish) mScript.beforeFinish();
        mScript.finished = true;
        return {};
    }

  private:
    DriveScript& mScript;
};

class FakeDrive : public recorder::Drive {
  public:
    explicit FakeDrive(DriveScript& ioScript) : mScript(ioScript) {}
    recorder::DriveInfo Probe() override {
        return {"fake", "a fake", true,
                mScript.hasBlank ? recorder::kMediumOther | recorder::kMediumBlank : 0,
                mScript.capacity};
    }
    bool HasBlankDisc() override { return mScript.hasBlank; }
    void Eject() override { mScript.hasBlank = false; }
    std::unique_ptr<recorder::Recording> Begin(const recorder::DiscGoal&) override {
        return std::make_unique<FakeRecording>(mScript);
    }

  private:
    DriveScript& mScript;
};

class FakeDrives : public recorder::DriveSource {
  public:
    explicit FakeDrives(DriveScript& ioScript) : mScript(ioScript) {}
    std::vector<std::string> Identifiers() override { return identifiers; }
    std::unique_ptr<recorder::Drive> Open(const std::string& inIdentifier) override {
        const std::lock_guard lock(mMutex);
        mOpened = inIdentifier;
        return std::make_unique<FakeDrive>(mScript);
    }

    std::string Opened() {  // last
        const std::lock_guard lock(mMutex);
        return mOpened;
    }

    std::vector<std::string> identifiers = {"fake"};

  private:
    DriveScript& mScript;
    std::mutex mMutex;
    std::string mOpened;
};
