// `vornwout build`: a document from a manifest, or from tables, charts and texts on the command
// line.
//
// What stands on the command line is read in its order: --table, --chart and --text start an
// object, and the options behind it are about that object.
#pragma once

#include <map>
#include <string>
#include <vector>

// The library's own name.
namespace CLI {  // NOLINT(readability-identifier-naming)
class App;
}

namespace vornwout {

/// One option as it was written, in the order of the command line.
struct BuildOption {
  std::string name;  ///< "--rows"
  std::string value;
};

struct BuildOptions {
  std::string manifest;  ///< empty for objects on the command line
  std::string output;
  std::string passwordFile;  ///< empty for none
  bool allowOutside = false;
  std::vector<BuildOption> objects;
};

/// Declares the subcommand; what is written goes to `options`, which must outlive `application`.
void addBuildCommand(CLI::App& application, BuildOptions& options);

/// Builds and saves the document; the exit status. Complaints go to standard error.
int runBuild(const BuildOptions& options);

}  // namespace vornwout
