// What becomes of a submission when the website cannot be reached, never answers, or is not who it should be.
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>

#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/rig/namespaces.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using testSupport::answerBytes;
using testSupport::RecordedRequest;
using testSupport::Script;
using testSupport::ScriptedServer;
using testSupport::Send;

using Lines = std::vector<std::string>;

constexpr std::chrono::minutes idleLimit{2};

// While it lives, the test's network has an interface that seems to lead somewhere.
class SecondInterface {
  public:
    SecondInterface() : tunnel_(open("/dev/net/tun", O_RDWR | O_CLOEXEC)) {
        ifreq request{};
        request.ifr_flags = IFF_TUN | IFF_NO_PI;
        EXPECT_EQ(ioctl(tunnel_.number(), TUNSETIFF, &request), 0);

        const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(0xC0000201);  // 192.0.2.1, nobody's
        std::memcpy(&request.ifr_addr, &address, sizeof address);
        EXPECT_EQ(ioctl(socket.number(), SIOCSIFADDR, &request), 0);
        request.ifr_flags = IFF_UP | IFF_RUNNING;
        EXPECT_EQ(ioctl(socket.number(), SIOCSIFFLAGS, &request), 0);
    }

  private:
    Descriptor tunnel_;  // Closing it removes the interface.
};

class NetworkFault : public Surroundings {
  protected:
    // The log from the press of "Send to Website" on, without the line that names the endpoint.
    Lines linesOfASubmissionTo(const std::string& address, const Program::Setting& setting) {
        const ScriptedServer server(website({}), websitePort());
        Program program(setting);
        EXPECT_EQ(program.failure(), std::nullopt);
        const AccessibleProgram window(program.pid());
        EXPECT_TRUE(program.waitForLine("   Response: noted"));
        const std::size_t before = program.log().size() + 1;
        EXPECT_TRUE(press(window, "Detect Hardware"));
        EXPECT_TRUE(shows(window, "Hardware detected successfully!"));
        EXPECT_TRUE(window.field()->setText(address));
        EXPECT_TRUE(press(window, "Send to Website"));
        EXPECT_TRUE(program.waitForLine(
            [](std::string_view line) { return line.find("Failed to send hardware data") != std::string_view::npos; },
            idleLimit));
        Lines log = program.log();
        EXPECT_EQ(log.at(before - 1), "📤 Sending hardware data to: " + address + "/save-detected-hardware/");
        log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(before));
        return log;
    }

    static Lines networkError(const std::string& words) {
        return {"❌ Network error: " + words, "❌ Final error: Network error: " + words,
                "❌ Failed to send hardware data. Check the console output above for details."};
    }
};

TEST_F(NetworkFault, AMachineWithoutANetworkIsToldThatItIsOffline) {
    if (const auto& refusal = whyNoOwnNamespaces()) GTEST_SKIP() << *refusal;
    EXPECT_EQ(linesOfASubmissionTo("http://website.example", setting()),
              networkError("The Internet connection appears to be offline."));
}

TEST_F(NetworkFault, APortWhereNobodyListensIsTold) {
    EXPECT_EQ(linesOfASubmissionTo("http://127.0.0.1:9", setting()), networkError("Could not connect to the server."));
    EXPECT_EQ(linesOfASubmissionTo("http://[::1]:9", setting()), networkError("Could not connect to the server."));
}

// There is a network, but no name server that knows the name.
TEST_F(NetworkFault, AHostThatIsNotFoundIsTold) {
    if (const auto& refusal = whyNoOwnNamespaces()) GTEST_SKIP() << *refusal;
    if (access("/dev/net/tun", R_OK | W_OK) != 0) GTEST_SKIP() << "needs to read and write /dev/net/tun";
    const SecondInterface network;
    EXPECT_EQ(linesOfASubmissionTo("http://website.example", setting()),
              networkError("A server with the specified hostname could not be found."));
}

bool hasIpv6() {
    const Descriptor socket(::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    return bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

TEST_F(NetworkFault, AWebsiteThatOnlyIpv6LeadsToIsReached) {
    if (!hasIpv6()) GTEST_SKIP() << "needs IPv6 on the loopback interface";
    const ScriptedServer other(testSupport::always({Send{answerBytes(500, R"({"success": false, "error": "x"})")}}), 0,
                               testSupport::Loopback::ipv6);
    std::vector<std::string> hosts = {"[::1]"};
    addrinfo* found = nullptr;
    addrinfo wanted{};
    wanted.ai_family = AF_INET6;
    if (getaddrinfo("localhost", nullptr, &wanted, &found) == 0) {  // Not without a file /etc/hosts.
        hosts.emplace_back("localhost");
        freeaddrinfo(found);
    }
    for (const std::string& host : hosts) {
        const Lines log = linesOfASubmissionTo("http://" + host + ":" + std::to_string(other.port()), setting());
        ASSERT_FALSE(log.empty());
        EXPECT_EQ(log.front(), "📥 Response status: 500");
    }
}

TEST_F(NetworkFault, AWebsiteThatNeverAnswersIsGivenUpAfterAMinute) {
    const ScriptedServer silent(testSupport::always({testSupport::HoldOpen{}}));
    EXPECT_EQ(linesOfASubmissionTo(silent.url(""), setting()), networkError("The request timed out."));
}

TEST_F(NetworkFault, ProxiesThatTheEnvironmentNamesAreNotUsed) {
    const ScriptedServer other(testSupport::always({Send{answerBytes(500, R"({"success": false, "error": "x"})")}}));
    Program::Setting proxied = setting();
    for (const char* name : {"http_proxy", "HTTP_PROXY", "https_proxy", "all_proxy", "ALL_PROXY"}) {
        proxied.environment[name] = "http://127.0.0.1:9";
    }
    const Lines log = linesOfASubmissionTo(other.url(""), proxied);
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.front(), "📥 Response status: 500");
}

// A server at "https://127.0.0.1" with a certificate made for the test. It never answers a POST.
class TlsFault : public NetworkFault {
  protected:
    void makeCertificate(const std::string& name, const std::string& lastDay) {
        std::ofstream(home_.path() / "ca.conf")
            << "[ca]\ndefault_ca = own\n[own]\ndatabase = index\nserial = serial\nnew_certs_dir = .\n"
               "default_md = sha256\npolicy = names\nx509_extensions = more\n[names]\ncommonName = supplied\n"
               "[more]\nsubjectAltName = "
            << name << "\n";
        const std::string commands =
            "cd '" + home_.path().string() +
            "' && : >index && echo 01 >serial"
            " && openssl req -new -newkey rsa:2048 -nodes -keyout key -out request -subj /CN=website"
            " && openssl ca -batch -selfsign -notext -config ca.conf -keyfile key -in request"
            " -out certificate -startdate 20200101000000Z -enddate " +
            lastDay;
        ASSERT_EQ(std::system(("{ " + commands + "; } >/dev/null 2>&1").c_str()), 0);
    }

    void serve(const std::vector<std::string>& options = {}) {
        Program::Setting openssl{.path = "/usr/bin/openssl",
                                 .environment = opensslEnvironment,
                                 .arguments = {"s_server", "-accept", "127.0.0.1:0", "-www", "-key",
                                               home_.path() / "key", "-cert", home_.path() / "certificate"}};
        openssl.arguments.insert(openssl.arguments.end(), options.begin(), options.end());
        start(openssl);
    }

    // What comes through the pipe goes to whoever connects, as soon as the connection stands.
    void serveAnswer(const std::filesystem::path& pipe, const std::string& answer) {
        std::ofstream(pipe) << answer;
        start({.path = "/bin/sh",
               .environment = opensslEnvironment,
               .arguments = {"-c", "cd '" + home_.path().string() +
                                       "' && exec openssl s_server -accept 127.0.0.1:0 -key key -cert certificate <'" +
                                       pipe.string() + "'"}});
    }

    void start(const Program::Setting& openssl) {
        server_ = std::make_unique<Program>(openssl);
        ASSERT_EQ(server_->failure(), std::nullopt);
        const auto ready = server_->waitForLine([](std::string_view line) { return line.starts_with("ACCEPT "); });
        ASSERT_TRUE(ready) << server_->bytes(Stream::error);
        port_ = ready->substr(ready->rfind(':') + 1);
    }

    [[nodiscard]] std::string address() const { return "https://127.0.0.1:" + port_; }

    void expectUntrusted() {
        const Lines log = linesOfASubmissionTo(address(), setting());
        ASSERT_FALSE(log.empty());
        EXPECT_EQ(log.front().rfind("❌ Network error: The certificate for this server is invalid.", 0), 0U)
            << log.front();
    }

    const Environment opensslEnvironment = {{"PATH", "/usr/bin"}, {"OPENSSL_CONF", "/dev/null"}};
    std::unique_ptr<Program> server_;
    std::string port_;
};

// The machine vouches for nobody but the test's own certificate.
class TrustedTlsFault : public TlsFault {
  protected:
    void SetUp() override {
        if (const auto& refusal = whyNoOwnNamespaces()) GTEST_SKIP() << *refusal;
        TlsFault::SetUp();
    }

    void TearDown() override {
        if (isMounted_) umount(certificates);
    }

    void trust() {
        isMounted_ = mount((home_.path() / "certificate").c_str(), certificates, nullptr, MS_BIND, nullptr) == 0;
        ASSERT_TRUE(isMounted_);
    }

  private:
    static constexpr const char* certificates = "/etc/ssl/certs/ca-certificates.crt";
    bool isMounted_ = false;
};

constexpr const char* inTheFuture = "20991231000000Z";

TEST_F(TrustedTlsFault, ACertificateThatIsVouchedForIsAcceptedAndTheAnswerWaitedFor) {
    makeCertificate("IP:127.0.0.1", inTheFuture);
    trust();
    serve();
    EXPECT_EQ(linesOfASubmissionTo(address(), setting()), networkError("The request timed out."));
}

// It answers by itself with what stands in a pipe, whatever it is asked.
TEST_F(TrustedTlsFault, AWebsiteCannotSendTheHardwareOnWithoutTls) {
    makeCertificate("IP:127.0.0.1", inTheFuture);
    trust();
    const ScriptedServer plain(testSupport::always({Send{answerBytes(200, R"({"success": true})")}}));
    for (const int status : {302, 307}) {
        for (const bool byADetour : {false, true}) {
            SCOPED_TRACE(std::to_string(status) + (byADetour ? " by a detour" : ""));
            const Fifo answer(home_.path() / "answer");
            serveAnswer(answer.path(), "HTTP/1.1 " + std::to_string(status) + " Elsewhere\r\nLocation: " +
                                           plain.url("/next") + "\r\nContent-Length: 0\r\n\r\n");
            const ScriptedServer detour(
                testSupport::always({Send{answerBytes(307, "", {"Location: " + address() + "/"})}}));
            EXPECT_EQ(linesOfASubmissionTo(byADetour ? detour.url("") : address(), setting()),
                      networkError("unsupported URL"));
            std::filesystem::remove(answer.path());
        }
    }
    EXPECT_TRUE(plain.connections().empty());
}

TEST_F(TlsFault, ACertificateThatNobodyVouchesForIsRefused) {
    makeCertificate("IP:127.0.0.1", inTheFuture);
    serve();
    expectUntrusted();
}

TEST_F(TrustedTlsFault, ACertificateForAnotherHostIsRefused) {
    makeCertificate("DNS:elsewhere.example", inTheFuture);
    trust();
    serve();
    expectUntrusted();
}

TEST_F(TrustedTlsFault, ACertificateThatHasRunOutIsRefused) {
    makeCertificate("IP:127.0.0.1", "20200201000000Z");
    trust();
    serve();
    expectUntrusted();
}

TEST_F(TrustedTlsFault, AnOldProtocolIsRefused) {
    makeCertificate("IP:127.0.0.1", inTheFuture);
    trust();
    serve({"-tls1_1", "-cipher", "ALL:@SECLEVEL=0"});
    EXPECT_EQ(linesOfASubmissionTo(address(), setting()),
              networkError("A TLS error caused the secure connection to fail."));
}

TEST_F(TlsFault, AServerThatDoesNotSpeakItIsTold) {
    const ScriptedServer plain(testSupport::always({Send{"no TLS here\r\n"}}));
    EXPECT_EQ(linesOfASubmissionTo("https://127.0.0.1:" + std::to_string(plain.port()), setting()),
              networkError("A TLS error caused the secure connection to fail."));
}

TEST_F(TlsFault, AServerThatClosesInTheMiddleOfTheHandshakeIsTold) {
    for (const Script& end : {Script{}, Script{testSupport::Reset{}}, Script{Send{"\x16\x03\x03"}}}) {
        const ScriptedServer closing(testSupport::always(end));
        EXPECT_EQ(linesOfASubmissionTo("https://127.0.0.1:" + std::to_string(closing.port()), setting()),
                  networkError("A TLS error caused the secure connection to fail."));
    }
}

}  // namespace
}  // namespace end_to_end
