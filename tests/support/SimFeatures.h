#ifndef SIMFEATURES_H
#define SIMFEATURES_H

// Hands a camera's features to code under test the way the host does.

#include "FeatureTypes.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <QSharedPointer>

inline QSharedPointer<FeatureVector> MakeFeatureVector(const KST::TrkAPI::Device& camera)
{
    QSharedPointer<FeatureVector> features(new FeatureVector);
    for (const FeaturePtr& feature : camera.Features()) {
        features->append(feature);
    }
    return features;
}

#endif
