#ifndef TARKACPP_GENICAM_NODEMAPCONTROLS_H
#define TARKACPP_GENICAM_NODEMAPCONTROLS_H

#include "../Sim/SensorControls.h"

#include <arv.h>

namespace KST {
namespace TrkAPI {
namespace GenICam {

// The sensor controls of a device, read and written by name through its
// GenICam node map. Used from one thread at a time.
class NodeMapControls : public Sim::SensorControls
{
public:
    explicit NodeMapControls(ArvGc* genicam) : m_Genicam(genicam) {}

    bool Has(const std::string& name) const override;
    long long Int(const std::string& name) const override;
    double Number(const std::string& name) const override;
    bool Bool(const std::string& name) const override;
    std::string Text(const std::string& name) const override;
    double FloatMin(const std::string& name) const override;
    double FloatMax(const std::string& name) const override;

    void SetFloat(const std::string& name, double value) override;
    void SetText(const std::string& name, const std::string& value) override;

private:
    ArvGcNode* Node(const std::string& name) const;
    // A read of a float node; zero for another node or a failure.
    double FloatRead(const std::string& name, double (*read)(ArvGcFloat*, GError**)) const;

    ArvGc* m_Genicam;
};

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST

#endif
