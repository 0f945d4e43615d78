#include "FakeCameraDevice.h"

// The GObject type that carries the camera; GObject's macros name it.
struct TabFakeCameraDevice
{
    ArvDevice parent;
    ArvFakeCamera* camera;
};

struct TabFakeCameraDeviceClass
{
    ArvDeviceClass parent;
};

G_DEFINE_TYPE(TabFakeCameraDevice, tab_fake_camera_device, ARV_TYPE_DEVICE)

namespace {

ArvFakeCamera* CameraOf(ArvDevice* device)
{
    return reinterpret_cast<TabFakeCameraDevice*>(device)->camera;
}

gboolean ReadMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer, GError**)
{
    return arv_fake_camera_read_memory(CameraOf(device), static_cast<guint32>(address), size,
                                       buffer);
}

gboolean WriteMemory(ArvDevice* device, guint64 address, guint32 size, void* buffer, GError**)
{
    return arv_fake_camera_write_memory(CameraOf(device), static_cast<guint32>(address), size,
                                        buffer);
}

gboolean ReadRegister(ArvDevice* device, guint64 address, guint32* value, GError**)
{
    return arv_fake_camera_read_register(CameraOf(device), static_cast<guint32>(address), value);
}

gboolean WriteRegister(ArvDevice* device, guint64 address, guint32 value, GError**)
{
    return arv_fake_camera_write_register(CameraOf(device), static_cast<guint32>(address), value);
}

} // namespace

static void tab_fake_camera_device_init(TabFakeCameraDevice* device)
{
    device->camera = nullptr;
}

static void tab_fake_camera_device_class_init(TabFakeCameraDeviceClass* type)
{
    ArvDeviceClass* device = ARV_DEVICE_CLASS(type);
    device->read_memory = ReadMemory;
    device->write_memory = WriteMemory;
    device->read_register = ReadRegister;
    device->write_register = WriteRegister;
}

namespace KST {
namespace TrkAPI {
namespace GenICam {

ArvDevice* NewFakeCameraDevice(ArvFakeCamera* camera)
{
    auto* device =
        static_cast<TabFakeCameraDevice*>(g_object_new(tab_fake_camera_device_get_type(), nullptr));
    device->camera = camera;
    return ARV_DEVICE(device);
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
