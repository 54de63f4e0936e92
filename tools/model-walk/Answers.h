#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "traversal/Traversal.h"

namespace model_walk {

/// An element of an answer.
struct ElementAnswer {
    nuv::zero::ModelElement element;
};

/// A link of an answer, and which of its ends the answer is about.
struct LinkAnswer {
    nuv::zero::traversal::Link link;
    bool isAboutSource = false;
    /// How many links there are in front of it.
    std::size_t depth = 0;
    /// Whether the depth is what was asked for.
    bool showsDistance = false;
    /// What is to be said of it besides.
    std::string note = {};

    const nuv::zero::ModelElement& subject() const {
        return isAboutSource ? link.getSource() : link.getTarget();
    }
};

/// Something else that is told: for people a line, as data named fields.
struct FactAnswer {
    struct Field {
        std::string_view name;
        std::string text;
        bool isNumber = false;
    };
    /// What kind of fact it is: `class`, `file`.
    std::string_view kind;
    /// For people, in front of the first fact of a kind.
    std::string title;
    std::vector<Field> fields;
    /// For people.
    std::string line;
};

/// Takes the answers of a question one by one, and prints them.
class Answers {
  public:
    Answers() = default;
    Answers(const Answers&) = delete;
    Answers& operator=(const Answers&) = delete;
    virtual ~Answers();

    void tell(const ElementAnswer& answer) { ++count_, onElement(answer); }
    void tell(const LinkAnswer& answer) { ++count_, onLink(answer); }
    void tell(const FactAnswer& answer) { ++count_, onFact(answer); }
    /// An element that a walk has entered, told or not; only those who count want to know.
    virtual void entered(const nuv::zero::ModelElement& element);
    /// Prints what could not be printed before the last answer was known.
    virtual void end();

    /// How many were told.
    std::size_t count() const noexcept { return count_; }

  private:
    virtual void onElement(const ElementAnswer& answer) = 0;
    virtual void onLink(const LinkAnswer& answer) = 0;
    virtual void onFact(const FactAnswer& answer) = 0;

    std::size_t count_ = 0;
};

}  // namespace model_walk
