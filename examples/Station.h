#pragma once

#include "model/memory/Model.h"

/// The model that the examples walk: a small pumping station.
///
///     Block'Station'
///       parts  Machine'Pump'    notes  Note'Check seals'
///                               parts  Machine'Motor'    notes  Note'Oil monthly'
///                               ports  Port'out'         feeds  Port'inlet'
///       parts  Block'Tank'      ports  Port'inlet', Port'drain'
///
/// Every port also refers to its `owner`, and the motor `controls` the pump, so there are cycles.
struct Station {
    using Flags = nuv::zero::memory::PropertyFlags;
    static constexpr Flags reference = Flags::Association;
    static constexpr Flags containment = Flags::Association | Flags::Composite;
    static constexpr int many = nuv::zero::memory::unbounded;

    nuv::zero::memory::Metamodel metamodel{u"plant"};
    nuv::zero::meta::Class named = metamodel.addClass(u"Named");
    nuv::zero::meta::Class note = metamodel.addClass(u"Note", {named});
    nuv::zero::meta::Class port = metamodel.addClass(u"Port", {named});
    nuv::zero::meta::Class block = metamodel.addClass(u"Block", {named});
    nuv::zero::meta::Class machine = metamodel.addClass(u"Machine", {block});

    nuv::zero::meta::Property name =
        metamodel.addProperty(named, u"name", nuv::zero::meta::StandardTypes::stringMeta());
    nuv::zero::meta::Property notes =
        metamodel.addProperty(block, u"notes", note, many, containment);
    nuv::zero::meta::Property parts =
        metamodel.addProperty(block, u"parts", block, many, containment);
    nuv::zero::meta::Property ports =
        metamodel.addProperty(block, u"ports", port, many, containment);
    nuv::zero::meta::Property controls =
        metamodel.addProperty(machine, u"controls", block, 1, reference);
    nuv::zero::meta::Property owner = metamodel.addProperty(port, u"owner", block, 1, reference);
    nuv::zero::meta::Property feeds = metamodel.addProperty(port, u"feeds", port, many, reference);

    nuv::zero::memory::Model model;
    nuv::zero::ModelElement station = model.create(block, u"Station");
    nuv::zero::ModelElement pump = model.create(machine, u"Pump");
    nuv::zero::ModelElement motor = model.create(machine, u"Motor");
    nuv::zero::ModelElement tank = model.create(block, u"Tank");
    nuv::zero::ModelElement out = model.create(port, u"out");
    nuv::zero::ModelElement inlet = model.create(port, u"inlet");
    nuv::zero::ModelElement drain = model.create(port, u"drain");

    Station() {
        metamodel.setOpposites(ports, owner);
        model.set(station, parts, {pump, tank});
        model.add(pump, notes, model.create(note, u"Check seals"));
        model.add(pump, parts, motor);
        model.add(motor, notes, model.create(note, u"Oil monthly"));
        model.set(motor, controls, pump);
        addPort(pump, out);
        addPort(tank, inlet);
        addPort(tank, drain);
        model.add(out, feeds, inlet);
    }

    /// A predicate for rules: whether a class is Machine or a subclass of it.
    auto isMachine() const {
        return [this](const nuv::zero::meta::Class& type) { return type->conformsTo(machine); };
    }

  private:
    void addPort(const nuv::zero::ModelElement& owningBlock, const nuv::zero::ModelElement& added) {
        model.add(owningBlock, ports, added);
        model.set(added, owner, owningBlock);
    }
};
