// Forks of files in a folder of the test's own, opened here or by another process.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>

#include "FileFixture.h"

// A process that opens forks until it is told to end, or killed. See fork_peer.cpp.
class ForkPeer {
  public:
    ForkPeer() {
        int in[2], out[2];
        EXPECT_EQ(pipe2(in, O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(out, O_CLOEXEC), 0);
        const auto program =
            std::filesystem::canonical("/proc/self/exe").parent_path() / "fork_peer";
        mPid = fork();
        if (mPid == 0) {
            dup2(in[0], STDIN_FILENO);
            dup2(out[1], STDOUT_FILENO);
            execl(program.c_str(), "fork_peer", nullptr);
            _exit(127);
        }
        close(in[0]);
        close(out[1]);
        mInput = fdopen(in[1], "w");
        mOutput = fdopen(out[0], "r");
    }
    ~ForkPeer() { Kill(); }
    ForkPeer(const ForkPeer&) = delete;
    ForkPeer& operator=(const ForkPeer&) = delete;

    std::string Ask(const std::string& inRequest) {
        std::fprintf(mInput, "%s\n", inRequest.c_str());
        std::fflush(mInput);
        char line[65536] = "";
        EXPECT_NE(std::fgets(line, sizeof line, mOutput), nullptr) << inRequest;
        return std::string(line, std::strcspn(line, "\n"));
    }
    // The error that opening ended with; the number is kept for `Number`.
    OSErr Open(const std::string& inPath, const std::string& inFork, int inPermission) {
        return TakeAnswer("open " + inPath + ' ' + inFork + ' ' + std::to_string(inPermission));
    }
    OSErr Deny(const std::string& inPath, const std::string& inFork, int inModes) {
        return TakeAnswer("deny " + inPath + ' ' + inFork + ' ' + std::to_string(inModes));
    }
    std::string Number() const { return std::to_string(mNumber) + ' '; }

    void Kill() {
        if (mPid <= 0) return;
        kill(mPid, SIGKILL);
        waitpid(mPid, nullptr, 0);
        std::fclose(mInput);
        std::fclose(mOutput);
        mPid = 0;
    }

  private:
    OSErr TakeAnswer(const std::string& inRequest) {
        int error = -1;
        std::istringstream(Ask(inRequest)) >> error >> mNumber;
        return OSErr(error);
    }

    pid_t mPid = 0;
    FILE* mInput = nullptr;
    FILE* mOutput = nullptr;
    int mNumber = 0;
};

class ForkFixture : public FileFixture {
  protected:
    void TearDown() override {
        for (const SInt16 number : mOpen) FSClose(number);
    }

    // The number, or the error; closed at the test's end.
    SInt16 Open(const std::string& inName, SInt8 inPermission) {
        return Take(inName, inPermission, FSpOpenDF);
    }
    SInt16 OpenResources(const std::string& inName, SInt8 inPermission) {
        return Take(inName, inPermission, FSpOpenRF);
    }
    OSErr Deny(const std::string& inName, SInt16 inModes, SInt16* outNumber,
               bool inIsResource = false) {
        FSSpec spec = SpecOf(Path(inName));
        HParamBlockRec block{};
        block.accessParam.ioNamePtr = spec.name;
        block.accessParam.ioVRefNum = spec.vRefNum;
        block.accessParam.ioDirID = spec.parID;
        block.accessParam.ioDenyModes = inModes;
        const OSErr error = inIsResource ? PBHOpenRFDenySync(&block) : PBHOpenDenySync(&block);
        *outNumber = block.accessParam.ioRefNum;
        if (error == noErr) mOpen.push_back(*outNumber);
        return error;
    }

    static OSErr Put(SInt16 inNumber, const std::string& inText) {
        auto count = SInt32(inText.size());
        const OSErr error = FSWrite(inNumber, &count, inText.data());
        if (error == noErr) {
            EXPECT_EQ(size_t(count), inText.size());
        }
        return error;
    }
    static std::string Get(SInt16 inNumber, SInt32 inCount) {
        std::string text(size_t(inCount), '?');
        const OSErr error = FSRead(inNumber, &inCount, text.data());
        EXPECT_TRUE(error == noErr || error == eofErr) << error;
        return text.substr(0, size_t(inCount));
    }
    static std::string All(SInt16 inNumber) {
        EXPECT_EQ(SetFPos(inNumber, fsFromStart, 0), noErr);
        return Get(inNumber, 100000);
    }
    static SInt32 Length(SInt16 inNumber) {
        SInt32 length = -1;
        EXPECT_EQ(GetEOF(inNumber, &length), noErr);
        return length;
    }
    static SInt32 Mark(SInt16 inNumber) {
        SInt32 mark = -1;
        EXPECT_EQ(GetFPos(inNumber, &mark), noErr);
        return mark;
    }
    static ParamBlockRec Block(SInt16 inNumber, std::string* ioText, int inMode,
                               SInt32 inOffset = 0) {
        ParamBlockRec block{};
        block.ioParam.ioRefNum = inNumber;
        block.ioParam.ioBuffer = ioText->data();
        block.ioParam.ioReqCount = SInt32(ioText->size());
        block.ioParam.ioPosMode = SInt16(inMode);
        block.ioParam.ioPosOffset = inOffset;
        return block;
    }
    static std::string Contents(const std::string& inPath) {
        std::ostringstream text;
        text << std::ifstream(inPath, std::ios::binary).rdbuf();
        return text.str();
    }

    std::vector<SInt16> mOpen;

  private:
    template <typename Call>
    SInt16 Take(const std::string& inName, SInt8 inPermission, Call inCall) {
        const FSSpec spec = SpecOf(Path(inName));
        SInt16 number = 0;
        const OSErr error = inCall(&spec, inPermission, &number);
        if (error != noErr) return error;
        mOpen.push_back(number);
        return number;
    }
};
