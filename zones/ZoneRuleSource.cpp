// The zone source through which cctz loads the zone of a TZ rule.
//
// cctz asks cctz_extension::zone_info_source_factory for the data of every
// zone it has not loaded yet; this one answers names that start with
// kRuleKeyPrefix with the image of the rule after it, and passes every other
// name on to cctz's own source (the files under TZDIR or
// /usr/share/zoneinfo). The definition is weak, as cctz's own is: a program
// that defines its own factory keeps it, and load() then refuses rules
// rather than meet names its factory does not know.
#include <cctz/zone_info_source.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "zones/internal/ZoneRule.h"

namespace {

// ':' is never part of a name load() hands to cctz, so no file can be meant.
constexpr char kRuleKeyPrefix[] = "zephal-rule:";
constexpr size_t kRuleKeyPrefixLength = sizeof kRuleKeyPrefix - 1;

// An image in memory, read as cctz reads a file.
class ImageSource : public cctz::ZoneInfoSource {
 public:
  explicit ImageSource(std::string image) : m_image(std::move(image)) {}

  std::size_t Read(void* to, std::size_t size) override {
    size = std::min(size, m_image.size() - m_at);
    if (size != 0) std::memcpy(to, m_image.data() + m_at, size);
    m_at += size;
    return size;
  }

  int Skip(std::size_t offset) override {
    if (offset > m_image.size() - m_at) return -1;
    m_at += offset;
    return 0;
  }

 private:
  std::string m_image;
  std::size_t m_at = 0;
};

std::unique_ptr<cctz::ZoneInfoSource> ruleOrFileSource(
    const std::string& name,
    const std::function<std::unique_ptr<cctz::ZoneInfoSource>(const std::string&)>& files) {
  if (name.compare(0, kRuleKeyPrefixLength, kRuleKeyPrefix) != 0) return files(name);
  const char* text = name.c_str() + kRuleKeyPrefixLength;
  zpzone::ZoneRule rule;
  ZephalTextError error;
  if (!zpzone::readRule(text, rule, error)) return nullptr;
  return std::make_unique<ImageSource>(zpzone::ruleImage(rule, text));
}

}  // namespace

namespace cctz_extension {
__attribute__((weak)) ZoneInfoSourceFactory zone_info_source_factory = ruleOrFileSource;
}  // namespace cctz_extension

std::string zpzone::ruleZoneKey(std::string_view text) {
  std::string key(kRuleKeyPrefix);
  key += text;
  return key;
}

bool zpzone::ruleSourceInstalled() {
  return cctz_extension::zone_info_source_factory == ruleOrFileSource;
}
