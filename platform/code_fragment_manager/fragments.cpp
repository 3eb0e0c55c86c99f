// Owns the connections to libraries and the calls of the Code Fragment Manager.
#include <Carbon/CodeFragments.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <new>
#include <vector>

#include "code_fragment_manager/libraries.h"
#include "posix/across_forks.h"
#include "text_utilities/mac_roman.h"

// One for each library that was ever found, for as long as the program runs.
struct OpaqueCFragConnectionID {
    std::vector<carbon::LibraryHold> holds;  // of those who asked for a reference
};

namespace carbon {
namespace {

// Never destroyed: libraries stay loaded to the very end.
struct Connections {
    std::mutex mutex;
    std::map<std::string, OpaqueCFragConnectionID> byPath;
};

Connections& AllConnections() {
    static Connections& connections = *new Connections;
    return connections;
}

const HeldAcrossForks sHeld(AllConnections().mutex);

bool IsOurCode(CFragArchitecture inArchitecture) {
    // Linux: callers name the architecture that they were written for; all of them run here.
    return inArchitecture == kPowerPCCFragArch || inArchitecture == kAnyCFragArch ||
           inArchitecture == kCompiledCFragArch;
}

std::string NameIn(ConstStringPtr inName) {
    return Utf8FromMacRoman({reinterpret_cast<const char*>(inName) + 1, inName[0]});
}

OSErr FindFragment(const std::string& inName, CFragConnectionID* outConnection) {
    const auto path = FindLoadedLibrary(inName);
    if (!path) return cfragNoLibraryErr;
    const std::lock_guard lock(AllConnections().mutex);
    *outConnection = &AllConnections().byPath[*path];
    return noErr;
}

OSErr ReferToFragment(const std::string& inName, CFragConnectionID* outConnection) {
    const auto path = FindLoadedLibrary(inName);
    LibraryHold library = path ? HoldLoadedLibrary(*path) : LoadLibrary(inName);
    if (!library) return cfragNoLibraryErr;
    const std::lock_guard lock(AllConnections().mutex);
    auto& connection = AllConnections().byPath[PathOf(library)];
    connection.holds.push_back(std::move(library));
    *outConnection = &connection;
    return noErr;
}

OSErr Connect(ConstStringPtr inName, CFragArchitecture inArchitecture, CFragLoadOptions inOptions,
              CFragConnectionID* outConnection) {
    if (!IsOurCode(inArchitecture)) return cfragArchitectureErr;
    const std::string name = NameIn(inName);
    if (inOptions == kFindCFrag) return FindFragment(name, outConnection);
    return inOptions == kReferenceCFrag ? ReferToFragment(name, outConnection) : OSErr(paramErr);
}

// The path of the library; empty for what is no connection.
std::string PathOfConnection(CFragConnectionID inConnection) {
    const std::lock_guard lock(AllConnections().mutex);
    for (const auto& [path, connection] : AllConnections().byPath)
        if (&connection == inConnection) return path;
    return {};
}

OSErr LookUp(CFragConnectionID inConnection, ConstStringPtr inName, LibrarySymbol* outSymbol) {
    const std::string path = PathOfConnection(inConnection);
    const LibraryHold library = path.empty() ? nullptr : HoldLoadedLibrary(path);
    if (!library) return cfragConnectionIDErr;
    const std::string name = NameIn(inName);
    const bool isName = !name.empty() && name.find('\0') == std::string::npos;
    const auto symbol = isName ? FindInLibrary(library, name) : std::nullopt;
    if (!symbol) return cfragNoSymbolErr;
    *outSymbol = *symbol;
    return noErr;
}

// Runs what may want for memory, which no caller of C expects to be thrown.
template <class Operation>
OSErr WithoutExceptions(Operation inOperation) {
    try {
        return inOperation();
    } catch (const std::bad_alloc&) {
        return cfragNoClientMemErr;
    }
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSErr GetSharedLibrary(ConstStr63Param libName, CFragArchitecture archType,
                       CFragLoadOptions loadFlags, CFragConnectionID* connID, Ptr* mainAddr,
                       Str255 errMessage) {
    if (!connID && loadFlags != kFindCFrag) return paramErr;  // nobody could end it
    CFragConnectionID connection = nullptr;
    const OSErr error =
        WithoutExceptions([&] { return Connect(libName, archType, loadFlags, &connection); });
    if (mainAddr) *mainAddr = nullptr;
    if (errMessage) errMessage[0] = 0;
    if (errMessage && error) std::copy_n(libName, libName[0] + 1, errMessage);
    if (connID && !error) *connID = connection;
    return error;
}

OSErr FindSymbol(CFragConnectionID connID, ConstStr255Param symName, Ptr* symAddr,
                 CFragSymbolClass* symClass) {
    LibrarySymbol symbol = {};
    const OSErr error = WithoutExceptions([&] { return LookUp(connID, symName, &symbol); });
    if (error) return error;
    if (symAddr) *symAddr = static_cast<Ptr>(symbol.address);
    if (symClass) *symClass = symbol.isCode ? kCodeCFragSymbol : kDataCFragSymbol;
    return noErr;
}

OSErr CloseConnection(CFragConnectionID* connID) {
    if (!connID || PathOfConnection(*connID).empty()) return cfragConnectionIDErr;
    LibraryHold last;
    {
        const std::lock_guard lock(AllConnections().mutex);
        auto& holds = (*connID)->holds;
        if (!holds.empty()) last = std::move(holds.back());
        if (!holds.empty()) holds.pop_back();
    }
    *connID = nullptr;
    return noErr;  // the library goes, if it does, after the lock: it may call back
}
