#include <exception>
#include <iostream>

#include "runner/application.h"
#include "runner/freed_memory.h"
#include "runner/run_options.h"
#include "runner/standard_streams.h"

int main(int argc, char** argv) {
  try {
    vornwout::keepFreedMemory();
    vornwout::prepareStandardStreams();
    return vornwout::runApplication(argc, argv);
  } catch (const std::exception& exception) {
    std::cerr << "vornwout: error: " << exception.what() << "\n";
  } catch (...) {
    std::cerr << "vornwout: error: an unknown failure\n";
  }
  return vornwout::kExitUsage;
}
