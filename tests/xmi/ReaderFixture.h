#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "xmi/EcoreReader.h"
#include "xmi/XmiReader.h"

/// Small Ecore and XMI texts for the tests of the readers, and readers' results as text.
namespace nuv::zero::xmi::test {

/// Line 1 opens the package `p` with the namespace `urn:p`; the classifiers begin in line 2.
std::string package(std::string_view classifiers);

/// A class; the features stand on the same line.
std::string eClass(std::string_view name, std::string_view features = {},
                   std::string_view attributes = {});
std::string attribute(std::string_view name, std::string_view type = "EString",
                      std::string_view more = {});
std::string reference(std::string_view name, std::string_view type, std::string_view more = {});
inline constexpr std::string_view containment = R"(containment="true")";
inline constexpr std::string_view many = R"(upperBound="-1")";
inline constexpr std::string_view contents = R"(containment="true" upperBound="-1")";

LoadedMetamodel metamodelOf(std::string_view classifiers);

/// A model of one root: line 1 opens `<p:Class attributes>`, the contents begin in line 2.
std::string root(std::string_view type, std::string_view attributes,
                 std::string_view contents = {});
/// The same for several roots, which begin in line 2.
std::string roots(std::string_view elements);

LoadedModel modelOf(const LoadedMetamodel& metamodel, const std::string& text,
                    ReadOptions options = {});

/// One line per class and, indented, per own property:
/// `p::Block < p::Named` and `  ports: p::Port[*] association composite opposite=Port.owner`.
std::vector<std::string> describe(const LoadedMetamodel& metamodel);
/// One line per element, with its identity and all set values: `/ Block name='b'
/// ports=[//@ports.0]`.
std::vector<std::string> describe(const LoadedModel& model);

/// The text of the `ReadError` that the action throws; another text when it throws none.
std::string errorOf(const std::function<void()>& action);
std::string metamodelError(std::string_view classifiers);
std::string modelError(const LoadedMetamodel& metamodel, const std::string& text,
                       ReadOptions options = {});

using Lines = std::vector<std::string>;

}  // namespace nuv::zero::xmi::test
