// How much memory a piece of work takes at its peak.
#pragma once

#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>

namespace vornwout {

/// Bytes of a line of the process's status.
inline double statusBytes(const std::string& field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with(field + ":")) return std::stod(line.substr(field.size() + 1)) * 1024;
  }
  throw std::runtime_error("the system does not say " + field);
}

/// The most bytes that the process had during `work` beyond what it had before.
inline double peakBytesOf(const std::function<void()>& work) {
  std::ofstream("/proc/self/clear_refs") << 5;  // the high-water mark starts anew
  const double before = statusBytes("VmRSS");
  work();
  return statusBytes("VmHWM") - before;
}

}  // namespace vornwout
