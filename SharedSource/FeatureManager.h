#ifndef FEATUREMANAGER_H
#define FEATUREMANAGER_H

#include "FeatureTypes.h"

#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <string>

// The largest point of the grid lower + k * step that is not above upper.
// A step that is not positive, or that makes the grid meaningless, leaves
// upper as it is.
double AlignDownToStep(double lower, double upper, double step);

// Access by name to the features of one camera. Numbers cross this class as
// double whatever the feature's type. Most operations take up to three names
// for one setting, in order of preference, and use the first the camera has.
//
// There is no error channel: every operation has one value for an absent
// feature and one for a failed library call. Nothing is cached; each call
// walks the feature list again and asks the camera anew.
class FeatureManager
{
public:
    explicit FeatureManager(const QSharedPointer<FeatureVector>& features);

    FeaturePtr FindFeature(const std::string& name);
    FeaturePtr FindFeature(const QString& name);
    FeaturePtr FindFeature(const QString& name, const QString& alt1);
    FeaturePtr FindFeature(const QString& name, const QString& alt1, const QString& alt2);

    bool HasFeature(const QString& name);
    bool HasFeature(const QString& name, const QString& alt1);
    bool HasFeature(const QString& name, const QString& alt1, const QString& alt2);

    bool IsWritable(const QString& name);
    bool IsWritable(const QString& name, const QString& alt1);
    bool IsWritable(const QString& name, const QString& alt1, const QString& alt2);

    bool CanWrite(const QString& name);
    bool CanWrite(const QString& name, const QString& alt1);
    bool CanWrite(const QString& name, const QString& alt1, const QString& alt2);

    bool IsFloat(const QString& name);
    bool IsFloat(const QString& name, const QString& alt1);
    bool IsFloat(const QString& name, const QString& alt1, const QString& alt2);

    double GetValue(const QString& name);
    double GetValue(const QString& name, const QString& alt1);
    double GetValue(const QString& name, const QString& alt1, const QString& alt2);

    QString GetTextValue(const QString& name);
    QString GetTextValue(const QString& name, const QString& alt1);

    // A null QString unless the feature exists and can be written now.
    QString GetWritableTextValue(const QString& name);

    QString GetDisplayName(const QString& name);
    QString GetDisplayName(const QString& name, const QString& alt1);
    QString GetDisplayName(const QString& name, const QString& alt1, const QString& alt2);

    QString GetCategory(const QString& name);

    // The name or display name of the first candidate that exists.
    QString FirstExistingName(const QStringList& names);
    QString FirstExistingDisplayName(const QStringList& names);

    QString GetTextValueOf(FeaturePtr feature);
    TrkFeatureDataType GetDataTypeOf(FeaturePtr feature);
    bool IsWritableOf(FeaturePtr feature);

    // Return the current value, unaligned; max comes aligned to the step.
    // An absent feature leaves the outputs untouched.
    double GetValueRange(const QString& name, bool* writable, double* min, double* max,
                         double* increment);
    double GetValueRange(const QString& name, const QString& alt1, bool* writable, double* min,
                         double* max, double* increment);
    double GetValueRange(const QString& name, const QString& alt1, const QString& alt2,
                         bool* writable, double* min, double* max, double* increment);

    double GetValueRange(const QString& name, double* min, double* max, double* increment);
    double GetValueRange(const QString& name, const QString& alt1, double* min, double* max,
                         double* increment);
    double GetValueRange(const QString& name, const QString& alt1, const QString& alt2, double* min,
                         double* max, double* increment);

    double GetValueRange(const QString& name, double* min, double* max);
    double GetValueRange(const QString& name, const QString& alt1, double* min, double* max);
    double GetValueRange(const QString& name, const QString& alt1, const QString& alt2, double* min,
                         double* max);

    // The raw step, -1.0 when the feature has none.
    double GetIncrement(const QString& name);
    double GetIncrement(const QString& name, const QString& alt1);

    // Fit value to the feature's grid and bounds, write it if the feature is
    // writable, and return what the camera holds afterwards.
    double SetValue(const QString& name, double value);
    double SetValue(const QString& name, const QString& alt1, double value);
    double SetValue(const QString& name, const QString& alt1, const QString& alt2, double value);

    // Write a text or enumeration entry; always returns value.
    QString SetValue(const QString& name, const QString& value);
    QString SetValue(const QString& name, const QString& alt1, const QString& value);
    QString SetValue(const QString& name, const QString& alt1, const QString& alt2,
                     const QString& value);

    // True if the command failed; false on success or when there is no such feature.
    bool RunCommand(const QString& name);

    QStringList GetEntriesOf(FeaturePtr feature);
    bool IsEntryAvailableOf(FeaturePtr feature, const QString& entry);
    QStringList GetAvailableEntries(const QString& name);
    QStringList GetAvailableEntries(const QString& name, const QString& alt1);
    bool IsEntryAvailable(const QString& name, const QString& entry);

private:
    QSharedPointer<FeatureVector> m_Features;
};

#endif
