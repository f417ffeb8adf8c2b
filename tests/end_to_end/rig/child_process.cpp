#include "tests/end_to_end/rig/child_process.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace end_to_end {

namespace {

constexpr std::chrono::seconds timeToEndByItself{10};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Sent through the pipe to the parent when a step fails.
struct StepFailure {
    const char* step;
    int error;
};

// run() is called between fork and exec. Other threads of the parent may have held locks, so it allocates nothing and
// makes only system calls.
class ChildSetup {
  public:
    ChildSetup(const Launch& launch, int parent)
        : launch_(launch), parent_(parent), arguments_{launch.path}, moved_(launch.descriptors.size()) {
        arguments_.insert(arguments_.end(), launch.arguments.begin(), launch.arguments.end());
        for (const auto& [name, value] : launch.environment) environment_.push_back(name + "=" + value);
        argumentPointers_ = pointersTo(arguments_);
        environmentPointers_ = pointersTo(environment_);
    }

    [[noreturn]] void run() {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        resetSignals();
        placeDescriptors();
        if (launch_.noProcessSlots) takeProcessSlots();
        execve(launch_.path.c_str(), argumentPointers_.data(), environmentPointers_.data());
        fail("exec");
    }

  private:
    [[noreturn]] void fail(const char* step) const {
        const StepFailure failure{step, errno};
        [[maybe_unused]] const ssize_t written = write(parent_, &failure, sizeof failure);
        _exit(127);
    }

    static void resetSignals() {
        for (int number = 1; number < NSIG; ++number) std::signal(number, SIG_DFL);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
    }

    // Copies all descriptors to numbers from 100 on first, so that no dup2() overwrites one that is still needed.
    void placeDescriptors() {
        constexpr int aside = 100;
        parent_ = fcntl(parent_, F_DUPFD_CLOEXEC, aside);
        const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
        if (parent_ < 0 || nothing < 0) fail("/dev/null");
        for (std::size_t i = 0; i < moved_.size(); ++i) {
            moved_[i] = fcntl(launch_.descriptors[i].first, F_DUPFD_CLOEXEC, aside);
            if (moved_[i] < 0) fail("descriptor");
        }
        syscall(SYS_close_range, 3U, ~0U, CLOSE_RANGE_CLOEXEC);
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            if (dup2(nothing, standard) < 0) fail("standard descriptor");
        }
        for (std::size_t i = 0; i < moved_.size(); ++i) {
            if (dup2(moved_[i], launch_.descriptors[i].second) < 0) fail("descriptor");
        }
    }

    // Makes fork fail with EAGAIN, as the kernel does without free process slots. RLIMIT_NPROC does not bind root, and
    // counts threads. The filter cannot read the arguments of clone3; without it the C library uses clone.
    void takeProcessSlots() const {
        constexpr auto answer = [](unsigned error) { return SECCOMP_RET_ERRNO | error; };
        constexpr auto call = static_cast<unsigned>(offsetof(seccomp_data, nr));
        constexpr auto flags = static_cast<unsigned>(offsetof(seccomp_data, args));  // little-endian: the lower half
        std::array<sock_filter, 8> filter{{
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, call),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone3, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, answer(ENOSYS)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 0, 3),
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flags),
            BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, CLONE_THREAD, 1, 0),
            BPF_STMT(BPF_RET | BPF_K, answer(EAGAIN)),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        }};
        const sock_fprog program{filter.size(), filter.data()};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) fail("no new privileges");
        if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0) fail("system call filter");
    }

    const Launch& launch_;
    int parent_;
    std::vector<std::string> arguments_;
    std::vector<std::string> environment_;
    std::vector<char*> argumentPointers_;
    std::vector<char*> environmentPointers_;
    std::vector<int> moved_;
};

ExitStatus exitStatusOf(int status) {
    if (WIFSIGNALED(status)) return {ExitStatus::Kind::signal, WTERMSIG(status)};
    return {ExitStatus::Kind::status, WEXITSTATUS(status)};
}

}  // namespace

Pipe::Pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error(std::string("pipe: ") + std::strerror(errno));
    reader = Descriptor(ends[0]);
    writer = Descriptor(ends[1]);
}

ChildProcess::~ChildProcess() {
    signal(SIGKILL);
    waitForExit();
}

void ChildProcess::start(const Launch& launch) {
    Pipe failures;
    ChildSetup setup(launch, failures.writer.number());
    const pid_t forked = fork();
    if (forked < 0) throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
    if (forked == 0) setup.run();

    pid_ = forked;
    watch_ = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid_, 0)));
    failures.writer.close();  // Now the pipe ends when exec succeeds.
    StepFailure failure{};
    if (read(failures.reader.number(), &failure, sizeof failure) != sizeof failure) return;
    waitForExit();
    throw std::runtime_error(launch.path + ": " + failure.step + ": " + std::strerror(failure.error));
}

std::optional<ExitStatus> ChildProcess::waitForExit(std::chrono::milliseconds limit) {
    if (exit_ || pid_ == 0) return exit_;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    int ready = -1;
    do {
        pollfd end{watch_.number(), POLLIN, 0};
        ready = poll(&end, 1, millisecondsUntil(deadline));
    } while (ready < 0 && errno == EINTR);
    if (ready != 1) return std::nullopt;

    int status = 0;
    while (waitpid(pid_, &status, 0) < 0) {
        if (errno != EINTR) return std::nullopt;
    }
    exit_ = exitStatusOf(status);
    return exit_;
}

void ChildProcess::signal(int number) {
    if (pid_ != 0 && !exit_) kill(pid_, number);
}

void ChildProcess::end() {
    signal(SIGTERM);
    if (waitForExit(timeToEndByItself)) return;
    signal(SIGKILL);
    waitForExit();
}

}  // namespace end_to_end
