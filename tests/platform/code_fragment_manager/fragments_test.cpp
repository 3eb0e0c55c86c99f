// Libraries and their symbols by name.
#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/code_fragment_manager/Fragment.h"
#include "support/PascalString.h"

namespace {

OSErr Find(const char* inName, CFragConnectionID* outConnection) {
    return GetSharedLibrary(PString(inName), kPowerPCCFragArch, kFindCFrag, outConnection, nullptr,
                            nullptr);
}

CFragConnectionID Found(const char* inName) {
    CFragConnectionID connection = nullptr;
    EXPECT_EQ(Find(inName, &connection), noErr) << inName;
    return connection;
}

TEST(GetSharedLibrary, FindsOnlyWhatIsLoaded) {
    CFragConnectionID connection = nullptr;
    EXPECT_EQ(Find("test_fragment", &connection), cfragNoLibraryErr);
    EXPECT_EQ(connection, nullptr);
    const LoadedFragment fragment;
    EXPECT_EQ(Find("test_fragment", &connection), noErr);
    EXPECT_NE(connection, nullptr);
}

TEST(GetSharedLibrary, KnowsALibraryByAllItsNames) {
    const LoadedFragment fragment;
    const CFragConnectionID connection = Found("test_fragment");
    EXPECT_EQ(Found("libtest_fragment"), connection);
    EXPECT_EQ(Found("libtest_fragment.so"), connection);
    CFragConnectionID other;
    EXPECT_EQ(Find("fragment", &other), cfragNoLibraryErr);
    EXPECT_EQ(Find("libtest_fragment.so.1", &other), cfragNoLibraryErr);
    EXPECT_EQ(Find("", &other), cfragNoLibraryErr);
    EXPECT_NE(Found("libc.so.6"), connection);
    EXPECT_EQ(Found("libc"), Found("c"));
}

TEST(GetSharedLibrary, TellsWhatItCouldNotFind) {
    Str255 message = {3, 'o', 'l', 'd'};
    Ptr main = reinterpret_cast<Ptr>(&message);
    EXPECT_EQ(
        GetSharedLibrary(PString("nowhere"), kAnyCFragArch, kFindCFrag, nullptr, &main, message),
        cfragNoLibraryErr);
    EXPECT_EQ(TextOf(message), "nowhere");
    EXPECT_EQ(main, nullptr);
    EXPECT_EQ(GetSharedLibrary(PString("c"), kAnyCFragArch, kFindCFrag, nullptr, &main, message),
              noErr);
    EXPECT_EQ(TextOf(message), "");
}

TEST(GetSharedLibrary, RefusesOtherArchitecturesAndOptions) {
    CFragConnectionID connection = nullptr;
    const PString name("c");
    const auto get = [&](CFragArchitecture inArchitecture, CFragLoadOptions inOptions) {
        return GetSharedLibrary(name, inArchitecture, inOptions, &connection, nullptr, nullptr);
    };
    EXPECT_EQ(get(kMotorola68KCFragArch, kFindCFrag), cfragArchitectureErr);
    EXPECT_EQ(get(kCompiledCFragArch, kFindCFrag), noErr);
    EXPECT_EQ(get(kPowerPCCFragArch, kPrivateCFragCopy), paramErr);
    EXPECT_EQ(get(kPowerPCCFragArch, 0), paramErr);
    EXPECT_EQ(GetSharedLibrary(name, kAnyCFragArch, kReferenceCFrag, nullptr, nullptr, nullptr),
              paramErr);
}

TEST(GetSharedLibrary, KeepsAReferencedLibraryUntilTheConnectionIsClosed) {
    auto fragment = std::make_unique<LoadedFragment>();
    CFragConnectionID connection = nullptr;
    ASSERT_EQ(GetSharedLibrary(PString("test_fragment"), kAnyCFragArch, kReferenceCFrag,
                               &connection, nullptr, nullptr),
              noErr);
    fragment.reset();
    Ptr address = nullptr;
    EXPECT_EQ(FindSymbol(connection, PString("FragmentAnswer"), &address, nullptr), noErr);
    EXPECT_EQ(reinterpret_cast<int (*)()>(address)(), 42);
    EXPECT_EQ(CloseConnection(&connection), noErr);
    EXPECT_EQ(connection, nullptr);
    EXPECT_EQ(Find("test_fragment", &connection), cfragNoLibraryErr);
    EXPECT_EQ(GetSharedLibrary(PString("nowhere"), kAnyCFragArch, kReferenceCFrag, &connection,
                               nullptr, nullptr),
              cfragNoLibraryErr);
}

TEST(FindSymbol, TellsCodeFromData) {
    const LoadedFragment fragment;
    const CFragConnectionID connection = Found("test_fragment");
    Ptr address = nullptr;
    CFragSymbolClass symbolClass = 99;
    ASSERT_EQ(FindSymbol(connection, PString("FragmentAnswer"), &address, &symbolClass), noErr);
    EXPECT_EQ(address, fragment.Address("FragmentAnswer"));
    EXPECT_EQ(symbolClass, kCodeCFragSymbol);
    ASSERT_EQ(FindSymbol(connection, PString("gFragmentNumber"), &address, &symbolClass), noErr);
    EXPECT_EQ(*reinterpret_cast<int*>(address), 7);
    EXPECT_EQ(symbolClass, kDataCFragSymbol);
    EXPECT_EQ(FindSymbol(connection, PString("FragmentAnswer"), nullptr, nullptr), noErr);
}

TEST(FindSymbol, LeavesOutWhatOtherLibrariesDefine) {
    const LoadedFragment fragment;
    Ptr address = reinterpret_cast<Ptr>(1);
    const CFragConnectionID connection = Found("test_fragment");
    EXPECT_EQ(FindSymbol(connection, PString("getpid"), &address, nullptr), cfragNoSymbolErr);
    EXPECT_EQ(FindSymbol(connection, PString("nothing"), &address, nullptr), cfragNoSymbolErr);
    EXPECT_EQ(FindSymbol(connection, PString(""), &address, nullptr), cfragNoSymbolErr);
    EXPECT_EQ(
        FindSymbol(connection, PString(std::string("FragmentAnswer\0x", 16)), &address, nullptr),
        cfragNoSymbolErr);
    EXPECT_EQ(address, reinterpret_cast<Ptr>(1));
}

TEST(FindSymbol, AnswersConnectionsToLibrariesThatHaveGone) {
    CFragConnectionID connection = nullptr;
    {
        const LoadedFragment fragment;
        connection = Found("test_fragment");
    }
    EXPECT_EQ(FindSymbol(connection, PString("FragmentAnswer"), nullptr, nullptr),
              cfragConnectionIDErr);
    const LoadedFragment again;
    EXPECT_EQ(FindSymbol(connection, PString("FragmentAnswer"), nullptr, nullptr), noErr);
}

TEST(CloseConnection, RefusesWhatIsNoConnection) {
    int other = 0;
    CFragConnectionID connection = reinterpret_cast<CFragConnectionID>(&other);
    EXPECT_EQ(CloseConnection(&connection), cfragConnectionIDErr);
    EXPECT_EQ(FindSymbol(connection, PString("x"), nullptr, nullptr), cfragConnectionIDErr);
    connection = nullptr;
    EXPECT_EQ(CloseConnection(&connection), cfragConnectionIDErr);
    EXPECT_EQ(CloseConnection(nullptr), cfragConnectionIDErr);
}

}  // namespace
