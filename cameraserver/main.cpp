// tabcamera: serves one of the simulated cameras of cameras/ over GigE
// Vision, through Aravis's fake camera, until interrupted. Its frames come
// from the sensor simulation of the in-memory cameras, steered by the values
// any client writes into the camera's registers.

#include <TarkaCPP/GenICam/SimulatedSensor.h>
#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <arv.h>
#include <glib-unix.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

const char Usage[] =
    "Usage: tabcamera [--family NAME] [--interface ADDRESS] [--serial SERIAL]\n"
    "Serves a simulated camera over GigE Vision until interrupted.\n"
    "  --family NAME        autofunction (default), automode, dsp or unsupported\n"
    "  --interface ADDRESS  network interface or its address (default 127.0.0.1)\n"
    "  --serial SERIAL      serial number (default TAB01); clients find the camera\n"
    "                       as Aravis-Fake-SERIAL\n"
    "  --help               this text\n";

struct Options
{
    std::string family = "autofunction";
    std::string interface = "127.0.0.1";
    std::string serial = "TAB01";
};

// Fills options from the arguments; false, with a message, when they are wrong.
bool Parse(int argc, char** argv, Options& options, std::string& message)
{
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        std::string* value = option == "--family"      ? &options.family
                             : option == "--interface" ? &options.interface
                             : option == "--serial"    ? &options.serial
                                                       : nullptr;
        if (value == nullptr) {
            message = "unknown option " + option;
            return false;
        }
        if (i + 1 >= argc) {
            message = option + " needs a value";
            return false;
        }
        *value = argv[++i];
    }
    const std::vector<std::string> families = KST::TrkAPI::Sim::CameraNames();
    if (std::find(families.begin(), families.end(), options.family) == families.end()) {
        message = "unknown family " + options.family;
        return false;
    }
    return true;
}

// The description of the family: in cameras/ beside the installed server,
// else in the source tree it was built from.
std::string DescriptionOf(const std::string& family)
{
    std::vector<char> path(PATH_MAX + 1, '\0');
    ssize_t length = readlink("/proc/self/exe", path.data(), PATH_MAX);
    std::string folder = length > 0 ? std::string(path.data(), length) : std::string();
    folder = folder.substr(0, folder.find_last_of('/') + 1) + "cameras";
    if (!g_file_test(folder.c_str(), G_FILE_TEST_IS_DIR)) {
        folder = TAB_CAMERAS_DIR;
    }
    return folder + "/" + family + ".xml";
}

gboolean Quit(gpointer loop)
{
    g_main_loop_quit(static_cast<GMainLoop*>(loop));
    return G_SOURCE_REMOVE;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::cout << Usage;
        return 0;
    }
    Options options;
    std::string message;
    if (!Parse(argc, argv, options, message)) {
        std::cerr << "tabcamera: " << message << "\n" << Usage;
        return 2;
    }
    const std::string description = DescriptionOf(options.family);
    ArvGvFakeCamera* server = arv_gv_fake_camera_new_full(
        options.interface.c_str(), options.serial.c_str(), description.c_str());
    if (server == nullptr || !arv_gv_fake_camera_is_running(server)) {
        std::cerr << "tabcamera: cannot serve " << description << " on "
                  << options.interface << "\n";
        g_clear_object(&server);
        return 1;
    }
    int status = 0;
    {
        KST::TrkAPI::GenICam::SimulatedSensor sensor(arv_gv_fake_camera_get_fake_camera(server));
        if (sensor.IsRunning()) {
            std::cout << "Serving " << description << " as Aravis-Fake-" << options.serial << " on "
                      << options.interface << std::endl;
            GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
            g_unix_signal_add(SIGINT, Quit, loop);
            g_unix_signal_add(SIGTERM, Quit, loop);
            g_main_loop_run(loop);
            g_main_loop_unref(loop);
        } else {
            std::cerr << "tabcamera: cannot read the description " << description << "\n";
            status = 1;
        }
    }
    g_object_unref(server);
    return status;
}
