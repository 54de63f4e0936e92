#include <cstdint>

#include "Consumer.h"
#include "model/Framework.h"

namespace nuv_consumer {

void callWalkSupport(Station& station) {
    using Support = access::WalkSupport<ModelElement>;
    ModelElement lent = Support::lend(station.one);
    expect(lent == station.one, "a lent handle is equal");
    Support::forget(lent);
    Support::prefetch(station.one);
    access::prefetchLine(station.one.get());
    expect(access::narrowed<std::uint8_t>(std::uint64_t{0x1FF}) == 0xFF,
           "what does not fit is cut");
    expect(Support::numberOf(station.one) != Support::numberOf(station.two),
           "elements have numbers of their own");
    const Support::Hash<meta::Class> hash;
    expect(hash(station.block) == hash(meta::Class(station.block)), "equal handles hash alike");
}

}  // namespace nuv_consumer
