#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <variant>

#include "../Export.h"
#include "TraversalProcessor.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER::internal {

/// The callables that a result owns for single events, with the attached observer among them. Made
/// with the first callable: a result that has none tells its observer directly.
///
///     callables.add(EventCallables::Event::EnterElement, callable);
///     callables.observe(&observer);
///     cursor.observe(callables.standIn());   // tells first the callable, then the observer
///
/// A stand-in stands for all that was given before it was asked for. Cursors keep the one under
/// which their elements were entered, so stand-ins stay as they are and where they are as long as
/// this does; what is given later is told by another one. A copy has callables of its own.
class EventCallables {
  public:
    enum class Event : std::uint8_t {
        EnterInputElement,
        EnterElement,
        EnterProperty,
        ExitProperty,
        ExitElement,
        ExitInputElement,
    };
    using OfElement = std::function<void(const ModelElement&)>;
    using OfProperty = std::function<void(const ModelElement&, const meta::Property&)>;

    /// Begins with an observer, or with none. Throws `std::bad_alloc`, as all operations do, and
    /// then nothing has changed.
    explicit EventCallables(TraversalProcessor* observer);
    EventCallables(const EventCallables& other);
    EventCallables(EventCallables&&) = delete;
    EventCallables& operator=(const EventCallables&) = delete;
    EventCallables& operator=(EventCallables&&) = delete;
    ~EventCallables();

    /// Puts a callable behind all others. Answers the new stand-in.
    TraversalProcessor* add(Event event, std::variant<OfElement, OfProperty> callable);
    /// Puts the observer behind all callables, in place of an earlier one; null for none. Answers
    /// the new stand-in.
    TraversalProcessor* observe(TraversalProcessor* observer);
    TraversalProcessor* standIn() const noexcept { return standIn_; }

  private:
    struct Callable {
        Event event;
        std::variant<OfElement, OfProperty> call;
    };
    using Callables = std::deque<Callable>;

    /// Tells the callables given first, up to a number of them, and an observer in its place.
    class StandIn final : public TraversalProcessor {
      public:
        StandIn(const Callables& callables, std::size_t count, TraversalProcessor* observer,
                std::size_t place) noexcept
            : callables_(&callables), count_(count), observer_(observer), place_(place) {}

        bool tells(std::size_t count, const TraversalProcessor* observer,
                   std::size_t place) const noexcept {
            return count == count_ && observer == observer_ && place == place_;
        }
        TraversalProcessor* observer() const noexcept { return observer_; }
        std::size_t place() const noexcept { return place_; }

        void onEnterInputElement(const ModelElement& element) override;
        void onEnterElement(const ModelElement& element) override;
        void onEnterProperty(const ModelElement& element, const meta::Property& property) override;
        void onExitProperty(const ModelElement& element, const meta::Property& property) override;
        void onExitElement(const ModelElement& element) override;
        void onExitInputElement(const ModelElement& element) override;

      private:
        template <class Function, class... Handles>
        void tell(Event event, void (TraversalProcessor::*ofObserver)(const Handles&...),
                  const Handles&... handles);

        const Callables* callables_;
        std::size_t count_;
        TraversalProcessor* observer_;
        /// How many callables come before the observer.
        std::size_t place_;
    };

    void install(TraversalProcessor* observer, std::size_t place);

    /// These stay where they are while others are added.
    Callables callables_;
    std::deque<StandIn> standIns_;
    StandIn* standIn_ = nullptr;
};

}  // namespace nuv::zero::traversal::internal
