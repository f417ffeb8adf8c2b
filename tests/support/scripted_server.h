// A web server for tests: it records what each connection sends and answers with raw bytes by a script.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tests/support/recorded_request.h"

namespace testSupport {

// A step of a script.
struct Send {
    std::string bytes;
};
struct SendEndlessly {  // The same bytes over and over, until the client closes its side.
    std::string bytes;
};
struct SendDripping {  // One byte at a time, with `interval` before each.
    std::string bytes;
    std::chrono::milliseconds interval;
};
struct Reset {};                   // Resets the connection and ends the script.
struct WaitUntilClientHasGone {};  // Reads and records until the client closes its side.
struct HoldOpen {};                // Waits until the server is destroyed.

using Step = std::variant<Send, SendEndlessly, SendDripping, Reset, WaitUntilClientHasGone, HoldOpen>;

// Runs once the request has arrived, then the server closes the connection. An empty script sends no answer.
using Script = std::vector<Step>;

// Called on the connection's own thread.
using Responder = std::function<Script(const RecordedRequest&)>;

[[nodiscard]] Responder always(Script script);
// The n-th request gets the n-th script; requests after the last script get the last one.
[[nodiscard]] Responder inTurn(std::vector<Script> scripts);
// Holds requests for `target` back until `release` is ready, or 30 seconds at most, so that a failed test ends.
[[nodiscard]] Responder heldBack(std::string target, std::future<void> release, Responder responder);

// A complete answer: status line, `fields` (without line breaks), Content-Length and body.
[[nodiscard]] std::string answerBytes(int statusCode, std::string_view body,
                                      const std::vector<std::string>& fields = {});

enum class Loopback { ipv4, ipv6 };  // 127.0.0.1, ::1

// Listens on one loopback address, on the port given or on a free one. Each connection carries one request. All
// functions are thread-safe; the responder must be thread-safe too.
class ScriptedServer {
  public:
    explicit ScriptedServer(Responder responder, int port = 0, Loopback address = Loopback::ipv4);
    ~ScriptedServer();  // Stops all scripts and closes all connections.
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    [[nodiscard]] int port() const;
    [[nodiscard]] std::string url(std::string_view pathAndQuery) const;  // "http://127.0.0.1:<port>" and the argument.

    // Complete requests, in order of arrival.
    [[nodiscard]] std::vector<RecordedRequest> requests() const;
    // The bytes that each connection has sent so far, in order of acceptance.
    [[nodiscard]] std::vector<std::string> connections() const;

    // Wait until that many have arrived or ended; false after 30 seconds.
    [[nodiscard]] bool waitForRequests(std::size_t count) const;
    [[nodiscard]] bool waitForEndedConnections(std::size_t count) const;

  private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

}  // namespace testSupport
