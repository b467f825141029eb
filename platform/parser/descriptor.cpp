#include "platform/parser/descriptor.h"

#include <algorithm>

#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

template <typename Descriptor>
const Descriptor* findByName(const std::vector<Descriptor>& descriptors, std::string_view name) {
  for (const Descriptor& descriptor : descriptors) {
    if (AreStringsEqualCase(descriptor.name(), name)) return &descriptor;
  }
  return nullptr;
}

/// Appends, or replaces the descriptor of the same name in its place; returns the index.
template <typename Descriptor>
std::size_t declare(std::vector<Descriptor>& descriptors, Descriptor added) {
  for (std::size_t i = 0; i < descriptors.size(); ++i) {
    if (AreStringsEqualCase(descriptors[i].name(), added.name())) {
      descriptors[i] = std::move(added);
      return i;
    }
  }
  descriptors.push_back(std::move(added));
  return descriptors.size() - 1;
}

}  // namespace

const ParamDescriptor* ParamDescriptor::findQualifier(std::string_view name) const {
  return findByName(qualifiers_, name);
}

bool ParamDescriptor::withinBounds(double value) const {
  const bool above =
      !lower_ || value > lower_->value || (lower_->inclusive && value == lower_->value);
  const bool below =
      !upper_ || value < upper_->value || (upper_->inclusive && value == upper_->value);
  return above && below && value == value;
}

void SubComDescriptor::addParamDesc(ParamDescriptor param) { declare(params_, std::move(param)); }

const ParamDescriptor* SubComDescriptor::findParam(std::string_view name) const {
  return findByName(params_, name);
}

void GroupComDescriptor::addSubComDesc(SubComDescriptor subcommand, bool leads) {
  const std::size_t index = declare(subcommands_, std::move(subcommand));
  if (leads) leader_ = index;
}

const SubComDescriptor* GroupComDescriptor::leader() const {
  if (subcommands_.empty()) return nullptr;
  return &subcommands_[leader_.value_or(0)];
}

const SubComDescriptor* GroupComDescriptor::findSubCom(std::string_view name) const {
  return findByName(subcommands_, name);
}

void CommandDescriptor::addSubComDesc(SubComDescriptor subcommand) {
  declare(subcommands_, std::move(subcommand));
}

const SubComDescriptor* CommandDescriptor::findSubCom(std::string_view name) const {
  return findByName(subcommands_, name);
}

}  // namespace vornwout
