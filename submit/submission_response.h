// How a submission ends: with an answer of the website, or without one.
#pragma once

#include <optional>
#include <semaphore>
#include <string>
#include <utility>

#include "platform/http.h"

// One submission's state, held by the caller who waits and the handler together. The handler writes before it releases
// `completion`, and the caller reads after acquiring it; that alone keeps the two threads apart.
struct Submission {
    explicit Submission(std::string url) : baseUrl(std::move(url)) {}

    const std::string baseUrl;  // As the person typed it.
    bool succeeded = false;
    std::optional<std::string> errorMessage;
    std::binary_semaphore completion{0};
};

// Settles the submission: logs what came, stores verdict and message, posts the opening of the page to the main queue,
// and releases `completion` exactly once, as the last thing. Runs on the session's delivery queue.
void handleSubmissionResult(platform::HttpResult result, Submission& submission);
