#include "platform/uuid.h"

#include <gtest/gtest.h>

#include <mutex>
#include <regex>
#include <set>
#include <thread>
#include <vector>

namespace {

TEST(RandomUuid, IsOfVersion4InCanonicalUpperCase) {
    const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
    for (int drawn = 0; drawn < 100; ++drawn) {
        const std::string uuid = platform::randomUuid();
        EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
    }
}

TEST(RandomUuid, IsAnotherOneEachTimeFromAnyThread) {
    std::mutex mutex;
    std::set<std::string> all;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int drawn = 0; drawn < 2'500; ++drawn) {
                std::string uuid = platform::randomUuid();
                const std::lock_guard lock(mutex);
                all.insert(std::move(uuid));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(all.size(), 10'000U);
}

}  // namespace
