#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>

#include "tests/scenario/Scenario.h"

namespace nuv::zero::scenario {

/// Hands out the arguments of one statement, first to last. Throws `Malformed` when the next one is
/// missing or of another sort than asked for.
class Arguments {
  public:
    explicit Arguments(const Statement& statement) : tokens_(statement.tokens) {}

    std::size_t left() const { return tokens_.size() - next_; }
    bool empty() const { return left() == 0; }

    /// A bare word.
    const std::string& word();
    /// A quoted string.
    const std::string& text();
    std::int64_t integer() { return integer(minimum<std::int64_t>(), maximum<std::int64_t>()); }
    /// An enumerator given by its number, which need not be one of those that have a name.
    template <class Enumeration>
    Enumeration number() {
        using Number = std::int32_t;
        return static_cast<Enumeration>(
            static_cast<Number>(integer(minimum<Number>(), maximum<Number>())));
    }

  private:
    template <std::integral Number>
    static std::int64_t minimum() {
        return std::numeric_limits<Number>::min();
    }
    template <std::integral Number>
    static std::int64_t maximum() {
        return std::numeric_limits<Number>::max();
    }
    const Token& next();
    std::int64_t integer(std::int64_t least, std::int64_t greatest);

    const std::vector<Token>& tokens_;
    std::size_t next_ = 1;
};

}  // namespace nuv::zero::scenario
