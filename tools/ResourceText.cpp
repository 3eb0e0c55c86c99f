// Owns the language in which resources are written down: words, values, lists.
#include "ResourceText.h"

#include <charconv>
#include <map>

namespace {

// A word or a number, a text in double quotes, or a code in single ones.
struct Token {
    enum Kind { kWord, kText, kCode } kind;
    std::string text;
};

class Reader {
  public:
    std::vector<DescribedResource> Read(std::istream& inText);

  private:
    using Tokens = std::vector<Token>;

    [[noreturn]] void Fail(const std::string& inWhat) const { throw MistakeInText(mLine, inWhat); }
    Tokens Split(const std::string& inLine) const;
    Token Quoted(const std::string& inLine, size_t& ioAt) const;
    void Obey(const Tokens& inTokens);
    void BeginResource(const Tokens& inTokens);
    void CheckListsEnded();
    void Append(const std::string& inWord, const Token& inValue);
    void AppendNumber(const Token& inValue, size_t inBytes);
    void AppendText(const Token& inValue, bool inWithLength);
    void AppendCode(const Token& inValue);
    void AppendTerm(const Tokens& inTokens, const std::string& inSteps);
    void AppendStep(char inStep, const Tokens& inTokens, size_t& ioAt);
    void AppendFlags(const Tokens& inTokens, size_t& ioAt);
    void AppendCodes(const Tokens& inTokens, size_t& ioAt);
    void Align() { Data().resize((Data().size() + 1) & ~size_t{1}); }
    void BeginList();
    void CountItem();
    void EndList();

    SInt64 NumberIn(const Token& inValue, size_t inBytes) const;
    OSType CodeIn(const Token& inValue) const;
    std::string MacRomanIn(const Token& inValue) const;
    std::string& Data();

    std::vector<DescribedResource> mResources;
    struct List {
        size_t at;  // of the number in the data
        SInt64 items;
    };
    std::vector<List> mLists;  // that are open, the outermost first
    int mLine = 0;
};

void PutBigEndian(std::string& ioData, size_t inAt, SInt64 inNumber, size_t inBytes) {
    for (size_t i = 0; i < inBytes; ++i)
        ioData[inAt + i] = static_cast<char>(inNumber >> (8 * (inBytes - 1 - i)));
}

// The words of a terminology, and the pieces of each in their order: i counts an item, s is a
// Pascal string, a an even length, c a code, n a short, f the flags and k the codes that end the
// line.
const std::map<std::string, std::string> kTerms = {
    {"suite", "issacnn"},      {"event", "issacc"},   {"reply", "csaf"},        {"direct", "csaf"},
    {"parameter", "isaccsaf"}, {"class", "isacsa"},   {"property", "isaccsaf"}, {"element", "ick"},
    {"comparison", "isacsa"},  {"enumeration", "ic"}, {"enumerator", "isacsa"}};

std::vector<DescribedResource> Reader::Read(std::istream& inText) {
    for (std::string line; std::getline(inText, line);) {
        ++mLine;
        const Tokens tokens = Split(line);
        if (!tokens.empty()) Obey(tokens);
    }
    CheckListsEnded();
    return std::move(mResources);
}

Reader::Tokens Reader::Split(const std::string& inLine) const {
    Tokens tokens;
    for (size_t at = 0; at < inLine.size() && inLine[at] != '#';) {
        if (inLine[at] == ' ' || inLine[at] == '\t') {
            ++at;
        } else if (inLine[at] == '"' || inLine[at] == '\'') {
            tokens.push_back(Quoted(inLine, at));
        } else {
            const size_t end = std::min(inLine.find_first_of(" \t#", at), inLine.size());
            tokens.push_back({Token::kWord, inLine.substr(at, end - at)});
            at = end;
        }
    }
    return tokens;
}

// With a backslash before a quote, a backslash or the n of a new line.
Token Reader::Quoted(const std::string& inLine, size_t& ioAt) const {
    const char quote = inLine[ioAt++];
    Token token{quote == '"' ? Token::kText : Token::kCode, ""};
    for (; ioAt < inLine.size() && inLine[ioAt] != quote; ++ioAt) {
        const bool isEscaped = inLine[ioAt] == '\\' && ioAt + 1 < inLine.size();
        if (isEscaped) ++ioAt;
        token.text += isEscaped && inLine[ioAt] == 'n' ? '\r' : inLine[ioAt];
    }
    if (ioAt == inLine.size()) Fail("a quote is missing");
    ++ioAt;
    return token;
}

void Reader::Obey(const Tokens& inTokens) {
    if (inTokens[0].kind != Token::kWord) Fail("a line begins with a word");
    const std::string& word = inTokens[0].text;
    if (word == "resource") return BeginResource(inTokens);
    const bool takesValues = word != "list" && word != "item" && word != "end" && word != "align";
    if (takesValues != (inTokens.size() > 1)) Fail("too many or too few values for " + word);
    if (word == "list") return BeginList();
    if (word == "item") return CountItem();
    if (word == "end") return EndList();
    if (word == "align") return Align();
    if (const auto term = kTerms.find(word); term != kTerms.end())
        return AppendTerm(inTokens, term->second);
    for (size_t i = 1; i < inTokens.size(); ++i) Append(word, inTokens[i]);
}

void Reader::BeginResource(const Tokens& inTokens) {
    static const std::map<std::string, ResAttributes> kAttributes = {{"purgeable", resPurgeable},
                                                                     {"locked", resLocked},
                                                                     {"protected", resProtected},
                                                                     {"preload", resPreload}};
    CheckListsEnded();
    if (inTokens.size() < 3) Fail("a resource has a type and an ID");
    DescribedResource resource;
    resource.type = CodeIn(inTokens[1]);
    resource.id = static_cast<ResID>(NumberIn(inTokens[2], 2));
    size_t at = 3;
    if (at < inTokens.size() && inTokens[at].kind == Token::kText)
        resource.name = MacRomanIn(inTokens[at++]);
    if (resource.name.size() > 255) Fail("a name has 255 characters at most");
    for (; at < inTokens.size(); ++at) {
        const auto found = kAttributes.find(inTokens[at].text);
        if (found == kAttributes.end()) Fail("no such attribute: " + inTokens[at].text);
        resource.attributes = ResAttributes(resource.attributes | found->second);
    }
    mResources.push_back(std::move(resource));
}

void Reader::CheckListsEnded() {
    if (!mLists.empty()) Fail("a list is not ended");
}

std::string& Reader::Data() {
    if (mResources.empty()) Fail("data without a resource");
    return mResources.back().data;
}

void Reader::Append(const std::string& inWord, const Token& inValue) {
    if (inWord == "byte") return AppendNumber(inValue, 1);
    if (inWord == "short") return AppendNumber(inValue, 2);
    if (inWord == "long") return AppendNumber(inValue, 4);
    if (inWord == "text") return AppendText(inValue, false);
    if (inWord == "pstring") return AppendText(inValue, true);
    if (inWord != "code") Fail("no such word: " + inWord);
    AppendCode(inValue);
}

void Reader::AppendCode(const Token& inValue) {
    Data().resize(Data().size() + 4);
    PutBigEndian(Data(), Data().size() - 4, CodeIn(inValue), 4);
}

void Reader::AppendTerm(const Tokens& inTokens, const std::string& inSteps) {
    size_t at = 1;
    for (const char step : inSteps) AppendStep(step, inTokens, at);
    if (at != inTokens.size()) Fail("too many values for " + inTokens[0].text);
}

void Reader::AppendStep(char inStep, const Tokens& inTokens, size_t& ioAt) {
    if (inStep == 'i') return CountItem();
    if (inStep == 'a') return Align();
    if (inStep == 'f') return AppendFlags(inTokens, ioAt);
    if (inStep == 'k') return AppendCodes(inTokens, ioAt);
    if (ioAt == inTokens.size()) Fail("too few values for " + inTokens[0].text);
    const Token& value = inTokens[ioAt++];
    if (inStep == 's') return AppendText(value, true);
    if (inStep == 'c') return AppendCode(value);
    AppendNumber(value, 2);
}

void Reader::AppendFlags(const Tokens& inTokens, size_t& ioAt) {
    static const std::map<std::string, SInt64> kFlags = {
        {"optional", 0x8000}, {"list", 0x4000}, {"enumerated", 0x2000}, {"writable", 0x1000}};
    SInt64 flags = 0;
    for (; ioAt < inTokens.size(); ++ioAt) {
        const auto found = kFlags.find(inTokens[ioAt].text);
        if (found == kFlags.end()) Fail("no such flag: " + inTokens[ioAt].text);
        flags |= found->second;
    }
    Data().resize(Data().size() + 2);
    PutBigEndian(Data(), Data().size() - 2, flags, 2);
}

void Reader::AppendCodes(const Tokens& inTokens, size_t& ioAt) {
    Data().resize(Data().size() + 2);
    PutBigEndian(Data(), Data().size() - 2, static_cast<SInt64>(inTokens.size() - ioAt), 2);
    for (; ioAt < inTokens.size(); ++ioAt) AppendCode(inTokens[ioAt]);
}

void Reader::AppendNumber(const Token& inValue, size_t inBytes) {
    Data().resize(Data().size() + inBytes);
    PutBigEndian(Data(), Data().size() - inBytes, NumberIn(inValue, inBytes), inBytes);
}

void Reader::AppendText(const Token& inValue, bool inWithLength) {
    const std::string text = MacRomanIn(inValue);
    if (inWithLength && text.size() > 255) Fail("a Pascal string has 255 characters at most");
    if (inWithLength) Data() += static_cast<char>(text.size());
    Data() += text;
}

void Reader::BeginList() {
    mLists.push_back({Data().size(), 0});
    Data().resize(Data().size() + 2);
}

void Reader::CountItem() {
    if (mLists.empty()) Fail("an item stands in a list");
    ++mLists.back().items;
}

void Reader::EndList() {
    if (mLists.empty()) Fail("there is no list to end");
    if (mLists.back().items > 0xFFFF) Fail("a list has 65535 items at most");
    PutBigEndian(Data(), mLists.back().at, mLists.back().items, 2);
    mLists.pop_back();
}

// With a sign or without, so that 255 and -1 are both a byte.
SInt64 Reader::NumberIn(const Token& inValue, size_t inBytes) const {
    const bool isHex = inValue.text.starts_with("0x");
    const char* const first = inValue.text.data() + (isHex ? 2 : 0);
    const char* const last = inValue.text.data() + inValue.text.size();
    SInt64 number = 0;
    const auto [end, error] = std::from_chars(first, last, number, isHex ? 16 : 10);
    if (inValue.kind != Token::kWord || error != std::errc() || end != last)
        Fail("no number: " + inValue.text);
    const SInt64 limit = SInt64{1} << (8 * inBytes);
    if (number < -limit / 2 || number >= limit) Fail("too large: " + inValue.text);
    return number;
}

OSType Reader::CodeIn(const Token& inValue) const {
    const std::string text = MacRomanIn(inValue);
    if (inValue.kind != Token::kCode || text.size() != 4) Fail("no code: " + inValue.text);
    OSType code = 0;
    for (const char c : text) code = code << 8 | static_cast<unsigned char>(c);
    return code;
}

std::string Reader::MacRomanIn(const Token& inValue) const {
    if (inValue.kind == Token::kWord) Fail("no text in quotes: " + inValue.text);
    CFStringRef string =
        CFStringCreateWithCString(kCFAllocatorDefault, inValue.text.c_str(), kCFStringEncodingUTF8);
    if (string == nullptr) Fail("not UTF-8");
    std::string text(inValue.text.size() + 1, '\0');
    const bool fits = CFStringGetCString(string, text.data(), static_cast<CFIndex>(text.size()),
                                         kCFStringEncodingMacRoman);
    CFRelease(string);
    if (!fits) Fail("not in MacRoman: " + inValue.text);
    text.resize(text.find('\0'));
    return text;
}

}  // namespace

std::vector<DescribedResource> ReadResourceText(std::istream& inText) {
    return Reader().Read(inText);
}
