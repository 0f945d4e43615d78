#ifndef RANDOMSESSION_H
#define RANDOMSESSION_H

#include "FeatureTypes.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <QPointer>
#include <QSharedPointer>
#include <QWidget>

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

class AutoROIWidget;

// One randomized life of the editor, replayable from its seed: a camera made
// of a random choice of the families' features, some of them lying about
// their type, value, range or increment and failing at random, behind
// a host page that is shown, hidden, resized and deleted while the user drags,
// edits, clicks and the camera changes on its own thread.
//
// Needs a QApplication; runs its own event loop. Ends normally or on a failed
// assertion.
class RandomSession
{
public:
    // The exit status of a session that ended on the range assertion.
    static const int RangeAssertionExit = 3;

    explicit RandomSession(std::uint64_t seed);
    ~RandomSession();

    void Run();

private:
    void BuildCamera();
    void AddFeature(const std::string& name);
    void AddRules();
    void AddFaults();
    QSharedPointer<FeatureVector> HostList();
    void Act();
    void Click();
    void EditSpinBox();
    void Drag();
    void CameraChange();
    void LoseCamera();

    int Pick(int count);
    bool Chance(double probability);
    template <typename T>
    T* AnyUsable();

    std::mt19937 m_Random;
    double m_FailureRate = 0.0;
    double m_LieRate = 0.0;
    // How long the host's loop runs by itself before the next action.
    int m_Pause = 0;
    KST::TrkAPI::Sim::Camera m_Camera;
    std::vector<std::string> m_Names;
    std::set<std::string> m_Integers;
    bool m_Lost = false;
    QPointer<QWidget> m_Page;
    QPointer<AutoROIWidget> m_Tab;
};

#endif
