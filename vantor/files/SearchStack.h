// The folders that a walking search is in, from the outermost to the one around the present one.
// One stack serves all searches, which therefore must not run at the same time. For IndexedSearch.
#pragma once

#include <Carbon/Carbon.h>

class SearchStack {
  public:
    struct Level {
        UInt32 modified;  // the folder's date when it was entered
        SInt32 dirID;
        SInt16 index;  // of the item to go on with
        SInt16 filler;
    };

    // Makes the stack, if there is none yet. Returns memFullErr.
    static OSErr Make();
    // Whether there is a level to pop from a stack of this depth.
    static bool Holds(SInt16 inDepth);
    // Puts a level on top, and takes the top one, which Holds must have found there. memFullErr
    // when the stack cannot grow: nothing is changed.
    static OSErr Push(const Level& inLevel, SInt16& ioDepth);
    static Level Pop(SInt16& ioDepth);

  private:
    static Handle sLevels;
};
