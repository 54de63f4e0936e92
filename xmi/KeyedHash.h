#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace nuv::zero::xmi {

/// A hash of texts that nobody outside the process can foresee (SipHash-1-3 with a random key).
///
/// Files choose their ids and names. With a hash that is known, a file can choose them so that all
/// of them collide, and a table then takes a time that grows with the square of their number.
class KeyedHash {
  public:
    /// Takes the key of the process, which is drawn when it is asked for first.
    KeyedHash();

    std::uint64_t operator()(std::string_view text) const noexcept;

  private:
    using Key = std::array<std::uint64_t, 2>;
    static Key draw();

    Key key_;
};

}  // namespace nuv::zero::xmi
