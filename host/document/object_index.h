// Finds the objects of a document by what they are without going through the tree: one small entry
// for each object, in reading order.
//
// Objects that have type, command and subtype in common are of one Kind, so that a selection
// compares texts once for each kind and then goes through numbers. What a user may change of an
// object (label, visibility, size, content) is not in here. An entry knows its object by the way
// there, not by address: objects move as the lists that hold them grow.
//
// Entry points: update() before looking, forgetFrom() when objects may have come, gone or moved.
// Both cost time in proportion to the objects behind the first place that changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/document/document_object.h"

namespace vornwout {

class ObjectIndex {
 public:
  struct Kind {
    ObjectType type = ObjectType::kUnknown;
    std::string command;
    std::string subtype;
  };

  /// Takes in what stands below `root` behind what is known.
  void update(const DocumentObject& root);
  /// Forgets the objects from `position` of the top level on, with all below them.
  void forgetFrom(std::size_t position);

  /// By number. Kinds stay when their objects are forgotten.
  const std::vector<Kind>& kinds() const { return kinds_; }
  /// The number of the kind of each object, in reading order.
  const std::vector<std::uint32_t>& kindOfObjects() const { return kindOfObjects_; }
  /// Where an object stands.
  struct Place {
    std::uint32_t heading;   ///< number of the heading above it; kRoot below the root
    std::uint32_t position;  ///< among the children there
    int run;                 ///< of its command
  };
  static constexpr std::uint32_t kRoot = UINT32_MAX;
  /// By the number of the object in reading order.
  const Place& placeOf(std::size_t object) const { return places_[object]; }

 private:
  /// Finds a kind by an object, so that nothing is copied for one that is known.
  struct KindOrder {
    using is_transparent = void;
    template <typename A, typename B>
    bool operator()(const A& a, const B& b) const {
      if (a.type != b.type) return a.type < b.type;
      const int order = a.command.compare(b.command);
      return order != 0 ? order < 0 : a.subtype < b.subtype;
    }
  };

  void add(const DocumentObject& object, std::uint32_t heading, std::size_t position);
  std::uint32_t kindOf(const DocumentObject& object);

  std::vector<Kind> kinds_;
  std::map<Kind, std::uint32_t, KindOrder> known_;
  std::vector<std::uint32_t> kindOfObjects_;
  std::vector<Place> places_;
  std::vector<std::size_t> tops_;  ///< number of each object of the top level
};

}  // namespace vornwout
