#pragma once

#include <exception>
#include <string>
#include <vector>

#include "../Export.h"

namespace nuv::zero {

/// A failure that is named by a message of a catalog, so that tools can translate it.
class MODELING_NUV0_MODEL_EXPORT MessageException : public std::exception {
  public:
    MessageException(std::string catalog, std::string id, std::vector<std::u16string> arguments,
                     std::string text);
    MessageException(const MessageException&);
    MessageException& operator=(const MessageException&);
    ~MessageException() override;

    const std::string& catalog() const noexcept { return catalog_; }
    const std::string& id() const noexcept { return id_; }
    const std::vector<std::u16string>& arguments() const noexcept { return arguments_; }
    /// The message as one sentence in UTF-8, its arguments filled in.
    const char* what() const noexcept override;

  private:
    std::string catalog_;
    std::string id_;
    std::vector<std::u16string> arguments_;
    std::string text_;
};

/// Thrown when a value is read as something that it is not: message `CannotCastIncompatibleTypes`
/// of catalog "nuv0:messages", with the qualified name of the value's type as its one argument.
class MODELING_NUV0_MODEL_EXPORT CannotCastIncompatibleTypes : public MessageException {
  public:
    explicit CannotCastIncompatibleTypes(const std::u16string& qualifiedTypeName);
    ~CannotCastIncompatibleTypes() override;
};

}  // namespace nuv::zero
