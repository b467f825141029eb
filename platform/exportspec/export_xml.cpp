#include "platform/exportspec/export_xml.h"

#include <charconv>
#include <cstddef>
#include <span>
#include <type_traits>

#include "platform/exportspec/schema_reader.h"
#include "platform/text/encoding.h"
#include "platform/text/xml_text.h"

namespace vornwout {
namespace {

constexpr const char* kRoot = "outputExport";
constexpr const char* kExclude = "exclude";
constexpr const char* kType = "type";
constexpr const char* kLink = "link";
constexpr const char* kFirst = "first";
constexpr const char* kSecond = "second";
constexpr const char* kUnit = "Unit";

template <typename Enumeration>
std::string_view keywordOf(Enumeration value) {
  return Keywords<Enumeration>::kNames.at(static_cast<std::size_t>(value));
}

/// Appends what was set as attributes.
class SettingWriter {
 public:
  explicit SettingWriter(std::string& xml) : xml_(xml) {}

  template <typename Value>
  void operator()(std::string_view name, const std::optional<Value>& value) {
    if (value) append(name, *value);
  }

 private:
  void append(std::string_view name, const std::string& value) {
    if (currentEncoding().isUtf8()) {
      appendXmlAttribute(xml_, name, value);
    } else {
      appendXmlAttribute(xml_, name, currentToUtf8(value));
    }
  }
  void append(std::string_view name, bool value) {
    appendXmlAttribute(xml_, name, value ? "true" : "false");
  }
  void append(std::string_view name, const SourceNumber& value) { append(name, value.text); }
  template <typename Unit>
  void append(std::string_view name, const Measure<Unit>& value) {
    append(name, value.text);
    append(std::string(name) + kUnit, value.unit);
  }
  template <typename Enumeration>
  requires std::is_enum_v<Enumeration>
  void append(std::string_view name, Enumeration value) {
    appendXmlAttribute(xml_, name, keywordOf(value));
  }

  std::string& xml_;
};

void appendItem(std::string& xml, const ExportReportSpec::Item& item) {
  SettingWriter writer(xml);
  xml += '<';
  if (const auto* link = std::get_if<ExportReportSpec::Link>(&item)) {
    xml += kLink;
    writer(kFirst, std::optional(link->first));
    writer(kSecond, std::optional(link->second));
  } else {
    xml += kExclude;
    writer(kType, std::optional(std::get<ExportReportSpec::Excluded>(item)));
  }
  xml += "/>";
}

/// Appends the element of each sub-specification that is present.
class OptionWriter {
 public:
  explicit OptionWriter(std::string& xml) : xml_(xml) {}

  template <typename Option>
  void operator()(std::string_view name, const Option& option) {
    if (!option.isPresent()) return;
    xml_ += '<';
    xml_ += name;
    Option::visit(option, SettingWriter(xml_));
    if constexpr (std::is_same_v<Option, ExportReportSpec>) {
      if (!option.items().empty()) {
        xml_ += '>';
        for (const ExportReportSpec::Item& item : option.items()) appendItem(xml_, item);
        xml_ += "</";
        xml_ += name;
        xml_ += '>';
        return;
      }
    }
    xml_ += "/>";
  }

 private:
  std::string& xml_;
};

/// Reads values that the schema has found valid.
class SettingReader {
 public:
  explicit SettingReader(std::span<const XmlAttribute> attributes) : attributes_(attributes) {}

  template <typename Value>
  void operator()(std::string_view name, std::optional<Value>& value) {
    const std::string* const text = find(name);
    if (text != nullptr) read(name, *text, value.emplace());
  }

  const std::string* find(std::string_view name) const {
    for (const XmlAttribute& attribute : attributes_) {
      if (attribute.name == name) return &attribute.value;
    }
    return nullptr;
  }

 private:
  static void read(std::string_view, const std::string& text, std::string& value) { value = text; }
  static void read(std::string_view, const std::string& text, bool& value) {
    value = text == "true";
  }
  static void read(std::string_view name, const std::string& text, SourceNumber& value) {
    value = {number(name, text), text};
  }
  template <typename Unit>
  void read(std::string_view name, const std::string& text, Measure<Unit>& value) const {
    value.value = number(name, text);
    value.text = text;
    const std::string unitName = std::string(name) + kUnit;
    const std::string* const unit = find(unitName);
    // A schema cannot say that one attribute wants another.
    if (unit == nullptr) throw XmlError(std::string(name) + " has no " + unitName);
    read(unitName, *unit, value.unit);
  }
  template <typename Enumeration>
  requires std::is_enum_v<Enumeration>
  static void read(std::string_view name, const std::string& text, Enumeration& value) {
    const auto& names = Keywords<Enumeration>::kNames;
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (text == names[i]) {
        value = static_cast<Enumeration>(i);
        return;
      }
    }
    throw XmlError(std::string(name) + " has an unknown value");
  }

  /// A number as a command has it: a sign may stand before it, its exponent may have a D.
  static double number(std::string_view name, std::string text) {
    for (char& c : text) {
      if (c == 'd' || c == 'D') c = 'e';
    }
    const char* const first = text.data() + (text.starts_with('+') ? 1 : 0);
    const char* const last = text.data() + text.size();
    double value = 0;
    const auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc() || end != last) {
      throw XmlError(std::string(name) + " is not a number that can be used");
    }
    return value;
  }

  std::span<const XmlAttribute> attributes_;
};

class OptionReader {
 public:
  OptionReader(std::string_view element, std::span<const XmlAttribute> attributes)
      : element_(element), settings_(attributes) {}

  template <typename Option>
  void operator()(std::string_view name, Option& option) {
    if (name != element_) return;
    Option::visit(option, settings_);
    option.setOptionPresent(true);
  }

 private:
  std::string_view element_;
  SettingReader settings_;
};

void readExcluded(ExportReportSpec& report, const SettingReader& settings) {
  constexpr std::array kExcluders{&ExportReportSpec::excludeTexts, &ExportReportSpec::excludeLogs,
                                  &ExportReportSpec::excludeNotes,
                                  &ExportReportSpec::excludeWarnings};
  const auto& names = Keywords<ExportReportSpec::Excluded>::kNames;
  const std::string* const type = settings.find(kType);
  for (std::size_t i = 0; type != nullptr && i < names.size(); ++i) {
    if (*type == names[i]) (report.*kExcluders[i])();
  }
}

}  // namespace

void ExportXML::convertToXML(const ExportSpec& spec, std::string& xml) const {
  xml = '<';
  xml += kRoot;
  const std::size_t start = xml.size();
  xml += '>';
  ExportSpec::visit(spec, OptionWriter(xml));
  if (xml.size() == start + 1) {
    xml.back() = '/';
    xml += '>';
    return;
  }
  xml += "</";
  xml += kRoot;
  xml += '>';
}

ExportSpec readExportXml(std::string_view xml) {
  ExportSpec spec;
  readValidXml(XmlSchema::kExportDocument, xml,
               [&](std::string_view element, std::span<const XmlAttribute> attributes) {
                 const SettingReader settings(attributes);
                 if (element == kExclude) {
                   readExcluded(spec.report, settings);
                 } else if (element == kLink) {
                   const std::string* const first = settings.find(kFirst);
                   const std::string* const second = settings.find(kSecond);
                   if (first != nullptr && second != nullptr) spec.report.addURL(*first, *second);
                 } else {
                   ExportSpec::visit(spec, OptionReader(element, attributes));
                 }
               });
  return spec;
}

}  // namespace vornwout
