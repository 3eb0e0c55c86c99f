// Pascal strings beside std::string: appending, finding, comparing. One iteration is one operation
// on names of the given length; appending starts from an empty string each time and makes it that
// long, eight characters at a time.
#include <Carbon/Carbon.h>
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "vantor/strings/LString.h"
#include "vantor/strings/PStr.h"

namespace {

constexpr size_t kNames = 256;
constexpr char kPiece[] = "eight by";
constexpr UInt8 kPieceLength = 8;

// Names that begin alike, so that a comparison has something to do.
std::vector<std::string> Names(size_t inLength) {
    std::mt19937 random(7);
    std::vector<std::string> names(kNames, std::string(inLength, 'a'));
    for (std::string& name : names)
        for (size_t i = inLength / 2; i < inLength; ++i) name[i] = char('a' + random() % 26);
    return names;
}

std::vector<LStr255> PascalNames(size_t inLength) {
    std::vector<LStr255> names;
    for (const std::string& name : Names(inLength)) names.emplace_back(name.c_str());
    return names;
}

// Calls an operation with neighbouring names.
template <class Names, class Operation>
void EachPair(benchmark::State& state, const Names& inNames, Operation inOperation) {
    size_t i = 0;
    for (auto _ : state) {
        const size_t next = (i + 1) % kNames;
        benchmark::DoNotOptimize(inOperation(inNames[i], inNames[next]));
        i = next;
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_LStr255_Append(benchmark::State& state) {
    LStr255 string;
    for (auto _ : state) {
        string[0] = 0;
        for (SInt64 i = 0; i < state.range(0); i += kPieceLength)
            string.Append(kPiece, kPieceLength);
        benchmark::DoNotOptimize(string.TextPtr());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_PStrCat(benchmark::State& state) {
    Str255 string;
    const LStr255 piece(kPiece, kPieceLength);
    for (auto _ : state) {
        string[0] = 0;
        for (SInt64 i = 0; i < state.range(0); i += kPieceLength) PStrCat(string, piece);
        benchmark::DoNotOptimize(&string);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void BM_StdString_Append(benchmark::State& state) {
    std::string string;
    for (auto _ : state) {
        string.clear();
        for (SInt64 i = 0; i < state.range(0); i += kPieceLength)
            string.append(kPiece, kPieceLength);
        benchmark::DoNotOptimize(string.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

// The last four characters of the name, which stand nowhere else.
void FindEnd(benchmark::State& state, LString::CompareFunc inCompare) {
    LString::sDefaultCompareFunc = inCompare;
    const auto names = PascalNames(size_t(state.range(0)));
    EachPair(state, names, [](const LStr255& inName, const LStr255&) {
        return inName.Find(inName.TextPtr() + inName.Length() - 4, 4, 1);
    });
    LString::sDefaultCompareFunc = LString::ToolboxCompareText;
}

void BM_LStr255_Find(benchmark::State& state) {
    FindEnd(state, LString::ToolboxCompareText);
}

void BM_LStr255_FindBytes(benchmark::State& state) {
    FindEnd(state, LString::CompareBytes);
}

void BM_PStrContains(benchmark::State& state) {
    const auto names = PascalNames(size_t(state.range(0)));
    EachPair(state, names, [](const LStr255& inName, const LStr255&) {
        unsigned char end[5] = {4};
        for (int i = 1; i <= 4; ++i) end[i] = inName[inName.Length() - 4 + i];
        return PStrContains(inName, end);
    });
}

void BM_StdString_Find(benchmark::State& state) {
    EachPair(state, Names(size_t(state.range(0))), [](const std::string& inName, const auto&) {
        return inName.find(inName.data() + inName.size() - 4, 0, 4);
    });
}

void BM_LString_CompareBytes(benchmark::State& state) {
    EachPair(state, PascalNames(size_t(state.range(0))), [](const LStr255& a, const LStr255& b) {
        return LString::CompareBytes(a.TextPtr(), b.TextPtr(), a.Length(), b.Length());
    });
}

void BM_LString_CompareText(benchmark::State& state) {
    EachPair(state, PascalNames(size_t(state.range(0))), [](const LStr255& a, const LStr255& b) {
        return LString::ToolboxCompareText(a.TextPtr(), b.TextPtr(), a.Length(), b.Length());
    });
}

void BM_LString_CompareIgnoringCase(benchmark::State& state) {
    EachPair(state, PascalNames(size_t(state.range(0))), [](const LStr255& a, const LStr255& b) {
        return LString::CompareIgnoringCase(a.TextPtr(), b.TextPtr(), a.Length(), b.Length());
    });
}

void BM_StdString_Compare(benchmark::State& state) {
    EachPair(state, Names(size_t(state.range(0))),
             [](const std::string& a, const std::string& b) { return a.compare(b); });
}

BENCHMARK(BM_LStr255_Append)->Arg(32)->Arg(248);
BENCHMARK(BM_PStrCat)->Arg(32)->Arg(248);
BENCHMARK(BM_StdString_Append)->Arg(32)->Arg(248);
BENCHMARK(BM_LStr255_Find)->Arg(32)->Arg(248);
BENCHMARK(BM_LStr255_FindBytes)->Arg(32)->Arg(248);
BENCHMARK(BM_PStrContains)->Arg(32)->Arg(248);
BENCHMARK(BM_StdString_Find)->Arg(32)->Arg(248);
BENCHMARK(BM_LString_CompareBytes)->Arg(32)->Arg(248);
BENCHMARK(BM_LString_CompareText)->Arg(32)->Arg(248);
BENCHMARK(BM_LString_CompareIgnoringCase)->Arg(32)->Arg(248);
BENCHMARK(BM_StdString_Compare)->Arg(32)->Arg(248);

}  // namespace

BENCHMARK_MAIN();
