#ifndef TARKACPP_TRKTYPES_H
#define TARKACPP_TRKTYPES_H

/* Plain types of the camera library, usable from C as well as C++. */

#include <stdint.h>

/* Result of every library operation: 0 is success, anything else a failure. */
typedef int32_t TrkErrorType;

/* The kind of a feature, as GetDataType reports it. */
typedef enum TrkFeatureDataType
{
    TrkFeatureDataUnknown = 0,
    TrkFeatureDataInt = 1,
    TrkFeatureDataFloat = 2,
    TrkFeatureDataEnum = 3,
    TrkFeatureDataString = 4,
    TrkFeatureDataBool = 5,
    TrkFeatureDataCommand = 6,
    TrkFeatureDataRaw = 7
} TrkFeatureDataType;

#endif
