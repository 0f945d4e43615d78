#ifndef VIEWEROPTIONS_H
#define VIEWEROPTIONS_H

#include <QString>
#include <QStringList>

// The viewer's command line. The locale is also read before the application
// object exists, because the tab takes its language from the process's
// locale environment, which Qt reads once at start.
class ViewerOptions
{
public:
    // Sets LC_ALL and LANG from "--locale NAME" or "--locale=NAME", if given.
    static void ApplyLocale(int argc, char** argv);
    // True for "--list-devices", which needs no display, so it is asked
    // before the application object exists.
    static bool ListDevices(int argc, char** argv);

    // False, with ErrorText() set, for an unknown option or a missing value.
    // Relative paths are made absolute against the current directory.
    bool Parse(const QStringList& arguments);

    QString ErrorText() const { return m_ErrorText; }
    // The camera to open by its CameraCatalog name: "--camera NAME", the
    // absolute path of "--genicam FILE" or the id of "--device ID".
    QString Camera() const { return m_Camera; }
    // True when the camera was named by "--camera", which only names the
    // in-memory cameras.
    bool InMemoryCamera() const { return m_InMemoryCamera; }

    // An empty folder means "plugins" beside the executable.
    QString PluginDirectory() const { return m_PluginDirectory; }
    // Empty unless a screenshot is asked for.
    QString ScreenshotFile() const { return m_ScreenshotFile; }
    bool Verbose() const { return m_Verbose; }
    // Start acquisition at launch.
    bool Acquire() const { return m_Acquire; }

private:
    QString m_ErrorText;
    QString m_Camera;
    bool m_InMemoryCamera = true;
    QString m_PluginDirectory;
    QString m_ScreenshotFile;
    bool m_Verbose = false;
    bool m_Acquire = false;
};

#endif
