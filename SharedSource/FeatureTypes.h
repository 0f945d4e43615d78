#ifndef FEATURETYPES_H
#define FEATURETYPES_H

// The types in which a host hands a camera's features to a tab extension.

#include <TarkaCPP/TarkaCPP.h>

#include <QVector>

typedef KST::TrkAPI::shared_ptr<KST::TrkAPI::Feature> FeaturePtr;
typedef KST::TrkAPI::shared_ptr<KST::TrkAPI::IFeatureObserver> FeatureObserverPtr;
typedef QVector<FeaturePtr> FeatureVector;

#endif
