// Applications that a test launches and sees gone afterwards.
#pragma once

#include <gtest/gtest.h>

#include <list>

#include "support/RecorderBundle.h"
#include "vantor/process/UProcess.h"

class ApplicationsTest : public testing::Test {
  protected:
    void TearDown() override;

    // A bundle NAME.app around a program that answers events, of any signature.
    RecorderBundle& Install(const std::string& inName, const std::string& inCreator,
                            const std::string& inType = "APPL", bool inBackgroundOnly = false);
    // Launched without coming to the front, and ready for events.
    ProcessSerialNumber Launch(const RecorderBundle& inBundle);
    ProcessSerialNumber InstallAndLaunch(const std::string& inName, const std::string& inCreator,
                                         const std::string& inType = "APPL");
    static bool HasEnded(const ProcessSerialNumber& inPSN);

  private:
    std::list<RecorderBundle> mBundles;
    std::list<ProcessSerialNumber> mLaunched;
};
