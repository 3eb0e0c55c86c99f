// Owns the look of a running job.
#include "ProgressView.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "Json.h"
#include "Output.h"

namespace cli {
namespace {

constexpr int kNarrowestBar = 10, kWidestBar = 40;

int TerminalWidth() {
    winsize size = {};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
    return size.ws_col;
}

std::string Bar(SInt64 inPercent, int inWidth) {
    const auto filled = static_cast<int>(std::clamp<SInt64>(inPercent, 0, 100) * inWidth / 100);
    std::string bar;
    for (int i = 0; i < inWidth; ++i) bar += i < filled ? "█" : "░";
    return bar;
}

std::string Amount(const Progress& inProgress) {
    if (inProgress.bytesTotal <= 0) return {};
    return Bytes(inProgress.bytesDone) + " of " + Bytes(inProgress.bytesTotal);
}

std::string Rate(const Progress& inProgress) {
    return inProgress.bytesPerSecond > 0 ? Bytes(inProgress.bytesPerSecond) + "/s" : std::string();
}

std::string TimeLeft(const Progress& inProgress) {
    const SInt64 rest = inProgress.bytesTotal - inProgress.bytesDone;
    if (inProgress.bytesPerSecond <= 0 || rest <= 0) return {};
    return Clock((rest + inProgress.bytesPerSecond - 1) / inProgress.bytesPerSecond) + " left";
}

std::string Details(const Progress& inProgress) {
    std::string text;
    for (const auto& part : {Amount(inProgress), Rate(inProgress), TimeLeft(inProgress)})
        if (!part.empty()) text += "  " + part;
    return text;
}

}  // namespace

std::string PhaseName(OSType inPhase) {
    switch (inPhase) {
        case 'prep':
            return "Preparing";
        case 'writ':
            return "Writing";
        case 'clos':
            return "Closing";
        case 'veri':
            return "Verifying";
        case 'canc':
            return "Cancelled";
        case 'fail':
            return "Failed";
        case 'done':
            return "Done";
        default:
            return "Waiting";
    }
}

ProgressView::ProgressView(bool inJson)
    : mJson(inJson), mTerminal(!inJson && isatty(STDOUT_FILENO) == 1) {}

void ProgressView::Show(const Progress& inProgress) {
    if (mJson)
        ShowJson(inProgress);
    else if (mTerminal)
        ShowBar(inProgress);
    else
        ShowLine(inProgress);
    std::fflush(stdout);
}

void ProgressView::Finish() {
    if (mLineOpen) std::printf("\n");
    mLineOpen = false;
}

// Each phase keeps its own line, so that the finished ones stay readable above.
void ProgressView::ShowBar(const Progress& inProgress) {
    if (mLineOpen && inProgress.phase != mLastPhase) Finish();
    mLastPhase = inProgress.phase;
    const std::string details = Details(inProgress);
    const int room = TerminalWidth() - 20 - static_cast<int>(details.size());
    std::printf("\r%-10s", PhaseName(inProgress.phase).c_str());
    if (inProgress.bytesTotal > 0) {
        if (room >= kNarrowestBar)
            std::printf(" %s", Bar(inProgress.percent, std::min(room, kWidestBar)).c_str());
        std::printf(" %3d%%%s", static_cast<int>(inProgress.percent), details.c_str());
    } else {
        std::printf(" %.*s", std::max(TerminalWidth() - 12, 0), inProgress.text.c_str());
    }
    std::printf("\033[K");
    mLineOpen = true;
}

// A line when the phase changes and at every tenth of it: enough for a log, little enough to read.
void ProgressView::ShowLine(const Progress& inProgress) {
    const SInt64 tenth = inProgress.percent / 10;
    if (inProgress.phase == mLastPhase && tenth == mLastTenth) return;
    mLastPhase = inProgress.phase;
    mLastTenth = tenth;
    std::printf("%s %d%%%s\n", PhaseName(inProgress.phase).c_str(),
                static_cast<int>(inProgress.percent), Details(inProgress).c_str());
}

void ProgressView::ShowJson(const Progress& inProgress) {
    if (inProgress.phase == mLastPhase && inProgress.percent == mLastTenth &&
        inProgress.text == mLastText)
        return;
    mLastPhase = inProgress.phase;
    mLastTenth = inProgress.percent;
    mLastText = inProgress.text;
    PrintJson({{"event", "progress"},
               {"phase", PhaseName(inProgress.phase)},
               {"percent", inProgress.percent},
               {"bytes_done", inProgress.bytesDone},
               {"bytes_total", inProgress.bytesTotal},
               {"bytes_per_second", inProgress.bytesPerSecond},
               {"text", inProgress.text}});
}

}  // namespace cli
