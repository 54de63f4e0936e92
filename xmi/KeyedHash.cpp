#include "xmi/KeyedHash.h"

#include <bit>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <exception>
#include <random>

namespace nuv::zero::xmi {
namespace {

/// The state of SipHash; a round mixes all of it.
struct State {
    std::uint64_t v0, v1, v2, v3;

    void round() noexcept {
        v0 += v1;
        v2 += v3;
        v1 = std::rotl(v1, 13) ^ v0;
        v3 = std::rotl(v3, 16) ^ v2;
        v0 = std::rotl(v0, 32);
        v2 += v1;
        v0 += v3;
        v1 = std::rotl(v1, 17) ^ v2;
        v3 = std::rotl(v3, 21) ^ v0;
        v2 = std::rotl(v2, 32);
    }
    void absorb(std::uint64_t word) noexcept {
        v3 ^= word;
        round();
        v0 ^= word;
    }
};

std::uint64_t wordOf(const char* bytes, std::size_t count) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, count);
    return word;
}

}  // namespace

KeyedHash::Key KeyedHash::draw() {
    try {
        std::random_device random;
        const auto word = [&] { return (static_cast<std::uint64_t>(random()) << 32U) | random(); };
        return {word(), word()};
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        // A machine without a source of randomness: the time and an address are hard enough to
        // guess from outside.
        static const char somewhere = 0;
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        return {static_cast<std::uint64_t>(now), reinterpret_cast<std::uintptr_t>(&somewhere)};
    }
}

KeyedHash::KeyedHash() {
    static const Key key = draw();
    key_ = key;
}

std::uint64_t KeyedHash::operator()(std::string_view text) const noexcept {
    State state{key_[0] ^ 0x736F6D6570736575U, key_[1] ^ 0x646F72616E646F6DU,
                key_[0] ^ 0x6C7967656E657261U, key_[1] ^ 0x7465646279746573U};
    const char* at = text.data();
    std::size_t left = text.size();
    for (; left >= 8; at += 8, left -= 8) state.absorb(wordOf(at, 8));
    const std::uint64_t length = static_cast<std::uint64_t>(text.size()) << 56U;
    state.absorb(length | (left == 0 ? 0 : wordOf(at, left)));
    state.v2 ^= 0xFFU;
    for (int i = 0; i < 3; ++i) state.round();
    return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}

}  // namespace nuv::zero::xmi
