#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "model/Framework.h"
#include "model/memory/Metamodel.h"
#include "model/memory/Model.h"

namespace nuv::zero::test {

/// A metamodel and a model in three lines, everything by name:
///
///     ModelBuilder m("Node; Leaf < Node; Node.kids => Node *; Node.boss -> Node",
///                    "C : Leaf; A.kids = B C; B.boss = A");
///     builder->depthFirst({m("A")});
///
/// Statements are separated by `;`. Of the metamodel:
///   `Leaf < Node Other`      a class and its superclasses; `Leaf=zoo::Leaf` gives a qualified name
///   `Node.kids => Node *`    a property: `->` reference, `=>` containment, `~>` derived reference,
///                            `--` no link at all; `*` or a number behind the type is the bound
///   `Node.kids <> Leaf.home` two opposite ends
/// Every class without superclasses gets a `name`, so that elements can be told apart. Of the
/// model:
///   `C : Leaf`               an element of a class; those first mentioned otherwise are of the
///                            class named first
///   `A.kids = B C`           values of a property
class ModelBuilder {
  public:
    explicit ModelBuilder(std::string_view metamodelText, std::string_view modelText = {}) {
        forEachStatement(metamodelText, [this](const Tokens& tokens) { declare(tokens); });
        extend(modelText);
    }

    /// More elements and values.
    void extend(std::string_view modelText) {
        forEachStatement(modelText, [this](const Tokens& tokens) { populate(tokens); });
    }

    ModelElement operator()(const std::string& name) const { return lookUp(elements_, name); }
    meta::Property operator[](const std::string& name) const { return lookUp(properties_, name); }
    meta::Class type(const std::string& name) const { return lookUp(classes_, name); }
    /// In the order in which they were made.
    const std::vector<meta::Class>& classes() const { return madeClasses_; }
    const std::vector<ModelElement>& elements() const { return madeElements_; }

    memory::Metamodel metamodel{u"m"};
    memory::Model model;

  private:
    using Tokens = std::vector<std::string>;

    template <class Handle>
    static Handle lookUp(const std::map<std::string, Handle>& all, const std::string& name) {
        const auto found = all.find(name);
        if (found == all.end()) throw std::out_of_range("the test model has no " + name);
        return found->second;
    }

    template <class Use>
    static void forEachStatement(std::string_view text, Use&& use) {
        std::istringstream statements{std::string(text)};
        for (std::string statement; std::getline(statements, statement, ';');) {
            std::istringstream words(statement);
            Tokens tokens;
            for (std::string word; words >> word;) tokens.push_back(word);
            if (!tokens.empty()) use(tokens);
        }
    }

    static std::u16string wide(std::string_view text) { return {text.begin(), text.end()}; }

    static std::string nameIn(const std::string& qualified) {
        return qualified.substr(qualified.find('.') + 1);
    }
    static std::string ownerIn(const std::string& qualified) {
        return qualified.substr(0, qualified.find('.'));
    }

    void declare(const Tokens& tokens) {
        if (tokens[0].find('.') == std::string::npos) {
            declareClass(tokens);
        } else if (tokens.at(1) == "<>") {
            metamodel.setOpposites((*this)[tokens[0]], (*this)[tokens.at(2)]);
        } else {
            declareProperty(tokens);
        }
    }

    void declareClass(const Tokens& tokens) {
        const std::string name = tokens[0].substr(0, tokens[0].find('='));
        std::optional<std::u16string> qualified;
        if (name != tokens[0]) qualified = wide(tokens[0].substr(name.size() + 1));
        std::vector<meta::Class> supers;
        for (std::size_t i = 2; i < tokens.size(); ++i) supers.push_back(type(tokens[i]));
        const meta::Class added = metamodel.addClass(wide(name), supers, qualified);
        classes_[name] = added;
        madeClasses_.push_back(added);
        if (supers.empty()) {
            metamodel.addProperty(added, u"name", meta::StandardTypes::stringMeta());
        }
    }

    void declareProperty(const Tokens& tokens) {
        using Flags = memory::PropertyFlags;
        static const std::map<std::string, Flags> flagsOf{
            {"->", Flags::Association},
            {"=>", Flags::Association | Flags::Composite},
            {"~>", Flags::Association | Flags::Derived},
            {"--", Flags::None}};
        meta::Type valueType;
        if (tokens.at(2) == "String") {
            valueType = meta::StandardTypes::stringMeta();
        } else {
            valueType = type(tokens.at(2));
        }
        int bound = 1;
        if (tokens.size() > 3) bound = tokens[3] == "*" ? memory::unbounded : std::stoi(tokens[3]);
        properties_[tokens[0]] =
            metamodel.addProperty(type(ownerIn(tokens[0])), wide(nameIn(tokens[0])), valueType,
                                  bound, flagsOf.at(tokens.at(1)));
    }

    void populate(const Tokens& tokens) {
        if (tokens.size() == 3 && tokens[1] == ":") {
            if (elements_.count(tokens[0]) != 0) {
                throw std::logic_error(tokens[0] + " is mentioned before its class is given");
            }
            create(tokens[0], type(tokens[2]));
            return;
        }
        const ModelElement source = mentioned(ownerIn(tokens[0]));
        if (tokens.size() == 1) return;
        const meta::Property property =
            access::propertyNamed(access::classOf(source), wide(nameIn(tokens[0])));
        if (!property) throw std::out_of_range("the test model has no " + tokens[0]);
        for (std::size_t i = 2; i < tokens.size(); ++i) {
            const ModelElement target = mentioned(tokens[i]);
            if (access::isSingleValued(property)) {
                model.set(source, property, target);
            } else {
                model.add(source, property, target);
            }
        }
    }

    ModelElement create(const std::string& name, const meta::Class& elementClass) {
        return elements_[name] = madeElements_.emplace_back(model.create(elementClass, wide(name)));
    }
    ModelElement mentioned(const std::string& name) {
        const auto found = elements_.find(name);
        return found == elements_.end() ? create(name, madeClasses_.front()) : found->second;
    }

    std::vector<meta::Class> madeClasses_;
    std::vector<ModelElement> madeElements_;
    std::map<std::string, meta::Class> classes_;
    std::map<std::string, meta::Property> properties_;
    std::map<std::string, ModelElement> elements_;
};

}  // namespace nuv::zero::test
