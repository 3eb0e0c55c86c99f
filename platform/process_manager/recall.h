// Living programs and a table that has just been made.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>
#include <vector>

#include "process_manager/table_file.h"

namespace carbon {

// The numbers after which sockets in the runtime folder are named, of the living and the dead.
std::vector<UInt32> SocketNumbers(const std::string& inFolder);

// Lets the programs that listen there enter the table before it is used: one that only waits for
// events would not notice that it is on none, nobody could send to it, and it would be launched a
// second time. Waits no more than a quarter of a second for those that are busy.
void Recall(const std::string& inFolder, const TableLayout& inTable);

}  // namespace carbon
