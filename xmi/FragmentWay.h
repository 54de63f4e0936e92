#pragma once

#include <cstddef>
#include <string_view>

#include "xmi/Fragment.h"

namespace nuv::zero::xmi {

/// Goes the way that a fragment path describes, in whatever a file gives steps: XML elements while
/// it is read, elements of the model afterwards.
///
/// A `File` has a type `Step`, one value of which is `File::none`, and these functions, which give
/// `none` where there is nothing: `root(number)`, `byFeature(step, name, number)`, `byName(step,
/// name, number)`, `bySource(step, source, number)`, `byKeys(step, FragmentStep)`.
template <class File>
class FragmentWay {
  public:
    using Step = typename File::Step;

    explicit FragmentWay(const File& file) : file_(file) {}

    Step go(const FragmentPath& path) const {
        Step at = file_.root(path.root);
        for (const FragmentStep& each : path.steps) {
            if (at == File::none) break;
            at = next(at, each);
        }
        return at;
    }

  private:
    Step next(Step from, const FragmentStep& step) const {
        switch (step.kind) {
            case FragmentStep::Kind::Feature:
                return file_.byFeature(from, step.text, step.index);
            case FragmentStep::Kind::Keys: {
                // A feature may be called so.
                const Step found = file_.byKeys(from, step);
                return found != File::none ? found : file_.byFeature(from, step.raw.substr(1), 0);
            }
            case FragmentStep::Kind::Source: {
                const Step found = file_.bySource(from, step.text, step.index);
                if (found != File::none) return found;
                break;
            }
            case FragmentStep::Kind::Name:
                break;
        }
        // Read as it stands before it is decoded and before `.N` is taken for a number: names may
        // hold dots and percent signs.
        const Step plain = file_.byName(from, step.raw, 0);
        if (plain != File::none) return plain;
        const Step decoded = file_.byName(from, percentDecoded(step.raw), 0);
        return decoded != File::none ? decoded : file_.byName(from, step.text, step.index);
    }

    const File& file_;
};

}  // namespace nuv::zero::xmi
