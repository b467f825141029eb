// Texts that the benchmarks run on: jobs and commands of a chosen size.
#pragma once

#include <string>

namespace vornwout {

/// A job of `commands` ordinary commands, about 100 bytes each.
inline std::string ordinaryJob(int commands) {
  std::string job;
  for (int i = 0; i < commands; ++i) {
    job += "OUTPUT COMMENT COLOR=blue BOLD=YES WIDTH=300 TEXT='Figures of the quarter " +
           std::to_string(i) + "'\n  /LINE TEXT=\"second\".\n";
  }
  return job;
}

/// One command of `lines` subcommands, about 60 bytes each.
inline std::string longCommand(int lines) {
  std::string command = "OUTPUT COMMENT TEXT='first'\n";
  for (int i = 0; i < lines; ++i) {
    command += "  /LINE TEXT='line " + std::to_string(i) + " of the comment' COLOR=RED BOLD=NO\n";
  }
  return command + ".\n";
}

}  // namespace vornwout
