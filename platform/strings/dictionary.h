// The texts that commands look up by key in the current encoding: month names and a few labels.
//
// They come from the string table of the dictionary's language, which is read when the first key is
// looked up, once per encoding for the whole process. What the table lacks is built in: the labels
// in English, the months as ICU's stand-alone full names in the language.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace vornwout {

/// Used on one thread, as commands are; different dictionaries may be used on different ones.
class FacSTDictionary {
 public:
  /// A dictionary in the language that the location's last directory is named after
  /// (".../lang/pt_BR/"); in English when that is no known language, without any table then.
  explicit FacSTDictionary(const std::string& stringTableLocation);

  /// Names the procedure whose texts are meant. All keys known here mean the same in every
  /// procedure.
  void SetProcedure(const std::string& procedure) { procedure_ = procedure; }
  const std::string& procedure() const { return procedure_; }

  /// The text of a key in the current encoding; the key itself when there is none. A text that the
  /// encoding cannot hold comes in English, and with one month all of them.
  std::string LookUp(const std::string& key) const;

 private:
  struct Texts;
  const Texts& texts() const;

  std::string_view language_;
  std::string path_;  ///< of the string table; empty when there is none
  std::string procedure_;
  mutable std::shared_ptr<const Texts> texts_;  ///< those of the encoding last used
};

}  // namespace vornwout
