// The rows of one volume's desktop database.
#pragma once

#include <Carbon/Files.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "file_manager/numbers/database.h"

namespace carbon {

struct DesktopApplication {
    OSType creator = 0;
    SInt32 parent = 0;
    std::string name;    // as in a file spec
    UInt32 created = 0;  // local time
    bool isLearned = false;

    bool operator==(const DesktopApplication&) const = default;
};

struct DesktopIcon {
    OSType creator = 0;
    OSType type = 0;
    UInt8 kind = 0;  // kLargeIcon ...
    SInt32 tag = 0;
    std::string bits;
};

// Every call may meet damage; whoever makes them looks at IsDamaged then. False after a failure.
class DesktopDatabase {
  public:
    // Null when the file can neither be made nor read.
    static std::unique_ptr<DesktopDatabase> Open(const std::string& inPath);

    // Whether no file was there before; told once.
    bool TakeNewness() { return std::exchange(mIsNew, false); }
    bool IsEmpty();
    bool IsDamaged() const { return mDatabase->IsDamaged(); }
    bool IsReplaced() const { return mDatabase->IsReplaced(); }
    void SetAside() { mDatabase->SetAside(); }

    // The same creator and place replace the row. One that was entered stays entered.
    bool Add(const DesktopApplication& inApplication);
    bool Remove(const DesktopApplication& inApplication);
    // 0: the one that was made last; 1 and up: each of them.
    std::optional<DesktopApplication> Find(OSType inCreator, SInt16 inIndex);
    std::vector<DesktopApplication> All(bool inOnlyLearned);

    bool Add(const DesktopIcon& inIcon);
    std::optional<DesktopIcon> FindIcon(OSType inCreator, OSType inType, UInt8 inKind);
    std::optional<DesktopIcon> FindIcon(OSType inCreator, SInt16 inIndex);

    bool Clear();
    bool Flush();

  private:
    DesktopDatabase(std::unique_ptr<Database> inDatabase, bool inIsNew)
        : mDatabase(std::move(inDatabase)), mIsNew(inIsNew) {}

    std::unique_ptr<Database> mDatabase;
    bool mIsNew;
};

}  // namespace carbon
