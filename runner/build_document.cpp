#include "runner/build_document.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <unistd.h>

#include "host/build/build_error.h"
#include "host/build/counted_files.h"
#include "host/build/manifest.h"
#include "host/build/object_builder.h"
#include "host/build/utf8_stream.h"
#include "host/store/document_store.h"
#include "host/store/store_error.h"
#include "platform/strings/localized.h"
#include "runner/password_file.h"
#include "runner/run_options.h"
#include "runner/standard_streams.h"
#include "runner/terminal/diagnostics.h"
#include "runner/terminal/progress.h"
#include "runner/terminal/style.h"

namespace vornwout {
namespace {

/// What is wrong with the command line, one sentence.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = text.find(separator, start);
    parts.push_back(text.substr(start, end - start));
    if (end == std::string::npos) return parts;
    start = end + 1;
  }
}

/// An object on the command line, until all of its options are known.
struct WrittenObject {
  enum class Kind { kTable, kChart, kText };
  Kind kind = Kind::kTable;
  std::string file;
  TableDescription table;
  std::optional<std::string> label;
  std::optional<std::string> subtype;
};

void addDimensions(TableDescription& table, PivotPlace place, const BuildOption& option) {
  for (const std::string& columns : split(option.value, ',')) {
    DimensionDescription& dimension = table.dimensions.emplace_back();
    dimension.place = place;
    dimension.path = {option.name};
    for (const std::string& column : split(columns, '/')) {
      if (column.empty()) throw UsageError(option.name + " has an empty column name.");
      dimension.columns.push_back({column, {option.name}});
    }
  }
}

void addValues(TableDescription& table, const BuildOption& option) {
  for (const std::string& column : split(option.value, ',')) {
    if (column.empty()) throw UsageError(option.name + " has an empty column name.");
    table.values.emplace_back().column = {column, {option.name}};
  }
  table.hasValueDimension = table.values.size() > 1;
}

char mark(const BuildOption& option, std::string_view allowed) {
  if (option.value == "tab" && allowed.find('\t') != std::string_view::npos) return '\t';
  if (option.value.size() == 1 && allowed.find(option.value[0]) != std::string_view::npos) {
    return option.value[0];
  }
  const bool mayBeTab = allowed.find('\t') != std::string_view::npos;
  const std::string problem = localized("^1 cannot be \"^2\".", option.name, option.value);
  throw UsageError(mayBeTab ? problem + " " + localized("It is one of , ; | or the word tab.")
                            : problem);
}

DisplayFormat formatOf(const BuildOption& option) {
  if (const auto format = parseDisplayFormat(option.value)) return *format;
  throw UsageError(
      localized("^1 is no display format; write F8.2, COMMA10, PCT5.1 or DATE11.", option.value));
}

StatisticKind statisticOf(const BuildOption& option) {
  const auto kind = findStatisticKind(option.value);
  if (kind && *kind != StatisticKind::kNone) return *kind;
  throw UsageError(
      localized("^1 is no statistic; there are correlation, count, mean, median, percent, "
                "residual and significance.",
                option.value));
}

using TableOption = std::function<void(TableDescription&, const BuildOption&)>;

/// The options that are about a table, with their help.
struct TableOptionEntry {
  const char* name;
  const char* valueName;
  const char* help;
  TableOption apply;
};

const std::vector<TableOptionEntry>& tableOptions() {
  static const std::vector<TableOptionEntry> entries = {
      {"--rows", "COLUMNS", localizable("Columns whose labels stand in rows; a/b groups b below a"),
       [](auto& t, const auto& o) { addDimensions(t, PivotPlace::kRows, o); }},
      {"--columns", "COLUMNS", localizable("Columns whose labels stand in columns"),
       [](auto& t, const auto& o) { addDimensions(t, PivotPlace::kColumns, o); }},
      {"--layers", "COLUMNS", localizable("Columns whose labels stand in layers"),
       [](auto& t, const auto& o) { addDimensions(t, PivotPlace::kLayers, o); }},
      {"--value", "COLUMNS",
       localizable("Column of the values; several make a dimension \"Statistics\""), addValues},
      {"--title", "TEXT", localizable("Title of the table"),
       [](auto& t, const auto& o) { t.title = o.value; }},
      {"--caption", "TEXT", localizable("Text below the table"),
       [](auto& t, const auto& o) { t.caption = o.value; }},
      {"--format", "FORMAT", localizable("How values are shown: F8.2, COMMA10, PCT5.1, DATE11"),
       [](auto& t, const auto& o) { t.format = formatOf(o); }},
      {"--statistic", "KIND", localizable("What the values are: mean, count, percent and so on"),
       [](auto& t, const auto& o) { t.statistic = statisticOf(o); }},
      {"--separator", "CHARACTER",
       localizable("What separates fields: , ; | or tab (default: as it looks)"),
       [](auto& t, const auto& o) { t.csvOptions.separator = mark(o, ",;|\t"); }},
      {"--decimal", "MARK", localizable("Decimal mark of numbers: . (default) or ,"),
       [](auto& t, const auto& o) { t.marks.decimal = mark(o, ".,"); }},
      {"--thousands", "MARK",
       localizable("What separates thousands: . , ' or a blank (default: nothing)"),
       [](auto& t, const auto& o) { t.marks.thousands = mark(o, ".,' "); }},
      {"--encoding", "NAME", localizable("Character set of the file (default UTF-8)"),
       [](auto& t, const auto& o) {
         if (o.value.empty())
           throw UsageError(localized("--encoding needs the name of an encoding."));
         if (!Utf8Stream::isKnown(o.value)) {
           throw UsageError(localized("There is no encoding ^1.", o.value));
         }
         t.csvOptions.encoding = o.value;
       }},
  };
  return entries;
}

/// What starts an object on the command line.
std::optional<WrittenObject::Kind> objectKind(const std::string& option) {
  if (option == "--table") return WrittenObject::Kind::kTable;
  if (option == "--chart") return WrittenObject::Kind::kChart;
  if (option == "--text") return WrittenObject::Kind::kText;
  return std::nullopt;
}

void applyOption(WrittenObject& object, const BuildOption& option) {
  if (option.name == "--label") {
    object.label = option.value;
    return;
  }
  if (option.name == "--subtype") {
    object.subtype = option.value;
    object.table.subtype = option.value;
    return;
  }
  if (object.kind != WrittenObject::Kind::kTable) {
    throw UsageError(
        localized("^1 is about tables; it stands behind the --table that it is for.", option.name));
  }
  for (const TableOptionEntry& entry : tableOptions()) {
    if (option.name == entry.name) entry.apply(object.table, option);
  }
}

std::vector<WrittenObject> objectsOf(const BuildOptions& options) {
  std::vector<WrittenObject> objects;
  for (const BuildOption& option : options.objects) {
    if (const auto kind = objectKind(option.name)) {
      WrittenObject& object = objects.emplace_back();
      object.kind = *kind;
      object.file = option.value;
      object.table.csv = option.value;
    } else if (objects.empty()) {
      throw UsageError(localized("^1 stands before the object that it is for.", option.name));
    } else {
      applyOption(objects.back(), option);
    }
  }
  for (const WrittenObject& object : objects) {
    if (object.kind != WrittenObject::Kind::kTable) continue;
    if (object.table.values.empty()) {
      throw UsageError(
          localized("--table ^1 needs --value: the column that holds the values.", object.file));
    }
    if (object.table.dimensions.empty()) {
      throw UsageError(localized("--table ^1 needs --rows, --columns or --layers.", object.file));
    }
    if (object.table.marks.decimal == object.table.marks.thousands) {
      throw UsageError(localized("--decimal and --thousands are the same."));
    }
  }
  return objects;
}

DocumentObject builtObject(const WrittenObject& written, BuildFiles& files) {
  DocumentObject object =
      written.kind == WrittenObject::Kind::kTable   ? tableObject(written.table, files)
      : written.kind == WrittenObject::Kind::kChart ? chartObject(written.file, files)
                                                    : markdownObject(written.file, files);
  if (written.label) object.label = *written.label;
  if (written.subtype) object.subtype = *written.subtype;
  return object;
}

void buildDocument(const BuildOptions& options, Document& document) {
  if (options.manifest.empty()) {
    DiskFiles files("", FileReach::kAnywhere);
    CountedFiles counted(files);
    const std::vector<WrittenObject> objects = objectsOf(options);
    for (const WrittenObject& written : objects) counted.expect(written.file);
    for (const WrittenObject& written : objects) document.append(builtObject(written, counted));
    counted.finish();
    return;
  }
  DiskFiles here("", FileReach::kAnywhere);
  const std::string json = readWhole(here, options.manifest, kMaxManifestBytes);
  DiskFiles files(std::filesystem::path(options.manifest).parent_path().string(),
                  options.allowOutside ? FileReach::kAnywhere : FileReach::kFolder);
  buildFromManifest(json, options.manifest, files, document);
}

int report(const BuildError& error) {
  Diagnostic diagnostic;
  diagnostic.file = error.file();
  diagnostic.place = error.place();
  diagnostic.text = error.text();
  diagnostic.help = error.help();
  printDiagnostic(std::cerr, diagnostic,
                  chooseStyle(StyleMode::kAuto, readTerminalFacts(STDERR_FILENO)));
  return error.kind() == BuildError::Kind::kMistake ? kExitErrors : kExitUsage;
}

void checkUsage(const BuildOptions& options) {
  if (options.manifest.empty() && options.objects.empty()) {
    throw UsageError(localized("A manifest or --table, --chart or --text is missing."));
  }
  if (!options.manifest.empty() && !options.objects.empty()) {
    throw UsageError(
        localized("A manifest and ^1 exclude each other.", options.objects.front().name));
  }
  std::string extension = std::filesystem::path(options.output).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  if (extension != ".qxv" && extension != ".qxw") {
    throw UsageError(localized("The document ^1 must end with .qxv or .qxw.", options.output));
  }
}

}  // namespace

void addBuildCommand(CLI::App& application, BuildOptions& options) {
  CLI::App* build = application.add_subcommand(
      "build", localized("Build a document from tables, charts and texts"));
  build->add_option("manifest", options.manifest, localized("JSON file that lists the objects"))
      ->type_name("MANIFEST");
  build->add_option("-o,--output", options.output, localized("Document to write, .qxv or .qxw"))
      ->required()
      ->type_name("FILE");
  build
      ->add_option(
          "--password-file", options.passwordFile,
          localized("Encrypt the document by the password in FILE; - reads standard input"))
      ->type_name("FILE");
  build->add_flag("--allow-outside", options.allowOutside,
                  localized("Let the manifest name files outside of its folder"));
  const auto add = [build](const char* name, const char* valueName, const std::string& help) {
    // Values are taken over below, when the order of all options is known.
    build
        ->add_option(
            name, [](const CLI::results_t&) { return true; }, help)
        ->type_name(valueName)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_size(1)
        ->expected(1, CLI::detail::expected_max_vector_size)
        ->allow_extra_args(false);
  };
  add("--table", "FILE", localized("Add a table from a CSV file; the options below are about it"));
  for (const TableOptionEntry& entry : tableOptions()) {
    add(entry.name, entry.valueName, localized(entry.help));
  }
  add("--chart", "FILE", localized("Add a chart in SVG or PNG"));
  add("--text", "FILE", localized("Add a text from a Markdown file"));
  add("--label", "TEXT", localized("What the outline calls the object"));
  add("--subtype", "TEXT", localized("Subtype of the object"));
  build->footer(
      localized("vornwout build --table sales.csv --rows region/city --columns year --value amount "
                "-o a.qxv"));
  build->callback([build, &options] {
    // The parser keeps each option's values apart, and the order in which options stood.
    std::map<const CLI::Option*, std::size_t> taken;
    for (const CLI::Option* option : build->parse_order()) {
      const std::string name = option->get_lnames().empty() ? "" : "--" + option->get_lnames()[0];
      const bool isAboutObjects =
          objectKind(name).has_value() || name == "--label" || name == "--subtype" ||
          std::any_of(tableOptions().begin(), tableOptions().end(),
                      [&](const TableOptionEntry& entry) { return name == entry.name; });
      if (!isAboutObjects) continue;
      const auto& results = option->results();
      std::size_t& next = taken[option];
      if (next < results.size()) options.objects.push_back({name, results[next++]});
    }
  });
}

int runBuild(const BuildOptions& options) {
  try {
    checkUsage(options);
    SaveOptions save;
    save.type = documentFileType(options.output);
    if (!options.passwordFile.empty()) {
      auto password = readPasswordFile(options.passwordFile, PasswordUse::kNew);
      if (const auto* error = std::get_if<PasswordFileError>(&password)) return refuse(error->text);
      save.password = std::get<std::string>(std::move(password));
    }
    Document document(1, "", false);
    const StandardProgress progress(false);
    buildDocument(options, document);
    const SavedFile saved = saveDocument(document, options.output, save);
    if (!saved.warning.empty()) {
      std::cerr << fmt::format("vornwout: warning: {}\n", saved.warning);
    }
    return kExitSuccess;
  } catch (const UsageError& error) {
    return refuse(error.what());
  } catch (const DescriptionError& error) {
    // Its path is the option that named what is not there.
    const std::string option = error.path().empty() ? "" : error.path().front() + ": ";
    return refuse(fmt::format("{}{}{}{}", option, error.what(), error.help().empty() ? "" : " ",
                              error.help()));
  } catch (const BuildError& error) {
    return report(error);
  } catch (const StoreError& error) {
    if (error.kind() == StoreError::Kind::kLocked) {
      return refuse(localized("The file ^1 is locked by another process.", options.output));
    }
    return refuse(localized("^1 cannot be written: ^2", options.output, error.what()));
  }
}

}  // namespace vornwout
