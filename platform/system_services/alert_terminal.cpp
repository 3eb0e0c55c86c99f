// Owns the conversation with a terminal about an alert.
#include "system_services/alert_terminal.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <optional>
#include <string_view>

namespace carbon {
namespace {

constexpr const char* kPrompt =
    "[1] continue  [4] quit  [5] debugger  [6] stop showing these (first letters do): ";

struct Choice {
    char number, letter;
    AlertItem item;
};

constexpr Choice kChoices[] = {{'1', 'c', kContinueItem},
                               {'4', 'q', kQuitItem},
                               {'5', 'd', kDebuggerItem},
                               {'6', 's', kStopShowingItem}};

void Print(int inOutput, std::string_view inText) {
    while (!inText.empty()) {
        const ssize_t written = write(inOutput, inText.data(), inText.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;  // a terminal that went away: reading will find the end
        inText.remove_prefix(size_t(written));
    }
}

// A line without its end, taken byte by byte: what follows is the program's own input. Nothing at
// the end of the input.
std::optional<std::string> ReadLine(int inInput) {
    std::string line;
    for (char c;;) {
        const ssize_t got = read(inInput, &c, 1);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return std::nullopt;
        if (c == '\n') return line;
        line += c;
    }
}

std::optional<SInt16> ItemFromLine(const std::string& inLine) {
    const auto first = inLine.find_first_not_of(" \t\r");
    if (first == std::string::npos) return kContinueItem;
    const char c = char(std::tolower(UInt8(inLine[first])));
    for (const Choice& choice : kChoices)
        if (c == choice.number || c == choice.letter) return choice.item;
    return std::nullopt;
}

}  // namespace

SInt16 AskOnTerminal(int inInput, int inOutput, const std::string& inText) {
    Print(inOutput, inText + '\n');
    for (;;) {
        Print(inOutput, kPrompt);
        const auto line = ReadLine(inInput);
        if (!line) return kContinueItem;
        if (const auto item = ItemFromLine(*line)) return *item;
    }
}

}  // namespace carbon
