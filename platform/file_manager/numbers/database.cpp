// Owns opening, creating and replacing of SQLite files that many processes use at once.
#include "file_manager/numbers/database.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <cstdio>
#include <thread>

#include "posix/UniqueFd.h"

namespace carbon {

namespace {

constexpr int kBusyMilliseconds = 10000;

// Creating and setting aside happen under this lock: SQLite's own locks begin with a sound file.
// Without it (nobody may write here) an existing file can still be read.
UniqueFd LockFile(const std::string& inPath) {
    UniqueFd lock(open((inPath + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(kBusyMilliseconds);
    while (lock && flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (std::chrono::steady_clock::now() > deadline) return {};
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return lock;
}

UInt64 InodeOf(const std::string& inPath) {
    struct stat facts;
    return stat(inPath.c_str(), &facts) == 0 ? facts.st_ino : 0;
}

std::string AsidePath(const std::string& inPath, SInt32 inTime) {
    return inPath + ".damaged-" + std::to_string(inTime);
}

void MoveAside(const std::string& inPath) {
    const auto aside = AsidePath(inPath, Database::TimesSetAside(inPath) + 1);
    // The log goes first: beside a new file it would be taken for that file's own.
    for (const char* suffix : {"-wal", "-shm", ""}) {
        std::rename((inPath + suffix).c_str(), (aside + suffix).c_str());
    }
}

int ReadVersion(sqlite3* inHandle, int* outVersion) {
    sqlite3_stmt* statement = nullptr;
    int result = sqlite3_prepare_v2(inHandle, "PRAGMA user_version", -1, &statement, nullptr);
    if (result == SQLITE_OK) result = sqlite3_step(statement);
    if (result == SQLITE_ROW) *outVersion = sqlite3_column_int(statement, 0);
    sqlite3_finalize(statement);
    return result == SQLITE_ROW ? SQLITE_OK : result;
}

bool IsDamage(int inResult) {
    const int kind = inResult & 0xFF;
    return kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB;
}

int Prepare(sqlite3* inHandle, const char* inSchema) {
    sqlite3_busy_timeout(inHandle, kBusyMilliseconds);
    sqlite3_db_config(inHandle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    int version = 0;
    int result = ReadVersion(inHandle, &version);
    if (result != SQLITE_OK || version != 0) return result;
    result = sqlite3_exec(inHandle, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    if (result != SQLITE_OK) return result;
    const std::string sql = std::string("BEGIN;") + inSchema + "PRAGMA user_version=1;COMMIT;";
    return sqlite3_exec(inHandle, sql.c_str(), nullptr, nullptr, nullptr);
}

int OpenFile(const std::string& inPath, const char* inSchema, int inFlags, sqlite3** outHandle) {
    int result = sqlite3_open_v2(inPath.c_str(), outHandle, inFlags, nullptr);
    if (result == SQLITE_OK) result = Prepare(*outHandle, inSchema);
    if (result == SQLITE_OK) {
        sqlite3_exec(*outHandle, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
        return result;
    }
    sqlite3_close(*outHandle);
    *outHandle = nullptr;
    return result;
}

}  // namespace

std::unique_ptr<Database> Database::Open(const std::string& inPath, const char* inSchema) {
    const UniqueFd lock = LockFile(inPath);
    sqlite3* handle = nullptr;
    bool isSuccessor = false;
    if (lock) {
        const int writable = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
        const int result = OpenFile(inPath, inSchema, writable, &handle);
        isSuccessor = IsDamage(result);
        if (isSuccessor) {
            MoveAside(inPath);
            OpenFile(inPath, inSchema, writable, &handle);
        }
    }
    if (!handle) OpenFile(inPath, inSchema, SQLITE_OPEN_READONLY, &handle);
    if (!handle) return nullptr;
    std::unique_ptr<Database> database(new Database(handle, inPath, InodeOf(inPath)));
    database->mIsSuccessor = isSuccessor;
    return database;
}

Database::~Database() {
    for (const auto& [sql, statement] : mKept) sqlite3_finalize(statement);
    sqlite3_close_v2(mHandle);
}

bool Database::Execute(const char* inSql) {
    const int result = sqlite3_exec(mHandle, inSql, nullptr, nullptr, nullptr);
    Note(result);
    return result == SQLITE_OK;
}

void Database::Note(int inResult) {
    if (IsDamage(inResult)) mIsDamaged = true;
}

bool Database::IsReplaced() const {
    return InodeOf(mPath) != mInode;
}

void Database::SetAside() {
    const UniqueFd lock = LockFile(mPath);
    if (lock && InodeOf(mPath) == mInode) MoveAside(mPath);
}

SInt32 Database::TimesSetAside(const std::string& inPath) {
    SInt32 times = 0;
    while (InodeOf(AsidePath(inPath, times + 1)) != 0) ++times;
    return times;
}

int Database::Prepare(const char* inSql, sqlite3_stmt** outStatement) {
    if (const auto kept = mKept.extract(inSql)) {
        *outStatement = kept.mapped();
        return SQLITE_OK;
    }
    return sqlite3_prepare_v2(mHandle, inSql, -1, outStatement, nullptr);
}

// Of two that were in use at once, one stays.
void Database::Keep(const char* inSql, sqlite3_stmt* inStatement) {
    sqlite3_reset(inStatement);
    sqlite3_clear_bindings(inStatement);
    if (!mKept.emplace(inSql, inStatement).second) sqlite3_finalize(inStatement);
}

Statement::Statement(Database& inDatabase, const char* inSql, Prepared inPrepared)
    : mDatabase(inDatabase),
      mKeptSql(inPrepared == Prepared::kKept ? inSql : nullptr),
      mResult(inDatabase.Prepare(inSql, &mStatement)) {
    mDatabase.Note(mResult);
}

Statement::~Statement() {
    if (mKeptSql && mStatement) {
        mDatabase.Keep(mKeptSql, mStatement);
    } else {
        sqlite3_finalize(mStatement);
    }
}

Statement& Statement::Bind(SInt64 inNumber) {
    if (mResult == SQLITE_OK) mResult = sqlite3_bind_int64(mStatement, ++mBound, inNumber);
    return *this;
}

Statement& Statement::Bind(std::string_view inBytes) {
    if (mResult == SQLITE_OK) {
        mResult = sqlite3_bind_blob64(mStatement, ++mBound, inBytes.data(), inBytes.size(),
                                      SQLITE_TRANSIENT);
    }
    return *this;
}

bool Statement::NextRow() {
    if (mResult != SQLITE_OK && mResult != SQLITE_ROW) return false;
    mResult = sqlite3_step(mStatement);
    mDatabase.Note(mResult);
    return mResult == SQLITE_ROW;
}

bool Statement::Run() {
    while (NextRow()) continue;
    return mResult == SQLITE_DONE;
}

Statement& Statement::Reset() {
    sqlite3_reset(mStatement);
    if (mStatement) mResult = SQLITE_OK;
    mBound = 0;
    return *this;
}

std::string_view Statement::View(int inColumn) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(mStatement, inColumn));
    const auto length = sqlite3_column_bytes(mStatement, inColumn);
    return bytes ? std::string_view(bytes, size_t(length)) : std::string_view();
}

std::string Statement::Bytes(int inColumn) const {
    return std::string(View(inColumn));
}

}  // namespace carbon
