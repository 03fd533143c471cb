#include "host/saving/saved_contents.h"

namespace px {

void ContentDigest::add(const char *bytes, size_t size) {
  sha256_update(&state_, size, reinterpret_cast<const uint8_t *>(bytes));
}

Digest ContentDigest::take() {
  Digest digest;
  sha256_digest(&state_, digest.size(), digest.data());
  return digest;
}

const std::string *SavedContents::find(const Digest &content) const {
  const auto found = names_.find(content);
  return found != names_.end() ? &found->second : nullptr;
}

void SavedContents::add(const Digest &content, const std::string &name) {
  if (names_.size() < Most) names_.emplace(content, name);
}

}  // namespace px
