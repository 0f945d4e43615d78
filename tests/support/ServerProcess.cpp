#include "ServerProcess.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr auto kGraceTime = std::chrono::seconds(2);
constexpr auto kPollInterval = std::chrono::milliseconds(10);
constexpr int kExecFailed = 127;

[[noreturn]] void ExecChild(pid_t parent, const std::string& program,
                            const std::vector<std::string>& arguments)
{
    setpgid(0, 0);
    // The kernel ends the child when the thread that started it goes away,
    // a crash of the test included; a parent already gone is checked after.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) {
        _exit(kExecFailed);
    }
    const int null = open("/dev/null", O_WRONLY);
    if (null >= 0) {
        dup2(null, STDOUT_FILENO);
    }
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(kExecFailed);
}

} // namespace

ServerProcess::ServerProcess(const std::string& program, const std::vector<std::string>& arguments)
{
    const pid_t parent = getpid();
    m_Pid = fork();
    if (m_Pid == 0) {
        ExecChild(parent, program, arguments);
    }
    if (m_Pid > 0) {
        // Set on both sides, so that the group exists whichever runs first.
        setpgid(m_Pid, m_Pid);
    }
}

ServerProcess::~ServerProcess()
{
    End(SIGTERM);
}

bool ServerProcess::IsRunning()
{
    if (m_Pid <= 0) {
        return false;
    }
    int status = 0;
    if (waitpid(m_Pid, &status, WNOHANG) == m_Pid) {
        m_Pid = -1;
        return false;
    }
    return true;
}

void ServerProcess::Kill()
{
    End(SIGKILL);
}

void ServerProcess::End(int signal)
{
    if (!IsRunning()) {
        return;
    }
    kill(-m_Pid, signal);
    const auto deadline = std::chrono::steady_clock::now() + kGraceTime;
    while (IsRunning() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(kPollInterval);
    }
    if (IsRunning()) {
        kill(-m_Pid, SIGKILL);
        int status = 0;
        waitpid(m_Pid, &status, 0);
        m_Pid = -1;
    }
}

std::string ServerProcess::UniqueSerial(const std::string& prefix)
{
    static std::atomic<unsigned> count{0};
    std::ostringstream serial;
    serial << prefix << std::uppercase << std::hex << getpid() << 'N' << count++;
    return serial.str();
}
