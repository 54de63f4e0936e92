#pragma once

#include "model/memory/Model.h"

namespace nuv::zero::readme {

/// The model of the pages: A -> B, A -> C, B -> D, all by way of p.
struct SmallModel {
    memory::Metamodel metamodel{u"m"};
    meta::Class node = metamodel.addClass(u"Node");
    meta::Property name = metamodel.addProperty(node, u"name", meta::StandardTypes::stringMeta());
    meta::Property p = metamodel.addProperty(node, u"p", node, memory::unbounded,
                                             memory::PropertyFlags::Association);
    memory::Model model;
    ModelElement a = model.create(node, u"A");
    ModelElement b = model.create(node, u"B");
    ModelElement c = model.create(node, u"C");
    ModelElement d = model.create(node, u"D");
    SmallModel() {
        model.set(a, p, {b, c});
        model.add(b, p, d);
    }
};

}  // namespace nuv::zero::readme
