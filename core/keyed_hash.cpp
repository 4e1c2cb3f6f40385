// SPDX-License-Identifier: MIT
#include "core/keyed_hash.h"

#include <sys/random.h>

#include <array>
#include <bit>
#include <chrono>
#include <cstdint>
#include <cstring>

namespace tarvel {

namespace {

using Key = std::array<std::uint64_t, 2>;

/// Where the kernel gives no random bytes, the clock must do.
Key DrawKey() {
  Key key{};
  if (getrandom(key.data(), sizeof key, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof key)) {
    key[0] =
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
  }
  return key;
}

/// The state of SipHash, as its authors define it: J.-P. Aumasson and D. J. Bernstein, "SipHash: a
/// fast short-input PRF", 2012. One round for each word and three at the end.
class SipState {
 public:
  explicit SipState(const Key& key)
      : a_(key[0] ^ 0x736f6d6570736575),
        b_(key[1] ^ 0x646f72616e646f6d),
        c_(key[0] ^ 0x6c7967656e657261),
        d_(key[1] ^ 0x7465646279746573) {}

  void Add(std::uint64_t word) {
    d_ ^= word;
    Round();
    a_ ^= word;
  }
  std::uint64_t Finish() {
    c_ ^= 0xff;
    for (int i = 0; i < 3; ++i) Round();
    return a_ ^ b_ ^ c_ ^ d_;
  }

 private:
  void Round() {
    a_ += b_;
    b_ = std::rotl(b_, 13) ^ a_;
    a_ = std::rotl(a_, 32);
    c_ += d_;
    d_ = std::rotl(d_, 16) ^ c_;
    a_ += d_;
    d_ = std::rotl(d_, 21) ^ a_;
    c_ += b_;
    b_ = std::rotl(b_, 17) ^ c_;
    c_ = std::rotl(c_, 32);
  }

  std::uint64_t a_, b_, c_, d_;
};

}  // namespace

std::size_t KeyedHash(std::string_view bytes) {
  static const Key key = DrawKey();
  SipState state(key);
  const std::uint64_t size = bytes.size();
  std::uint64_t word = 0;
  for (; bytes.size() >= sizeof word; bytes.remove_prefix(sizeof word)) {
    std::memcpy(&word, bytes.data(), sizeof word);
    state.Add(word);
  }
  word = 0;
  if (!bytes.empty()) std::memcpy(&word, bytes.data(), bytes.size());  // a null view may be empty
  state.Add(word | size << 56);
  return static_cast<std::size_t>(state.Finish());
}

}  // namespace tarvel
