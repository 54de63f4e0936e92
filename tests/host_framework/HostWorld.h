#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/Framework.h"

namespace host {

/// Builds classes, properties and elements, and keeps them alive: references do not.
class World {
  public:
    nuv::zero::meta::Class addClass(std::u16string name,
                                    const nuv::zero::meta::Class& superclass = {}) {
        auto node = std::make_shared<ClassNode>();
        node->name = std::move(name);
        node->qualifiedName = u"host." + node->name;
        node->superclass = std::static_pointer_cast<ClassNode>(superclass.node());
        return nuv::zero::meta::Class(keep(node));
    }

    nuv::zero::meta::Property addName(const nuv::zero::meta::Class& owner) {
        return addProperty(owner, u"name", {});
    }
    nuv::zero::meta::Property addSingle(const nuv::zero::meta::Class& owner, std::u16string name) {
        PropertyNode flags;
        flags.isReference = true;
        return addProperty(owner, std::move(name), flags);
    }
    nuv::zero::meta::Property addMany(const nuv::zero::meta::Class& owner, std::u16string name,
                                      bool isContainment) {
        PropertyNode flags;
        flags.isReference = flags.isMany = true;
        flags.isContainment = isContainment;
        return addProperty(owner, std::move(name), flags);
    }
    static void setOpposite(const nuv::zero::meta::Property& property,
                            const nuv::zero::meta::Property& opposite) {
        property->opposite = std::static_pointer_cast<PropertyNode>(opposite.node());
    }

    nuv::zero::ModelElement create(const nuv::zero::meta::Class& type, std::u16string name) {
        auto node = std::make_shared<Node>();
        node->type = type.node();
        node->name = std::move(name);
        return nuv::zero::ModelElement(keep(node));
    }
    static void link(const nuv::zero::ModelElement& from, const nuv::zero::meta::Property& property,
                     const nuv::zero::ModelElement& to) {
        from->links[property->name].push_back(to.node());
    }

  private:
    template <class T>
    std::shared_ptr<T> keep(std::shared_ptr<T> node) {
        nodes_.push_back(node);
        return node;
    }
    nuv::zero::meta::Property addProperty(const nuv::zero::meta::Class& owner, std::u16string name,
                                          const PropertyNode& flags) {
        auto node = std::make_shared<PropertyNode>();
        node->name = std::move(name);
        node->owner = std::static_pointer_cast<ClassNode>(owner.node());
        node->isReference = flags.isReference;
        node->isContainment = flags.isContainment;
        node->isMany = flags.isMany;
        owner->properties.push_back(node);
        return nuv::zero::meta::Property(keep(node));
    }

    std::vector<std::shared_ptr<Node>> nodes_;
};

}  // namespace host
