// Makes values of text: numbers, codes, and what stands inside a type.
#include "apple_event_manager/text/build_parser.h"

#include <Carbon/AERegistry.h>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/coercions/coercion.h"

namespace carbon {
namespace {

void MakeLeaf(DescType inType, Bytes inData, AEDesc* outDesc) {
    MakeDesc({inType, Kind::Leaf, inData}, outDesc);
}

template <typename Value>
void MakeNumber(DescType inType, Value inValue, AEDesc* outDesc) {
    UInt8 bytes[sizeof inValue];
    WriteBigEndian(bytes, inValue);
    MakeLeaf(inType, bytes, outDesc);
}

// Whether data that nothing coerces to the type may be called by its name. A number or a text would
// be another one then.
bool TakesAnyData(DescType inType) {
    return !IsNumberType(inType) && !IsTextType(inType) && inType != typeBoolean &&
           inType != typeAEList;
}

}  // namespace

void BuildParser::Whole(AEDesc* outDesc) {
    Value(outDesc);
    if (mScanner.Peek() != '\0') mScanner.Fail(aeBuildSyntaxNoEOF);
}

void BuildParser::Value(AEDesc* outDesc) {
    if (mScanner.IsAtNumber()) return Number(outDesc);
    if (mScanner.IsAtCode()) return Coded(outDesc);
    switch (mScanner.Peek()) {
        case '\0':
            mScanner.Fail(aeBuildSyntaxBadEOF);
        case '"': {
            const std::string_view text = mScanner.Text();
            return MakeLeaf(typeChar, {reinterpret_cast<const UInt8*>(text.data()), text.size()},
                            outDesc);
        }
        case '[':
            return List(outDesc);
        case '{':
            return Record(typeAERecord, outDesc);
        case '@':
            return Argument(outDesc);
        case '$':
            mScanner.Fail(aeBuildSyntaxUncoercedHex);
        case ')':
        case ']':
        case '}':
        case ',':
        case ':':
            mScanner.Fail(aeBuildSyntaxBadDesc);
        default:
            mScanner.Fail(aeBuildSyntaxBadToken);
    }
}

void BuildParser::Number(AEDesc* outDesc) {
    const SInt64 number = mScanner.Number();
    const auto narrow = static_cast<SInt32>(number);
    if (narrow == number)
        MakeNumber(typeSInt32, narrow, outDesc);
    else
        MakeNumber(typeSInt64, number, outDesc);
}

// A code, or what follows one.
void BuildParser::Coded(AEDesc* outDesc) {
    const OSType code = mScanner.Code();
    switch (mScanner.Peek()) {
        case '(':
            return Typed(code, outDesc);
        case '{':
            return Record(code, outDesc);
        case '\\':
            return Event(code, outDesc);
        default:
            return MakeNumber(typeEnumerated, code, outDesc);
    }
}

void BuildParser::Typed(DescType inType, AEDesc* outDesc) {
    const Nested nested(mParentheses, mScanner);
    mScanner.Take('(');
    if (mScanner.Peek() == ')')
        MakeLeaf(inType, {}, outDesc);
    else
        Data(inType, outDesc);
    if (!mScanner.Take(')')) mScanner.Fail(aeBuildSyntaxNoCloseParen);
}

void BuildParser::Data(DescType inType, AEDesc* outDesc) {
    switch (mScanner.Peek()) {
        case '$':
            return MakeLeaf(inType, mScanner.Hex(), outDesc);
        case '@':
            return TypedArgument(inType, outDesc);
        case '{':
            return Record(inType, outDesc);
        case '[':
            if (inType != typeAEList) mScanner.Fail(aeBuildSyntaxCoercedList);
            return List(outDesc);
        case ']':
        case '}':
        case ',':
        case ':':
            mScanner.Fail(aeBuildSyntaxBadData);
        default:
            return Coerced(inType, outDesc);
    }
}

void BuildParser::Coerced(DescType inType, AEDesc* outDesc) {
    const UInt32 position = mScanner.Position();
    TemporaryDesc value;
    Value(value.Get());
    const Item item = ItemOf(*value);
    const bool takesAny = item.kind == Kind::Leaf && TakesAnyData(inType);
    if (takesAny && item.type == typeEnumerated) return MakeLeaf(inType, item.content, outDesc);
    const OSErr result = Deliver(item, inType, outDesc);
    if (result != errAECoercionFail) return ThrowIfFailed(result);
    if (!takesAny) mScanner.FailAt(aeBuildSyntaxBadData, position);
    MakeLeaf(inType, item.content, outDesc);
}

void BuildParser::NeedArguments() {
    if (!mArguments) mScanner.Fail(aeBuildSyntaxBadToken);
}

void BuildParser::Argument(AEDesc* outDesc) {
    NeedArguments();
    const UInt32 position = mScanner.Position();
    mScanner.Take('@');
    if (mScanner.Take('@')) mScanner.FailAt(aeBuildSyntaxUncoercedDoubleAt, position);
    ThrowIfFailed(mArguments->TakeDesc(outDesc));
}

void BuildParser::TypedArgument(DescType inType, AEDesc* outDesc) {
    NeedArguments();
    mScanner.Take('@');
    ThrowIfFailed(mScanner.Take('@') ? mArguments->TakeHandle(inType, outDesc)
                                     : mArguments->TakeTyped(inType, outDesc));
}

}  // namespace carbon
