#include "tests/oracle/CallRecorder.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>

#include "model/Framework.h"

namespace nuv::zero::oracle {

void CallRecorder::called(const std::string& line) {
    write(whereabouts ? line + whereabouts() : line);
    const std::vector<int>& failing = world_->failingCalls;
    if (std::count(failing.begin(), failing.end(), allCalls_++) != 0) throw CallbackFailure();
}

bool CallRecorder::predicate(int predicate, int type) {
    using Wanted = PredicateDefinition::Kind;
    const auto index = static_cast<std::size_t>(predicate);
    const PredicateDefinition& definition = world_->predicates[index];
    if (definition.kind == Wanted::Empty) throw std::bad_function_call();
    const bool isEvenCall = calls_[index]++ % 2 == 0;
    called("predicate " + std::to_string(predicate) + " asked about " + className(type));
    switch (definition.kind) {
        case Wanted::All:
            return true;
        case Wanted::KindOf:
            return world_->isKindOf(type, definition.operand);
        case Wanted::Exactly:
            return type == definition.operand;
        case Wanted::Alternating:
            return isEvenCall;
        default:
            return false;
    }
}

int CallRecorder::filter(int filter, const IndexedLink& link) {
    const FilterDefinition& definition = world_->filters[static_cast<std::size_t>(filter)];
    if (definition.kind == FilterDefinition::Kind::Empty) throw std::bad_function_call();
    called("filter " + std::to_string(filter) + " asked about " + describe(link));
    return answer(definition, link);
}

bool CallRecorder::boundary(int boundary, const IndexedLink& link) {
    const auto index = static_cast<std::size_t>(boundary);
    const bool refusesEveryOther = index == world_->filters.size();
    if (!refusesEveryOther && world_->filters[index].kind == FilterDefinition::Kind::Empty) {
        throw std::bad_function_call();
    }
    called("boundary " + std::to_string(boundary) + " asked about " + describe(link));
    if (refusesEveryOther) return (link.source + link.property) % 2 == 0;
    return answer(world_->filters[index], link) != 0;
}

int CallRecorder::answer(const FilterDefinition& definition, const IndexedLink& link) const {
    using Wanted = FilterDefinition::Kind;
    switch (definition.kind) {
        case Wanted::Veto:
            return 0;
        case Wanted::Three:
            return 3;
        case Wanted::NoPseudo:
            return link.property == none ? 0 : 1;
        case Wanted::OnlyProperty:
            return link.property == definition.operand ? 1 : 0;
        case Wanted::NotElement:
            return link.target == definition.operand ? 0 : 1;
        default:
            return 1;
    }
}

void CallRecorder::event(int observer, Event event, int element, int property) {
    constexpr std::array names = {"enters input", "enters", "enters",
                                  "exits",        "exits",  "exits input"};
    std::string line = "observer " + std::to_string(observer) + ' ' +
                       names[static_cast<std::size_t>(event)] + ' ' + elementName(element);
    if (property != none) line += ' ' + propertyName(property);
    called(line);
}

void CallRecorder::link(int listener, const IndexedLink& link, LinkFate fate, std::size_t filter) {
    constexpr std::array fates = {"reported",    "silent",   "repeated",
                                  "left out as", "filtered", "not descended into"};
    std::string line = "listener " + std::to_string(listener) + " hears of " + describe(link) +
                       ": " + fates.at(static_cast<std::size_t>(fate));
    if (fate == LinkFate::Filtered) line += " by " + std::to_string(filter);
    called(line);
}

void CallRecorder::prune(int listener, const IndexedLink& current, const ToldPrune& prune) {
    called("listener " + std::to_string(listener) + " hears of prune " +
           std::to_string(prune.pruning) + " on " + describe(current) + " of " +
           propertyName(prune.property) + ": " + std::to_string(prune.outcome));
}

void CallRecorder::writeCurrentException() {
    try {
        throw;
    } catch (const CallbackFailure&) {
        write("throws what the callback threw");
    } catch (const std::bad_function_call&) {
        write("throws std::bad_function_call");
    } catch (const std::bad_weak_ptr&) {
        write("throws std::bad_weak_ptr");
    } catch (const ReadFailure& failure) {
        write("throws CannotCastIncompatibleTypes " +
              (failure.type < 0
                   ? className(failure.type)
                   : access::toUtf8(
                         world_->classes[static_cast<std::size_t>(failure.type)].qualifiedName)));
    } catch (const CannotCastIncompatibleTypes& failure) {
        write("throws CannotCastIncompatibleTypes " + access::toUtf8(failure.arguments().at(0)));
    } catch (const std::logic_error&) {
        write("throws std::logic_error");
    }
}

}  // namespace nuv::zero::oracle
