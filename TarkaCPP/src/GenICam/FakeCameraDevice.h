#ifndef TARKACPP_GENICAM_FAKECAMERADEVICE_H
#define TARKACPP_GENICAM_FAKECAMERADEVICE_H

#include <arv.h>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// An Aravis device whose memory is that of a fake camera, so that a node map
// of the camera's description reaches its registers directly, as the
// camera's own firmware would, with no transport in between. Returns a new
// reference; the camera must outlive the device.
ArvDevice* NewFakeCameraDevice(ArvFakeCamera* camera);

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
