// Puts names behind the codes of printed text.
#include "NamedText.h"

#include "Codes.h"
#include "TextWalk.h"

namespace cli {
namespace {

class Naming : public TextWalk {
  public:
    Naming(const std::string& inText, const Vocabulary& inWords, const EventTerm* inEvent)
        : TextWalk(inText, inWords, inEvent, 1) {}
    std::string Result() {
        Run();
        return mResult;
    }

  private:
    void Copy(size_t inEnd) override {
        mResult.append(mText, mAt, inEnd - mAt);
        mAt = inEnd;
    }
    void WordAt(size_t inEnd) override { Copy(inEnd); }
    void BracketsAt(size_t inEnd) override { Copy(inEnd); }
    void QuotedCodeAt(size_t inEnd) override;
    std::string NameOf(OSType inCode, size_t inEnd) const;

    std::string mResult;
};

std::string Naming::NameOf(OSType inCode, size_t inEnd) const {
    if (IsParameter(inEnd)) return NameOfParameter(mEvent, inCode);
    if (IsOfSyntax(inEnd)) return {};
    return mWords.NameOf(PlaceOf(inEnd), inCode);
}

void Naming::QuotedCodeAt(size_t inEnd) {
    const std::string text = mText.substr(mAt, inEnd - mAt);
    if (!IsCode(text)) return Copy(inEnd);
    const OSType code = CodeNamed(text);
    const std::string name = NameOf(code, inEnd);
    Copy(inEnd);
    Took(code);
    if (!name.empty()) mResult += '<' + name + '>';
}

}  // namespace

std::string WithNames(const std::string& inPrinted, const Vocabulary& inWords,
                      const EventTerm* inEvent) {
    return inWords.IsEmpty() ? inPrinted : Naming(inPrinted, inWords, inEvent).Result();
}

}  // namespace cli
