#ifndef FEATURETABLEMODEL_H
#define FEATURETABLEMODEL_H

#include <FeatureTypes.h>

#include <QAbstractTableModel>
#include <QSharedPointer>
#include <QStringList>
#include <QVector>

// A read-only table of a camera's features: name, value, range and whether it
// can be written. The texts are read again at every Refresh(), and only the
// rows whose texts changed are reported, so that a view can follow the camera
// once a second without flicker or lost selection.
class FeatureTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        NameColumn,
        ValueColumn,
        RangeColumn,
        WritableColumn,
        ColumnCount
    };

    explicit FeatureTableModel(QObject* parent = nullptr);

    void SetFeatures(const QSharedPointer<FeatureVector>& features);
    // The same with the rows that ReadRows() read already, on another thread.
    void SetFeatures(const QSharedPointer<FeatureVector>& features,
                     const QVector<QStringList>& rows);
    // The texts of each feature's row; slow for a camera over a network.
    static QVector<QStringList> ReadRows(const QSharedPointer<FeatureVector>& features);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

public slots:
    void Refresh();

private:
    QSharedPointer<FeatureVector> m_Features;
    QVector<QStringList> m_Rows;
};

#endif
