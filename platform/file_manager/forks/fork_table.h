// The forks that this process has open, by number.
#pragma once

#include "file_manager/forks/open_fork.h"

namespace carbon {

// Gives a path its number, which none has had for as long as possible. tmfoErr.
OSErr AddOpenFork(std::shared_ptr<OpenFork> inFork, SInt16* outNumber);

// rfNumErr for a number that no fork has, fnOpnErr for one that none has now.
OSErr FindOpenFork(SInt16 inNumber, std::shared_ptr<OpenFork>* outFork);
OSErr TakeOpenFork(SInt16 inNumber, std::shared_ptr<OpenFork>* outFork);

struct NumberedFork {
    SInt16 number;
    std::shared_ptr<OpenFork> fork;
};
// In the order in which they were opened.
std::vector<NumberedFork> OpenForksInOrder();

// This process's paths to one fork.
std::vector<NumberedFork> OpenPathsTo(dev_t inDevice, ino_t inInode, Fork inFork);

// Whether this process has a fork on a volume open.
bool HasOpenForks(FSVolumeRefNum inVolume);

// What ioFlAttrib tells of a file's forks, as far as this process has them open.
UInt8 OpenForkAttributes(dev_t inDevice, ino_t inInode);

// Whether any process of this computer has a fork of the file open through these calls: such a file
// is not deleted. Costs an opening of the file.
bool IsOpenSomewhere(const std::string& inPath);

}  // namespace carbon
