#include <csignal>
#include <exception>
#include <iostream>
#include <new>

#include "runner/application.h"
#include "runner/ending_signals.h"
#include "runner/process_resources.h"
#include "runner/run_options.h"
#include "runner/standard_streams.h"

int main(int argc, char** argv) {
  try {
    vornwout::keepFreedMemory();
    vornwout::allowManyOpenFiles();
    vornwout::prepareStandardStreams();
    // A file that grows beyond what the user may write is then an error like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    vornwout::removeFilesOnEndingSignals();
    return vornwout::runApplication(argc, argv);
  } catch (const std::bad_alloc&) {
    std::cerr << "vornwout: error: There is not enough memory.\n";
  } catch (const std::exception& exception) {
    std::cerr << "vornwout: error: " << exception.what() << "\n";
  } catch (...) {
    std::cerr << "vornwout: error: an unknown failure\n";
  }
  return vornwout::kExitUsage;
}
