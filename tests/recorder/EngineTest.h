// What the tests of the engine have in common: a folder to work in, and the wait for the end of a
// job.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "burn/BurnEngine.h"
#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "support/Tree.h"

namespace fs = std::filesystem;

// For its lifetime the administrator can read as little as anybody.
class AsAnybody {
  public:
    AsAnybody() { mChanged = geteuid() == 0 && seteuid(65534) == 0; }
    ~AsAnybody() { EXPECT_TRUE(!mChanged || seteuid(0) == 0); }
    AsAnybody(const AsAnybody&) = delete;
    AsAnybody& operator=(const AsAnybody&) = delete;

  private:
    bool mChanged;
};

class EngineTest : public ::testing::Test {
  protected:
    EngineTest() {
        fs::permissions(mHome.Root(), fs::perms(0755));
        mRoot = mHome.Root() / "work";
        mSource = mRoot / "source";
        fs::create_directories(mSource);
        mImage = mRoot / "disc.iso";
    }
    ~EngineTest() override { RunCommand({"chmod", "-R", "u+rwX", mRoot}); }

    recorder::BurnRequest Request(const std::string& inDrive) const {
        recorder::BurnRequest request;
        request.driveId = inDrive;
        request.paths = {mSource};
        return request;
    }

    // The job's end, or a failure when it has none.
    static recorder::BurnEngine::Snapshot End(recorder::BurnEngine& inEngine) {
        EXPECT_TRUE(inEngine.WaitUntilQuiet(120'000)) << inEngine.Progress().text;
        return inEngine.Take();
    }

    static void Put(const fs::path& inPath, size_t inBytes, unsigned inSeed = 1) {
        fs::create_directories(inPath.parent_path());
        WriteFile(inPath, inBytes, inSeed);
    }

    TemporaryHome mHome;
    fs::path mRoot, mSource, mImage;
};
