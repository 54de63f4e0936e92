#include "tests/scenario/PrintingProcessor.h"

#include <array>
#include <utility>

#include "tests/scenario/Thrown.h"
#include "tests/scenario/Workspace.h"

namespace nuv::zero::scenario {

namespace {

constexpr std::array<const char*, 6> eventNames = {"enterInput",   "enterElement", "enterProperty",
                                                   "exitProperty", "exitElement",  "exitInput"};

}  // namespace

PrintedEvent eventNamed(const std::string& name) {
    for (std::size_t index = 0; index < eventNames.size(); ++index) {
        if (name == eventNames[index]) return static_cast<PrintedEvent>(index);
    }
    throw Malformed("there is no event called " + name);
}

PrintingProcessor::PrintingProcessor(Workspace& workspace, std::string name,
                                     std::optional<Failure> failure)
    : workspace_(workspace), name_(std::move(name)), failure_(failure) {}

void PrintingProcessor::onEnterInputElement(const ModelElement& element) {
    print(PrintedEvent::EnterInput, workspace_.idOf(element));
}

void PrintingProcessor::onEnterElement(const ModelElement& element) {
    print(PrintedEvent::EnterElement, workspace_.idOf(element));
}

void PrintingProcessor::onEnterProperty(const ModelElement& element,
                                        const meta::Property& property) {
    print(PrintedEvent::EnterProperty, workspace_.idOf(element) + ' ' + workspace_.idOf(property));
}

void PrintingProcessor::onExitProperty(const ModelElement& element,
                                       const meta::Property& property) {
    print(PrintedEvent::ExitProperty, workspace_.idOf(element) + ' ' + workspace_.idOf(property));
}

void PrintingProcessor::onExitElement(const ModelElement& element) {
    print(PrintedEvent::ExitElement, workspace_.idOf(element));
}

void PrintingProcessor::onExitInputElement(const ModelElement& element) {
    print(PrintedEvent::ExitInput, workspace_.idOf(element));
}

void PrintingProcessor::print(PrintedEvent event, const std::string& arguments) {
    workspace_.output << "event " << name_ << ' ' << eventNames[static_cast<std::size_t>(event)]
                      << ' ' << arguments << '\n';
    if (failure_ && failure_->event == event && ++occurrences_ == failure_->occurrence) {
        throw ProcessorThrown();
    }
}

}  // namespace nuv::zero::scenario
