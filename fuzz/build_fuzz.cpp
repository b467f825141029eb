// Arbitrary bytes as a manifest with the files that it names, as a table, as a chart: built, or
// refused with a reason and a place. What a chart becomes stays the same when it is sanitized
// again.
//
// The first byte chooses; a manifest and its files are separated by the byte 0x00.
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "fuzz/fuzz_check.h"
#include "host/build/build_error.h"
#include "host/build/manifest.h"
#include "host/build/svg_sanitizer.h"
#include "host/build/table_builder.h"

namespace vornwout {
namespace {

/// Every name is the same file.
class OneFile : public BuildFiles {
 public:
  explicit OneFile(std::string bytes) : bytes_(std::move(bytes)) {}
  std::unique_ptr<ByteSource> open(const std::string&) override {
    return std::make_unique<MemorySource>(bytes_);
  }

 private:
  std::string bytes_;
};

void checkError(const BuildError& error) {
  VORN_FUZZ_CHECK(!error.text().empty());
  VORN_FUZZ_CHECK(error.place().line >= 0 && error.place().column >= 0);
}

void fuzzManifest(const std::string& input) {
  const std::size_t end = input.find('\0');
  OneFile files(end == std::string::npos ? "a,b\nx,1\n" : input.substr(end + 1));
  Document document(1, "", false);
  try {
    buildFromManifest(input.substr(0, end), "m.json", files, document);
  } catch (const BuildError& error) {
    checkError(error);
  }
}

void fuzzTable(const std::string& input) {
  OneFile files(input);
  TableDescription description;
  description.csv = "a.csv";
  description.dimensions.emplace_back().columns = {{"a", {}}, {"b", {}}};
  description.values.emplace_back().column.name = "v";
  try {
    const auto table = buildTable(description, files);
    for (const PivotCell& cell : table->cells) {
      VORN_FUZZ_CHECK(cell.at.size() == 1);
      VORN_FUZZ_CHECK(categoryPath(table->dimensions[0], cell.at[0]).size() == 2);
    }
  } catch (const BuildError& error) {
    checkError(error);
  } catch (const DescriptionError& error) {
    VORN_FUZZ_CHECK(error.what()[0] != '\0');
  }
}

void fuzzChart(const std::string& input) {
  std::string clean;
  try {
    clean = sanitizeSvg(input);
  } catch (const SvgError& error) {
    VORN_FUZZ_CHECK(error.what()[0] != '\0');
    return;
  }
  VORN_FUZZ_CHECK(sanitizeSvg(clean) == clean);
  VORN_FUZZ_CHECK(clean.find("<script") == std::string::npos);
}

}  // namespace
}  // namespace vornwout

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string input(data + 1, data + size);
  switch (data[0] % 3) {
    case 0:
      vornwout::fuzzManifest(input);
      break;
    case 1:
      vornwout::fuzzTable(input);
      break;
    default:
      vornwout::fuzzChart(input);
      break;
  }
  return 0;
}
