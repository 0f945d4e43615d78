#ifndef PRIVATELOOPBACK_H
#define PRIVATELOOPBACK_H

// Moves this test process into a network of its own that has only a
// loopback interface, so that the camera servers it starts answer only its
// own discovery and can't meet those of a test run beside it. Where the
// process may not do so (it is not root), it stays on the machine's network
// and the servers' unique serials keep the runs apart. Call it before any
// thread starts: threads started earlier keep the old network.
void EnterPrivateLoopback();

#endif
