#include "host/build/table_manifest.h"

#include <string>

#include "host/build/utf8_stream.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

using Json = ManifestReader::Json;

class TableReader {
 public:
  TableReader(ManifestReader& reader, TableDescription& table) : reader_(reader), table_(table) {
    base_ = reader.path().size();
  }

  std::vector<ManifestReader::Member> members() const {
    // Copies of this, which is two references and a number, live as long as the members do.
    const TableReader self = *this;
    ManifestReader& r = reader_;
    TableDescription& t = table_;
    return {
        {"csv", [&r, &t](const Json& v) { t.csv = r.name(v); }, true},
        {"separator", [self](const Json& v) { self.readSeparator(v); }},
        {"encoding", [self](const Json& v) { self.readEncoding(v); }},
        {"decimal",
         [&r, &t](const Json& v) {
           t.marks.decimal = ".,"[r.choice(v, {".", ","})];
         }},
        {"thousands",
         [&r, &t](const Json& v) {
           t.marks.thousands = ".,' "[r.choice(v, {".", ",", "'", " "})];
         }},
        {"rows", [self](const Json& v) { self.readDimensions(v, PivotPlace::kRows); }},
        {"columns", [self](const Json& v) { self.readDimensions(v, PivotPlace::kColumns); }},
        {"layers", [self](const Json& v) { self.readDimensions(v, PivotPlace::kLayers); }},
        {"value", [self](const Json& v) { self.readValue(v); }},
        {"values", [self](const Json& v) { self.readValues(v); }},
        {"valuesLabel", [&r, &t](const Json& v) { t.valuesLabel = r.name(v); }},
        {"valuesIn",
         [&r, &t](const Json& v) {
           t.valuesPlace = static_cast<PivotPlace>(r.choice(v, {"rows", "columns", "layers"}));
         }},
        {"format", [self](const Json& v) { self.table_.format = self.format(v); }},
        {"statistic", [self](const Json& v) { self.table_.statistic = self.statistic(v); }},
        {"text",
         [self](const Json& v) {
           const bool isText = self.reader_.flag(v);
           for (ValueDescription& value : self.table_.values) value.isText |= isText;
         }},
        {"title", [&r, &t](const Json& v) { t.title = r.text(v); }},
        {"titleHidden", [&r, &t](const Json& v) { t.titleHidden = r.flag(v); }},
        {"caption", [&r, &t](const Json& v) { t.caption = r.text(v); }},
        {"footnotes", [self](const Json& v) { self.readFootnotes(v); }},
    };
  }

 private:
  /// The reader's path from the table's object on.
  JsonPath relativePath() const {
    const JsonPath& path = reader_.path();
    return {path.begin() + static_cast<std::ptrdiff_t>(base_), path.end()};
  }

  void readSeparator(const Json& json) const {
    const std::string text = reader_.text(json);
    if (text.size() != 1 || !isCsvSeparator(text[0])) {
      reader_.refuse(localized("Fields are separated by \",\", \";\", \"\\t\" or \"|\"."));
    }
    table_.csvOptions.separator = text[0];
  }

  void readEncoding(const Json& json) const {
    table_.csvOptions.encoding = reader_.name(json);
    if (!Utf8Stream::isKnown(table_.csvOptions.encoding)) {
      reader_.refuse(
          localized("There is no encoding ^1.", table_.csvOptions.encoding),
          localized("UTF-8, UTF-16, windows-1252 and Shift-JIS are some of those there are."));
    }
  }

  DisplayFormat format(const Json& json) const {
    const std::string text = reader_.text(json);
    const auto format = parseDisplayFormat(text);
    if (!format) {
      reader_.refuse(
          localized("\"^1\" is no display format.", text),
          localized("A format is a name, a width and decimals: F8.2, COMMA10, PCT5.1, DATE11."));
    }
    return *format;
  }

  StatisticKind statistic(const Json& json) const {
    return static_cast<StatisticKind>(
        reader_.choice(json, {"correlation", "count", "mean", "median", "percent", "residual",
                              "significance"}) +
        1);
  }

  void readDimensions(const Json& json, PivotPlace place) const {
    reader_.readList(json, [&](const Json& element) {
      DimensionDescription dimension;
      dimension.place = place;
      dimension.path = relativePath();
      if (element.is_object()) {
        readDimensionObject(element, dimension);
      } else {
        readColumns(element, dimension);
      }
      table_.dimensions.push_back(std::move(dimension));
    });
  }

  /// A column, or a list of columns of which each groups the next.
  void readColumns(const Json& json, DimensionDescription& dimension) const {
    const auto add = [&](const Json& name) {
      dimension.columns.push_back({reader_.name(name), relativePath()});
    };
    if (json.is_string()) return add(json);
    if (!json.is_array())
      reader_.refuseType(json, localized("a column, a list of columns or an object"));
    if (json.empty()) reader_.refuse(localized("A dimension needs a column."));
    reader_.readList(json, add);
  }

  void readDimensionObject(const Json& json, DimensionDescription& dimension) const {
    reader_.readMembers(
        json,
        {{"columns", [&](const Json& v) { readColumns(v, dimension); }, true},
         {"label", [&](const Json& v) { dimension.label = reader_.text(v); }},
         {"sort",
          [&](const Json& v) {
            dimension.order =
                static_cast<CategoryOrder>(reader_.choice(v, {"appearance", "label", "number"}));
          }},
         {"hideLabel", [&](const Json& v) { dimension.hideLabel = reader_.flag(v); }},
         {"hideCategories", [&](const Json& v) { dimension.hideCategories = reader_.flag(v); }},
         {"statistics",
          [&](const Json& v) {
            reader_.readEntries(v, [&](const std::string& label, const Json& kind) {
              dimension.statistics.emplace_back(label, statistic(kind));
            });
          }},
         {"formats", [&](const Json& v) {
            reader_.readEntries(v, [&](const std::string& label, const Json& text) {
              dimension.formats.emplace_back(label, format(text));
            });
          }}});
  }

  void readValue(const Json& json) const {
    ValueDescription& value = table_.values.emplace_back();
    value.column = {reader_.name(json), relativePath()};
  }

  void readValues(const Json& json) const {
    if (!table_.values.empty())
      reader_.refuse(localized("\"value\" and \"values\" exclude each other."));
    table_.hasValueDimension = true;
    reader_.readList(json, [&](const Json& element) {
      if (element.is_string()) return readValue(element);
      ValueDescription value;
      reader_.readMembers(element,
                          {{"column",
                            [&](const Json& v) {
                              value.column = {reader_.name(v), relativePath()};
                            },
                            true},
                           {"label", [&](const Json& v) { value.label = reader_.text(v); }},
                           {"statistic", [&](const Json& v) { value.statistic = statistic(v); }},
                           {"format", [&](const Json& v) { value.format = format(v); }},
                           {"text", [&](const Json& v) { value.isText = reader_.flag(v); }}});
      table_.values.push_back(std::move(value));
    });
    if (table_.values.empty()) reader_.refuse(localized("A table needs a column of values."));
    if (table_.values.size() > kMaxCsvColumns)
      reader_.refuse(localized("There are too many columns."));
  }

  void readFootnotes(const Json& json) const {
    reader_.readList(json, [&](const Json& element) {
      FootnoteDescription note;
      note.path = relativePath();
      if (element.is_object()) {
        reader_.readMembers(
            element, {{"text", [&](const Json& v) { note.text = reader_.name(v); }, true},
                      {"at", [&](const Json& v) {
                         reader_.readEntries(v, [&](const std::string& column, const Json& label) {
                           note.at.emplace_back(column, labelText(label));
                         });
                       }}});
      } else {
        note.text = reader_.name(element);
      }
      table_.footnotes.push_back(std::move(note));
    });
  }

  /// A label may be written as the whole number that it looks like.
  std::string labelText(const Json& json) const {
    if (json.is_number_integer()) return json.dump();
    return reader_.text(json);
  }

  ManifestReader& reader_;
  TableDescription& table_;
  std::size_t base_ = 0;
};

}  // namespace

std::vector<ManifestReader::Member> tableMembers(ManifestReader& reader, TableDescription& table) {
  return TableReader(reader, table).members();
}

void finishTable(const ManifestReader& reader, TableDescription& table) {
  if (table.values.empty()) {
    reader.refuse(localized("The table has no values."),
                  localized("\"value\" names the column that holds them."));
  }
  if (table.dimensions.empty()) {
    reader.refuse(
        localized("The table has no dimensions."),
        localized("\"rows\", \"columns\" and \"layers\" list the columns of its labels."));
  }
  if (table.marks.decimal == table.marks.thousands) {
    reader.refuse(localized("Decimal mark and thousands separator are the same."));
  }
}

}  // namespace vornwout
