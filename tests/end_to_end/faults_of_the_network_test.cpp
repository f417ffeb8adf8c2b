// Submissions to a website that cannot be reached or trusted.
#include <netdb.h>
#include <netinet/in.h>
#include <sys/mount.h>
#include <sys/socket.h>

#include <cstdlib>
#include <fstream>
#include <memory>

#include "tests/end_to_end/rig/fifo.h"
#include "tests/end_to_end/rig/mount_namespace.h"
#include "tests/end_to_end/surroundings.h"

namespace end_to_end {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* refused = R"({"success": false, "error": "x"})";

class NetworkFault : public Surroundings {
  protected:
    // The log of one submission, without its first line, which names the endpoint.
    Lines linesOfASubmissionTo(const std::string& address, const Program::Setting& setting) {
        const ScriptedServer server(website({}), websitePort());
        Program program(setting);
        const AccessibleProgram window(program.pid());
        EXPECT_TRUE(program.waitForLine("   Response: noted"));
        const std::size_t before = program.log().size() + 1;
        EXPECT_TRUE(press(window, "Detect Hardware"));
        EXPECT_TRUE(shows(window, "Hardware detected successfully!"));
        EXPECT_TRUE(window.field()->setText(address));
        EXPECT_TRUE(press(window, "Send to Website"));
        EXPECT_TRUE(program.waitForLine(
            [](std::string_view line) { return line.find("Failed to send hardware data") != std::string_view::npos; }));
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

bool hasIpv6() {
    const Descriptor socket(::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    return bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

TEST_F(NetworkFault, AWebsiteOnIpv6IsReached) {
    if (!hasIpv6()) GTEST_SKIP() << "needs IPv6 on the loopback interface";
    const ScriptedServer other(always({Send{answerBytes(500, refused)}}), 0, testSupport::Loopback::ipv6);
    std::vector<std::string> hosts = {"[::1]"};
    addrinfo* found = nullptr;
    addrinfo wanted{};
    wanted.ai_family = AF_INET6;
    if (getaddrinfo("localhost", nullptr, &wanted, &found) == 0) {  // Fails without /etc/hosts.
        hosts.emplace_back("localhost");
        freeaddrinfo(found);
    }
    for (const std::string& host : hosts) {
        const Lines log = linesOfASubmissionTo("http://" + host + ":" + std::to_string(other.port()), setting());
        ASSERT_FALSE(log.empty());
        EXPECT_EQ(log.front(), "📥 Response status: 500");
    }
}

// A server at "https://127.0.0.1", on a machine that trusts only this server's certificate.
class TlsFault : public NetworkFault {
  protected:
    void SetUp() override {
        if (const auto refusal = whyNoMountNamespace()) GTEST_SKIP() << *refusal;
        NetworkFault::SetUp();
    }

    void TearDown() override {
        if (isTrusted_) umount(certificates);
    }

    void trustCertificateFor(const std::string& name, const std::string& lastDay = "20991231000000Z") {
        std::ofstream(home_.path() / "ca.conf")
            << "[ca]\ndefault_ca = own\n[own]\ndatabase = index\nserial = serial\nnew_certs_dir = .\n"
               "default_md = sha256\npolicy = names\nx509_extensions = more\n[names]\ncommonName = supplied\n"
               "[more]\nsubjectAltName = "
            << name << "\n";
        const std::string commands =
            "cd '" + home_.path().string() +
            "' && : >index && echo 01 >serial"
            " && openssl req -new -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout key -subj /CN=website"
            " -out request"
            " && openssl ca -batch -selfsign -notext -config ca.conf -keyfile key -in request"
            " -out certificate -startdate 20200101000000Z -enddate " +
            lastDay;
        ASSERT_EQ(std::system(("{ " + commands + "; } >/dev/null 2>&1").c_str()), 0);
        isTrusted_ = mount((home_.path() / "certificate").c_str(), certificates, nullptr, MS_BIND, nullptr) == 0;
        ASSERT_TRUE(isTrusted_);
    }

    // Sends the answer on the first connection, whatever the request.
    void serve(const std::string& answer, const std::string& options = "") {
        const std::filesystem::path pipe = home_.path() / "answer";
        std::filesystem::remove(pipe);
        answer_ = std::make_unique<Fifo>(pipe);
        std::ofstream(pipe) << answer;
        server_ = std::make_unique<Program>(Program::Setting{
            .path = "/bin/sh",
            .environment = {{"PATH", "/usr/bin"}, {"OPENSSL_CONF", "/dev/null"}},
            .arguments = {"-c", "cd '" + home_.path().string() +
                                    "' && exec openssl s_server -accept 127.0.0.1:0 -key key -cert certificate " +
                                    options + " <answer"}});
        const auto ready = server_->waitForLine([](std::string_view line) { return line.starts_with("ACCEPT "); });
        ASSERT_TRUE(ready) << server_->bytes(Stream::error);
        address_ = "https://127.0.0.1:" + ready->substr(ready->rfind(':') + 1);
    }

    void expectUntrusted() {
        serve(answerBytes(500, refused));
        const Lines log = linesOfASubmissionTo(address_, setting());
        ASSERT_FALSE(log.empty());
        EXPECT_EQ(log.front().rfind("❌ Network error: The certificate for this server is invalid.", 0), 0U)
            << log.front();
    }

    static constexpr const char* certificates = "/etc/ssl/certs/ca-certificates.crt";
    bool isTrusted_ = false;
    std::unique_ptr<Fifo> answer_;
    std::unique_ptr<Program> server_;
    std::string address_;
};

TEST_F(TlsFault, ATrustedCertificateIsAccepted) {
    trustCertificateFor("IP:127.0.0.1");
    serve(answerBytes(500, refused));
    const Lines log = linesOfASubmissionTo(address_, setting());
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.front(), "📥 Response status: 500");
}

TEST_F(TlsFault, ARedirectFromHttpsToHttpIsRefused) {
    trustCertificateFor("IP:127.0.0.1");
    const ScriptedServer plain(always({Send{answerBytes(200, R"({"success": true})")}}));
    const auto expectRefusal = [&](const std::string& address) {
        EXPECT_EQ(linesOfASubmissionTo(address, setting()), networkError("unsupported URL"));
    };
    for (const int status : {302, 307}) {  // One continues as a GET, one as a POST.
        SCOPED_TRACE(status);
        serve(answerBytes(status, "", {"Location: " + plain.url("/next")}));
        expectRefusal(address_);
    }
    // From http to https and back.
    serve(answerBytes(302, "", {"Location: " + plain.url("/next")}));
    const ScriptedServer detour(always({Send{answerBytes(307, "", {"Location: " + address_ + "/"})}}));
    expectRefusal(detour.url(""));
    EXPECT_TRUE(plain.connections().empty());
}

TEST_F(TlsFault, ACertificateForAnotherHostIsRefused) {
    trustCertificateFor("DNS:elsewhere.example");
    expectUntrusted();
}

TEST_F(TlsFault, AnExpiredCertificateIsRefused) {
    trustCertificateFor("IP:127.0.0.1", "20200201000000Z");
    expectUntrusted();
}

TEST_F(TlsFault, AnOldProtocolIsRefused) {
    trustCertificateFor("IP:127.0.0.1");
    serve(answerBytes(500, refused), "-tls1_1 -cipher ALL:@SECLEVEL=0");
    // Makes the TLS library itself accept it.
    const std::filesystem::path lax = home_.path() / "openssl.cnf";
    std::ofstream(lax) << "openssl_conf = all\n[all]\nssl_conf = ssl\n[ssl]\nsystem_default = lax\n"
                          "[lax]\nMinProtocol = TLSv1\nCipherString = ALL:@SECLEVEL=0\n";
    Program::Setting laxSetting = setting();
    laxSetting.environment["OPENSSL_CONF"] = lax.string();
    EXPECT_EQ(linesOfASubmissionTo(address_, laxSetting),
              networkError("A TLS error caused the secure connection to fail."));
}

}  // namespace
}  // namespace end_to_end
