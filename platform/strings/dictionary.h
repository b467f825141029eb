// The texts that commands look up by key in the current encoding: month names and a few labels.
//
// Month names are ICU's stand-alone full names in the dictionary's language. They are made once per
// language and encoding, since ICU takes long to make them.
#pragma once

#include <string>
#include <string_view>

namespace vornwout {

class FacSTDictionary {
 public:
  /// A dictionary in the language that the location's last directory is named after
  /// (".../lang/pt_BR/"); in English when that is no known language.
  explicit FacSTDictionary(const std::string& stringTableLocation);

  /// Names the procedure whose texts are meant. All keys known here mean the same in every
  /// procedure.
  void SetProcedure(const std::string& procedure) { procedure_ = procedure; }
  const std::string& procedure() const { return procedure_; }

  /// The text of a key in the current encoding; the key itself when there is none. A month that the
  /// encoding cannot hold in the dictionary's language comes in English.
  std::string LookUp(const std::string& key) const;

 private:
  std::string_view language_;
  std::string procedure_;
};

}  // namespace vornwout
