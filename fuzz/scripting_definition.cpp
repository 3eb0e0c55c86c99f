// The reader of scripting definitions: any bytes are suites or refused. What it includes is read
// from the same bytes.
#include "cli/Failure.h"
#include "cli/ScriptingDefinition.h"
#include "cli/Vocabulary.h"

namespace {

class Same : public cli::DefinitionFiles {
  public:
    explicit Same(std::string_view inText) : mText(inText) {}
    std::optional<std::string> Read(const std::string& inReference) override {
        return inReference.empty() ? std::nullopt : std::optional<std::string>(mText);
    }

  private:
    std::string_view mText;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    const std::string_view text(reinterpret_cast<const char*>(inBytes), inSize);
    Same files(text);
    cli::Notes notes;
    try {
        const cli::Vocabulary words("It",
                                    cli::ReadScriptingDefinition("input", text, files, notes));
        words.NameOf(cli::WordPlace::kValue, 'pnam');
    } catch (const cli::Failure& failure) {
        if (failure.Code() != errAECorruptData) throw;
    }
    return 0;
}
