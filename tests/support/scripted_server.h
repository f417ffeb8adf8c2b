// A web server for tests: it keeps what each connection sent, byte for byte, and answers with raw bytes by a script.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
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
struct Reset {};                   // Breaks the connection off; the script ends here.
struct WaitUntilClientHasGone {};  // Reads on, and records, until the client closes its side.
struct HoldOpen {};                // Does nothing until the server is destroyed.

using Step = std::variant<Send, SendEndlessly, SendDripping, Reset, WaitUntilClientHasGone, HoldOpen>;

// Carried out once the request has come. A script that ends closes the connection, so an empty one answers nothing.
using Script = std::vector<Step>;

// Called on the connection's own thread.
using Responder = std::function<Script(const RecordedRequest&)>;

[[nodiscard]] Responder always(Script script);
// The first request is answered by the first script, the second by the second, and all after the last by the last.
[[nodiscard]] Responder inTurn(std::vector<Script> scripts);

// A whole answer: status line, `fields` (each without line break), Content-Length and body.
[[nodiscard]] std::string answerBytes(int statusCode, std::string_view body,
                                      const std::vector<std::string>& fields = {});

enum class Loopback { ipv4, ipv6 };  // 127.0.0.1, ::1

// Listens on one loopback address, on the port given or one that is free. A connection carries one request. All
// functions are safe from any thread; the responder must be, too.
class ScriptedServer {
  public:
    explicit ScriptedServer(Responder responder, int port = 0, Loopback address = Loopback::ipv4);
    ~ScriptedServer();  // Ends every script where it is and closes every connection.
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    [[nodiscard]] int port() const;
    [[nodiscard]] std::string url(std::string_view pathAndQuery) const;  // "http://127.0.0.1:<port>" and the argument.

    // Whole requests, in the order of their arrival.
    [[nodiscard]] std::vector<RecordedRequest> requests() const;
    // What each connection has sent so far, in the order they were accepted.
    [[nodiscard]] std::vector<std::string> connections() const;

    // Block until that many have arrived or ended; false when they have not within 30 seconds.
    [[nodiscard]] bool waitForRequests(std::size_t count) const;
    [[nodiscard]] bool waitForEndedConnections(std::size_t count) const;

  private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

}  // namespace testSupport
