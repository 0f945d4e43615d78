#include "CameraCatalog.h"

#include <TarkaCPP/Sim/ReadyMadeCameras.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {
const char DescriptionSuffix[] = ".xml";
} // namespace

QStringList CameraCatalog::InMemoryNames()
{
    QStringList names;
    for (const std::string& name : KST::TrkAPI::Sim::CameraNames()) {
        names << QString::fromStdString(name);
    }
    return names;
}

QStringList CameraCatalog::DescriptionNames()
{
    return QDir(CamerasDirectory())
        .entryList({QStringLiteral("*") + DescriptionSuffix}, QDir::Files, QDir::Name);
}

QString CameraCatalog::CamerasDirectory()
{
    const QString installed =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("cameras"));
    return QFileInfo(installed).isDir() ? installed : QStringLiteral(TAB_CAMERAS_DIR);
}

CameraCatalog::Kind CameraCatalog::KindOf(const QString& name)
{
    if (InMemoryNames().contains(name)) {
        return InMemory;
    }
    return name.endsWith(DescriptionSuffix, Qt::CaseInsensitive) ? Description : Discovered;
}

QString CameraCatalog::DescriptionFile(const QString& name)
{
    if (QFileInfo(name).isAbsolute() || QFileInfo::exists(name)) {
        return QFileInfo(name).absoluteFilePath();
    }
    return QDir(CamerasDirectory()).filePath(name);
}
