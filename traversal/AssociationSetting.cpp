#include "traversal/AssociationSetting.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

AssociationSetting::AssociationSetting() = default;
AssociationSetting::AssociationSetting(const Property& property, ResultPolicy policy)
    : property_(property), policy_(policy) {}
AssociationSetting::AssociationSetting(const AssociationSetting& other) = default;
AssociationSetting::AssociationSetting(AssociationSetting&& other) noexcept = default;
AssociationSetting& AssociationSetting::operator=(const AssociationSetting& other) = default;
AssociationSetting& AssociationSetting::operator=(AssociationSetting&& other) noexcept = default;
AssociationSetting::~AssociationSetting() = default;

Property AssociationSetting::getProperty() {
    return property_;
}
ResultPolicy AssociationSetting::getPolicy() {
    return policy_;
}

}  // namespace nuv::zero::traversal
