// The array beside std::vector and a Shell sort over a plain one: appending, fetching, inserting in
// the middle, sorting, searching.
//
//   containers [--json] [--seconds S] [WHAT...]
//
// WHAT: append, fetch, insert, sort, search. Items have 8 bytes, or 4 where it says so; the figures
// are nanoseconds an item. Sorts work on a fresh copy of the same numbers each time.
#include <Carbon/Carbon.h>

#include <algorithm>
#include <random>

#include "cpu_time.h"
#include "vantor/containers/LArray.h"
#include "vantor/containers/LComparator.h"
#include "vantor/containers/TArray.h"

using namespace bench;

namespace {

constexpr size_t kCount = 1'000'000;
constexpr size_t kFew = 10'000;  // for what moves half of the items each time

struct Item {
    UInt32 high, low;
};

void Keep(const void* inPlace) {
    asm volatile("" : : "r"(inPlace) : "memory");
}

template <class Operation>
void Time(const std::string& inName, double inSeconds, size_t inItems, Operation inOperation) {
    emit(inName, MedianCpuTime(inSeconds, inOperation) / double(inItems), "ns/item");
}

std::vector<Item> Items() {
    std::mt19937 random(43);
    std::vector<Item> items(kCount);
    for (Item& item : items) item = {UInt32(random() & 0xFFFF), UInt32(random())};
    return items;
}

std::vector<SInt32> Numbers() {
    std::mt19937 random(42);
    std::vector<SInt32> numbers(kCount);
    for (SInt32& number : numbers) number = SInt32(random() & 0x3FFFFFFF);
    return numbers;
}

void Append(double inSeconds) {
    Time("ours.append", inSeconds, kCount, [] {
        TArray<Item> array;
        for (size_t i = 0; i < kCount; ++i) array.AddItem(Item{1, UInt32(i)});
        Keep(&array);
    });
    Time("vector.append", inSeconds, kCount, [] {
        std::vector<Item> vector;
        for (size_t i = 0; i < kCount; ++i) vector.push_back({1, UInt32(i)});
        Keep(vector.data());
    });
}

void Fetch(double inSeconds) {
    const std::vector<Item> items = Items();
    TArray<Item> array;
    for (const Item& item : items) array.AddItem(item);
    Time("ours.fetch", inSeconds, kCount, [&] {
        Item item;
        for (SInt32 i = 1; array.FetchItemAt(i, item); ++i) Keep(&item);
    });
    Time("vector.fetch", inSeconds, kCount, [&] {
        for (size_t i = 0; i < items.size(); ++i) {
            const Item item = items.at(i);
            Keep(&item);
        }
    });
}

void Insert(double inSeconds) {
    Time("ours.insert", inSeconds, kFew, [] {
        TArray<Item> array;
        for (size_t i = 0; i < kFew; ++i) {
            const Item item{1, UInt32(i)};
            array.InsertItemsAt(1, array.GetCount() / 2 + 1, &item);
        }
        Keep(&array);
    });
    Time("vector.insert", inSeconds, kFew, [] {
        std::vector<Item> vector;
        for (size_t i = 0; i < kFew; ++i)
            vector.insert(vector.begin() + ptrdiff_t(vector.size() / 2), {1, UInt32(i)});
        Keep(vector.data());
    });
}

// --- Sorting

// The order of the bytes in memory, as memcmp has it.
UInt64 ByteOrder(const Item& inItem) {
    UInt64 order;
    std::memcpy(&order, &inItem, sizeof order);
    return __builtin_bswap64(order);
}

bool IsBefore(const Item& inOne, const Item& inOther) {
    return ByteOrder(inOne) < ByteOrder(inOther);
}
bool IsBefore(SInt32 inOne, SInt32 inOther) {
    return inOne < inOther;
}

size_t FirstGap(size_t inCount) {
    size_t gap = 1;
    while (gap < inCount / 9) gap = 3 * gap + 1;
    return gap;
}

template <class T>
void ShellInline(std::vector<T>& ioItems) {
    T* const items = ioItems.data() - 1;  // numbered from 1
    const size_t count = ioItems.size();
    for (size_t gap = FirstGap(count); gap > 0; gap /= 3) {
        for (size_t i = gap + 1; i <= count; ++i) {
            const T scratch = items[i];
            size_t j = i;
            for (; j > gap && IsBefore(scratch, items[j - gap]); j -= gap)
                items[j] = items[j - gap];
            items[j] = scratch;
        }
    }
}

__attribute__((noinline)) void ShellVirtual(void* ioData, size_t inCount, size_t inSize,
                                            const LComparator& inComparator) {
    char* const items = static_cast<char*>(ioData) - inSize;
    char scratch[64];
    const auto size = UInt32(inSize);
    for (size_t gap = FirstGap(inCount); gap > 0; gap /= 3) {
        for (size_t i = gap + 1; i <= inCount; ++i) {
            std::memcpy(scratch, items + i * inSize, inSize);
            size_t j = i;
            for (; j > gap &&
                   inComparator.Compare(scratch, items + (j - gap) * inSize, size, size) < 0;
                 j -= gap)
                std::memcpy(items + j * inSize, items + (j - gap) * inSize, inSize);
            std::memcpy(items + j * inSize, scratch, inSize);
        }
    }
}

// A host's own: the same orders, but nothing that the library knows.
class NumberComparator : public LComparator {
  public:
    SInt32 Compare(const void* inOne, const void* inOther, UInt32, UInt32) const override {
        SInt32 one, other;
        std::memcpy(&one, inOne, sizeof one);
        std::memcpy(&other, inOther, sizeof other);
        return SInt32(UInt32(one) - UInt32(other));
    }
};
class BytesComparator : public LComparator {
  public:
    SInt32 Compare(const void* inOne, const void* inOther, UInt32 inSizeOne,
                   UInt32 inSizeTwo) const override {
        const int order = std::memcmp(inOne, inOther, std::min(inSizeOne, inSizeTwo));
        return order != 0 ? order : SInt32(inSizeOne) - SInt32(inSizeTwo);
    }
};

// Times only the sort; the copy is made outside.
template <class Prepare, class Sort>
void TimeSort(const std::string& inName, double inSeconds, Prepare inPrepare, Sort inSort) {
    emit(inName, MedianCpuTime(inSeconds, inPrepare, inSort) / double(kCount), "ns/item");
}

template <class T>
LArray ArrayOf(const std::vector<T>& inItems, LComparator* inComparator) {
    LArray array(sizeof(T), inComparator, false);
    array.InsertItemsAt(UInt32(inItems.size()), 1, nullptr);
    std::memcpy(array.GetItemPtr(1), inItems.data(), inItems.size() * sizeof(T));
    return array;
}

template <class T, class OwnComparator>
void SortOf(const std::string& inSize, double inSeconds, const std::vector<T>& inItems) {
    const auto copy = [&] { return inItems; };
    const auto sort = [](LArray& ioArray) { ioArray.Sort(); };
    TimeSort(
        "ours.sort_" + inSize, inSeconds, [&] { return ArrayOf(inItems, nullptr); }, sort);
    TimeSort("plain.sort_" + inSize, inSeconds, copy,
             [](std::vector<T>& ioItems) { ShellInline(ioItems); });
    TimeSort(
        "ours.sort_own_" + inSize, inSeconds, [&] { return ArrayOf(inItems, new OwnComparator); },
        sort);
    TimeSort("plain.sort_own_" + inSize, inSeconds, copy, [](std::vector<T>& ioItems) {
        const LComparator* comparator = new OwnComparator;
        Keep(comparator);
        ShellVirtual(ioItems.data(), ioItems.size(), sizeof(T), *comparator);
        delete comparator;
    });
}

void Sort(double inSeconds) {
    SortOf<SInt32, NumberComparator>("4", inSeconds, Numbers());
    SortOf<Item, BytesComparator>("8", inSeconds, Items());
}

void Search(double inSeconds) {
    std::vector<SInt32> numbers = Numbers();
    const std::vector<SInt32> wanted(numbers.begin(), numbers.begin() + 100'000);
    LArray array = ArrayOf(numbers, nullptr);
    array.Sort();
    std::sort(numbers.begin(), numbers.end());
    Time("ours.search", inSeconds, wanted.size(), [&] {
        for (const SInt32& number : wanted)
            if (array.FetchIndexOf(&number) == 0) std::abort();
    });
    Time("vector.search", inSeconds, wanted.size(), [&] {
        for (const SInt32& number : wanted)
            if (*std::lower_bound(numbers.begin(), numbers.end(), number) != number) std::abort();
    });
}

}  // namespace

int main(int argc, char** argv) {
    auto args = arguments(argc, argv);
    const double seconds = std::atof(take_option(args, "--seconds", "0.3").c_str());
    const auto wants = [&](const char* inWhat) {
        return args.empty() || std::find(args.begin(), args.end(), inWhat) != args.end();
    };
    if (wants("append")) Append(seconds);
    if (wants("fetch")) Fetch(seconds);
    if (wants("insert")) Insert(seconds);
    if (wants("sort")) Sort(seconds);
    if (wants("search")) Search(seconds);
    return 0;
}
