// Measures every limit and says which hold; exit status 1 when one does not.
//
//   limits PROGRAM [--smoke | PART]
//
// PART is the first word of a file beside this one: process, command, modify, change, build,
// document, export, string.
#include "bench/limits.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "runner/process_resources.h"

namespace vornwout {
namespace {

int report(const std::vector<LimitResult>& results, bool isSmoke) {
  int broken = 0;
  for (const LimitResult& result : results) {
    const bool holds = result.holds();
    if (!holds) ++broken;
    fmt::print("{:<6} {:<58} {:>9.3f} {} {:<8.3g} {}\n",
               result.isPromised ? (holds ? "ok" : "BROKEN") : "info", result.name, result.measured,
               result.isMinimum ? ">=" : "<=", result.limit, result.detail);
  }
  if (isSmoke) {
    fmt::print("Measured once, to see that it runs; one time says nothing about a limit.\n");
    return 0;
  }
  fmt::print("{} limits hold, {} are broken\n", static_cast<int>(results.size()) - broken, broken);
  return broken == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vornwout

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: limits PROGRAM [--smoke | PART]\n", stderr);
    return 2;
  }
  // As the program does, for what is measured and for the yardsticks alike.
  vornwout::keepFreedMemory();
  vornwout::Effort effort;
  std::string part;
  if (argc > 2 && std::strcmp(argv[2], "--smoke") == 0) {
    effort = {1, true};
  } else if (argc > 2) {
    part = argv[2];
  }
  std::vector<vornwout::LimitResult> results;
  const auto measure = [&](const char* name, const auto& limits) {
    if (!part.empty() && part != name) return;
    for (auto& result : limits(effort)) results.push_back(std::move(result));
  };
  // Processes first, while this one is small: a child's memory counts what its parent had.
  measure("process", [&](const auto& e) { return vornwout::processLimits(e, argv[1]); });
  measure("command", vornwout::commandLimits);
  measure("modify", vornwout::modifyLimits);
  measure("change", vornwout::changeLimits);
  measure("export_document", vornwout::exportDocumentLimits);
  measure("build", vornwout::buildLimits);
  measure("document", vornwout::documentLimits);
  measure("export", vornwout::exportLimits);
  measure("string", vornwout::stringLimits);
  return vornwout::report(results, effort.isSmoke);
}
