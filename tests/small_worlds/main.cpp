#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/small_worlds/Lockstep.h"

/// Walks small worlds exhaustively, engine beside oracle:
///
///     small_worlds                          all of them
///     small_worlds --stride 5000            one case of 5000
///     small_worlds --stride 2 --offset 1    the second half of all cases
///     small_worlds --stride 101 --until 40000   some of the first cases, the smallest ones
///     small_worlds --case 123456            one case again
///     small_worlds --case 123456 --script 7 one script of it, in words
///     small_worlds --count                  only counts worlds and cases
///
/// A case is a scene (a model and inputs), a kind and an order; on each, every script is run.
namespace nuv::zero::small_worlds {
namespace {

constexpr std::array orders = {traversal::Algo::DepthFirstPreOrder,
                               traversal::Algo::DepthFirstPostOrder, traversal::Algo::BreadthFirst};

struct SurveyOptions {
    std::uint64_t stride = 1;
    std::uint64_t offset = 0;
    std::uint64_t until = ~std::uint64_t{0};
    std::optional<std::uint64_t> onlyCase;
    std::optional<int> onlyScript;
    bool countOnly = false;
};

/// What is under way, for a walk that crashes or never ends.
volatile std::sig_atomic_t scriptUnderWay = 0;
std::uint64_t caseUnderWay = 0;

extern "C" void sayWhatCrashed(int signal) {
    std::array<char, 100> line{};
    const int length = std::snprintf(
        line.data(), line.size(), "signal %d in --case %llu --script %d\n", signal,
        static_cast<unsigned long long>(caseUnderWay), static_cast<int>(scriptUnderWay));
    if (write(STDERR_FILENO, line.data(), static_cast<std::size_t>(length)) < 0) std::_Exit(3);
    std::_Exit(2);
}

class Survey {
  public:
    explicit Survey(const SurveyOptions& options) : options_(options) {}

    /// Whether all agreed.
    bool run() {
        for (const Family& family : families) {
            const std::uint64_t casesBefore = cases_;
            std::uint64_t scenes = 0;
            forEachScene(family, [&](const auto& kinds, const auto& make) {
                ++scenes;
                walk(kinds, make);
                return cases_ < options_.until;
            });
            std::printf("%s: %llu models with inputs, %llu cases\n", family.name, wide(scenes),
                        wide(cases_ - casesBefore));
        }
        std::printf("run: %llu cases, %llu scripts, %llu steps compared, %llu differ\n",
                    wide(casesRun_), wide(scriptsRun_), wide(steps_), wide(different_));
        return different_ == 0 && (options_.countOnly || casesRun_ != 0);
    }

  private:
    static unsigned long long wide(std::uint64_t value) { return value; }

    bool isWanted(std::uint64_t number) const {
        if (options_.countOnly || different_ != 0) return false;
        if (options_.onlyCase) return number == *options_.onlyCase;
        return number % options_.stride == options_.offset && number < options_.until;
    }

    void walk(const std::vector<oracle::Kind>& kinds,
              const std::function<Scene(std::uint64_t)>& make) {
        // Of all its cases, a scene is made for the first that is wanted.
        const std::uint64_t sceneNumber = cases_;
        std::optional<Scene> scene;
        std::optional<oracle::EngineModel> model;
        for (const oracle::Kind kind : kinds) {
            for (const traversal::Algo order : orders) {
                const std::uint64_t number = cases_++;
                if (!isWanted(number)) continue;
                if (!scene) model.emplace(scene.emplace(make(sceneNumber)).world);
                walk(number, *scene, *model, kind, order);
            }
        }
    }

    void walk(std::uint64_t number, const Scene& scene, const oracle::EngineModel& model,
              oracle::Kind kind, traversal::Algo order) {
        caseUnderWay = number;
        alarm(secondsPerCase);
        Lockstep lockstep(scene, model, kind, order);
        ++casesRun_;
        for (int script = 0; script < scripts; ++script) {
            if (options_.onlyScript && script != *options_.onlyScript) continue;
            scriptUnderWay = script;
            ++scriptsRun_;
            bool agrees = false;
            try {
                agrees = lockstep.run(scriptAt(script));
            } catch (const std::exception& exception) {
                std::printf("threw: %s\n", exception.what());
            }
            if (agrees && !options_.onlyScript) continue;
            if (!agrees) ++different_;
            std::printf("%s%s, order %d, %s\n", describe(scene).c_str(), nameOf(kind),
                        static_cast<int>(order), describe(scriptAt(script)).c_str());
            try {
                std::printf("%s", lockstep.runInWords(scriptAt(script)).c_str());
            } catch (const std::exception&) {
                // Said above.
            }
            std::printf("again: --case %llu --script %d\n", wide(number), script);
            if (!agrees) break;
        }
        steps_ += lockstep.steps();
    }

    static constexpr unsigned secondsPerCase = 60;

    SurveyOptions options_;
    std::uint64_t cases_ = 0;
    std::uint64_t casesRun_ = 0;
    std::uint64_t scriptsRun_ = 0;
    std::uint64_t steps_ = 0;
    std::uint64_t different_ = 0;
};

SurveyOptions readOptions(int count, char** texts) {
    SurveyOptions options;
    for (int index = 1; index < count; ++index) {
        const std::string_view name = texts[index];
        if (name == "--count") {
            options.countOnly = true;
            continue;
        }
        if (++index == count) throw std::invalid_argument(std::string(name) + " lacks a number");
        const std::uint64_t value = std::stoull(texts[index]);
        if (name == "--stride" && value != 0) {
            options.stride = value;
        } else if (name == "--offset") {
            options.offset = value;
        } else if (name == "--until") {
            options.until = value;
        } else if (name == "--case") {
            options.onlyCase = value;
        } else if (name == "--script") {
            options.onlyScript = static_cast<int>(value);
        } else {
            throw std::invalid_argument("not understood: " + std::string(name));
        }
    }
    return options;
}

}  // namespace
}  // namespace nuv::zero::small_worlds

int main(int count, char** texts) {
    using namespace nuv::zero::small_worlds;
    for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGILL, SIGBUS, SIGALRM}) {
        std::signal(signal, sayWhatCrashed);
    }
    try {
        return Survey(readOptions(count, texts)).run() ? 0 : 1;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
        return 1;
    }
}
