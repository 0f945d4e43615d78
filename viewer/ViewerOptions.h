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

    // False, with ErrorText() set, for an unknown option or a missing value.
    // Relative paths are made absolute against the current directory.
    bool Parse(const QStringList& arguments);

    QString ErrorText() const { return m_ErrorText; }
    QString Camera() const { return m_Camera; }
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
    QString m_PluginDirectory;
    QString m_ScreenshotFile;
    bool m_Verbose = false;
    bool m_Acquire = false;
};

#endif
