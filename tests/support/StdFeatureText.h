#ifndef STDFEATURETEXT_H
#define STDFEATURETEXT_H

#include <TarkaCPP/Feature.h>

#include <string>

// A std::string text of the feature read by the two-call protocol: its name unless another
// read is given; empty when the read fails.
inline std::string FeatureText(const KST::TrkAPI::FeaturePtr& feature,
                               TrkErrorType (KST::TrkAPI::Feature::*read)(char*, unsigned int&)
                                   const = &KST::TrkAPI::Feature::GetName)
{
    unsigned int length = 0;
    if (((*feature).*read)(nullptr, length) != 0 || length == 0) {
        return std::string();
    }
    std::string buffer(length, '\0');
    ((*feature).*read)(&buffer[0], length);
    return buffer.c_str();
}

#endif
