// The open fork that carries a resource file.
#pragma once

#include <Carbon/Files.h>
#include <Carbon/Resources.h>

#include <memory>
#include <string>
#include <vector>

namespace carbon {

enum class ForkKind { kData, kResource };

class ForkCarrier {
  public:
    // Opens a fork of an existing file. Codes as HOpenRF gives them.
    static OSErr Open(const FSSpec& inSpec, ForkKind inKind, SInt8 inPermission,
                      std::unique_ptr<ForkCarrier>* outCarrier);
    ~ForkCarrier();
    ForkCarrier(const ForkCarrier&) = delete;
    ForkCarrier& operator=(const ForkCarrier&) = delete;

    SInt16 Number() const { return mNumber; }
    bool IsWritable() const { return mIsWritable; }
    bool Carries(const FSRef& inFile, ForkKind inKind) const;

    OSErr Read(std::vector<UInt8>* outBytes) const;
    // Puts new bytes in place of the fork, at one stroke.
    OSErr Replace(const std::vector<UInt8>& inBytes);
    // What the disk has room for, in bytes.
    UInt64 FreeBytes() const;

  private:
    ForkCarrier() = default;
    OSErr ReplaceData(const std::string& inPath, const std::vector<UInt8>& inBytes);

    FSRef mFile{};
    ForkKind mKind = ForkKind::kResource;
    SInt16 mNumber = -1;   // of the open fork
    SInt16 mRenewed = -1;  // of the file that took the place of the one `mNumber` has open
    bool mIsWritable = false;
};

// Bytes in place of a file's, at one stroke, with its owner, mode, attributes and creation date.
// Linux: other names (hard links) of the old file keep the old bytes. Codes of the file system; the
// old file is then still there.
OSErr ReplaceFile(const std::string& inPath, const std::vector<UInt8>& inBytes);

}  // namespace carbon
