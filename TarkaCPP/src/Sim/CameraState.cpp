#include "CameraState.h"

#include <algorithm>
#include <stdexcept>

namespace KST {
namespace TrkAPI {
namespace Sim {

namespace {

// Rules that keep moving each other are a fault of the camera's description.
const int MaxRulePasses = 32;

} // namespace

size_t CameraState::IndexOf(const std::string& name) const
{
    std::map<std::string, size_t>::const_iterator found = m_Index.find(name);
    return found == m_Index.end() ? NoFeature : found->second;
}

FeatureEntry& CameraState::Entry(const std::string& name)
{
    size_t index = IndexOf(name);
    if (index == NoFeature) {
        throw std::invalid_argument("no feature " + name);
    }
    return *m_Entries[index];
}

FeatureEntry& CameraState::Entry(const std::string& name, TrkFeatureDataType type)
{
    return Entry(name, type, type);
}

FeatureEntry& CameraState::Entry(const std::string& name, TrkFeatureDataType type,
                                 TrkFeatureDataType alt)
{
    FeatureEntry& entry = Entry(name);
    if (entry.type != type && entry.type != alt) {
        throw std::invalid_argument("feature " + name + " is of another type");
    }
    return entry;
}

void CameraState::Add(const FeatureDescription& description)
{
    if (IndexOf(description.name) != NoFeature) {
        throw std::invalid_argument("feature " + description.name + " exists already");
    }
    std::unique_ptr<FeatureEntry> entry(new FeatureEntry);
    static_cast<FeatureDescription&>(*entry) = description;
    if (entry->displayName.empty()) {
        entry->displayName = description.name;
    }
    m_Index[description.name] = m_Entries.size();
    m_Entries.push_back(std::move(entry));
    m_Observers.Resize(m_Entries.size());
}

void CameraState::Touch(const FeatureEntry& entry)
{
    m_Touched.insert(IndexOf(entry.name));
    ++m_ChangeCount;
}

TrkErrorType CameraState::Enter(size_t index, Op op)
{
    if (!HooksActive()) {
        return Success;
    }
    FeatureEntry& entry = *m_Entries[index];
    ++entry.calls[static_cast<int>(op)];
    if (m_Journaling) {
        m_Journal.emplace_back(entry.name, op);
    }
    if (op == Op::GetValue && entry.misreport.unsteady) {
        MoveOn(index);
    }
    std::map<Op, TrkErrorType>::const_iterator failure = entry.failures.find(op);
    return failure == entry.failures.end() ? Success : failure->second;
}

void CameraState::Apply(const Rule& change, size_t written)
{
    CameraAccess access(*this);
    try {
        change(access);
        RunRules();
    } catch (...) {
        // A change naming a feature wrongly leaves nothing for the next one.
        m_Touched.clear();
        throw;
    }
    QueueTouched(written);
}

void CameraState::RunRules()
{
    CameraAccess access(*this);
    for (int pass = 0; pass < MaxRulePasses; ++pass) {
        unsigned long long before = m_ChangeCount;
        for (const Rule& rule : m_Rules) {
            rule(access);
        }
        if (m_ChangeCount == before) {
            return;
        }
    }
    throw std::logic_error("camera rules don't settle");
}

void CameraState::QueueTouched(size_t written)
{
    if (written != NoFeature) {
        m_Observers.Queue(written);
    }
    for (size_t index : m_Touched) {
        if (index != written) {
            m_Observers.Queue(index);
        }
    }
    m_Touched.clear();
}

void CameraState::MoveOn(size_t index)
{
    const FeatureEntry& entry = *m_Entries[index];
    Apply(
        [&entry](CameraAccess& access) {
            const Number<long long>& integer = entry.integer;
            const Number<double>& real = entry.real;
            if (entry.type == TrkFeatureDataInt) {
                access.SetInt(entry.name, integer.value < integer.max
                                              ? integer.value + std::max(integer.increment, 1LL)
                                              : integer.min);
            } else if (entry.type == TrkFeatureDataFloat) {
                access.SetFloat(entry.name,
                                real.value < real.max
                                    ? real.value + (real.increment > 0.0 ? real.increment : 1.0)
                                    : real.min);
            }
        },
        index);
    m_Signal.notify_all();
}

} // namespace Sim
} // namespace TrkAPI
} // namespace KST
