// The resources of a file, open for reading.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

namespace cli {

// Throws a Failure that says what is wrong with the resources of a file.
[[noreturn]] void RefuseResources(const std::string& inPath, OSErr inError);

// A file's resource fork or, where that is empty, its data fork; the current resource file as long
// as it lives. Throws a Failure; eofErr is its code for a file without resources.
class ResourceFile {
  public:
    explicit ResourceFile(const std::string& inPath);
    ~ResourceFile() { CloseResFile(mNumber); }
    ResourceFile(const ResourceFile&) = delete;
    ResourceFile& operator=(const ResourceFile&) = delete;

  private:
    ResFileRefNum mNumber = kResFileNotOpened;
};

}  // namespace cli
