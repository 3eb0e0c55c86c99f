// Waiting for what another thread or process does.
#pragma once

#include <chrono>
#include <thread>

// Waits until `inCondition` holds; false when it does not within the time, which no test that passes
// needs.
template <typename Condition>
bool Eventually(const Condition& inCondition,
                std::chrono::seconds inTime = std::chrono::seconds(30)) {
    const auto deadline = std::chrono::steady_clock::now() + inTime;
    while (!inCondition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}
