// A user's world of its own for a benchmark: its processes meet nobody else's.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

class World {
  public:
    // In one with the receiver, that is the newest recorder and the one wanted.
    explicit World(bool inReceiver = false) {
        std::string pattern = "/tmp/vantor-bench-XXXXXX";
        mRoot = mkdtemp(pattern.data());
        const auto applications = mRoot / "data/vantor/Applications";
        std::filesystem::create_directories(applications);
        const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        if (inReceiver)
            std::filesystem::create_directory_symlink(here / "../receiver/Calverin.app",
                                                      applications / "Receiver.app");
        for (const char* folder : {"run", "state"})
            std::filesystem::create_directory(mRoot / folder);
        std::filesystem::permissions(mRoot / "run", std::filesystem::perms::owner_all);
        setenv("XDG_DATA_HOME", (mRoot / "data").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (mRoot / "run").c_str(), 1);
        setenv("XDG_STATE_HOME", (mRoot / "state").c_str(), 1);
    }
    ~World() {
        std::error_code ignored;
        std::filesystem::remove_all(mRoot, ignored);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;

  private:
    std::filesystem::path mRoot;
};
