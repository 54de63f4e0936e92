#include "benchmarks/host/HostStore.h"

#include <utility>

#include "benchmarks/host/HostFramework.h"

namespace nuv::zero::host {
namespace {

std::uint32_t nextNumber() noexcept {
    static std::atomic<std::uint32_t> latest = 0;
    return latest.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

Store::Store(std::vector<Graph::Class> classes, std::vector<Graph::Property> properties)
    : number_(nextNumber()),
      classes_(std::move(classes)),
      properties_(std::move(properties)),
      classHandles_(std::make_unique<meta::Class[]>(classes_.size())) {
    for (std::size_t i = 0; i < classes_.size(); ++i) {
        classHandles_[i].borrow(*this, static_cast<std::uint32_t>(i));
    }
}

Store::Store(const Store& schema, std::vector<std::uint32_t> words,
             std::vector<std::uint32_t> where)
    : number_(nextNumber()), schema_(&schema), words_(std::move(words)), where_(std::move(where)) {
    schema.retain();
}

Store::~Store() {
    for (std::size_t i = 0; i < classes_.size(); ++i) classHandles_[i].forget();
    if (schema_ != nullptr) schema_->release();
}

}  // namespace nuv::zero::host

namespace nuv::zero {

const meta::Class& ModelElement::metaClass() {
    return meta::Class::metaClass();
}

const meta::Class& meta::Class::metaClass() {
    static const meta::Class instance = [] {
        host::Store::Graph::Class type;
        type.name = u"Class";
        type.conformsTo = {0};
        return meta::Class(*new host::Store({type}, {}), 0);
    }();
    return instance;
}

}  // namespace nuv::zero
