// Owns the tables of a desktop database.
#include "desktop_manager/desktop_database.h"

#include <unistd.h>

namespace carbon {

namespace {

constexpr const char* kSchema =
    "CREATE TABLE applications(row INTEGER PRIMARY KEY, creator INTEGER NOT NULL,"
    " parent INTEGER NOT NULL, name BLOB NOT NULL, created INTEGER NOT NULL,"
    " learned INTEGER NOT NULL, UNIQUE(creator, parent, name));"
    "CREATE TABLE icons(row INTEGER PRIMARY KEY, creator INTEGER NOT NULL, type INTEGER NOT NULL,"
    " kind INTEGER NOT NULL, tag INTEGER NOT NULL, bits BLOB NOT NULL,"
    " UNIQUE(creator, type, kind));";

#define APPLICATIONS "SELECT creator, parent, name, created, learned FROM applications "
#define ICONS "SELECT creator, type, kind, tag, bits FROM icons "

std::optional<DesktopApplication> ApplicationOf(Statement& inStatement) {
    if (!inStatement.NextRow()) return std::nullopt;
    return DesktopApplication{OSType(inStatement.Integer(0)), SInt32(inStatement.Integer(1)),
                              inStatement.Bytes(2), UInt32(inStatement.Integer(3)),
                              inStatement.Integer(4) != 0};
}

std::optional<DesktopIcon> IconOf(Statement& inStatement) {
    if (!inStatement.NextRow()) return std::nullopt;
    return DesktopIcon{OSType(inStatement.Integer(0)), OSType(inStatement.Integer(1)),
                       UInt8(inStatement.Integer(2)), SInt32(inStatement.Integer(3)),
                       inStatement.Bytes(4)};
}

}  // namespace

std::unique_ptr<DesktopDatabase> DesktopDatabase::Open(const std::string& inPath) {
    const bool isNew = access(inPath.c_str(), F_OK) != 0;
    auto database = Database::Open(inPath, kSchema);
    if (!database) return nullptr;
    const bool isFresh = isNew || database->IsSuccessor();
    return std::unique_ptr<DesktopDatabase>(new DesktopDatabase(std::move(database), isFresh));
}

bool DesktopDatabase::IsEmpty() {
    Statement any(*mDatabase, "SELECT 1 FROM applications UNION ALL SELECT 1 FROM icons LIMIT 1");
    return !any.NextRow();
}

bool DesktopDatabase::Add(const DesktopApplication& inApplication) {
    Statement add(*mDatabase,
                  "INSERT INTO applications(creator, parent, name, created, learned)"
                  " VALUES(?,?,?,?,?) ON CONFLICT(creator, parent, name) DO UPDATE SET"
                  " created=excluded.created, learned=MIN(learned, excluded.learned)");
    add.Bind(inApplication.creator).Bind(inApplication.parent).Bind(inApplication.name);
    return add.Bind(inApplication.created).Bind(inApplication.isLearned).Run();
}

bool DesktopDatabase::Remove(const DesktopApplication& inApplication) {
    Statement remove(*mDatabase,
                     "DELETE FROM applications WHERE creator=? AND parent=? AND name=?");
    remove.Bind(inApplication.creator).Bind(inApplication.parent).Bind(inApplication.name);
    return remove.Run();
}

std::optional<DesktopApplication> DesktopDatabase::Find(OSType inCreator, SInt16 inIndex) {
    Statement rows(*mDatabase, inIndex == 0
                                   ? APPLICATIONS "WHERE creator=? ORDER BY created DESC, row DESC"
                                   : APPLICATIONS "WHERE creator=? ORDER BY row LIMIT 1 OFFSET ?");
    rows.Bind(inCreator);
    if (inIndex != 0) rows.Bind(inIndex - 1);
    return ApplicationOf(rows);
}

std::vector<DesktopApplication> DesktopDatabase::All(bool inOnlyLearned) {
    std::vector<DesktopApplication> all;
    Statement rows(*mDatabase, APPLICATIONS "ORDER BY row");
    while (auto each = ApplicationOf(rows)) {
        if (each->isLearned || !inOnlyLearned) all.push_back(std::move(*each));
    }
    return all;
}

bool DesktopDatabase::Add(const DesktopIcon& inIcon) {
    Statement add(*mDatabase,
                  "INSERT OR REPLACE INTO icons(creator, type, kind, tag, bits)"
                  " VALUES(?,?,?,?,?)");
    add.Bind(inIcon.creator).Bind(inIcon.type).Bind(inIcon.kind);
    return add.Bind(inIcon.tag).Bind(inIcon.bits).Run();
}

std::optional<DesktopIcon> DesktopDatabase::FindIcon(OSType inCreator, OSType inType,
                                                     UInt8 inKind) {
    Statement rows(*mDatabase, ICONS "WHERE creator=? AND type=? AND kind=?");
    return IconOf(rows.Bind(inCreator).Bind(inType).Bind(inKind));
}

std::optional<DesktopIcon> DesktopDatabase::FindIcon(OSType inCreator, SInt16 inIndex) {
    Statement rows(*mDatabase, ICONS "WHERE creator=? ORDER BY row LIMIT 1 OFFSET ?");
    return IconOf(rows.Bind(inCreator).Bind(inIndex - 1));
}

bool DesktopDatabase::Clear() {
    Transaction transaction(*mDatabase);
    return transaction.IsOpen() && mDatabase->Execute("DELETE FROM applications") &&
           mDatabase->Execute("DELETE FROM icons") && transaction.Commit();
}

// Waits until the log is on the disk.
bool DesktopDatabase::Flush() {
    return mDatabase->Execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

}  // namespace carbon
