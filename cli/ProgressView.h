// Shows how a job gets on: a bar on a terminal, plain lines in a pipe, one JSON object a line when
// asked for.
#pragma once

#include <Carbon/Carbon.h>

#include <chrono>
#include <string>

namespace cli {

// One look at the running job.
struct Progress {
    OSType phase = 'idle';
    SInt64 percent = 0;
    SInt64 bytesDone = 0;
    SInt64 bytesTotal = 0;
    SInt64 bytesPerSecond = 0;  // 0: not known yet
    std::string text;           // the recorder's own sentence
};

// "Writing" for 'writ' and so on.
std::string PhaseName(OSType inPhase);

class ProgressView {
  public:
    explicit ProgressView(bool inJson);

    void Show(const Progress& inProgress);

    // Ends the line that is being rewritten, so that other text may follow.
    void Finish();

  private:
    void ShowBar(const Progress& inProgress);
    void ShowLine(const Progress& inProgress);
    void ShowJson(const Progress& inProgress);

    bool mJson;
    bool mTerminal;
    bool mLineOpen = false;
    OSType mLastPhase = 0;
    SInt64 mLastTenth = -1;
    std::string mLastText;
};

}  // namespace cli
