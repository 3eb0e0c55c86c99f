// The example application, started by `vantor launch` and ended with a scope.
#pragma once

#include <gtest/gtest.h>

#include <signal.h>

#include <string>
#include <vector>

#include "support/Command.h"

class Notebook {
  public:
    // `inVantor` is the program to talk through; the bundle a path, or a name that it can find.
    explicit Notebook(std::string inVantor, const std::string& inBundle = "Notebook")
        : mVantor(std::move(inVantor)) {
        const auto result = Vantor({"launch", inBundle});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        const auto at = result.output.find("(PID ");
        if (at != std::string::npos) mPid = std::stoi(result.output.substr(at + 5));
    }
    ~Notebook() {
        if (mPid > 0) kill(mPid, SIGKILL);
    }
    Notebook(const Notebook&) = delete;
    Notebook& operator=(const Notebook&) = delete;

    pid_t Pid() const { return mPid; }
    CommandResult Vantor(std::vector<std::string> inWords) const {
        inWords.insert(inWords.begin(), mVantor);
        return RunCommand(inWords);
    }
    // The answer to `vantor get`, without its line end, or the complaint.
    std::string Get(std::vector<std::string> inWords) const {
        inWords.insert(inWords.begin(), "get");
        inWords.push_back(std::to_string(mPid));
        const auto result = Vantor(inWords);
        const std::string& text = result.exitCode == 0 ? result.output : result.errors;
        return text.substr(0, text.find('\n'));
    }
    // The reply's print form, or the complaint, which is one of the program as well.
    std::string Send(const std::string& inID, const std::string& inParameters) const {
        const auto result = Vantor({"send", std::to_string(mPid), "core", inID, inParameters});
        return result.exitCode == 0 ? result.output : result.errors;
    }

  private:
    std::string mVantor;
    pid_t mPid = 0;
};
