#ifndef CALLRECORDING_H
#define CALLRECORDING_H

#include "FeatureTypes.h"

#include <QSharedPointer>

#include <string>
#include <vector>

// The library calls that an action makes, recorded through features that
// forward to a camera's own, and made again directly on the camera's
// features: the cost of the calls alone, without the code that decides them.
class CallRecording
{
public:
    // The camera's features, each wrapped so that its calls are recorded
    // while recording is on.
    QSharedPointer<FeatureVector> Wrap(const FeatureVector& features);

    void Start();
    void Stop();

    // Makes every recorded call again, in order, with the recorded arguments.
    void Replay() const;
    // Takes off the observers that the recorded calls register, so that a
    // replay registers them as the action did.
    void UndoRegistrations() const;

    size_t Size() const { return m_Calls.size(); }

    enum Kind
    {
        Name,
        DisplayName,
        Category,
        DataType,
        Writable,
        IntValue,
        FloatValue,
        BoolValue,
        TextValue,
        Entries,
        EntryAvailable,
        IntRange,
        FloatRange,
        IntIncrement,
        FloatIncrement,
        SetInt,
        SetFloat,
        SetBool,
        SetText,
        Command,
        Register,
        Unregister
    };

    struct Call
    {
        KST::TrkAPI::Feature* feature;
        Kind kind;
        // The length or count passed in; a null buffer is told by hasBuffer.
        unsigned int length;
        bool hasBuffer;
        long long integer;
        double real;
        bool flag;
        std::string text;
        FeatureObserverPtr observer;
    };

    void Record(const Call& call);

private:
    bool m_On = false;
    std::vector<Call> m_Calls;
};

#endif
