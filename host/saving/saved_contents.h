// Which contents have been saved so far, and under which names.

#ifndef PX_HOST_SAVING_SAVED_CONTENTS_H
#define PX_HOST_SAVING_SAVED_CONTENTS_H

#include <nettle/sha2.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace px {

using Digest = std::array<uint8_t, SHA256_DIGEST_SIZE>;

class ContentDigest {
 public:
  ContentDigest() { sha256_init(&state_); }
  void add(const char *bytes, size_t size);
  // Answers the digest of all that was added, once.
  Digest take();

 private:
  sha256_ctx state_;
};

class SavedContents {
 public:
  // Answers the name, or null when the content hasn't been saved or was forgotten.
  const std::string *find(const Digest &content) const;

  // Remembers a name. Behind a large number nothing more is remembered, so memory is bounded; what
  // comes again then is saved again.
  void add(const Digest &content, const std::string &name);

 private:
  static constexpr size_t Most = 100'000;

  std::map<Digest, std::string> names_;
};

}  // namespace px

#endif
