#include "xmi/Misfit.h"

#include "model/memory/Text.h"

namespace nuv::zero::xmi {

Finding::Weight weightOf(const meta::Property& property) noexcept {
    if (!property->isAssociation()) return Finding::Weight::ValueWrong;
    return property->isComposite() ? Finding::Weight::ContentsLost : Finding::Weight::LinkLost;
}

std::string nameOf(const meta::Property& property) {
    return text::toUtf8(property->owner().getName()) + "." + text::toUtf8(property->getName());
}

}  // namespace nuv::zero::xmi
