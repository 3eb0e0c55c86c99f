// Owns the rows of a volume's table of numbers: finding, giving out, correcting.
#include "file_manager/numbers/id_table.h"

#include <algorithm>

namespace carbon {

namespace {

constexpr SInt32 kFirstId = 16;
constexpr SInt32 kFirstPrivateId = 0x3F000000;
// A table that replaces a damaged one starts in a block of its own: nobody knows how far the old
// one had come, and no number may be given twice.
constexpr SInt32 kIdsPerTable = 0x01000000;

constexpr const char* kSchema =
    "CREATE TABLE counter(next INTEGER NOT NULL);"
    "INSERT INTO counter VALUES(0);"
    "CREATE TABLE objects(row INTEGER PRIMARY KEY, id INTEGER NOT NULL, parent INTEGER NOT NULL,"
    " name BLOB NOT NULL, folder INTEGER NOT NULL, device INTEGER NOT NULL, inode INTEGER NOT NULL,"
    " birth INTEGER NOT NULL);"
    "CREATE INDEX objects_id ON objects(id, row);"
    "CREATE INDEX objects_inode ON objects(inode);"
    "CREATE INDEX objects_entry ON objects(parent, name);";

#define NEWEST "row=(SELECT MAX(row) FROM objects AS o WHERE o.id=objects.id)"
#define COLUMNS "SELECT id, parent, name, folder, device, inode, birth FROM objects WHERE "

std::optional<IdRecord> RecordOf(Statement& inStatement) {
    if (!inStatement.NextRow()) return std::nullopt;
    IdRecord record;
    record.id = SInt32(inStatement.Integer(0));
    record.parent = SInt32(inStatement.Integer(1));
    record.name = inStatement.Bytes(2);
    record.isFolder = inStatement.Integer(3) != 0;
    record.identity = {UInt64(inStatement.Integer(4)), UInt64(inStatement.Integer(5)),
                       inStatement.Integer(6)};
    return record;
}

bool Insert(Database& inDatabase, const IdRecord& inRecord) {
    Statement statement(inDatabase,
                        "INSERT INTO objects(id, parent, name, folder, device, inode, birth)"
                        " VALUES(?,?,?,?,?,?,?)",
                        Prepared::kKept);
    statement.Bind(inRecord.id).Bind(inRecord.parent).Bind(inRecord.name);
    statement.Bind(inRecord.isFolder).Bind(SInt64(inRecord.identity.device));
    statement.Bind(SInt64(inRecord.identity.inode)).Bind(inRecord.identity.birth);
    return statement.Run();
}

// Without a moment of birth an inode number alone may be another folder's by now.
bool IsFolderOf(const IdRecord& inRecord, const ObjectIdentity& inIdentity,
                const std::string& inName) {
    if (!inRecord.isFolder || !inRecord.identity.IsSameAs(inIdentity)) return false;
    const bool isSure = inRecord.identity.birth != 0 && inIdentity.birth != 0;
    return isSure || inRecord.name == inName;
}

std::optional<IdRecord> RowOfId(Database& inDatabase, SInt32 inId) {
    Statement rows(inDatabase, COLUMNS "id=? ORDER BY row DESC LIMIT 1", Prepared::kKept);
    return RecordOf(rows.Bind(inId));
}

std::optional<IdRecord> RowOfFolder(Database& inDatabase, const ObjectIdentity& inIdentity,
                                    const std::string& inName) {
    Statement rows(inDatabase, COLUMNS "inode=? AND folder=1 AND " NEWEST, Prepared::kKept);
    rows.Bind(SInt64(inIdentity.inode));
    while (auto record = RecordOf(rows)) {
        if (IsFolderOf(*record, inIdentity, inName)) return record;
    }
    return std::nullopt;
}

std::optional<IdRecord> RowOfEntry(Database& inDatabase, SInt32 inParent,
                                   const std::string& inName) {
    Statement rows(inDatabase,
                   COLUMNS "parent=? AND name=? AND folder=0 AND " NEWEST " ORDER BY row DESC",
                   Prepared::kKept);
    return RecordOf(rows.Bind(inParent).Bind(inName));
}

// The next number to give, 0 when that cannot be told.
SInt32 NextId(Database& inDatabase, const std::string& inPath) {
    Statement next(inDatabase, "SELECT next FROM counter", Prepared::kKept);
    if (!next.NextRow()) return 0;
    const SInt32 base = kFirstId + Database::TimesSetAside(inPath) * kIdsPerTable;
    return std::max(SInt32(next.Integer(0)), base);
}

bool SetNextId(Database& inDatabase, SInt32 inNext) {
    return Statement(inDatabase, "UPDATE counter SET next=?", Prepared::kKept).Bind(inNext).Run();
}

}  // namespace

IdTable::IdTable(std::string inPath, std::function<void()> inOnReplaced)
    : mPath(std::move(inPath)),
      mOnReplaced(std::move(inOnReplaced)),
      mFileCount(mPath.empty() ? "" : mPath + ".files"),
      mIsUnavailable(mPath.empty()) {}

Database* IdTable::Open() {
    if (mDatabase && mDatabase->IsReplaced()) {
        mDatabase.reset();
        mOnReplaced();
    }
    if (!mDatabase && !mIsUnavailable) {
        mDatabase = Database::Open(mPath, kSchema);
        mIsUnavailable = !mDatabase;
        if (mDatabase && mDatabase->IsSuccessor()) mOnReplaced();
        if (mDatabase && !HasFiles()) CountFiles();
    }
    return mDatabase.get();
}

// The counter's file may be younger than the table.
void IdTable::CountFiles() {
    Statement files(*mDatabase, "SELECT 1 FROM objects WHERE folder=0 LIMIT 1");
    if (files.NextRow()) mFileCount.Increment();
}

bool IdTable::GiveUpIfDamaged() {
    if (!mDatabase || !mDatabase->IsDamaged()) return false;
    mDatabase->SetAside();
    mDatabase.reset();
    mOnReplaced();
    return true;
}

std::optional<IdRecord> IdTable::FindById(SInt32 inId) {
    const auto found = mPrivate.find(inId);
    if (found != mPrivate.end()) return found->second;
    Database* database = Open();
    if (!database) return std::nullopt;
    auto record = RowOfId(*database, inId);
    GiveUpIfDamaged();
    return record;
}

std::optional<IdRecord> IdTable::FindFolder(const ObjectIdentity& inIdentity,
                                            const std::string& inName) {
    for (const auto& [id, record] : mPrivate) {
        if (IsFolderOf(record, inIdentity, inName)) return record;
    }
    Database* database = Open();
    if (!database) return std::nullopt;
    auto record = RowOfFolder(*database, inIdentity, inName);
    GiveUpIfDamaged();
    return record;
}

std::optional<IdRecord> IdTable::FindEntry(SInt32 inParent, const std::string& inName) {
    for (const auto& [id, record] : mPrivate) {
        if (!record.isFolder && record.parent == inParent && record.name == inName) return record;
    }
    Database* database = Open();
    if (!database) return std::nullopt;
    auto record = RowOfEntry(*database, inParent, inName);
    GiveUpIfDamaged();
    return record;
}

// 0 when the table cannot be written. Another process may have been faster, so look once more with
// the table in hand.
SInt32 IdTable::AllocateShared(const IdRecord& inRecord) {
    Database* database = Open();
    if (!database) return 0;
    Transaction transaction(*database);
    if (!transaction.IsOpen()) return 0;
    const auto known = inRecord.isFolder ? RowOfFolder(*database, inRecord.identity, inRecord.name)
                                         : RowOfEntry(*database, inRecord.parent, inRecord.name);
    if (known) return known->id;
    IdRecord record = inRecord;
    record.id = NextId(*database, mPath);
    if (record.id == 0 || record.id >= kFirstPrivateId) return 0;
    if (!SetNextId(*database, record.id + 1) || !Insert(*database, record)) return 0;
    if (!record.isFolder) mFileCount.Increment();
    return transaction.Commit() ? record.id : 0;
}

SInt32 IdTable::AllocatePrivate(IdRecord inRecord) {
    inRecord.id = kFirstPrivateId + SInt32(mPrivate.size());
    mPrivate.emplace(inRecord.id, inRecord);
    if (!inRecord.isFolder) mFileCount.Increment();
    return inRecord.id;
}

SInt32 IdTable::Allocate(const IdRecord& inRecord) {
    if (const SInt32 id = AllocateShared(inRecord)) return id;
    if (GiveUpIfDamaged()) {
        if (const SInt32 id = AllocateShared(inRecord)) return id;
    }
    return AllocatePrivate(inRecord);
}

void IdTable::Correct(const IdRecord& inRecord) {
    const auto found = mPrivate.find(inRecord.id);
    if (found != mPrivate.end()) {
        found->second = inRecord;
    } else if (Database* database = Open()) {
        // A row that cannot be written leaves the old one, which the next use finds wrong again.
        if (!Insert(*database, inRecord)) GiveUpIfDamaged();
    }
}

void IdTable::Remove(SInt32 inId) {
    if (mPrivate.erase(inId) > 0) return;
    if (Database* database = Open()) {
        // A row that stays names a file that is not there, as the next use finds out.
        if (!Statement(*database, "DELETE FROM objects WHERE id=?").Bind(inId).Run())
            GiveUpIfDamaged();
    }
}

SInt32 IdTable::NextNumber() {
    Database* database = Open();
    const SInt32 next = database ? NextId(*database, mPath) : 0;
    return next != 0 ? next : kFirstPrivateId + SInt32(mPrivate.size());
}

std::vector<SInt32> IdTable::RecentFolders(int inCount) {
    std::vector<SInt32> ids;
    if (Database* database = Open()) {
        Statement rows(*database,
                       "SELECT id FROM objects WHERE folder=1 ORDER BY row DESC LIMIT ?");
        rows.Bind(inCount);
        while (rows.NextRow()) ids.push_back(SInt32(rows.Integer(0)));
    }
    return ids;
}

}  // namespace carbon
