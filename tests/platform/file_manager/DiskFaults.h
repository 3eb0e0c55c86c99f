// What a test makes happen at the calls that change names and bytes on disk. Linking DiskFaults.cpp
// puts it in front of the C library.
#pragma once

struct DiskFaults {
    bool hasNoLinks = false;          // link fails as on a file system without links
    bool hasNoNamelessFiles = false;  // open with O_TMPFILE fails
    int killAt = 0;  // the process kills itself before so many changes from now; 0 never
};

extern DiskFaults gDiskFaults;
