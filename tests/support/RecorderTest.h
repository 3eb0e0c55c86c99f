// The fixture of every test that talks to a recording application in a process of its own.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/Eventually.h"
#include "support/RecorderBundle.h"
#include "vantor/api/Vantor.h"

class RecorderTest : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;  // ends the recorder and the session

    // Launches the recorder and forgets what that sent.
    void StartRecorder();
    // Ends it without asking and waits until nobody finds it.
    void KillRecorder();
    bool IsListed() const;  // in the list of processes, valid or not

    void Script(const std::string& inLines) { mBundle->Script(inLines); }
    std::vector<std::string> Events() const { return mBundle->Events(); }

    std::unique_ptr<RecorderBundle> mBundle;
};
