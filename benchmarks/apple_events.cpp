// Building, copying and flattening events. One iteration is the whole list, record or event named;
// items are 'fss ' of 70 bytes unless the name says otherwise. items_per_second counts the items,
// so growth that is not linear shows.
#include <Carbon/Carbon.h>
#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr Size kSpecSize = 70;
const char kSpec[kSpecSize] = "bytes of a file spec";

AEDescList ListOf(SInt64 inCount) {
    AEDescList list = {typeNull, nullptr};
    AECreateList(nullptr, 0, false, &list);
    for (SInt64 i = 0; i < inCount; ++i) AEPutPtr(&list, 0, typeFSS, kSpec, kSpecSize);
    return list;
}

void CountItems(benchmark::State& ioState) {
    ioState.SetItemsProcessed(ioState.iterations() * ioState.range(0));
}

void BM_AEPutDesc_Append(benchmark::State& ioState) {
    AEDesc spec = {typeNull, nullptr};
    AECreateDesc(typeFSS, kSpec, kSpecSize, &spec);
    for (auto _ : ioState) {
        AEDescList list = {typeNull, nullptr};
        AECreateList(nullptr, 0, false, &list);
        for (SInt64 i = 0; i < ioState.range(0); ++i) AEPutDesc(&list, 0, &spec);
        benchmark::DoNotOptimize(list);
        AEDisposeDesc(&list);
    }
    CountItems(ioState);
    AEDisposeDesc(&spec);
}
BENCHMARK(BM_AEPutDesc_Append)->Arg(1000)->Arg(10000)->Arg(100000);

// A list, into an event, flattened into a buffer: what adding files to a disc costs before it is
// sent.
void BM_AEFlattenDesc_EventOfFiles(benchmark::State& ioState) {
    std::vector<char> buffer;
    for (auto _ : ioState) {
        AEDescList list = ListOf(ioState.range(0));
        AppleEvent event = {typeNull, nullptr};
        AECreateAppleEvent('Fv8k', 'addD', nullptr, kAutoGenerateReturnID, kAnyTransactionID,
                           &event);
        AEPutParamDesc(&event, 'kfil', &list);
        buffer.resize(size_t(AESizeOfFlattenedDesc(&event)));
        AEFlattenDesc(&event, buffer.data(), Size(buffer.size()), nullptr);
        AEDisposeDesc(&event);
        AEDisposeDesc(&list);
    }
    CountItems(ioState);
}
BENCHMARK(BM_AEFlattenDesc_EventOfFiles)->Arg(1000)->Arg(100000);

void BM_AEUnflattenDesc_ListAndRead(benchmark::State& ioState) {
    AEDescList list = ListOf(ioState.range(0));
    std::vector<char> flat(size_t(AESizeOfFlattenedDesc(&list)));
    AEFlattenDesc(&list, flat.data(), Size(flat.size()), nullptr);
    for (auto _ : ioState) {
        AEDescList copy = {typeNull, nullptr};
        AEUnflattenDesc(flat.data(), &copy);
        char spec[kSpecSize];
        for (SInt32 i = 1; i <= ioState.range(0); ++i)
            AEGetNthPtr(&copy, i, typeFSS, nullptr, nullptr, spec, kSpecSize, nullptr);
        benchmark::DoNotOptimize(spec);
        AEDisposeDesc(&copy);
    }
    CountItems(ioState);
    AEDisposeDesc(&list);
}
BENCHMARK(BM_AEUnflattenDesc_ListAndRead)->Arg(1000)->Arg(100000);

void BM_AEPutParamPtr_ManyKeys(benchmark::State& ioState) {
    for (auto _ : ioState) {
        AERecord record = {typeNull, nullptr};
        AECreateList(nullptr, 0, true, &record);
        for (SInt64 i = 0; i < ioState.range(0); ++i)
            AEPutParamPtr(&record, AEKeyword(i), typeSInt32, &i, 4);
        benchmark::DoNotOptimize(record);
        AEDisposeDesc(&record);
    }
    CountItems(ioState);
}
BENCHMARK(BM_AEPutParamPtr_ManyKeys)->Arg(10)->Arg(1000)->Arg(100000);

// A property query as a host builds it: event, specifier of a property of disc 1, direct object.
void BM_AppleEvent_PropertyQuery(benchmark::State& ioState) {
    const ProcessSerialNumber psn = {0, 2};
    for (auto _ : ioState) {
        AEDesc target = {typeNull, nullptr}, none = target, disc = target, key = target,
               object = target;
        AppleEvent event = target;
        AECreateDesc(typeProcessSerialNumber, &psn, sizeof psn, &target);
        AECreateAppleEvent('core', 'getd', &target, kAutoGenerateReturnID, kAnyTransactionID,
                           &event);
        CreateOffsetDescriptor(1, &key);
        CreateObjSpecifier('Disc', &none, formAbsolutePosition, &key, true, &disc);
        AECreateDesc(typeType, "sCod", 4, &key);
        CreateObjSpecifier(cProperty, &disc, formPropertyID, &key, true, &object);
        AEPutParamDesc(&event, keyDirectObject, &object);
        benchmark::DoNotOptimize(event);
        for (AEDesc* desc : {&target, &event, &object}) AEDisposeDesc(desc);
    }
}
BENCHMARK(BM_AppleEvent_PropertyQuery);

void BM_AECoercePtr_TextToPString(benchmark::State& ioState) {
    const char text[] = "Writing: 42 percent of the disc are done";
    for (auto _ : ioState) {
        AEDesc result = {typeNull, nullptr};
        AECoercePtr(typeUTF8Text, text, sizeof text - 1, typePString, &result);
        benchmark::DoNotOptimize(result);
        AEDisposeDesc(&result);
    }
}
BENCHMARK(BM_AECoercePtr_TextToPString);

}  // namespace

BENCHMARK_MAIN();
