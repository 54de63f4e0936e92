#include "tests/xmi/ReaderFixture.h"

#include <variant>

#include "model/memory/ModelAccess.h"

namespace nuv::zero::xmi::test {
namespace {

constexpr std::string_view namespaces = R"(xmi:version="2.0" xmlns:xmi="http://www.omg.org/XMI")"
                                        R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")";

std::string feature(std::string_view kind, std::string_view name, const std::string& type,
                    std::string_view more) {
    return R"(<eStructuralFeatures xsi:type="ecore:)" + std::string(kind) + R"(" name=")" +
           std::string(name) + R"(" eType=")" + type + R"(" )" + std::string(more) + "/>";
}

std::string nameOf(const meta::Property& property) {
    return text::toUtf8(property->owner().getName()) + "." + text::toUtf8(property->getName());
}

struct Printer {
    const LoadedModel& model;
    std::string operator()(std::monostate) const { return "nothing"; }
    std::string operator()(const ModelElement& element) const { return model.identity(element); }
    std::string operator()(const std::u16string& text) const {
        return "'" + text::toUtf8(text) + "'";
    }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    template <class Entry>
    std::string operator()(const std::vector<Entry>& entries) const {
        std::string text = "[";
        for (const Entry& entry : entries) text += (text == "[" ? "" : " ") + (*this)(entry);
        return text + "]";
    }
};

}  // namespace

std::string package(std::string_view classifiers) {
    return "<ecore:EPackage " + std::string(namespaces) +
           R"( xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="p" nsURI="urn:p">)"
           "\n" +
           std::string(classifiers) + "\n</ecore:EPackage>";
}

std::string eClass(std::string_view name, std::string_view features, std::string_view attributes) {
    return R"(<eClassifiers xsi:type="ecore:EClass" name=")" + std::string(name) + R"(" )" +
           std::string(attributes) + ">" + std::string(features) + "</eClassifiers>\n";
}

std::string attribute(std::string_view name, std::string_view type, std::string_view more) {
    const std::string reference =
        type.starts_with('#')
            ? std::string(type)
            : "ecore:EDataType http://www.eclipse.org/emf/2002/Ecore#//" + std::string(type);
    return feature("EAttribute", name, reference, more);
}

std::string reference(std::string_view name, std::string_view type, std::string_view more) {
    return feature("EReference", name,
                   (type.find('#') == std::string_view::npos ? "#//" : "") + std::string(type),
                   more);
}

LoadedMetamodel metamodelOf(std::string_view classifiers) {
    return EcoreReader().addText("p.ecore", package(classifiers)).read();
}

std::string root(std::string_view type, std::string_view attributes, std::string_view inside) {
    const std::string tag = "p:" + std::string(type);
    return "<" + tag + " " + std::string(namespaces) + R"( xmlns:p="urn:p" )" +
           std::string(attributes) + ">\n" + std::string(inside) + "\n</" + tag + ">";
}

std::string roots(std::string_view elements) {
    return "<xmi:XMI " + std::string(namespaces) + R"( xmlns:p="urn:p">)" + "\n" +
           std::string(elements) + "\n</xmi:XMI>";
}

LoadedModel modelOf(const LoadedMetamodel& metamodel, const std::string& text,
                    ReadOptions options) {
    return XmiReader(metamodel, options).readText("m.xmi", text);
}

Lines describe(const LoadedMetamodel& metamodel) {
    Lines lines;
    for (const meta::Class& type : metamodel.classes()) {
        std::string line = text::toUtf8(type->getQualifiedName());
        if (metamodel.isAbstract(type)) line += " abstract";
        std::string separator = " < ";
        for (const meta::Class& superclass : type->getSuperclasses()) {
            line += separator + text::toUtf8(superclass->getQualifiedName());
            separator = ", ";
        }
        lines.push_back(line);
        for (const memory::PropertyObject& each : type->ownProperties()) {
            const meta::Property property(&each);
            const int bound = each.getUpperBound();
            line = "  " + text::toUtf8(each.getName()) + ": " +
                   text::toUtf8(each.type().getQualifiedName());
            if (each.type().kind() == memory::TypeObject::Kind::Integer) line += " integer";
            if (bound != 1) line += "[" + (bound == -1 ? "*" : std::to_string(bound)) + "]";
            if (each.isAssociation()) line += " association";
            if (each.isComposite()) line += " composite";
            if (each.isDerived()) line += " derived";
            if (metamodel.isId(property)) line += " id";
            if (each.getOpposite()) line += " opposite=" + nameOf(each.getOpposite());
            lines.push_back(line);
        }
    }
    return lines;
}

Lines describe(const LoadedModel& model) {
    Lines lines;
    for (const ModelElement& element : model.elements()) {
        const meta::Class& type = element->getClass();
        std::string line = model.identity(element) + " " + text::toUtf8(type->getName());
        for (const meta::Property& property : type->getAllClassProperties()) {
            const Value value = access::read(element, property);
            const std::string text = std::visit(Printer{model}, value.content());
            if (!value.isSet() || text == "[]" || text == "nothing") continue;
            line += " " + text::toUtf8(property->getName()) + "=" + text;
        }
        lines.push_back(line);
    }
    return lines;
}

std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const ReadError& error) {
        return error.what();
    }
    return "no error";
}

std::string metamodelError(std::string_view classifiers) {
    return errorOf([&] { metamodelOf(classifiers); });
}

std::string modelError(const LoadedMetamodel& metamodel, const std::string& text,
                       ReadOptions options) {
    return errorOf([&] { modelOf(metamodel, text, options); });
}

}  // namespace nuv::zero::xmi::test
