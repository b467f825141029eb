// Limits of string tables: all bundles of a language against ICU's own reading of the same files,
// and a key looked up once its bundle is loaded.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <unicode/ures.h>

#include "bench/limits.h"
#include "libvornwout/stbprint/bundle_names.h"
#include "libvornwout/stbprint/bundle_path.h"
#include "platform/strings/dictionary.h"
#include "platform/strings/string_table.h"
#include "tests/support/text_bundle_bytes.h"

namespace vornwout {
namespace {

namespace fs = std::filesystem;

using Entries = std::vector<keyValueGloss>;

constexpr int kKeysPerBundle = 100;

/// A folder with a folder for each bundle, as ICU wants it: the file is named after the language.
class Bundles {
 public:
  Bundles() {
    std::string pattern = "/tmp/vornwout-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for bundles");
    folder_ = pattern;
    for (const std::string_view name : kBundleNames) {
      const std::string folder = folder_ + "/all/" + std::string(name);
      fs::create_directories(folder);
      std::ofstream(folder + "/de.res", std::ios::binary) << textBundleBytes(entriesOf(name));
    }
    fs::create_directories(folder_ + "/de");
    std::ofstream(folder_ + "/de/output.qbb", std::ios::binary)
        << textBundleBytes(entriesOf("output"));
  }
  ~Bundles() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }
  Bundles(const Bundles&) = delete;
  Bundles& operator=(const Bundles&) = delete;

  std::string all() const { return folder_ + "/all"; }
  std::string location() const { return folder_ + "/de/"; }
  /// Another name of the folder, for ICU keeps what it opened by its name.
  std::string freshName() {
    const std::string name = fmt::format("{}/all{}", folder_, ++names_);
    fs::create_directory_symlink(all(), name);
    return name;
  }

 private:
  static Entries entriesOf(std::string_view name) {
    Entries entries;
    for (int i = 0; i < kKeysPerBundle; ++i) {
      keyValueGloss& entry = entries.emplace_back();
      entry.key = fmt::format("{}{:05}", name.substr(0, 3), i);
      entry.value = fmt::format("Der Wert ^1 für \"^2\" ist größer als {}.", i);
      if (i % 3 == 0) entry.gloss = "Der erste Platzhalter ist ein Wert, der zweite ein Name.";
    }
    return entries;
  }

  std::string folder_;
  int names_ = 0;
};

/// One bundle by ICU alone.
void readByIcu(const std::string& folder, Entries& entries) {
  UErrorCode status = U_ZERO_ERROR;
  UResourceBundle* bundle = ures_openDirect(folder.c_str(), "de", &status);
  const auto read = [&](const char* name, std::string keyValueGloss::*field) {
    UResourceBundle* array = ures_getByKey(bundle, name, nullptr, &status);
    if (U_FAILURE(status) != 0) throw std::runtime_error("ICU reads no bundle");
    const std::int32_t count = ures_getSize(array);
    entries.resize(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
      char buffer[256];
      std::int32_t length = sizeof buffer;
      const char* text =
          ures_getUTF8StringByIndex(array, i, buffer, &length, /*forceCopy=*/0, &status);
      (entries[static_cast<std::size_t>(i)].*field).assign(text, static_cast<std::size_t>(length));
    }
    ures_close(array);
  };
  read("Keys", &keyValueGloss::key);
  read("Texts", &keyValueGloss::value);
  read("Helps", &keyValueGloss::gloss);
  ures_close(bundle);
}

LimitResult readingLimit(const Effort& effort, Bundles& bundles) {
  std::size_t ours = 0;
  std::size_t icus = 0;
  const Medians medians = mediansInTurn(
      effort,
      [&] {
        for (const std::string_view name : kBundleNames) {
          Entries entries;
          FacSTStringTable().GetKeysAndValues(bundlePath(bundles.all(), name, "de.res"), entries);
          ours += entries.size();
        }
      },
      [&] {
        const std::string folder = bundles.freshName() + "/";
        for (const std::string_view name : kBundleNames) {
          Entries entries;
          readByIcu(folder + std::string(name), entries);
          icus += entries.size();
        }
      });
  if (ours != icus || ours == 0) throw std::runtime_error("bundles were not read whole");
  LimitResult result;
  result.name = fmt::format("a language of {} bundles : ICU's own reading", kBundleNames.size());
  result.measured = medians.first / medians.second;
  result.limit = 1.1;
  result.detail =
      fmt::format("{:.2f} ms against {:.2f} ms", medians.first * 1e3, medians.second * 1e3);
  return result;
}

LimitResult lookUpLimit(const Effort& effort, const Bundles& bundles, const std::string& key) {
  constexpr int kCount = 200'000;
  const FacSTDictionary dictionary(bundles.location());
  std::size_t total = dictionary.LookUp(key).size();
  std::vector<double> times;
  for (int i = 0; i < effort.rounds; ++i) {
    times.push_back(secondsOf([&] {
      for (int n = 0; n < kCount; ++n) total += dictionary.LookUp(key).size();
    }));
  }
  if (total == 0) throw std::runtime_error("nothing was looked up");
  LimitResult result;
  result.name = fmt::format("looking {} up, ns", key);
  result.measured = median(times) / kCount * 1e9;
  result.limit = 60;
  return result;
}

}  // namespace

std::vector<LimitResult> stringLimits(const Effort& effort) {
  Bundles bundles;
  std::vector<LimitResult> results = {readingLimit(effort, bundles)};
  // A short text, a text that needs memory of its own, and a key that there is not.
  for (const char* key : {"TFOSeptember", "out00042", "a key that there is not"}) {
    results.push_back(lookUpLimit(effort, bundles, key));
  }
  return results;
}

}  // namespace vornwout
