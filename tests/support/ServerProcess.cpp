#include "ServerProcess.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

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
    Kill();
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
    if (IsRunning()) {
        kill(-m_Pid, SIGKILL);
        int status = 0;
        waitpid(m_Pid, &status, 0);
        m_Pid = -1;
    }
}
