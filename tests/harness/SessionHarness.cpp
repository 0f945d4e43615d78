// Runs randomized editor sessions, each in a child process of its own, and
// counts how they end: normally, on the assertion on unreadable region
// ranges, with a sanitizer report or another error status, killed by a
// signal, or hung. Every session that ends in one of the last three is
// printed with its seed and its output; --replay runs one seed in this
// process, under a debugger if need be.
//
//   session_harness [--sessions N] [--first-seed S] [--jobs J] [--timeout SECONDS]
//   session_harness --replay SEED

#include "RandomSession.h"

#include <QApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

enum Outcome
{
    Normal,
    RangeAssertion,
    ErrorStatus,
    Signal,
    Hang,
    OutcomeCount
};

const char* const OutcomeNames[OutcomeCount] = {
    "normal", "range assertion", "sanitizer report or error status", "crash (signal)", "hang"};

struct Child
{
    std::uint64_t seed;
    std::chrono::steady_clock::time_point start;
    std::string log;
};

int RunSession(std::uint64_t seed)
{
    int argc = 1;
    char name[] = "session_harness";
    char* argv[] = {name, nullptr};
    QApplication application(argc, argv);
    RandomSession(seed).Run();
    return 0;
}

pid_t StartSession(std::uint64_t seed, const std::string& log)
{
    fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        const int output = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        close(output);
        exit(RunSession(seed));
    }
    return pid;
}

Outcome Classify(int status)
{
    if (WIFSIGNALED(status)) {
        return Signal;
    }
    if (WEXITSTATUS(status) == 0) {
        return Normal;
    }
    return WEXITSTATUS(status) == RandomSession::RangeAssertionExit ? RangeAssertion : ErrorStatus;
}

void PrintCounts(long long sessions, const long long* counts)
{
    printf("%lld sessions:\n", sessions);
    for (int outcome = 0; outcome < OutcomeCount; ++outcome) {
        printf("  %-34s %lld\n", OutcomeNames[outcome], counts[outcome]);
    }
    fflush(stdout);
}

void Report(const Child& child, Outcome outcome)
{
    printf("seed %llu: %s; replay with --replay %llu\n", (unsigned long long)child.seed,
           OutcomeNames[outcome], (unsigned long long)child.seed);
    if (FILE* log = fopen(child.log.c_str(), "r")) {
        char line[512];
        for (int count = 0; count < 60 && fgets(line, sizeof line, log); ++count) {
            printf("    %s", line);
        }
        fclose(log);
    }
    fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    long long sessions = 100;
    std::uint64_t firstSeed = 1;
    int jobs = 1;
    int timeout = 60;
    for (int index = 1; index + 1 < argc; index += 2) {
        const std::string option = argv[index];
        const char* value = argv[index + 1];
        if (option == "--replay") {
            return RunSession(std::strtoull(value, nullptr, 10));
        }
        if (option == "--sessions") {
            sessions = std::atoll(value);
        } else if (option == "--first-seed") {
            firstSeed = std::strtoull(value, nullptr, 10);
        } else if (option == "--jobs") {
            jobs = std::max(1, std::atoi(value));
        } else if (option == "--timeout") {
            timeout = std::atoi(value);
        }
    }

    long long counts[OutcomeCount] = {};
    std::map<pid_t, Child> running;
    long long started = 0;
    long long finished = 0;
    while (started < sessions || !running.empty()) {
        while (started < sessions && int(running.size()) < jobs) {
            Child child;
            child.seed = firstSeed + std::uint64_t(started++);
            child.start = std::chrono::steady_clock::now();
            child.log = "/tmp/session_harness." + std::to_string(getpid()) + "." +
                        std::to_string(child.seed) + ".log";
            running[StartSession(child.seed, child.log)] = child;
        }
        int status = 0;
        const pid_t done = waitpid(-1, &status, WNOHANG);
        if (done > 0 && running.count(done)) {
            const Outcome outcome = Classify(status);
            ++counts[outcome];
            if (++finished % 500 == 0) {
                PrintCounts(finished, counts);
            }
            if (outcome != Normal && outcome != RangeAssertion) {
                Report(running[done], outcome);
            }
            unlink(running[done].log.c_str());
            running.erase(done);
            continue;
        }
        const auto now = std::chrono::steady_clock::now();
        for (auto& entry : running) {
            if (now - entry.second.start > std::chrono::seconds(timeout)) {
                kill(entry.first, SIGKILL);
                waitpid(entry.first, &status, 0);
                ++counts[Hang];
                ++finished;
                Report(entry.second, Hang);
                unlink(entry.second.log.c_str());
                running.erase(entry.first);
                break;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }

    printf("From seed %llu, ", (unsigned long long)firstSeed);
    PrintCounts(finished, counts);
    return counts[ErrorStatus] + counts[Signal] + counts[Hang] == 0 ? 0 : 1;
}
