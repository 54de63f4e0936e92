#include "model/WalkSupport.h"

#include "WalkSupport.h"

namespace nuv_consumer {

bool callWalkSupport(const nuv::zero::ModelElement& element,
                     const nuv::zero::meta::Property& property) {
    using Support = nuv::zero::access::WalkSupport<nuv::zero::ModelElement>;
    Support::Keeper().pin(element);
    Support::prefetch(element);
    nuv::zero::ModelElement lent = Support::lend(element);
    Support::forget(lent);

    const Support::PropertyReader none;
    const Support::PropertyReader reader(nuv::zero::access::classOf(element), property);
    Support::ElementView view = reader.read(element, property);
    const bool isRead = none.read(element, property).size() == view.size() &&
                        Support::view(element, property).lend(0) == view.lend(0);
    view.clear();
    const Support::ElementView empty;
    return isRead && view.size() == empty.size() &&
           Support::ElementView({element}).lend(0) == element;
}

}  // namespace nuv_consumer
