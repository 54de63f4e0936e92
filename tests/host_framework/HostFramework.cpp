#include "tests/host_framework/HostFramework.h"

host::Node::~Node() = default;

namespace nuv::zero {

const meta::Class& ModelElement::metaClass() {
    static const meta::Class type(std::make_shared<host::ClassNode>());
    return type;
}

const meta::Class& meta::Class::metaClass() {
    static const meta::Class type(std::make_shared<host::ClassNode>());
    return type;
}

}  // namespace nuv::zero
