#include "Answers.h"

namespace model_walk {

Answers::~Answers() = default;

void Answers::entered(const nuv::zero::ModelElement& /*element*/) {}

void Answers::end() {}

}  // namespace model_walk
