#include "model/memory/ModelElement.h"

#include "model/memory/StandardMetamodel.h"

namespace nuv::zero {

const meta::Class& ModelElement::metaClass() {
    return memory::StandardMetamodel::instance().classOfElements().handle();
}

}  // namespace nuv::zero
