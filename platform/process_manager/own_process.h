// The calling process: its number, its place in the table, the table itself.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

#include "process_manager/table_file.h"

namespace carbon {

// The user's table with the caller in it. Notices a table that was damaged or replaced, and enters
// the caller into the new one under its old number. The codes of CheckIn.
OSErr CurrentTable(TableFile** outTable);

// Whether this is the caller's own number. No table is asked.
bool IsOwnNumber(UInt32 inNumber);

// The low word of a serial number, {0, kCurrentProcess} replaced by the caller's; 0 for a number
// that no process can have. After CheckIn.
UInt32 NumberFromPsn(const ProcessSerialNumber& inPsn);

// Whether a process has had this number, living or not. After CheckIn.
bool WasGivenOut(UInt32 inNumber);

// The socket of the process with this number.
std::string SocketPathOf(UInt32 inNumber);

}  // namespace carbon
