#include "platform/files/loaded_module.h"

#include <filesystem>
#include <string>

#include <dlfcn.h>

namespace vornwout {
namespace {

std::filesystem::path directoryOfThisLibrary() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&directoryOfThisLibrary), &info) == 0) {
    throw ModuleError("the loader does not say where the platform's library stands");
  }
  return std::filesystem::absolute(info.dli_fname).parent_path();
}

[[noreturn]] void throwLoaderError() {
  const char* const text = dlerror();
  throw ModuleError(text == nullptr ? "the loader does not say why" : text);
}

}  // namespace

void* moduleFunction(const char* file, const char* function) {
  void* const library =
      dlopen((directoryOfThisLibrary() / file).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) throwLoaderError();
  void* const found = dlsym(library, function);
  if (found == nullptr) throwLoaderError();
  return found;
}

}  // namespace vornwout
