#pragma once

#include <optional>
#include <string_view>

namespace nuv::zero::xmi {

/// What the values of a data type are.
enum class DataKind { String, Integer, Boolean, OtherText };

/// What the Java class behind a data type says; empty for none.
DataKind dataKindOfJavaClass(std::string_view instanceClassName);

/// Whether a reference to another file means Ecore itself, by its namespace or by its path.
bool meansEcore(std::string_view file);
/// The same for the data types of XML Schema.
bool meansXmlTypes(std::string_view file);

/// The kind of a data type of Ecore, or of XML Schema, that needs no file; nothing for another
/// name.
std::optional<DataKind> ecoreDataKind(std::string_view name);
DataKind xmlDataKind(std::string_view name);

/// Whether Ecore has a class of that name.
bool isEcoreClass(std::string_view name);

}  // namespace nuv::zero::xmi
