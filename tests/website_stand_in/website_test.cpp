// Addresses, methods, and many requests at once.
#include <gtest/gtest.h>

#include <cstdint>
#include <future>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/website_stand_in/website_requests.h"

using websiteStandIn::WebAnswer;
using websiteStandIn::Website;

namespace {

using namespace websiteStandInTest;

TEST(Website, KnowsNoOtherAddress) {
    Website website;

    for (const char* const target :
         {"//save-detected-hardware/", "/save-detected-hardware", "/save-detected-hardware//",
          "/Save-Detected-Hardware/", "/%73ave-detected-hardware/", "save-detected-hardware/", "/api/track-install",
          "//api/track-install/", "/api/track-usage", "/api/", "//", "*", "", "/favicon.ico"}) {
        const WebAnswer posted = post(website, target, machineJson);
        EXPECT_EQ(posted.status, 404) << target;
        EXPECT_EQ(posted.contentType, "application/json") << target;
        EXPECT_EQ(sentenceOf(posted), "There is nothing at this address.") << target;
        EXPECT_EQ(get(website, target).status, 404) << target;
    }
    EXPECT_TRUE(contains(get(website, "/").body, "None has been sent yet."));
}

TEST(Website, SaysWhichMethodAnEndpointTakes) {
    Website website;

    for (const char* const target : {"/save-detected-hardware/", "/api/track-install/", "/api/track-usage/"}) {
        for (const char* const method : {"GET", "HEAD", "PUT", "PATCH", "DELETE", "OPTIONS", "post"}) {
            const WebAnswer answer = website.answerTo({method, target, "application/json", machineJson});
            EXPECT_EQ(answer.status, 405) << method << " " << target;
            EXPECT_EQ(answer.allow, "POST") << method << " " << target;
            EXPECT_EQ(sentenceOf(answer), "This address takes POST only.") << method << " " << target;
        }
    }
}

TEST(Website, SaysWhichMethodsAPageTakes) {
    Website website;
    saveMachine(website, machineJson);

    for (const char* const target : {"/", "/detected-hardware/?hardware_id=1"}) {
        for (const char* const method : {"POST", "PUT", "PATCH", "DELETE", "OPTIONS"}) {
            const WebAnswer answer = website.answerTo({method, target, "application/json", machineJson});
            EXPECT_EQ(answer.status, 405) << method << " " << target;
            EXPECT_EQ(answer.allow, "GET, HEAD") << method << " " << target;
            EXPECT_EQ(sentenceOf(answer), "This address takes GET, HEAD only.") << method << " " << target;
        }
        EXPECT_EQ(website.answerTo({"HEAD", target, "", ""}).status, 200) << target;
    }
}

TEST(Website, NamesNoMethodsWhereTheMethodWasRight) {
    Website website;

    EXPECT_EQ(saveMachine(website, machineJson).allow, "");
    EXPECT_EQ(saveMachine(website, "{}").allow, "");
    EXPECT_EQ(get(website, "/").allow, "");
    EXPECT_EQ(get(website, "/favicon.ico").allow, "");
}

TEST(Website, GivesEachOfManyMachinesSentAtOnceAnIdOfItsOwn) {
    constexpr int senders = 4;
    constexpr int machinesEach = 50;
    Website website;
    std::vector<std::future<std::vector<std::string>>> answers;
    for (int sender = 0; sender < senders; ++sender) {
        answers.push_back(std::async(std::launch::async, [&website] {
            std::vector<std::string> bodies;
            for (int i = 0; i < machinesEach; ++i) bodies.push_back(saveMachine(website, machineJson).body);
            return bodies;
        }));
    }

    std::set<std::int64_t> ids;
    for (auto& sender : answers) {
        for (const std::string& body : sender.get()) {
            const std::optional<platform::JsonObject> object = platform::jsonObjectFrom(body);
            ASSERT_TRUE(object && object->find("hardware_id") != nullptr) << body;
            ids.insert(object->find("hardware_id")->asInteger().value_or(0));
        }
    }

    EXPECT_EQ(ids.size(), 200U);
    EXPECT_EQ(*ids.begin(), 1);
    EXPECT_EQ(*ids.rbegin(), 200);
}

}  // namespace
