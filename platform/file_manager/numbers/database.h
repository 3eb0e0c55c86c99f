// One SQLite file that many processes share, and what it takes to use it safely.
#pragma once

#include <Carbon/MacTypes.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace carbon {

// Opened by one process and never carried over a fork (see catalog_state.h). Every wait for another
// process ends after ten seconds.
class Database {
  public:
    // Opens or creates the file and runs `inSchema` on a new one. A file that is no sound database
    // is set aside first under a name of its own. Null when the file can neither be written nor
    // read.
    static std::unique_ptr<Database> Open(const std::string& inPath, const char* inSchema);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    bool Execute(const char* inSql);
    sqlite3* Handle() const { return mHandle; }
    // A statement met damage: set the file aside and open again.
    bool IsDamaged() const { return mIsDamaged; }
    // Opening met damage, and this is a new file.
    bool IsSuccessor() const { return mIsSuccessor; }
    // Another process has set the file aside meanwhile and made a new one.
    bool IsReplaced() const;
    // Renames the damaged file away, unless another process has put a new one in its place.
    void SetAside();
    // How often this file has been set aside so far.
    static SInt32 TimesSetAside(const std::string& inPath);

  private:
    Database(sqlite3* inHandle, std::string inPath, UInt64 inInode)
        : mHandle(inHandle), mPath(std::move(inPath)), mInode(inInode) {}

    friend class Statement;
    void Note(int inResult);
    int Prepare(const char* inSql, sqlite3_stmt** outStatement);
    void Keep(const char* inSql, sqlite3_stmt* inStatement);

    sqlite3* mHandle;
    std::string mPath;
    UInt64 mInode;
    bool mIsDamaged = false;
    bool mIsSuccessor = false;
    std::unordered_map<std::string, sqlite3_stmt*> mKept;
};

// Whether a statement stays prepared for the next one with the same text. One that does must be
// gone before its database is.
enum class Prepared { kOnce, kKept };

// One run of one statement at a time. A failure ends the rows as their natural end does; Run tells
// them apart.
class Statement {
  public:
    Statement(Database& inDatabase, const char* inSql, Prepared inPrepared = Prepared::kOnce);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    Statement& Bind(SInt64 inNumber);
    Statement& Bind(std::string_view inBytes);  // copied
    bool NextRow();
    bool Run();          // to its end; true when nothing failed
    Statement& Reset();  // for another run, with other values
    SInt64 Integer(int inColumn) const { return sqlite3_column_int64(mStatement, inColumn); }
    std::string Bytes(int inColumn) const;
    std::string_view View(int inColumn) const;  // until the next row

  private:
    Database& mDatabase;
    const char* mKeptSql;
    sqlite3_stmt* mStatement = nullptr;
    int mResult;
    int mBound = 0;
};

// Writes of one process at a time; undone unless committed.
class Transaction {
  public:
    explicit Transaction(Database& inDatabase)
        : mDatabase(inDatabase), mIsOpen(inDatabase.Execute("BEGIN IMMEDIATE")) {}
    ~Transaction() {
        if (mIsOpen) mDatabase.Execute("ROLLBACK");
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    bool IsOpen() const { return mIsOpen; }
    bool Commit() {
        if (!mIsOpen || !mDatabase.Execute("COMMIT")) return false;
        mIsOpen = false;
        return true;
    }

  private:
    Database& mDatabase;
    bool mIsOpen;
};

}  // namespace carbon
