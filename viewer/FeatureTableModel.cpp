#include "FeatureTableModel.h"

#include <FeatureText.h>

namespace {

typedef KST::TrkAPI::Feature Feature;

QString NameText(const Feature& feature)
{
    QString name;
    ReadFeatureName(feature, name);
    return name;
}

TrkFeatureDataType DataType(const Feature& feature)
{
    TrkFeatureDataType type = TrkFeatureDataUnknown;
    ReadFeatureDataType(feature, type);
    return type;
}

// The tab's text form of values, but with words of the viewer's own for the
// features that have no value to show.
QString ValueText(const Feature& feature)
{
    const TrkFeatureDataType type = DataType(feature);
    switch (type) {
    case TrkFeatureDataCommand:
        return FeatureTableModel::tr("(command)");
    case TrkFeatureDataRaw:
        return FeatureTableModel::tr("(raw data)");
    default:
        return FeatureValueAsText(feature, type);
    }
}

QString EntriesText(Feature& feature)
{
    QStringList names;
    for (const std::string& entry : ReadFeatureEntries(feature)) {
        names << QString::fromStdString(entry);
    }
    return names.join(QStringLiteral(", "));
}

QString RangeText(Feature& feature)
{
    switch (DataType(feature)) {
    case TrkFeatureDataInt: {
        long long min = 0;
        long long max = 0;
        if (feature.GetRange(min, max) != 0) {
            return QString();
        }
        QString text = QStringLiteral("%1 .. %2").arg(min).arg(max);
        long long increment = 0;
        if (feature.GetIncrement(increment) == 0 && increment > 1) {
            text += FeatureTableModel::tr(", step %1").arg(increment);
        }
        return text;
    }
    case TrkFeatureDataFloat: {
        double min = 0.0;
        double max = 0.0;
        if (feature.GetRange(min, max) != 0) {
            return QString();
        }
        return QStringLiteral("%1 .. %2").arg(min, 0, 'g', 6).arg(max, 0, 'g', 6);
    }
    case TrkFeatureDataEnum:
        return EntriesText(feature);
    default:
        return QString();
    }
}

QString WritableText(Feature& feature)
{
    bool writable = false;
    if (feature.IsWritable(writable) != 0) {
        return QString();
    }
    return writable ? FeatureTableModel::tr("yes") : FeatureTableModel::tr("no");
}

} // namespace

FeatureTableModel::FeatureTableModel(QObject* parent) : QAbstractTableModel(parent) {}

void FeatureTableModel::SetFeatures(const QSharedPointer<FeatureVector>& features)
{
    SetFeatures(features, ReadRows(features));
}

void FeatureTableModel::SetFeatures(const QSharedPointer<FeatureVector>& features,
                                    const QVector<QStringList>& rows)
{
    beginResetModel();
    m_Features = features;
    m_Rows = rows;
    endResetModel();
}

int FeatureTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_Rows.size();
}

int FeatureTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant FeatureTableModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !index.isValid() || index.row() >= m_Rows.size()) {
        return QVariant();
    }
    return m_Rows.at(index.row()).value(index.column());
}

QVariant FeatureTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    switch (section) {
    case NameColumn:
        return tr("Feature");
    case ValueColumn:
        return tr("Value");
    case RangeColumn:
        return tr("Range");
    case WritableColumn:
        return tr("Writable");
    default:
        return QVariant();
    }
}

void FeatureTableModel::Refresh()
{
    const QVector<QStringList> rows = ReadRows(m_Features);
    if (rows.size() != m_Rows.size()) {
        beginResetModel();
        m_Rows = rows;
        endResetModel();
        return;
    }
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row) != m_Rows.at(row)) {
            m_Rows[row] = rows.at(row);
            emit dataChanged(index(row, 0), index(row, ColumnCount - 1), {Qt::DisplayRole});
        }
    }
}

QVector<QStringList> FeatureTableModel::ReadRows(const QSharedPointer<FeatureVector>& features)
{
    QVector<QStringList> rows;
    if (features.isNull()) {
        return rows;
    }
    for (const FeaturePtr& feature : *features) {
        if (!feature) {
            continue;
        }
        rows << QStringList{NameText(*feature), ValueText(*feature), RangeText(*feature),
                            WritableText(*feature)};
    }
    return rows;
}
