#pragma once

#include <string>

#include "Answers.h"
#include "Labels.h"
#include "Sink.h"
#include "Terminal.h"

namespace model_walk {

/// Whether lines begin with the address that they are about.
enum class Addresses { Shown, Hidden };

/// Prints a line for each answer that people read: address, tab, what it is.
class TextAnswers final : public Answers {
  public:
    /// REQUIRES: labels and sink outlive the answers, here and below.
    TextAnswers(const Labels& labels, const Terminal& terminal, Sink& sink,
                Addresses addresses = Addresses::Shown)
        : labels_(labels), terminal_(terminal), sink_(sink), addresses_(addresses) {}

  private:
    void onElement(const ElementAnswer& answer) override;
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override;
    void line(const nuv::zero::ModelElement& subject, const std::string& text,
              const std::string& note);

    const Labels& labels_;
    Terminal terminal_;
    Sink& sink_;
    Addresses addresses_;
    std::string title_;
};

/// Prints fields separated by tabs. Of elements: address, class, name. Of links: address of what
/// the answer is about, source, property, target, cascade, depth. Then the attributes.
class TsvAnswers final : public Answers {
  public:
    TsvAnswers(const Labels& labels, Sink& sink, Addresses addresses = Addresses::Shown)
        : labels_(labels), sink_(sink), addresses_(addresses) {}

  private:
    void onElement(const ElementAnswer& answer) override;
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override;
    std::string attributes(const nuv::zero::ModelElement& element) const;

    const Labels& labels_;
    Sink& sink_;
    Addresses addresses_;
};

/// Prints an object of JSON on each line.
class JsonAnswers final : public Answers {
  public:
    JsonAnswers(const Labels& labels, Sink& sink) : labels_(labels), sink_(sink) {}

  private:
    void onElement(const ElementAnswer& answer) override;
    void onLink(const LinkAnswer& answer) override;
    void onFact(const FactAnswer& answer) override;
    std::string about(const nuv::zero::ModelElement& element) const;

    const Labels& labels_;
    Sink& sink_;
};

/// An element in the colours of its parts, escaped.
std::string shown(const Terminal& terminal, const Labels& labels,
                  const nuv::zero::ModelElement& element);
/// The attributes behind tabs, escaped: `\tmassInGrams=35`.
std::string shownAttributes(const Labels& labels, const nuv::zero::ModelElement& element);

}  // namespace model_walk
