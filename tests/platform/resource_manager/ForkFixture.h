// The same with a look at the forks themselves.
#pragma once

#include <vector>

#include "file_manager/metadata/metadata.h"
#include "platform/resource_manager/ResourceFixture.h"

class ForkFixture : public ResourceFixture {
  protected:
    // The fork as it is on the disk.
    std::vector<UInt8> ForkOf(const std::string& inName = "file") const {
        std::vector<UInt8> bytes;
        EXPECT_EQ(carbon::ReadResourceFork(Path(inName), &bytes), noErr);
        return bytes;
    }
    FSSpec FileWithFork(const std::string& inName, const std::vector<UInt8>& inBytes) const {
        const FSSpec spec = SpecOf(Write(inName));
        EXPECT_EQ(carbon::ReplaceResourceFork(Path(inName), inBytes), noErr);
        return spec;
    }
};
