#ifndef CAMERACATALOG_H
#define CAMERACATALOG_H

#include <QString>
#include <QStringList>

// The cameras the viewer can open, by the names its selector and command
// line use: the ready-made in-memory cameras ("autofunction", ...), the
// GenICam description files (a name ending in ".xml": a path, or a file of
// the cameras folder), and any other name as an Aravis device id.
//
// The cameras folder is "cameras" beside the viewer's executable when
// installed, else the source tree's, whose place is fixed at build time.
class CameraCatalog
{
public:
    enum Kind
    {
        InMemory,
        Description,
        Discovered
    };

    static QStringList InMemoryNames();
    // The file names of the descriptions in the cameras folder, e.g. "dsp.xml".
    static QStringList DescriptionNames();
    static QString CamerasDirectory();

    static Kind KindOf(const QString& name);
    // The file a description's name stands for.
    static QString DescriptionFile(const QString& name);
};

#endif
