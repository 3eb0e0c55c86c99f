// The bytes of a disc image without what says when it was made, so that two images of the same
// things can be compared.
#pragma once

#include <string>
#include <vector>

// Takes the image of a data disc (not a hybrid: HFS+ has dates of its own) and blanks
// - the dates of its making in the volume descriptors, and wherever they stand as the dates of the
//   root folder and of the folders that the format adds;
// - the checksums over all that: the three tags, and of the list of checksums the first (of the
//   whole) and the last (of the list).
// All else is left: structure, names, the files' own dates, checksums and contents. Wants files
// whose dates are older than the image. `outBlanked` gets the number of bytes.
// Returns an empty text when something is not where it belongs.
std::string WithoutMaking(std::string inImage, size_t* outBlanked);
