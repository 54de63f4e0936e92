#pragma once

#include <string>

#include "model/Framework.h"
#include "traversal/WalkListener.h"

/// What texts for people call things.
namespace nuv::zero::traversal::internal {

inline std::string qualifiedName(const meta::Class& type) {
    return type ? access::toUtf8(access::qualifiedNameOf(type)) : "no class";
}

inline std::string plainName(const meta::Property& property) {
    return property ? access::toUtf8(access::nameOf(property)) : "[pseudo]";
}

inline const char* nameOf(Fate fate) noexcept {
    switch (fate) {
        case Fate::Reported:
            return "reported";
        case Fate::Silent:
            return "silent";
        case Fate::Repeated:
            return "repeated";
        case Fate::PseudoLinkLeftOut:
            return "left out";
        case Fate::Filtered:
            return "filtered";
        case Fate::NotDescended:
            return "not descended";
    }
    return "";
}

}  // namespace nuv::zero::traversal::internal
