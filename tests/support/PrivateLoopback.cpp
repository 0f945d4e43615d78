#include "PrivateLoopback.h"

#include <cstring>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr char kLoopback[] = "lo";

// A new network starts with its loopback interface down.
void BringUpLoopback()
{
    const int control = socket(AF_INET, SOCK_DGRAM, 0);
    if (control < 0) {
        return;
    }
    ifreq request{};
    std::strncpy(request.ifr_name, kLoopback, IFNAMSIZ - 1);
    if (ioctl(control, SIOCGIFFLAGS, &request) == 0) {
        request.ifr_flags |= IFF_UP;
        ioctl(control, SIOCSIFFLAGS, &request);
    }
    close(control);
}

} // namespace

void EnterPrivateLoopback()
{
    if (unshare(CLONE_NEWNET) == 0) {
        BringUpLoopback();
    }
}
