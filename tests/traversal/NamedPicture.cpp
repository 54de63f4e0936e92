#include <iostream>

#include "model/memory/Metamodel.h"
#include "model/memory/Model.h"
#include "traversal/Traversal.h"

/// Prints a picture whose names have all that means something in DOT, or in what is made of it.
int main() {
    using namespace nuv::zero;
    using namespace nuv::zero::traversal;
    memory::Metamodel metamodel(u"m");
    const auto node = metamodel.addClass(u"Node");
    metamodel.addProperty(node, u"name", meta::StandardTypes::stringMeta());
    const auto next = metamodel.addProperty(node, u"a&lt;b", node, memory::unbounded,
                                            memory::PropertyFlags::Association);
    memory::Model model;
    const auto first = model.create(node, u"first");
    for (const char16_t* name :
         {u"\"quoted\"", u"back\\slash\\", u"two\nlines", u"&lt;", u"&amp;", u"<b>bold</b>",
          u"{a|b}", u"x -> y [color=red];", u"\u00FC\u4E2D\U0001F600", u"\u0001"}) {
        model.add(first, next, model.create(node, name));
    }
    WalkPicture picture;
    const auto result = Spec::subtractiveTraversal()->depthFirst(first);
    ResultSetup(result).trace(&picture);
    for (auto walk = result->begin(); walk.getCurrent();) walk.advance();
    std::cout << picture.text();
}
