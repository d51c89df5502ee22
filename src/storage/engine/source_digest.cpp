#include "storage/engine/source_digest.h"

#include <xxhash.h>

namespace vorn {

QByteArray SourceDigest(const QByteArray& source) {
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical,
                           XXH3_128bits(source.constData(), static_cast<size_t>(source.size())));
  return {reinterpret_cast<const char*>(canonical.digest), sizeof canonical.digest};
}

}  // namespace vorn
