#pragma once

#include <cstddef>
#include <vector>

#include "benchmarks/Figures.h"

namespace nuv::zero::benchmarks {

/// Time from making a builder to the first link and to the tenth, for models of one, two and four
/// sizes.
std::vector<Figure> measureFirstLinks(std::size_t rounds);

/// Time of a whole walk over models of one, two and four sizes: how far it is from linear.
std::vector<Figure> measureScaling(std::size_t rounds);

/// Two threads that walk one model at once, each with a result of its own: the speed of the slower
/// one over its speed alone.
std::vector<Figure> measureThreads(std::size_t rounds);

/// Making a builder with 100 rules and running it; copying an iterator that has met 1,000,000
/// links.
std::vector<Figure> measureSetup(std::size_t rounds);

}  // namespace nuv::zero::benchmarks
