// STB PRINT: lists the keys of the string-table bundles with their texts and their help texts.
//
// Entry point: stbprint_(). Two tables per bundle, keys in rows and languages in columns. It asks
// no host, and the parser alone reports: what cannot be read is a column without rows. So it does
// not run the frame of the other commands, of which it needs only the procedure and the parser, and
// leaves the log alone.
#include <string>
#include <string_view>
#include <vector>

#include "libvornwout/frame/constants.h"
#include "libvornwout/stbprint/bundle_names.h"
#include "libvornwout/stbprint/bundle_path.h"
#include "libvornwout/stbprint/stb_print_data.h"
#include "platform/files/path_factory.h"
#include "platform/parser/token_sequence.h"
#include "platform/parser/universal_parser.h"
#include "platform/pivot/bp_procedure.h"
#include "platform/strings/language.h"
#include "platform/strings/localized.h"
#include "platform/strings/string_table.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr const char* kCommand = "STB PRINT";
constexpr const char* kTitle = "Stb Print";
constexpr int kProcedureNumber = 2;

constexpr int kPlaceColumns = 1;
constexpr int kMinTextWidth = 150;  // points

BpPivotTable makeTable(BpProcedure& procedure, const std::string& name) {
  const BpString title(name, false);
  return procedure.PivotTable(title, title, true);
}

BpDimension makeDimension(BpPivotTable& table, const char* label, int place) {
  BpDimension dimension = table.Dimension(BpString(label, true), kSortAsMade);
  dimension.Position(place, kFirstInPlace, false, false);
  return dimension;
}

/// The tables of one bundle: its texts, and its help texts.
class BundleTables {
 public:
  BundleTables(BpProcedure& procedure, std::string name)
      : name_(std::move(name)),
        texts_(makeTable(procedure, name_)),
        helps_(makeTable(procedure, name_ + " Help")),
        textKeys_(makeKeys(texts_)),
        helpKeys_(makeKeys(helps_)) {
    // Help texts are long enough to make room for themselves.
    texts_.MinDataColumnWidth(kMinTextWidth);
  }

  void addLanguage(const std::string& directory, std::string_view language) {
    BpDimension textLanguages = makeDimension(texts_, localizable("Language"), kPlaceColumns);
    BpDimension helpLanguages = makeDimension(helps_, localizable("Language"), kPlaceColumns);
    const BpString label(language, false);
    textLanguages.Category(label);
    helpLanguages.Category(label);

    std::vector<keyValueGloss> entries;
    FacSTStringTable().GetKeysAndValues(bundlePath(directory, language, name_), entries);
    for (const keyValueGloss& entry : entries) {
      const BpString key(entry.key, false);
      const std::string& text = entry.value.empty() ? entry.key : entry.value;
      textKeys_.Category(key).Cell(BpString(text, false));
      if (!entry.gloss.empty()) helpKeys_.Category(key).Cell(BpString(entry.gloss, false));
    }
  }

 private:
  static BpDimension makeKeys(BpPivotTable& table) {
    return makeDimension(table, localizable("Key"), kPlaceRows);
  }

  std::string name_;
  BpPivotTable texts_;
  BpPivotTable helps_;
  BpDimension textKeys_;
  BpDimension helpKeys_;
};

void printBundle(BpProcedure& procedure, const std::string& name, const std::string& directory,
                 const std::string& language) {
  BundleTables tables(procedure, name);
  if (!language.empty()) return tables.addLanguage(directory, language);
  for (const std::string_view code : kLanguages) tables.addLanguage(directory, code);
}

void stbPrint() {
  BpProcedure procedure(kTitle, kProcedureNumber);
  CommandSpec spec;
  CommandDescriptor command(kCommand, kTitle);
  STBPrintGlobalData::declare(command);
  VORN_TokenSequence tokens(true);
  UniversalParser parser(tokens, spec, command);
  if (parser.getCommandSpecifications() != 0) return;

  const STBPrintGlobalData data = STBPrintGlobalData::read(spec);
  const std::string directory = bundleDirectory(
      PathFactory::getPathInstance(PathFactory::kInstallation).getStringTableLocation());
  if (!data.procedure.empty()) {
    return printBundle(procedure, data.procedure, directory, data.language);
  }
  for (const std::string_view name : kBundleNames) {
    printBundle(procedure, std::string(name), directory, data.language);
  }
}

}  // namespace
}  // namespace vornwout

void stbprint_() { vornwout::stbPrint(); }
