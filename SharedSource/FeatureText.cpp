#include "FeatureText.h"

#include "Qt4Compat.h"

#include <new>
#include <vector>

TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             std::string& text)
{
    text.clear();
    unsigned int length = 0;
    TrkErrorType result = (feature.*getter)(nullptr, length);
    if (result != 0 || length == 0) {
        return result;
    }
    try {
        std::vector<char> buffer(static_cast<size_t>(length) + 1, '\0');
        result = (feature.*getter)(buffer.data(), length);
        if (result == 0) {
            text = buffer.data();
        }
    } catch (const std::bad_alloc&) {
        text.clear();
        return FeatureTextNoBuffer;
    }
    return result;
}

TrkErrorType ReadFeatureText(const KST::TrkAPI::Feature& feature, FeatureTextGetter getter,
                             QString& text)
{
    std::string ascii;
    const TrkErrorType result = ReadFeatureText(feature, getter, ascii);
    text = Qt4Compat::FromAscii(ascii.c_str(), static_cast<int>(ascii.size()));
    return result;
}
