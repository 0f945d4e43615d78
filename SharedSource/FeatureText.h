#ifndef FEATURETEXT_H
#define FEATURETEXT_H

#include "FeatureTypes.h"

#include <QString>

#include <string>
#include <vector>

// One of the library's text reads: GetName, GetDisplayName, GetCategory, or
// FeatureValueText for the text form of a value.
typedef TrkErrorType (KST::TrkAPI::Feature::*FeatureTextGetter)(char*, unsigned int&) const;

const FeatureTextGetter FeatureValueText =
    static_cast<FeatureTextGetter>(&KST::TrkAPI::Feature::GetValue);

// What a text read reports when its buffer can't be allocated.
const TrkErrorType FeatureTextNoBuffer = -14;

// Reads a text of the library in two calls: the size with a null buffer,
// then the bytes into a zeroed buffer one byte longer, so that the text
// always ends in a zero byte and is taken up to the first one. Returns the
// library's code, or FeatureTextNoBuffer. text is empty after any failure and
// for a size of zero, which is a success.
TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             std::string& text);

// The same into buffer, which keeps its storage from one read to the next:
// after a success the text is buffer.data() up to its first zero byte.
TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             std::vector<char>& buffer);

// The same, with the text converted from ASCII; never a null QString.
TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             QString& text);

// The feature's name, read by ReadFeatureText.
TrkErrorType ReadFeatureName(const KST::TrkAPI::Feature& feature, QString& name);

// The feature's data type and the library's code; type is
// TrkFeatureDataUnknown after a failure.
TrkErrorType ReadFeatureDataType(const KST::TrkAPI::Feature& feature, TrkFeatureDataType& type);

// The text form of a feature's value of the given type, as tabs report it:
// numbers and flags as Qt writes them, texts as they are, fixed words for
// commands and raw data, and empty text when the value can't be read.
QString FeatureValueAsText(const KST::TrkAPI::Feature& feature, TrkFeatureDataType type);

// The entries of an enumeration, read in two calls like a text: the count
// with a null array, then the library's pointers, of which exactly that many
// are copied (a null pointer as empty text). Any failure gives no entries.
std::vector<std::string> ReadFeatureEntries(KST::TrkAPI::Feature& feature);

#endif
