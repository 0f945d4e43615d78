#ifndef TARKACPP_GENICAM_GLIBLOG_H
#define TARKACPP_GENICAM_GLIBLOG_H

namespace KST {
namespace TrkAPI {
namespace GenICam {

// Takes the messages of Aravis's log domains while a call of the backend runs
// on the thread that logs them, so that Aravis never writes to stderr for a
// call: its warnings and criticals are counted per thread instead. Aravis's
// messages at other times go to GLib's default handler, as without it, and
// no other domain is touched: a host's own handler keeps its messages,
// installed before or after. Installed once, before the first Aravis call.
void InstallGLibLog();

// One call of the backend on this thread, from construction to destruction;
// tells whether Aravis warned during it, so that a call Aravis complained
// about fails instead of printing.
class GLibWarnings
{
public:
    GLibWarnings();
    ~GLibWarnings();
    GLibWarnings(const GLibWarnings&) = delete;
    GLibWarnings& operator=(const GLibWarnings&) = delete;

    bool Seen() const;

private:
    unsigned long m_Start;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
