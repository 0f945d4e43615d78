#ifndef TABPLUGINLOADER_H
#define TABPLUGINLOADER_H

#include <QString>
#include <QStringList>
#include <QVector>

class TabExtensionInterface;

// One tab extension that the loader found, with the file it came from.
struct LoadedTabPlugin
{
    QString fileName;
    TabExtensionInterface* plugin;
};

// Loads the tab extensions of a plug-in folder the way the camera viewer
// does: every library in the folder through QPluginLoader, kept when its
// instance casts to TabExtensionInterface. The libraries stay loaded and the
// plug-in objects alive for the rest of the process.
class TabPluginLoader
{
public:
    // False, with ErrorText() set, when the folder is missing or holds no
    // tab extension. Files that are no tab extension are listed in Warnings().
    bool Load(const QString& directory);

    QVector<LoadedTabPlugin> Plugins() const { return m_Plugins; }
    QString ErrorText() const { return m_ErrorText; }
    QStringList Warnings() const { return m_Warnings; }

private:
    QVector<LoadedTabPlugin> m_Plugins;
    QString m_ErrorText;
    QStringList m_Warnings;
};

#endif
