#include "xmi/BuiltInEcore.h"

#include "xmi/ByteSource.h"
#include "xmi/LoadedMetamodel.h"
#include "xmi/ReadOptions.h"

namespace nuv::zero::xmi {
namespace {

/// One class or data type per line, and below a class its features and operations.
///
///     class C : Super       [abstract] a class
///     data D java.Class     a data type
///     a x EString           an attribute
///     r x C                 a reference
///     c x C                 a containment
///     o x EString           an operation; no type, no result
///
/// Behind the type: `*` any number, `!` exactly one, `derived`, `transient`, `fixed`, `unsettable`,
/// `=text` the default, `<>x` the opposite.
constexpr std::string_view table = R"(
class EAttribute : EStructuralFeature
a iD EBoolean
r eAttributeType EDataType ! fixed derived transient
class EAnnotation : EModelElement
a source EString
c details EStringToStringMapEntry *
r eModelElement EModelElement transient <>eAnnotations
c contents EObject *
r references EObject *
class EClass : EClassifier
o isSuperTypeOf EBoolean
o getFeatureCount EInt
o getEStructuralFeature EStructuralFeature
o getFeatureID EInt
o getEStructuralFeature EStructuralFeature
o getOperationCount EInt
o getEOperation EOperation
o getOperationID EInt
o getOverride EOperation
o getFeatureType EGenericType
a abstract EBoolean
a interface EBoolean
r eSuperTypes EClass * unsettable
c eOperations EOperation * <>eContainingClass
r eAllAttributes EAttribute * fixed derived transient
r eAllReferences EReference * fixed derived transient
r eReferences EReference * fixed derived transient
r eAttributes EAttribute * fixed derived transient
r eAllContainments EReference * fixed derived transient
r eAllOperations EOperation * fixed derived transient
r eAllStructuralFeatures EStructuralFeature * fixed derived transient
r eAllSuperTypes EClass * fixed derived transient
r eIDAttribute EAttribute fixed derived transient
c eStructuralFeatures EStructuralFeature * <>eContainingClass
c eGenericSuperTypes EGenericType * unsettable
r eAllGenericSuperTypes EGenericType * fixed derived transient
abstract class EClassifier : ENamedElement
o isInstance EBoolean
o getClassifierID EInt
a instanceClassName EString unsettable
a instanceClass EJavaClass fixed derived transient
a defaultValue EJavaObject fixed derived transient
a instanceTypeName EString unsettable
r ePackage EPackage fixed transient <>eClassifiers
c eTypeParameters ETypeParameter *
class EDataType : EClassifier
a serializable EBoolean =true
class EEnum : EDataType
o getEEnumLiteral EEnumLiteral
o getEEnumLiteral EEnumLiteral
o getEEnumLiteralByLiteral EEnumLiteral
c eLiterals EEnumLiteral * <>eEnum
class EEnumLiteral : ENamedElement
a value EInt
a instance EEnumerator transient
a literal EString
r eEnum EEnum fixed transient <>eLiterals
class EFactory : EModelElement
o create EObject
o createFromString EJavaObject
o convertToString EString
r ePackage EPackage ! transient <>eFactoryInstance
abstract class EModelElement
o getEAnnotation EAnnotation
c eAnnotations EAnnotation * <>eModelElement
abstract class ENamedElement : EModelElement
a name EString
class EObject
o eClass EClass
o eIsProxy EBoolean
o eResource EResource
o eContainer EObject
o eContainingFeature EStructuralFeature
o eContainmentFeature EReference
o eContents EEList
o eAllContents ETreeIterator
o eCrossReferences EEList
o eGet EJavaObject
o eGet EJavaObject
o eSet
o eIsSet EBoolean
o eUnset
o eInvoke EJavaObject
class EOperation : ETypedElement
o getOperationID EInt
o isOverrideOf EBoolean
r eContainingClass EClass fixed transient <>eOperations
c eTypeParameters ETypeParameter *
c eParameters EParameter * <>eOperation
r eExceptions EClassifier * unsettable
c eGenericExceptions EGenericType * unsettable
class EPackage : ENamedElement
o getEClassifier EClassifier
a nsURI EString
a nsPrefix EString
r eFactoryInstance EFactory ! transient <>ePackage
c eClassifiers EClassifier * <>ePackage
c eSubpackages EPackage * <>eSuperPackage
r eSuperPackage EPackage fixed transient <>eSubpackages
class EParameter : ETypedElement
r eOperation EOperation fixed transient <>eParameters
class EReference : EStructuralFeature
a containment EBoolean
a container EBoolean fixed derived transient
a resolveProxies EBoolean =true
r eOpposite EReference
r eReferenceType EClass ! fixed derived transient
r eKeys EAttribute *
abstract class EStructuralFeature : ETypedElement
o getFeatureID EInt
o getContainerClass EJavaClass
a changeable EBoolean =true
a volatile EBoolean
a transient EBoolean
a defaultValueLiteral EString
a defaultValue EJavaObject fixed derived transient
a unsettable EBoolean
a derived EBoolean
r eContainingClass EClass fixed transient <>eStructuralFeatures
abstract class ETypedElement : ENamedElement
a ordered EBoolean =true
a unique EBoolean =true
a lowerBound EInt
a upperBound EInt =1
a many EBoolean fixed derived transient
a required EBoolean fixed derived transient
r eType EClassifier unsettable
c eGenericType EGenericType unsettable
data EBigDecimal java.math.BigDecimal
data EBigInteger java.math.BigInteger
data EBoolean boolean
data EBooleanObject java.lang.Boolean
data EByte byte
data EByteArray byte[]
data EByteObject java.lang.Byte
data EChar char
data ECharacterObject java.lang.Character
data EDate java.util.Date
data EDiagnosticChain org.eclipse.emf.common.util.DiagnosticChain
data EDouble double
data EDoubleObject java.lang.Double
data EEList org.eclipse.emf.common.util.EList
data EEnumerator org.eclipse.emf.common.util.Enumerator
data EFeatureMap org.eclipse.emf.ecore.util.FeatureMap
data EFeatureMapEntry org.eclipse.emf.ecore.util.FeatureMap$Entry
data EFloat float
data EFloatObject java.lang.Float
data EInt int
data EIntegerObject java.lang.Integer
data EJavaClass java.lang.Class
data EJavaObject java.lang.Object
data ELong long
data ELongObject java.lang.Long
data EMap java.util.Map
data EResource org.eclipse.emf.ecore.resource.Resource
data EResourceSet org.eclipse.emf.ecore.resource.ResourceSet
data EShort short
data EShortObject java.lang.Short
data EString java.lang.String
class EStringToStringMapEntry
a key EString
a value EString
data ETreeIterator org.eclipse.emf.common.util.TreeIterator
class EGenericType
o isInstance EBoolean
c eUpperBound EGenericType
c eTypeArguments EGenericType *
r eRawType EClassifier ! fixed derived transient
c eLowerBound EGenericType
r eTypeParameter ETypeParameter
r eClassifier EClassifier
class ETypeParameter : ENamedElement
c eBounds EGenericType *
data EInvocationTargetException java.lang.reflect.InvocationTargetException
)";

/// Writes the rows of the table as an Ecore file.
class Writer {
  public:
    std::string write();

  private:
    std::string_view word();
    void row();
    void openClass(bool isAbstract);
    void feature(bool isReference, bool isContainment);
    void operation();
    void closeClass();
    void attribute(std::string_view name, std::string_view value);

    std::string text_;
    std::string_view line_;
    bool isOpen_ = false;
};

std::string_view Writer::word() {
    const std::size_t end = line_.find(' ');
    const std::string_view first = line_.substr(0, end);
    line_ = end == std::string_view::npos ? std::string_view() : line_.substr(end + 1);
    return first;
}

void Writer::attribute(std::string_view name, std::string_view value) {
    text_.append(" ").append(name).append("=\"").append(value).append("\"");
}

void Writer::closeClass() {
    if (isOpen_) text_ += "  </eClassifiers>\n";
    isOpen_ = false;
}

void Writer::openClass(bool isAbstract) {
    closeClass();
    isOpen_ = true;
    text_ += "  <eClassifiers xsi:type=\"ecore:EClass\"";
    attribute("name", word());
    if (isAbstract) attribute("abstract", "true");
    if (word() == ":") attribute("eSuperTypes", "#//" + std::string(word()));
    text_ += ">\n";
}

void Writer::feature(bool isReference, bool isContainment) {
    text_ += isReference ? "    <eStructuralFeatures xsi:type=\"ecore:EReference\""
                         : "    <eStructuralFeatures xsi:type=\"ecore:EAttribute\"";
    attribute("name", word());
    const std::string type(word());
    attribute("eType", "#//" + type);
    if (isContainment) attribute("containment", "true");
    while (!line_.empty()) {
        const std::string_view each = word();
        if (each == "*") attribute("upperBound", "-1");
        if (each == "!") attribute("lowerBound", "1");
        if (each == "fixed") attribute("changeable", "false");
        if (each == "derived") {
            attribute("derived", "true");
            attribute("volatile", "true");
        }
        if (each == "transient") attribute("transient", "true");
        if (each == "unsettable") attribute("unsettable", "true");
        if (each.starts_with('=')) attribute("defaultValueLiteral", each.substr(1));
        if (each.starts_with("<>")) {
            attribute("eOpposite", "#//" + type + "/" + std::string(each.substr(2)));
        }
    }
    text_ += "/>\n";
}

void Writer::operation() {
    text_ += "    <eOperations";
    attribute("name", word());
    if (!line_.empty()) attribute("eType", "#//" + std::string(word()));
    text_ += "/>\n";
}

void Writer::row() {
    const std::string_view kind = word();
    if (kind == "abstract") {
        word();
        openClass(true);
    } else if (kind == "class") {
        openClass(false);
    } else if (kind == "data") {
        closeClass();
        text_ += "  <eClassifiers xsi:type=\"ecore:EDataType\"";
        attribute("name", word());
        attribute("instanceClassName", word());
        text_ += "/>\n";
    } else if (kind == "o") {
        operation();
    } else {
        feature(kind != "a", kind == "c");
    }
}

std::string Writer::write() {
    text_ = R"(<?xml version="1.0" encoding="UTF-8"?>
<ecore:EPackage xmi:version="2.0" xmlns:xmi="http://www.omg.org/XMI"
    xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    xmlns:ecore="http://www.eclipse.org/emf/2002/Ecore" name="ecore"
    nsURI="http://www.eclipse.org/emf/2002/Ecore" nsPrefix="ecore">
)";
    std::string_view rest = table.substr(1);
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        line_ = rest.substr(0, end);
        rest = rest.substr(end + 1);
        row();
    }
    closeClass();
    text_ += "</ecore:EPackage>\n";
    return std::move(text_);
}

}  // namespace

const std::string& builtInEcoreText() {
    static const std::string text = Writer().write();
    return text;
}

XmlDocument builtInEcore() {
    TextSource source(builtInEcoreText());
    return XmlDocument::parse(std::string(builtInEcoreFile), source, ReadLimits());
}

}  // namespace nuv::zero::xmi
