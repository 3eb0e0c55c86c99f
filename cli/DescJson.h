// Descriptors as JSON that loses nothing.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "Json.h"

namespace cli {

// The data as it lies in the descriptor.
std::string BytesOf(const AEDesc* inDesc);

// Every value has its "type"; then
//   "value"       a whole number up to 64 bits, a finite real number, or a truth value
//   "text"        of the text types, when it makes the same bytes again
//   "code"        of 'type', 'enum' and their like
//   "items"       of a list
//   "fields"      of a record: objects with "key" and "value", in order
//   "class", "id", "parameters", "attributes"   of an event
//   "hex"         everything else
Json JsonOf(const AEDesc* inDesc);

}  // namespace cli
