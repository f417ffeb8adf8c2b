// website-stand-in [PORT]: the stand-in website on 127.0.0.1, on any free port unless one is named.
//
// Standard output gets "Listening on http://127.0.0.1:PORT", and then a line for each request answered. SIGTERM and
// SIGINT end the program with status 0; it ends with 1 when it can't listen and with 2 when PORT is no port.
#include <httplib.h>
#include <sys/socket.h>

#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "website_stand_in/website.h"

using websiteStandIn::WebAnswer;
using websiteStandIn::Website;

namespace {

constexpr const char* address = "127.0.0.1";
constexpr std::size_t longestBody = 1'048'576;

std::optional<std::uint16_t> portFrom(std::string_view text) {
    std::uint16_t port = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc() || stop != end) return std::nullopt;
    return port;
}

// Ends at once, without waiting for connections that browsers keep open.
void endOnSignals() {
    for (const int number : {SIGTERM, SIGINT}) std::signal(number, [](int) { std::_Exit(EXIT_SUCCESS); });
}

void hand(const WebAnswer& answer, httplib::Response& response) {
    response.status = answer.status;
    response.set_content(answer.body, answer.contentType);
    if (!answer.allow.empty()) response.set_header("Allow", answer.allow);
}

void serve(Website& website, httplib::Server& server) {
    const auto answer = [&website](const httplib::Request& request, httplib::Response& response) {
        hand(website.answerTo({.method = request.method,
                               .target = request.target,
                               .contentType = request.get_header_value("Content-Type"),
                               .body = request.body}),
             response);
    };
    constexpr const char* anyPath = R"([\s\S]*)";
    server.Get(anyPath, answer);  // HEAD as well.
    server.Post(anyPath, answer);
    server.Put(anyPath, answer);
    server.Patch(anyPath, answer);
    server.Delete(anyPath, answer);
    server.Options(anyPath, answer);
}

// The library's own refusals, such as of a body that is too long, have no body.
httplib::Server::HandlerResponse fillIn(const httplib::Request&, httplib::Response& response) {
    if (!response.body.empty()) return httplib::Server::HandlerResponse::Unhandled;
    hand(websiteStandIn::refusal(response.status, "The server could not take this request."), response);
    return httplib::Server::HandlerResponse::Handled;
}

// By default the library lets two servers share a port, so that each gets some of the requests.
void refuseToShareThePort(int socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

// The port that the server listens on.
std::optional<int> bind(httplib::Server& server, std::uint16_t port) {
    if (port != 0) return server.bind_to_port(address, port) ? std::optional<int>(port) : std::nullopt;
    const int chosen = server.bind_to_any_port(address);
    return chosen > 0 ? std::optional(chosen) : std::nullopt;
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::optional<std::uint16_t> wanted = argc == 1   ? std::optional<std::uint16_t>(0)
                                                : argc == 2 ? portFrom(argv[1])
                                                            : std::nullopt;
    if (!wanted) {
        std::fputs("Usage: website-stand-in [PORT]\n", stderr);
        return 2;
    }
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    endOnSignals();

    Website website;
    httplib::Server server;
    serve(website, server);
    server.set_error_handler(httplib::Server::HandlerWithResponse(fillIn));
    server.set_logger([](const httplib::Request& request, const httplib::Response& response) {
        std::printf("%s %s %d\n", request.method.c_str(), request.target.c_str(), response.status);
    });
    server.set_socket_options(refuseToShareThePort);
    server.set_tcp_nodelay(true);
    server.set_keep_alive_timeout(1);  // Each open connection occupies one of a few threads.
    server.set_payload_max_length(longestBody);

    const std::optional<int> port = bind(server, *wanted);
    if (!port) {
        std::fprintf(stderr, "website-stand-in: can't listen on %s:%d; another program may have the port\n", address,
                     int{*wanted});
        return EXIT_FAILURE;
    }
    // From now on the socket queues connections and refuses none.
    std::printf("Listening on http://%s:%d\n", address, *port);
    return server.listen_after_bind() ? EXIT_SUCCESS : EXIT_FAILURE;
}
