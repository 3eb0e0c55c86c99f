// Finding and judging the recording application as it was before Mac OS X, when an application was
// one file and volumes knew where each was. For CVantor.
#pragma once

#include <Carbon/Carbon.h>

// Whether a file is of the right type and creator and its 'vers' resource tells 7.0 or more.
// Thrown: the codes of opening its resource fork, and that of a missing resource.
bool IsClassicFileValid(const FSSpec& inSpec);

// The first volume wins whose application is valid. Thrown: kMirelInvalid when there were only
// others, kMirelNotFound when there were none, and the codes of asking a volume.
void FindOnClassicVolumes(FSSpec& outSpec);
