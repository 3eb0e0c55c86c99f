// Waiting for what another thread or process does.
#pragma once

#include <chrono>
#include <thread>

// Waits until `inCondition` holds; false when it does not within the time, which only a failing
// test needs.
template <typename Condition>
bool Eventually(const Condition& inCondition, int inSeconds = 60) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(inSeconds);
    while (!inCondition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}
