#include "fleet/digest.h"

#include <fmt/format.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

struct Digest::State {
    XXH3_state_t state;
};

std::uint64_t hashOf(std::string_view bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

Digest::Digest() : _state(std::make_unique<State>()) {
    XXH3_128bits_reset(&_state->state);
}

Digest::~Digest() = default;

void Digest::add(std::string_view bytes) {
    XXH3_128bits_update(&_state->state, bytes.data(), bytes.size());
}

std::string Digest::text() const {
    const XXH128_hash_t hash = XXH3_128bits_digest(&_state->state);
    return hexText(hash.high64) + hexText(hash.low64);
}

std::string hexText(std::uint64_t value) {
    return fmt::format("{:016x}", value);
}
