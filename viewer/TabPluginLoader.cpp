#include "TabPluginLoader.h"

#include <TabExtensionInterface.h>

#include <QDir>
#include <QLibrary>
#include <QPluginLoader>

bool TabPluginLoader::Load(const QString& directory)
{
    m_Plugins.clear();
    m_Warnings.clear();
    m_ErrorText.clear();

    const QDir dir(directory);
    if (!dir.exists()) {
        m_ErrorText = QStringLiteral("plug-in folder %1 does not exist").arg(dir.absolutePath());
        return false;
    }

    const QStringList files = dir.entryList(QDir::Files, QDir::Name);
    for (const QString& file : files) {
        const QString path = dir.absoluteFilePath(file);
        if (!QLibrary::isLibrary(path)) {
            continue;
        }
        QPluginLoader loader(path);
        QObject* instance = loader.instance();
        if (instance == nullptr) {
            m_Warnings << QStringLiteral("%1: %2").arg(file, loader.errorString());
            continue;
        }
        TabExtensionInterface* plugin = qobject_cast<TabExtensionInterface*>(instance);
        if (plugin == nullptr) {
            m_Warnings << QStringLiteral("%1: not a tab extension").arg(file);
            continue;
        }
        m_Plugins.append(LoadedTabPlugin{file, plugin});
    }

    if (m_Plugins.isEmpty()) {
        m_ErrorText =
            QStringLiteral("no tab extension plug-in found in %1").arg(dir.absolutePath());
        return false;
    }
    return true;
}
