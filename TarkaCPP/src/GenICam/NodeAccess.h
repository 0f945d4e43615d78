#ifndef TARKACPP_GENICAM_NODEACCESS_H
#define TARKACPP_GENICAM_NODEACCESS_H

#include <TarkaCPP/TrkTypes.h>

#include <arv.h>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// Reads of a node that the features and the change signatures share. Each
// is called with the Aravis lock held and with *error null; it returns what
// it read, or anything with *error set.

TrkFeatureDataType DataTypeOf(ArvGcNode* node);

// Implemented and available: an entry or feature that can be used now.
bool IsUsable(ArvGcFeatureNode* node, GError** error);
// Usable, not locked, and not read-only.
bool IsNodeWritable(ArvGcFeatureNode* node, GError** error);

struct IntRange
{
    gint64 min = 0;
    gint64 max = 0;
    gint64 increment = 0;
};

struct FloatRange
{
    double min = 0.0;
    double max = 0.0;
    // Not positive when the node has none.
    double increment = 0.0;
};

IntRange ReadIntRange(ArvGcInteger* node, GError** error);
FloatRange ReadFloatRange(ArvGcFloat* node, GError** error);

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
