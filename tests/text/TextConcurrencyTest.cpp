// The text functions share nothing but the field reader's constant tags, whose first use
// happens here inside the threads (each test runs in a process of its own).
#include "TextChecks.h"

#include <gtest/gtest.h>

#include <thread>

TEST(TextConcurrency, EveryTableFromEightThreads) {
    std::jthread threads[8];
    for (std::jthread& thread : threads) {
        thread = std::jthread([] {
            for (int round = 0; round < 100 && !::testing::Test::HasFailure(); ++round) {
                TextChecks::Getters();
                TextChecks::Combine();
                TextChecks::Strip();
            }
        });
    }
}
