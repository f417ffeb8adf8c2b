#include "tests/support/scripted_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/support/descriptor.h"

namespace testSupport {

namespace {

constexpr std::chrono::seconds longestWait{30};

#ifdef MSG_NOSIGNAL
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0;
#endif

Descriptor nonBlocking(int number) {
    if (number < 0) throw std::runtime_error("the scripted server got no descriptor");
    fcntl(number, F_SETFD, FD_CLOEXEC);
    fcntl(number, F_SETFL, O_NONBLOCK);
#ifdef SO_NOSIGPIPE
    const int on = 1;
    setsockopt(number, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
    return Descriptor(number);
}

// Closing the writing end makes the reading end ready for all threads, permanently.
struct StopSignal {
    StopSignal() {
        std::array<int, 2> ends{-1, -1};
        if (pipe(ends.data()) != 0) throw std::runtime_error("the scripted server got no pipe");
        reader = nonBlocking(ends[0]);
        writer = nonBlocking(ends[1]);
    }

    Descriptor reader;
    Descriptor writer;
};

}  // namespace

Responder always(Script script) {
    return [script = std::move(script)](const RecordedRequest&) { return script; };
}

Responder inTurn(std::vector<Script> scripts) {
    const auto next = std::make_shared<std::atomic<std::size_t>>(0);
    return [scripts = std::move(scripts), next](const RecordedRequest&) {
        return scripts.at(std::min(next->fetch_add(1), scripts.size() - 1));
    };
}

Responder heldBack(std::string target, std::future<void> release, Responder responder) {
    return [target = std::move(target), released = release.share(),
            responder = std::move(responder)](const RecordedRequest& request) {
        if (request.target() == target) released.wait_for(longestWait);
        return responder(request);
    };
}

std::string answerBytes(int statusCode, std::string_view body, const std::vector<std::string>& fields) {
    std::string bytes = "HTTP/1.1 " + std::to_string(statusCode) + " Reason\r\n";
    for (const std::string& field : fields) bytes += field + "\r\n";
    bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    bytes += body;
    return bytes;
}

class ScriptedServer::Listener {
  public:
    Listener(Responder responder, int port, Loopback address) : responder_(std::move(responder)) {
        if (address == Loopback::ipv4) {
            sockaddr_in ipv4{};
            ipv4.sin_family = AF_INET;
            ipv4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            listenOn(ipv4, ipv4.sin_port, port);
        } else {
            sockaddr_in6 ipv6{};
            ipv6.sin6_family = AF_INET6;
            ipv6.sin6_addr = in6addr_loopback;
            listenOn(ipv6, ipv6.sin6_port, port);
        }
        acceptor_ = std::thread([this] { acceptConnections(); });
    }

    ~Listener() {
        stop_.writer.close();
        acceptor_.join();
        for (std::thread& thread : connectionThreads_) thread.join();
    }

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    [[nodiscard]] int port() const { return port_; }

    [[nodiscard]] std::vector<RecordedRequest> requests() const {
        const std::lock_guard lock(mutex_);
        return requests_;
    }

    [[nodiscard]] std::vector<std::string> connections() const {
        const std::lock_guard lock(mutex_);
        return connections_;
    }

    [[nodiscard]] bool waitForRequests(std::size_t count) const {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, longestWait, [&] { return requests_.size() >= count; });
    }

    [[nodiscard]] bool waitForEndedConnections(std::size_t count) const {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, longestWait, [&] { return endedConnections_ >= count; });
    }

  private:
    // `portOfAddress` is a part of the address.
    template <typename Address>
    void listenOn(Address& address, in_port_t& portOfAddress, int port) {
        portOfAddress = htons(static_cast<in_port_t>(port));
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        socket_ = nonBlocking(socket(generic->sa_family, SOCK_STREAM, 0));
        const int reuse = 1;  // The next test may use the same port at once.
        setsockopt(socket_.number(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
        socklen_t size = sizeof address;
        if (bind(socket_.number(), generic, size) != 0 || listen(socket_.number(), SOMAXCONN) != 0 ||
            getsockname(socket_.number(), generic, &size) != 0) {
            throw std::runtime_error("the scripted server cannot listen");
        }
        port_ = ntohs(portOfAddress);
    }

    // False if the server stops.
    [[nodiscard]] bool waitUntilReady(const Descriptor& socket, short events) const {
        std::array<pollfd, 2> watched{{{stop_.reader.number(), POLLIN, 0}, {socket.number(), events, 0}}};
        while (poll(watched.data(), watched.size(), -1) < 0) continue;
        return watched[0].revents == 0;
    }

    [[nodiscard]] bool waitOut(std::chrono::milliseconds interval) const {
        const auto end = std::chrono::steady_clock::now() + interval;
        pollfd stop{stop_.reader.number(), POLLIN, 0};
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            if (left.count() <= 0) return true;
            if (poll(&stop, 1, static_cast<int>(left.count())) > 0) return false;
        }
    }

    void acceptConnections() {
        while (waitUntilReady(socket_, POLLIN)) {
            const int number = accept(socket_.number(), nullptr, nullptr);
            if (number < 0) continue;  // The client has closed the connection already.
            std::size_t index = 0;
            {
                const std::lock_guard lock(mutex_);
                index = connections_.size();
                connections_.emplace_back();
            }
            connectionThreads_.emplace_back(
                [this, index, connection = nonBlocking(number)]() mutable { serve(connection, index); });
        }
    }

    void serve(Descriptor& connection, std::size_t index) {
        if (const auto request = readRequest(connection, index)) {
            for (const Step& step : responder_(*request)) {
                if (!std::visit([&](const auto& each) { return carryOut(each, connection, index); }, step)) break;
            }
        }
        connection.close();
        const std::lock_guard lock(mutex_);
        ++endedConnections_;
        changed_.notify_all();
    }

    [[nodiscard]] std::optional<RecordedRequest> readRequest(const Descriptor& connection, std::size_t index) {
        RecordedRequest request;
        while (!request.isWhole()) {
            const std::string bytes = read(connection, index);
            if (bytes.empty()) return std::nullopt;
            request.bytes += bytes;
        }
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
        changed_.notify_all();
        return request;
    }

    // Reads and records bytes. Empty at end of file, after an error and if the server stops.
    [[nodiscard]] std::string read(const Descriptor& connection, std::size_t index) {
        std::string bytes(65536, '\0');
        ssize_t count = -1;
        while (count < 0) {
            if (!waitUntilReady(connection, POLLIN)) return {};
            count = recv(connection.number(), bytes.data(), bytes.size(), 0);
            if (count < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) return {};
        }
        bytes.resize(static_cast<std::size_t>(count));
        const std::lock_guard lock(mutex_);
        connections_[index] += bytes;
        return bytes;
    }

    [[nodiscard]] bool send(const Descriptor& connection, std::string_view bytes) const {
        while (!bytes.empty()) {
            if (!waitUntilReady(connection, POLLOUT)) return false;
            const ssize_t count = ::send(connection.number(), bytes.data(), bytes.size(), sendFlags);
            if (count >= 0) {
                bytes.remove_prefix(static_cast<std::size_t>(count));
            } else if (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) {
                return false;
            }
        }
        return true;
    }

    // Each returns true if the script continues.

    bool carryOut(const Send& step, Descriptor& connection, std::size_t) const { return send(connection, step.bytes); }

    bool carryOut(const SendEndlessly& step, Descriptor& connection, std::size_t) const {
        while (send(connection, step.bytes)) continue;
        return false;
    }

    bool carryOut(const SendDripping& step, Descriptor& connection, std::size_t) const {
        return std::all_of(step.bytes.begin(), step.bytes.end(), [&](const char& byte) {
            return waitOut(step.interval) && send(connection, std::string_view(&byte, 1));
        });
    }

    static bool carryOut(const Reset&, Descriptor& connection, std::size_t) {
        const linger atOnce{1, 0};
        setsockopt(connection.number(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        connection.close();
        return false;
    }

    bool carryOut(const WaitUntilClientHasGone&, Descriptor& connection, std::size_t index) {
        while (!read(connection, index).empty()) continue;
        return true;
    }

    bool carryOut(const HoldOpen&, Descriptor&, std::size_t) const { return waitUntilReady(stop_.reader, POLLIN); }

    Responder responder_;
    StopSignal stop_;
    Descriptor socket_;
    int port_ = 0;

    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<RecordedRequest> requests_;
    std::vector<std::string> connections_;
    std::size_t endedConnections_ = 0;

    std::thread acceptor_;
    std::vector<std::thread> connectionThreads_;  // Used only by the acceptor while it runs.
};

ScriptedServer::ScriptedServer(Responder responder, int port, Loopback address)
    : listener_(std::make_unique<Listener>(std::move(responder), port, address)) {}
ScriptedServer::~ScriptedServer() = default;

int ScriptedServer::port() const { return listener_->port(); }
std::string ScriptedServer::url(std::string_view pathAndQuery) const {
    return "http://127.0.0.1:" + std::to_string(port()) + std::string(pathAndQuery);
}
std::vector<RecordedRequest> ScriptedServer::requests() const { return listener_->requests(); }
std::vector<std::string> ScriptedServer::connections() const { return listener_->connections(); }
bool ScriptedServer::waitForRequests(std::size_t count) const { return listener_->waitForRequests(count); }
bool ScriptedServer::waitForEndedConnections(std::size_t count) const {
    return listener_->waitForEndedConnections(count);
}

}  // namespace testSupport
