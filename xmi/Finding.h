#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/ReadError.h"

namespace nuv::zero::xmi {

/// Something of a model that is not as it should be, and what was left out for it.
struct Finding {
    enum class Reason : std::uint8_t {
        /// A reference leads into a file that is in none of the file roots.
        MissingFile,
        /// It leads out of the file roots.
        OutsideRoots,
        /// Two files are meant alike.
        AmbiguousFile,
        /// The file is there and cannot be read as a model.
        UnreadableFile,
        /// The file is there and holds no such element.
        MissingElement,
        /// Several elements are meant alike.
        AmbiguousElement,
        /// The element is there and may not stand in the property.
        NoFit,
        /// The element is contained already.
        ContainedTwice,
        /// The element would contain itself.
        ContainedInItself,
        /// The property holds fewer values than there are.
        TooManyValues,
        /// No metamodel has the class.
        UnknownClass,
        /// The class has no such property.
        UnknownFeature,
        /// No element is of the class itself.
        AbstractClass,
        /// The text is no value of the property's type.
        WrongValue,
        /// Several elements have one id, and nothing refers to it.
        DuplicateId,
        /// Two files define one metamodel differently; the first counts.
        MetamodelTwice,
        /// A metamodel refers to a file that is not there; what it says of it is left open.
        NoMetamodelFile,
        /// Contents of a namespace that no metamodel has, where any are allowed.
        ForeignContent,
        /// The file was not to be loaded.
        NotLoaded,
        /// The element has no identity that lasts, because several share its id.
        CannotNameItself,
    };
    /// What the model lacks for it, the worst first.
    enum class Weight : std::uint8_t { ContentsLost, LinkLost, ValueWrong, Warning, Note };

    Reason reason = Reason::MissingFile;
    Weight weight = Weight::LinkLost;
    /// The file that it stands in, as `root:path`, and where there.
    std::string file;
    Position position;
    /// The identity of the element in its file; empty where there is none.
    std::string element;
    /// The name of the property; empty where none is concerned.
    std::string property;
    /// The reference as it is written; empty where it is none.
    std::string reference;
    /// What a reference was looked up by: the rule, with the prefix or alias that applied.
    std::string lookedUpBy;
    /// The places where the file was looked for, `root:path`.
    std::vector<std::string> tried;
    /// The other place, where two are concerned.
    std::string other;
    /// How many XML elements were left out with it.
    std::size_t lost = 0;
    /// One line, without the place.
    std::string message;

    /// Whether something is missing from the model.
    bool isLoss() const noexcept { return weight <= Weight::LinkLost; }
    /// `file:line:column: message`.
    std::string text() const { return ReadError(file, position, message).what(); }
};

/// `MissingFile` as `missing-file`: what people read and write.
std::string_view nameOf(Finding::Reason reason) noexcept;
std::string_view nameOf(Finding::Weight weight) noexcept;

}  // namespace nuv::zero::xmi
