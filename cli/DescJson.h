// Descriptors as JSON that loses nothing.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "Json.h"
#include "Vocabulary.h"

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
// Beside a code, a key and an event stands the "name" that the words have for it, beside the "type"
// of a record its "typeName".
Json JsonOf(const AEDesc* inDesc, const Vocabulary& inWords);

}  // namespace cli
