// Reads 'aete' resources: their numbers are big-endian, their texts Pascal strings in MacRoman, and
// what follows texts begins at an even offset.
#include "Terminology.h"

#include <algorithm>

#include "Failure.h"
#include "Output.h"

namespace cli {
namespace {

class Reader {
  public:
    explicit Reader(std::span<const UInt8> inBytes) : mBytes(inBytes) {}

    UInt16 Short() { return static_cast<UInt16>(Number(2)); }
    OSType Code() { return Number(4); }
    void Skip(size_t inCount) { Take(inCount); }
    void Align() { Take(mAt % 2); }
    std::string Text() {
        const auto length = Take(1)[0];
        const auto text = Take(length);
        Str255 string = {length};
        std::copy(text.begin(), text.end(), string + 1);
        return MacRomanText(string);
    }
    // As many as a count says; each takes some bytes, so that a false count ends with the bytes.
    template <typename Item>
    std::vector<Item> List(Item (*inRead)(Reader&)) {
        std::vector<Item> items;
        for (UInt16 left = Short(); left > 0; --left) items.push_back(inRead(*this));
        return items;
    }

  private:
    std::span<const UInt8> Take(size_t inCount) {
        if (inCount > mBytes.size() - mAt)
            throw Failure("The application's dictionary is damaged", errAECorruptData);
        mAt += inCount;
        return mBytes.subspan(mAt - inCount, inCount);
    }
    UInt32 Number(size_t inSize) {
        UInt32 number = 0;
        for (const UInt8 byte : Take(inSize)) number = number << 8 | byte;
        return number;
    }

    std::span<const UInt8> mBytes;
    size_t mAt = 0;
};

OSType ReadCode(Reader& ioReader) {
    return ioReader.Code();
}

// A comparison or a value of an enumeration.
Term ReadTerm(Reader& ioReader) {
    Term term;
    term.name = ioReader.Text();
    ioReader.Align();
    term.code = ioReader.Code();
    term.description = ioReader.Text();
    ioReader.Align();
    return term;
}

ValueTerm ReadValue(Reader& ioReader) {
    ValueTerm value;
    value.type = ioReader.Code();
    value.description = ioReader.Text();
    ioReader.Align();
    value.flags = ioReader.Short();
    return value;
}

NamedValue ReadNamedValue(Reader& ioReader) {
    NamedValue value;
    value.name = ioReader.Text();
    ioReader.Align();
    value.code = ioReader.Code();
    value.value = ReadValue(ioReader);
    return value;
}

EventTerm ReadEvent(Reader& ioReader) {
    EventTerm event;
    event.name = ioReader.Text();
    event.description = ioReader.Text();
    ioReader.Align();
    event.eventClass = ioReader.Code();
    event.code = ioReader.Code();
    event.reply = ReadValue(ioReader);
    event.direct = ReadValue(ioReader);
    event.parameters = ioReader.List(ReadNamedValue);
    return event;
}

ElementTerm ReadElement(Reader& ioReader) {
    ElementTerm element;
    element.elementClass = ioReader.Code();
    element.forms = ioReader.List(ReadCode);
    return element;
}

ClassTerm ReadClass(Reader& ioReader) {
    ClassTerm term;
    static_cast<Term&>(term) = ReadTerm(ioReader);
    term.properties = ioReader.List(ReadNamedValue);
    term.elements = ioReader.List(ReadElement);
    return term;
}

Enumeration ReadEnumeration(Reader& ioReader) {
    Enumeration enumeration;
    enumeration.code = ioReader.Code();
    enumeration.values = ioReader.List(ReadTerm);
    return enumeration;
}

Suite ReadSuite(Reader& ioReader) {
    constexpr size_t kLevelAndVersion = 4;
    Suite suite;
    suite.name = ioReader.Text();
    suite.description = ioReader.Text();
    ioReader.Align();
    suite.code = ioReader.Code();
    ioReader.Skip(kLevelAndVersion);
    suite.events = ioReader.List(ReadEvent);
    suite.classes = ioReader.List(ReadClass);
    suite.comparisons = ioReader.List(ReadTerm);
    suite.enumerations = ioReader.List(ReadEnumeration);
    return suite;
}

}  // namespace

Suites ReadTerminology(std::span<const UInt8> inResource) {
    constexpr size_t kVersionLanguageScript = 6;
    Reader reader(inResource);
    reader.Skip(kVersionLanguageScript);
    return reader.List(ReadSuite);
}

}  // namespace cli
