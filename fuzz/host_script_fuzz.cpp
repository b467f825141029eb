// Arbitrary bytes as a scripted host's file: read, or refused with a reason and a place in the
// file.
#include <algorithm>
#include <cstdint>
#include <string>
#include <variant>

#include "fuzz/fuzz_check.h"
#include "runner/host_script.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const auto result = vornwout::parseHostScript(text, "script.json");
  if (const auto* error = std::get_if<vornwout::HostScriptError>(&result)) {
    const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
    VORN_FUZZ_CHECK(!error->message.empty());
    VORN_FUZZ_CHECK(error->place.line >= 1 && error->place.line <= lines);
    VORN_FUZZ_CHECK(error->place.column >= 1);
  }
  return 0;
}
