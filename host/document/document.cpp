#include "host/document/document.h"

#include <limits>
#include <utility>

namespace vornwout {

Document::Document(int number, std::string name, bool minimized)
    : number_(number), name_(std::move(name)), minimized_(minimized) {
  root_.type = ObjectType::kHeading;
}

void Document::setContents(DocumentObject root, std::map<std::string, int> runs) {
  index_.forgetFrom(0);
  root_ = std::move(root);
  runs_ = std::move(runs);
}

void Document::setName(std::string name) { name_ = std::move(name); }

int Document::beginRun(const std::string& command) {
  int& count = runs_[command];
  if (count < std::numeric_limits<int>::max()) ++count;
  return count;
}

std::size_t Document::append(DocumentObject object) {
  root_.children.push_back(std::move(object));
  return root_.children.size() - 1;
}

}  // namespace vornwout
