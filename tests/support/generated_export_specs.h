// Export specifications made at random, of every setting that there is.
#pragma once

#include <random>
#include <string>
#include <type_traits>

#include "platform/exportspec/export_spec.h"

namespace vornwout {

class ExportSpecGenerator {
 public:
  explicit ExportSpecGenerator(unsigned int seed) : random_(seed) {}

  ExportSpec spec() {
    ExportSpec spec;
    ExportSpec::visit(spec, [&](std::string_view, auto& option) {
      using Option = std::remove_reference_t<decltype(option)>;
      if (!chance()) return;
      Option::visit(option, [&](std::string_view, auto& setting) {
        if (chance()) fill(setting.emplace());
      });
      option.setOptionPresent(true);
      if constexpr (std::is_same_v<Option, ExportReportSpec>) fillItems(option);
    });
    return spec;
  }

  bool chance() { return upTo(1) == 0; }
  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

  /// Anything that XML can hold.
  std::string text() {
    static const char* const pieces[] = {"a",
                                         "Z9",
                                         " ",
                                         "  ",
                                         "&",
                                         "<",
                                         ">",
                                         "\"",
                                         "'",
                                         "\t",
                                         "\n",
                                         "\r\n",
                                         "\r",
                                         "]]>",
                                         "&amp;",
                                         "/",
                                         "\\",
                                         "\xC3\xA4",
                                         "\xE6\x97\xA5",
                                         "\xF0\x9F\x93\x88",
                                         "\xE2\x80\x8B",
                                         "-->",
                                         "\x7F",
                                         "\xC2\x85"};
    std::string text;
    for (int i = upTo(6); i > 0; --i) text += pieces[upTo(std::size(pieces) - 1)];
    return text;
  }

 private:
  void fill(std::string& value) { value = text(); }
  void fill(bool& value) { value = chance(); }
  void fill(SourceNumber& value) {
    value.text = number();
    value.value = valueOf(value.text);
  }
  template <typename Unit>
  void fill(Measure<Unit>& value) {
    fill(value.unit);
    value.text = number();
    value.value = valueOf(value.text);
  }
  template <typename Enumeration>
  requires std::is_enum_v<Enumeration>
  void fill(Enumeration& value) {
    value = static_cast<Enumeration>(upTo(std::size(Keywords<Enumeration>::kNames) - 1));
  }

  void fillItems(ExportReportSpec& report) {
    for (int i = upTo(4); i > 0; --i) {
      switch (upTo(4)) {
        case 0:
          report.excludeTexts();
          break;
        case 1:
          report.excludeLogs();
          break;
        case 2:
          report.excludeNotes();
          break;
        case 3:
          report.excludeWarnings();
          break;
        default:
          report.addURL(text(), text());
      }
    }
  }

  std::string number() {
    static const char* const numbers[] = {"0",  "200", "8.5", ".5",  "5.",    "+3",
                                          "-1", "1e2", "1E2", "2D1", "25.40", "1e-3"};
    return numbers[upTo(std::size(numbers) - 1)];
  }
  static double valueOf(std::string text) {
    for (char& c : text) {
      if (c == 'D') c = 'E';
    }
    return std::stod(text);
  }

  std::mt19937 random_;
};

/// Whether two specifications have the same settings.
inline bool sameSpec(const ExportSpec& a, const ExportSpec& b) {
  const auto drawn = [](const ExportSpec& spec) {
    std::vector<std::string> lines;
    ExportSpec::visit(spec, [&](std::string_view name, const auto& option) {
      using Option = std::remove_cvref_t<decltype(option)>;
      lines.emplace_back(std::string(name) + (option.isPresent() ? " is present" : ""));
      if (!option.isPresent()) return;
      Option::visit(option, [&](std::string_view setting, const auto& value) {
        if (!value) return;
        using Value = std::remove_cvref_t<decltype(*value)>;
        std::string line(setting);
        if constexpr (std::is_same_v<Value, std::string>) {
          line += "=" + *value;
        } else if constexpr (std::is_same_v<Value, bool> || std::is_enum_v<Value>) {
          line += "=" + std::to_string(static_cast<int>(*value));
        } else {
          line += "=" + value->text + "," + std::to_string(value->value);
          if constexpr (!std::is_same_v<Value, SourceNumber>) {
            line += "," + std::to_string(static_cast<int>(value->unit));
          }
        }
        lines.push_back(line);
      });
      if constexpr (std::is_same_v<Option, ExportReportSpec>) {
        for (const ExportReportSpec::Item& item : option.items()) {
          const auto* const link = std::get_if<ExportReportSpec::Link>(&item);
          lines.push_back(link != nullptr ? link->first + "," + link->second
                                          : std::to_string(static_cast<int>(
                                                std::get<ExportReportSpec::Excluded>(item))));
        }
      }
    });
    return lines;
  };
  return drawn(a) == drawn(b);
}

}  // namespace vornwout
