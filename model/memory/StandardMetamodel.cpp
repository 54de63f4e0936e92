#include "model/memory/StandardMetamodel.h"

#include <memory>

#include "model/memory/MetamodelStorage.h"

namespace nuv::zero::memory {
namespace {

struct ReleaseStorage {
    void operator()(Storage* storage) const noexcept { storage->release(); }
};

}  // namespace

const StandardMetamodel& StandardMetamodel::instance() {
    static const StandardMetamodel& one = *new StandardMetamodel;
    return one;
}

StandardMetamodel::StandardMetamodel() {
    const std::unique_ptr<MetamodelStorage, ReleaseStorage> storage(new MetamodelStorage(u""));
    storage_.pin(storage.get());

    const auto make = [&](const ClassObject* metaClass, std::u16string_view name) {
        return &storage->classes().emplace_back(metaClass, name, name, *storage,
                                                std::vector<ClassObject*>());
    };
    classes_ = make(nullptr, u"Class");
    elements_ = make(classes_, u"ModelElement");
    properties_ = make(classes_, u"Property");
    primitiveTypes_ = make(classes_, u"PrimitiveType");
    string_ = &storage->primitives().emplace_back(TypeObject::Kind::Text, u"String",
                                                  primitiveTypes_->handle(), *storage);
}

}  // namespace nuv::zero::memory
