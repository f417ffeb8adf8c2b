#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

namespace httpContract {

// A port of 127.0.0.1. `refusing` holds the port and refuses connections; `listening` completes connections and reads
// nothing.
class IdleSocket {
  public:
    enum class Kind { refusing, listening };

    explicit IdleSocket(Kind kind) : number_(socket(AF_INET, SOCK_STREAM, 0)) {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        EXPECT_EQ(bind(number_, generic(), size), 0);
        EXPECT_EQ(getsockname(number_, generic(), &size), 0);
        if (kind == Kind::listening) {
            EXPECT_EQ(listen(number_, 0), 0);
        }
    }
    ~IdleSocket() {
        for (const int filler : fillers_) close(filler);
        close(number_);
    }
    IdleSocket(const IdleSocket&) = delete;
    IdleSocket& operator=(const IdleSocket&) = delete;

    // Opens connections until one stays pending. False if the system leaves none pending.
    [[nodiscard]] bool fillQueue() {
        for (int attempt = 0; attempt < 8; ++attempt) {
            const int filler = socket(AF_INET, SOCK_STREAM, 0);
            fillers_.push_back(filler);
            fcntl(filler, F_SETFL, O_NONBLOCK);
            if (connect(filler, generic(), sizeof address_) == 0) continue;
            pollfd connected{filler, POLLOUT, 0};
            if (poll(&connected, 1, 500) == 0) return true;
        }
        return false;
    }

    // Accepts a connection, reads `bytes` bytes, 4 MiB every 200 ms, sends `answer` and waits until the client closes.
    void readSlowlyThenAnswer(std::size_t bytes, const std::string& answer) const {
        const int connection = accept(number_, nullptr, nullptr);
        std::vector<char> buffer(std::size_t{4} << 20);
        for (std::size_t total = 0; total < bytes;) {
            poll(nullptr, 0, 200);
            const ssize_t count = recv(connection, buffer.data(), buffer.size(), MSG_WAITALL);
            if (count <= 0) break;
            total += static_cast<std::size_t>(count);
        }
        EXPECT_EQ(::send(connection, answer.data(), answer.size(), 0), static_cast<ssize_t>(answer.size()));
        while (recv(connection, buffer.data(), buffer.size(), 0) > 0) continue;  // Unread bytes would reset it.
        close(connection);
    }

    [[nodiscard]] std::string url() const {
        return "http://127.0.0.1:" + std::to_string(ntohs(address_.sin_port)) + "/";
    }

  private:
    sockaddr* generic() { return reinterpret_cast<sockaddr*>(&address_); }

    int number_;
    sockaddr_in address_{};
    std::vector<int> fillers_;
};

}  // namespace httpContract
