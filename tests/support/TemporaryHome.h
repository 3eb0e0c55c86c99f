// A user's world of their own for one test program: runtime, state and data folders that vanish
// afterwards. Construct it before the first platform call (a global in the test file is early
// enough), and hand its environment to child processes by inheritance.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

class TemporaryHome {
  public:
    TemporaryHome() {
        std::string pattern = "/tmp/vantor-test-XXXXXX";
        mRoot = mkdtemp(pattern.data());
        Use("XDG_RUNTIME_DIR", "run");
        Use("XDG_STATE_HOME", "state");
        Use("XDG_DATA_HOME", "data");
        Use("XDG_CONFIG_HOME", "config");
        setenv("XDG_DATA_DIRS", (mRoot / "share").c_str(), 1);
    }
    ~TemporaryHome() {
        std::error_code ignored;
        std::filesystem::remove_all(mRoot, ignored);
    }
    TemporaryHome(const TemporaryHome&) = delete;
    TemporaryHome& operator=(const TemporaryHome&) = delete;

    const std::filesystem::path& Root() const { return mRoot; }

  private:
    void Use(const char* inVariable, const char* inFolder) {
        const auto folder = mRoot / inFolder;
        std::filesystem::create_directory(folder);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        setenv(inVariable, folder.c_str(), 1);
    }

    std::filesystem::path mRoot;
};
