#include "model/memory/MessageException.h"

#include <utility>

#include "model/memory/Text.h"

namespace nuv::zero {

MessageException::MessageException(std::string catalog, std::string id,
                                   std::vector<std::u16string> arguments, std::string text)
    : catalog_(std::move(catalog)),
      id_(std::move(id)),
      arguments_(std::move(arguments)),
      text_(std::move(text)) {}

MessageException::MessageException(const MessageException&) = default;
MessageException& MessageException::operator=(const MessageException&) = default;
MessageException::~MessageException() = default;

const char* MessageException::what() const noexcept {
    return text_.c_str();
}

CannotCastIncompatibleTypes::CannotCastIncompatibleTypes(const std::u16string& qualifiedTypeName)
    : MessageException("nuv0:messages", "CannotCastIncompatibleTypes", {qualifiedTypeName},
                       "A value of type '" + text::toUtf8(qualifiedTypeName) +
                           "' cannot be read as the kind of value that was asked for.") {}

CannotCastIncompatibleTypes::~CannotCastIncompatibleTypes() = default;

}  // namespace nuv::zero
