#include "tests/scenario/Failures.h"

#include <functional>
#include <memory>

#include "model/Framework.h"
#include "model/memory/Text.h"
#include "tests/scenario/Scenario.h"
#include "tests/scenario/Thrown.h"

namespace nuv::zero::scenario {

void printCurrentException(std::ostream& output) {
    try {
        throw;
    } catch (const std::bad_weak_ptr&) {
        output << "exception bad_weak_ptr\n";
    } catch (const std::bad_function_call&) {
        output << "exception bad_function_call\n";
    } catch (const CannotCastIncompatibleTypes& failure) {
        output << "exception CannotCastIncompatibleTypes "
               << quoted(text::toUtf8(failure.arguments().at(0))) << '\n';
    } catch (const PredicateThrown&) {
        output << "exception predicate_thrown\n";
    } catch (const FilterThrown&) {
        output << "exception filter_thrown\n";
    } catch (const ProcessorThrown&) {
        output << "exception processor_thrown\n";
    }
}

}  // namespace nuv::zero::scenario
