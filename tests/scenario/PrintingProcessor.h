#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "traversal/internal/TraversalProcessor.h"

namespace nuv::zero::scenario {

class Workspace;

enum class PrintedEvent : std::uint8_t {
    EnterInput,
    EnterElement,
    EnterProperty,
    ExitProperty,
    ExitElement,
    ExitInput
};

/// The event that scenarios call by that name. Throws `Malformed`.
PrintedEvent eventNamed(const std::string& name);

/// Prints every event; throws `ProcessorThrown` behind the printing of one of them, if told so.
class PrintingProcessor : public traversal::internal::TraversalProcessor {
  public:
    struct Failure {
        PrintedEvent event;
        /// Counted from one.
        std::int64_t occurrence;
    };

    PrintingProcessor(Workspace& workspace, std::string name, std::optional<Failure> failure);

    void onEnterInputElement(const ModelElement& element) override;
    void onEnterElement(const ModelElement& element) override;
    void onEnterProperty(const ModelElement& element, const meta::Property& property) override;
    void onExitProperty(const ModelElement& element, const meta::Property& property) override;
    void onExitElement(const ModelElement& element) override;
    void onExitInputElement(const ModelElement& element) override;

  private:
    void print(PrintedEvent event, const std::string& arguments);

    Workspace& workspace_;
    std::string name_;
    std::optional<Failure> failure_;
    std::int64_t occurrences_ = 0;
};

}  // namespace nuv::zero::scenario
