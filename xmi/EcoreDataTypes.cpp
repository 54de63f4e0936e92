#include "xmi/EcoreDataTypes.h"

#include <algorithm>
#include <array>

#include "xmi/LoadedMetamodel.h"

namespace nuv::zero::xmi {
namespace {

template <std::size_t count>
bool isOneOf(std::string_view name, const std::array<std::string_view, count>& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isFileNamed(std::string_view path, std::string_view name) {
    return path.ends_with(name) &&
           (path.size() == name.size() || path[path.size() - name.size() - 1] == '/');
}

}  // namespace

DataKind dataKindOfJavaClass(std::string_view instanceClassName) {
    if (instanceClassName == "java.lang.String" || instanceClassName == "String") {
        return DataKind::String;
    }
    if (instanceClassName == "boolean" || instanceClassName == "java.lang.Boolean") {
        return DataKind::Boolean;
    }
    // Not java.math.BigInteger: its values need not fit into an integer.
    constexpr std::array<std::string_view, 8> integers = {
        "int",   "java.lang.Integer", "long", "java.lang.Long",
        "short", "java.lang.Short",   "byte", "java.lang.Byte"};
    return isOneOf(instanceClassName, integers) ? DataKind::Integer : DataKind::OtherText;
}

bool meansEcore(std::string_view file) {
    return file == ecoreNamespace || isFileNamed(file, "Ecore.ecore");
}

bool meansXmlTypes(std::string_view file) {
    return file == "http://www.eclipse.org/emf/2003/XMLType" || isFileNamed(file, "XMLType.ecore");
}

std::optional<DataKind> ecoreDataKind(std::string_view name) {
    if (name == "EString") return DataKind::String;
    constexpr std::array<std::string_view, 8> integers = {
        "EInt",   "EIntegerObject", "ELong", "ELongObject",
        "EShort", "EShortObject",   "EByte", "EByteObject"};
    if (isOneOf(name, integers)) return DataKind::Integer;
    if (name == "EBoolean" || name == "EBooleanObject") return DataKind::Boolean;
    constexpr std::array<std::string_view, 22> others = {"EBigDecimal",
                                                         "EBigInteger",
                                                         "EByteArray",
                                                         "EChar",
                                                         "ECharacterObject",
                                                         "EDate",
                                                         "EDiagnosticChain",
                                                         "EDouble",
                                                         "EDoubleObject",
                                                         "EEList",
                                                         "EEnumerator",
                                                         "EFeatureMap",
                                                         "EFeatureMapEntry",
                                                         "EFloat",
                                                         "EFloatObject",
                                                         "EInvocationTargetException",
                                                         "EJavaClass",
                                                         "EJavaObject",
                                                         "EMap",
                                                         "EResource",
                                                         "EResourceSet",
                                                         "ETreeIterator"};
    if (isOneOf(name, others)) return DataKind::OtherText;
    return std::nullopt;
}

DataKind xmlDataKind(std::string_view name) {
    constexpr std::array<std::string_view, 11> strings = {
        "String", "NormalizedString", "Token",   "Name",   "NCName",  "ID",
        "IDREF",  "ENTITY",           "NMTOKEN", "AnyURI", "Language"};
    if (isOneOf(name, strings)) return DataKind::String;
    if (name == "Boolean" || name == "BooleanObject") return DataKind::Boolean;
    constexpr std::array<std::string_view, 8> integers = {
        "Int", "IntObject", "Long", "LongObject", "Short", "ShortObject", "Byte", "ByteObject"};
    return isOneOf(name, integers) ? DataKind::Integer : DataKind::OtherText;
}

bool isEcoreClass(std::string_view name) {
    constexpr std::array<std::string_view, 20> classes = {"EAnnotation",
                                                          "EAttribute",
                                                          "EClass",
                                                          "EClassifier",
                                                          "EDataType",
                                                          "EEnum",
                                                          "EEnumLiteral",
                                                          "EFactory",
                                                          "EGenericType",
                                                          "EModelElement",
                                                          "ENamedElement",
                                                          "EObject",
                                                          "EOperation",
                                                          "EPackage",
                                                          "EParameter",
                                                          "EReference",
                                                          "EStringToStringMapEntry",
                                                          "EStructuralFeature",
                                                          "ETypeParameter",
                                                          "ETypedElement"};
    return isOneOf(name, classes);
}

}  // namespace nuv::zero::xmi
