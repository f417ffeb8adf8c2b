// Pages opened by xdg-open(1). The toolkit's own function would rewrite the URL (host in lower case, escapes resolved)
// and report success even if no browser is found.
#include "platform/browser.h"

#include <chrono>
#include <future>
#include <memory>
#include <system_error>
#include <thread>

#include "platform/posix/child_process.h"

namespace platform {

namespace {

// An opener that is still running after this long has become the browser, which is a success.
constexpr std::chrono::seconds patience{1};

}  // namespace

bool openInBrowser(const Url& url) {
    if (url.scheme().empty()) return false;
    // Looks for xdg-open in PATH.
    const std::optional<pid_t> opener = startChild("/usr/bin/env", {"xdg-open", url.absoluteString().c_str()}, {});
    if (!opener) return false;

    // The thread waits beyond that, so that no opener stays behind as a zombie.
    auto verdict = std::make_shared<std::promise<bool>>();
    std::future<bool> success = verdict->get_future();
    try {
        std::thread([verdict, opener] { verdict->set_value(waitForExit(*opener)); }).detach();
    } catch (const std::system_error&) {
        return true;  // Started, but there is no thread to wait for it.
    }
    return success.wait_for(patience) == std::future_status::timeout || success.get();
}

}  // namespace platform
