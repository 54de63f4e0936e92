#include "traversal/internal/Dumps.h"

#include "traversal/internal/Names.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

std::string dumpElement(const ModelElement& element) {
    if (!element) return "Not an element";
    const meta::Class& type = access::classOf(element);
    const meta::Property nameProperty = access::propertyNamed(type, u"name");
    std::u16string name;
    if (nameProperty) name = access::toString(access::read(element, nameProperty));
    return access::toUtf8(access::nameOf(type)) + "'" + access::toUtf8(name) + "'";
}

std::string dumpLink(const Link& link) {
    const std::string target = dumpElement(link.getTarget());
    const std::string property =
        link.getProperty() ? "[" + access::toUtf8(access::nameOf(link.getProperty())) + "]"
                           : noProperty;
    const std::string source = dumpElement(link.getSource());
    return source + "-" + property + "-" + target;
}

}  // namespace nuv::zero::traversal::internal
