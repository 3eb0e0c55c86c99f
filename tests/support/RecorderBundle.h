// Recording applications put where Launch Services looks, and what one of them was sent.
#pragma once

#include <Carbon/Carbon.h>

#include <filesystem>
#include <string>
#include <vector>

struct BundleFacts {
    std::string folder = "Calverin.app";
    std::string name = "Calverin";  // CFBundleName; empty: none
    std::string version = "99.0";   // CFBundleVersion, above any other that may be about
    std::string type = "APPL";
    std::string creator = "Fv8k";
    bool backgroundOnly = false;
};

// Where bundles of this test's user are found.
std::filesystem::path ApplicationsFolder();

// A bundle around the scripted recorder, the program of this build.
class RecorderBundle {
  public:
    explicit RecorderBundle(const BundleFacts& inFacts = {});

    const std::filesystem::path& Path() const { return mPath; }

    // The bundle's folder as the File Manager names it.
    FSSpec Spec() const;
    // Writes Info.plist and PkgInfo anew.
    void Describe(const BundleFacts& inFacts) const;
    // Replaces the script; see ScriptedRecorder/Script.h.
    void Script(const std::string& inLines) const;
    // What has been received since the last Forget, a line each, without 'oapp' and 'rapp'.
    std::vector<std::string> Events() const;
    // The same with them.
    std::vector<std::string> AllEvents() const;
    void Forget() const;

  private:
    std::filesystem::path mPath;
    std::filesystem::path mResources;
};
