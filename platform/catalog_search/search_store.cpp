// Owns the tables of the search index.
#include "catalog_search/search_store.h"

#include <algorithm>
#include <cstring>

namespace carbon {

namespace {

// The first generation is a moment, so that a new index never seems to be the one before.
constexpr const char* kSchema =
    "CREATE TABLE state(generation INTEGER NOT NULL);"
    "INSERT INTO state VALUES(CAST(strftime('%s','now') AS INTEGER));"
    "CREATE TABLE folders(row INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER NOT NULL,"
    " name BLOB NOT NULL, inode INTEGER NOT NULL, modified INTEGER NOT NULL,"
    " changed INTEGER NOT NULL, settled INTEGER NOT NULL, hash INTEGER NOT NULL,"
    " filter BLOB NOT NULL);"
    "CREATE TABLE contents(row INTEGER PRIMARY KEY, entries BLOB NOT NULL);"
    "INSERT INTO folders VALUES(1, 1, x'', 0, 0, 0, 0, 0, x'');";

std::string_view BytesOf(const SearchFilter& inFilter) {
    return {reinterpret_cast<const char*>(inFilter.bits.data()), sizeof inFilter.bits};
}

SearchFolder FolderOf(const Statement& inRow) {
    SearchFolder folder;
    folder.row = inRow.Integer(0);
    folder.name = inRow.Bytes(2);
    folder.inode = UInt64(inRow.Integer(3));
    folder.modified = inRow.Integer(4);
    folder.changed = inRow.Integer(5);
    folder.isSettled = inRow.Integer(6) != 0;
    folder.hash = UInt64(inRow.Integer(7));
    const auto filter = inRow.View(8);
    auto& bits = folder.filter.bits;
    if (filter.size() == sizeof bits) std::memcpy(bits.data(), filter.data(), sizeof bits);
    return folder;
}

Statement& BindFacts(Statement& ioStatement, const SearchFolder& inFolder) {
    ioStatement.Bind(SInt64(inFolder.inode)).Bind(inFolder.modified).Bind(inFolder.changed);
    ioStatement.Bind(inFolder.isSettled).Bind(SInt64(inFolder.hash));
    return ioStatement.Bind(BytesOf(inFolder.filter));
}

}  // namespace

std::unique_ptr<SearchStore> SearchStore::Open(const std::string& inPath) {
    auto database = inPath.empty() ? nullptr : Database::Open(inPath, kSchema);
    if (!database) return nullptr;
    return std::unique_ptr<SearchStore>(new SearchStore(std::move(database)));
}

SearchStore::SearchStore(std::unique_ptr<Database> inDatabase)
    : mDatabase(std::move(inDatabase)),
      mVersion(*mDatabase, "PRAGMA data_version"),
      mEntries(*mDatabase, "SELECT entries FROM contents WHERE row=?"),
      mAdd(*mDatabase,
           "INSERT INTO folders(parent, name, inode, modified, changed, settled, hash, filter)"
           " VALUES(?,?,?,?,?,?,?,?) RETURNING row"),
      mUpdate(*mDatabase,
              "UPDATE folders SET inode=?, modified=?, changed=?, settled=?, hash=?, filter=?"
              " WHERE row=?"),
      mSetEntries(*mDatabase, "INSERT OR REPLACE INTO contents(row, entries) VALUES(?,?)") {}

SInt64 SearchStore::DataVersion() {
    const SInt64 version = mVersion.Reset().NextRow() ? mVersion.Integer(0) : -1;
    mVersion.Reset();
    return version;
}

UInt32 SearchStore::Generation() {
    Statement state(*mDatabase, "SELECT generation FROM state");
    return state.NextRow() ? UInt32(state.Integer(0)) | 0x40000000 : 0x40000000;
}

bool SearchStore::SetGeneration(UInt32 inGeneration) {
    return Statement(*mDatabase, "UPDATE state SET generation=?").Bind(inGeneration).Run();
}

bool SearchStore::Load(std::vector<SearchFolder>* outFolders) {
    outFolders->clear();
    Statement rows(*mDatabase,
                   "SELECT row, parent, name, inode, modified, changed, settled, hash, filter"
                   " FROM folders ORDER BY row");
    while (rows.NextRow()) {
        SearchFolder folder = FolderOf(rows);
        const auto parent = std::lower_bound(
            outFolders->begin(), outFolders->end(), rows.Integer(1),
            [](const SearchFolder& inFolder, SInt64 inRow) { return inFolder.row < inRow; });
        const bool isRoot = outFolders->empty();
        if (!isRoot && (parent == outFolders->end() || parent->row != rows.Integer(1))) continue;
        folder.parent = UInt32(parent - outFolders->begin());
        outFolders->push_back(std::move(folder));
    }
    return !outFolders->empty() && !mDatabase->IsDamaged();
}

bool SearchStore::Add(SInt64 inParentRow, SearchFolder* ioFolder) {
    BindFacts(mAdd.Reset().Bind(inParentRow).Bind(ioFolder->name), *ioFolder);
    if (!mAdd.NextRow()) return false;
    ioFolder->row = mAdd.Integer(0);
    return mAdd.Run();
}

bool SearchStore::Update(const SearchFolder& inFolder) {
    return BindFacts(mUpdate.Reset(), inFolder).Bind(inFolder.row).Run();
}

bool SearchStore::Remove(SInt64 inRow) {
    return Statement(*mDatabase, "DELETE FROM folders WHERE row=?").Bind(inRow).Run() &&
           Statement(*mDatabase, "DELETE FROM contents WHERE row=?").Bind(inRow).Run();
}

bool SearchStore::SetEntries(SInt64 inRow, const std::string& inEntries) {
    return mSetEntries.Reset().Bind(inRow).Bind(inEntries).Run();
}

const std::string& SearchStore::Entries(SInt64 inRow) {
    mLastEntries.clear();
    if (mEntries.Reset().Bind(inRow).NextRow()) mLastEntries = mEntries.View(0);
    mEntries.Reset();
    return mLastEntries;
}

}  // namespace carbon
