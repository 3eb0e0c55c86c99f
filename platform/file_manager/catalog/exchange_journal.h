// What is noted on disk while two files are being exchanged, so that another process can end what a
// killed one has begun.
#pragma once

#include <functional>

#include "file_manager/catalog/exchange_note.h"
#include "posix/UniqueFd.h"

namespace carbon {

// A note that holds until this is destroyed, or the process killed. It is locked meanwhile.
class ExchangeJournal {
  public:
    ExchangeJournal() = default;
    ~ExchangeJournal() { End(); }
    ExchangeJournal(const ExchangeJournal&) = delete;
    ExchangeJournal& operator=(const ExchangeJournal&) = delete;

    // dskFulErr and other codes of the file system, and nothing is noted. Where there is no folder
    // for notes nothing is noted either: the exchange is then not safe from kills.
    OSErr Begin(const ExchangedFiles& inFiles);
    void End();

  private:
    UniqueFd mFile;
    std::string mPath;
};

// Whether any process of the user has begun or ended an exchange since this one last looked. Costs
// no system call.
bool MayExchangesBeLeft();

// Calls `inFinish` for each note whose process has ended, and removes the note. Waits for those
// whose process still lives, up to seconds.
void FinishLeftExchanges(const std::function<void(const ExchangedFiles&)>& inFinish);

}  // namespace carbon
