// Two files that are being exchanged, as a note tells of them.
#pragma once

#include <string>
#include <string_view>

#include "file_manager/metadata/metadata.h"

namespace carbon {

// One of the two, as it was before.
struct ExchangedFile {
    std::string path;
    UInt64 device = 0;
    UInt64 inode = 0;
    UInt64 companion = 0;  // its inode; 0 without one
    SInt64 created = 0;    // Unix time
    Metadata metadata;
};

struct ExchangedFiles {
    ExchangedFile one, other;
};

// For processes of the same user on the same machine.
std::string BytesOfNote(const ExchangedFiles& inFiles);

// False for what is not a whole note: its process was killed before the exchange began.
bool ReadNote(std::string_view inBytes, ExchangedFiles* outFiles);

}  // namespace carbon
