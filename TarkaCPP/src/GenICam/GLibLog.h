#ifndef TARKACPP_GENICAM_GLIBLOG_H
#define TARKACPP_GENICAM_GLIBLOG_H

namespace KST {
namespace TrkAPI {
namespace GenICam {

// Takes over GLib's default log output for the process, so that Aravis's and
// GLib's messages never reach stderr; warnings and criticals are counted per
// thread instead. Installed once, before the first Aravis call.
void InstallGLibLog();

// Tells whether GLib warned on this thread since construction, so that a
// call Aravis complained about fails instead of printing.
class GLibWarnings
{
public:
    GLibWarnings();
    bool Seen() const;

private:
    unsigned long m_Start;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
