// Runs randomized editor sessions, each in a child process of its own, and
// counts how they end: normally, on the assertion on unreadable region
// ranges, with a sanitizer report or another error status, killed by a
// signal, or hung past the timeout. Every session that ends in one of the
// last three is printed with its seed and its output; --replay runs one seed
// in this process, under a debugger if need be.
//
//   session_harness [--sessions N] [--first-seed S] [--jobs J] [--timeout SECONDS]
//   session_harness --replay SEED

#include "RandomSession.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <string>

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

// Taken before main, so that the sessions name their logs after the harness.
const pid_t HarnessPid = getpid();

std::string LogFile(std::uint64_t seed)
{
    return "/tmp/session_harness." + std::to_string(HarnessPid) + "." + std::to_string(seed) +
           ".log";
}

int RunSession(std::uint64_t seed)
{
    int argc = 1;
    char name[] = "session_harness";
    char* argv[] = {name, nullptr};
    QApplication application(argc, argv);
    RandomSession(seed).Run();
    return 0;
}

// A session that outlives its time is ended by the alarm, counted as a hang.
pid_t StartSession(std::uint64_t seed, unsigned timeoutSeconds)
{
    fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        const int output = open(LogFile(seed).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        close(output);
        alarm(timeoutSeconds);
        exit(RunSession(seed));
    }
    return pid;
}

Outcome Classify(int status)
{
    if (WIFSIGNALED(status)) {
        return WTERMSIG(status) == SIGALRM ? Hang : Signal;
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

// Prints a session that failed with its output.
void Report(std::uint64_t seed, Outcome outcome)
{
    printf("seed %llu: %s; replay with --replay %llu\n", (unsigned long long)seed,
           OutcomeNames[outcome], (unsigned long long)seed);
    std::cout << std::ifstream(LogFile(seed)).rdbuf() << std::flush;
}

} // namespace

int main(int argc, char** argv)
{
    std::map<std::string, unsigned long long> options = {
        {"--sessions", 100}, {"--first-seed", 1}, {"--jobs", 1}, {"--timeout", 60}};
    for (int index = 1; index < argc; index += 2) {
        const std::string option = argv[index];
        char* end = nullptr;
        const char* text = index + 1 < argc ? argv[index + 1] : "";
        const unsigned long long value = std::strtoull(text, &end, 10);
        // A mistyped option or number would otherwise start a run nobody asked for.
        if ((option != "--replay" && options.count(option) == 0) || *text == '\0' || *text == '-' ||
            *end != '\0') {
            fprintf(stderr, "usage: session_harness [--sessions N] [--first-seed N] [--jobs N] "
                            "[--timeout SECONDS] | --replay SEED\n");
            return 2;
        }
        if (option == "--replay") {
            return RunSession(value);
        }
        options[option] = value;
    }
    const long long sessions = options["--sessions"];
    const std::uint64_t firstSeed = options["--first-seed"];
    const size_t jobs = std::max(1ULL, options["--jobs"]);

    long long counts[OutcomeCount] = {};
    std::map<pid_t, std::uint64_t> running;
    long long started = 0;
    long long finished = 0;
    while (started < sessions || !running.empty()) {
        while (started < sessions && running.size() < jobs) {
            const std::uint64_t seed = firstSeed + std::uint64_t(started++);
            running[StartSession(seed, unsigned(options["--timeout"]))] = seed;
        }
        int status = 0;
        const auto done = running.find(wait(&status));
        if (done == running.end()) {
            continue;
        }
        const Outcome outcome = Classify(status);
        ++counts[outcome];
        if (++finished % 500 == 0) {
            PrintCounts(finished, counts);
        }
        if (outcome != Normal && outcome != RangeAssertion) {
            Report(done->second, outcome);
        }
        unlink(LogFile(done->second).c_str());
        running.erase(done);
    }

    printf("From seed %llu, ", (unsigned long long)firstSeed);
    PrintCounts(finished, counts);
    return counts[ErrorStatus] + counts[Signal] + counts[Hang] == 0 ? 0 : 1;
}
