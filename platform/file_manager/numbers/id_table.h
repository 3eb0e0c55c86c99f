// The numbers of one volume's folders (and of files whose name needs a number), shared by all
// processes of the user.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "file_manager/catalog/object_status.h"
#include "file_manager/numbers/database.h"
#include "file_manager/numbers/shared_counter.h"

namespace carbon {

// What is known of one number. `parent` and `name` (bytes as on disk) are where the object was seen
// last; the identity's device is 0 for the volume's own one, so that it outlives a restart.
struct IdRecord {
    SInt32 id = 0;
    SInt32 parent = 0;
    std::string name;
    bool isFolder = false;
    ObjectIdentity identity;
};

// Numbers are given on demand from 16 upward and never twice. An object that moved gets a new row;
// the newest row of a number counts. Where the table cannot be written, a number is given that
// means nothing to other processes.
class IdTable {
  public:
    // An empty path (there is no place to keep a table) leaves private numbers only.
    // `inOnReplaced` runs when a new table has taken the place of a damaged one: numbers that
    // anyone remembers are void then.
    IdTable(std::string inPath, std::function<void()> inOnReplaced);

    std::optional<IdRecord> FindById(SInt32 inId);
    std::optional<IdRecord> FindFolder(const ObjectIdentity& inIdentity, const std::string& inName);
    std::optional<IdRecord> FindEntry(SInt32 inParent, const std::string& inName);
    // The number that the record's object has by now, or a new one.
    SInt32 Allocate(const IdRecord& inRecord);
    // Adds a row for an object that has its number already.
    void Correct(const IdRecord& inRecord);
    // Forgets an object that is gone; its number is not given again.
    void Remove(SInt32 inId);
    // False when no file has a number, which is told without looking.
    bool HasFiles() const { return mFileCount.Value() != 0; }
    // The number that the next new object gets.
    SInt32 NextNumber();
    // The folders whose rows are the newest, for a search after a move.
    std::vector<SInt32> RecentFolders(int inCount);

    // No SQLite handle may cross a fork.
    void Close() { mDatabase.reset(); }

  private:
    Database* Open();
    void CountFiles();
    bool GiveUpIfDamaged();
    SInt32 AllocateShared(const IdRecord& inRecord);
    SInt32 AllocatePrivate(IdRecord inRecord);

    std::string mPath;
    std::function<void()> mOnReplaced;
    SharedCounter mFileCount;  // files that ever got a number
    std::unique_ptr<Database> mDatabase;
    bool mIsUnavailable = false;
    std::unordered_map<SInt32, IdRecord> mPrivate;
};

}  // namespace carbon
