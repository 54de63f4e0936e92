#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Export.h"
#include "WalkListener.h"

namespace nuv::zero::traversal MODELING_NUV0_OVER {

/// A listener that draws a walk, as text in the language DOT of graph drawing tools.
///
///     WalkPicture picture(100);
///     ResultSetup(result).trace(&picture);
///     for (const Link& link : links(result)) ...
///     std::ofstream("walk.dot") << picture.text();        // dot -Tsvg walk.dot > walk.svg
///
/// Each element that was entered is a node, named as `dumpElement` does, inputs with a bold border.
/// What was referred to and not entered has a dotted one.
/// Each link that was met is an edge: solid where it entered its target, dashed where that was
/// entered before; red where it closes a cycle, which is known depth-first; grey where the link was
/// walked but not reported. A dotted edge with a bar leads to what was not descended into, and one
/// to the word "cut" says what was pruned. A legend says so in the picture.
///
/// Draws one walk, the first that it hears of, of whichever result. Of its elements, those that
/// were not entered included, it draws as many as the limit says, in the order in which their links
/// were told, and the links between them; what is left out is counted in the picture. Costs memory
/// for what it draws and for each element, which it keeps alive as any link does, and a look-up or
/// two for each link. A copy is independent.
class MODELING_NUV0_TRAVERSAL_EXPORT WalkPicture : public WalkListener {
  public:
    explicit WalkPicture(std::size_t mostNodes = 200);
    WalkPicture(const WalkPicture& other);
    WalkPicture& operator=(const WalkPicture& other);
    ~WalkPicture() override;

    void onLink(const WalkView& walk, const internal::Link& link, Fate fate,
                std::size_t filter) override;
    void onPrune(const WalkView& walk, const internal::Link& link, Pruning pruning,
                 const meta::Property& property, Pruned outcome) override;

    /// The picture as far as the walk has gone. Throws as `dumpElement` does.
    std::string text() const;
    /// Begins anew, with the walk that is heard of next.
    void clear() noexcept;

  private:
    struct Node {
        ModelElement element;
        bool isEntered = false;
        bool isInput = false;
    };
    struct Edge {
        std::size_t from;
        std::size_t to;
        meta::Property property;
        Meeting meeting;
        bool isReported;
    };
    struct Cut {
        std::size_t node;
        Pruning pruning;
        meta::Property property;
    };
    /// Numbers are given for each result. The result is not kept alive, but no other one is taken
    /// for it.
    struct Drawn {
        std::weak_ptr<internal::TraversalResult> result;
        /// None before the first walk that is heard of.
        std::size_t number = 0;
    };
    static constexpr std::size_t notDrawn = static_cast<std::size_t>(-1);

    bool isDrawn(const WalkView& walk) noexcept;
    std::size_t placeOf(const ModelElement& element);
    static std::string textOf(std::size_t place, const Node& node);
    std::string textOf(const Edge& edge) const;
    static std::string textOf(std::size_t number, const Cut& cut);
    std::string leftOutText() const;

    std::size_t mostNodes_;
    Drawn walk_;
    bool isDepthFirst_ = false;
    std::vector<Node> nodes_;
    std::vector<Edge> edges_;
    std::vector<Cut> cuts_;
    /// Also of elements that are not drawn.
    std::unordered_map<ModelElement, std::size_t> places_;
    std::size_t linksLeftOut_ = 0;
    std::size_t prunesLeftOut_ = 0;
};

}  // namespace nuv::zero::traversal
