#ifndef SERVERPROCESS_H
#define SERVERPROCESS_H

#include <string>
#include <sys/types.h>
#include <vector>

// A program that one test starts, such as a camera server: it runs in a
// process group of its own and ends with the object, and also when the test
// process dies without ending it, so that it never outlives the test or
// holds the output of the test runner open.
class ServerProcess
{
public:
    ServerProcess(const std::string& program, const std::vector<std::string>& arguments);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    bool IsRunning();
    // Ends the program at once, as a camera that is unplugged.
    void Kill();

private:
    pid_t m_Pid = -1;
};

#endif
