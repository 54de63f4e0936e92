// Read by the compiler alone, which writes down what it knows of the classes in here.
#include "InstalledHeaders.h"

namespace nuv::zero::traversal::abi {

/// Names the slots that are pure in what is installed, and so have no name there.
class Provider : public PropertyProvider {
  public:
    std::vector<AssociationSetting> computeSettings(const Class& type) override;
    ResultPolicy getResultPolicy(const Class& type, const Property& property) override;
};
Provider make();

}  // namespace nuv::zero::traversal::abi
