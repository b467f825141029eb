// Limits of exporting: a large table in each format against a plain writer of its cells, and the
// memory that it takes besides the document.
#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include "bench/limits.h"
#include "bench/peak_memory.h"
#include "host/export/export_files.h"
#include "host/export/export_scope.h"
#include "host/export/html/html_exporter.h"
#include "host/export/html/html_writer.h"
#include "host/export/text/text_exporter.h"
#include "platform/pivot/cell_text.h"

namespace vornwout {
namespace {

constexpr std::size_t kBuffer = 64 * 1024;

PivotDimension dimension(const char* name, PivotPlace place, int categories) {
  PivotDimension dimension;
  dimension.label.text = name;
  dimension.position = PivotPosition{static_cast<int>(place), 1, false, false};
  for (int i = 0; i < categories; ++i) {
    PivotCategory& category = dimension.categories.emplace_back();
    category.label.text = fmt::format("{} {}", name, i + 1);
    category.leaf = dimension.leafCount++;
  }
  return dimension;
}

/// A square table of numbers of many lengths.
std::shared_ptr<const PivotTable> makeTable(int side) {
  auto table = std::make_shared<PivotTable>();
  table->title.text = "Numbers";
  table->dimensions.push_back(dimension("Row", PivotPlace::kRows, side));
  table->dimensions.push_back(dimension("Column", PivotPlace::kColumns, side));
  table->cells.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      PivotCell& cell = table->cells.emplace_back();
      cell.at = {row, column};
      cell.value.kind = CellText::Kind::kNumber;
      cell.value.number = row * 7919 % 1000 + column / 8.0;
    }
  }
  return table;
}

/// A folder for what is written, gone at the end.
class Folder {
 public:
  Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vornwout-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for the exports");
    path_ = pattern;
  }
  ~Folder() {
    std::error_code ignored;  // a folder that stays behind breaks no limit
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string file(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// A document of one table, as an export sees it.
class Subject {
 public:
  Subject(const Folder& folder, int side)
      : folder_(folder), table_(makeTable(side)), document_(1, "", false) {
    DocumentObject object;
    object.type = ObjectType::kTable;
    object.label = "Numbers";
    object.content = ObjectContent(table_);
    document_.append(std::move(object));
    scope_ = scopeOf(document_, {});
  }

  /// Everything but the flush to the disk, which takes what the disk takes.
  void exportText() const {
    ExportSpec spec;
    spec.text.setOptionPresent(true);
    spec.text.setDocumentFile(folder_.file("table.txt"));
    ExportFiles files;
    ExportResponse response;
    TextExporter().run({document_, scope_, spec}, files, response);
  }
  void exportHtml() const {
    ExportSpec spec;
    spec.html.setOptionPresent(true);
    spec.html.setDocumentFile(folder_.file("table.html"));
    ExportFiles files;
    ExportResponse response;
    HtmlExporter().run({document_, scope_, spec}, files, response);
  }

  /// The yardsticks: each formats every cell and writes it, buffered, with something between them.
  void writePlainText() const {
    writePlain([row = 0](std::string& buffer, const PivotCell& cell) mutable {
      buffer += cell.at[0] == row ? '|' : '\n';
      row = cell.at[0];
      buffer += renderText(cell.value);
    });
  }
  void writePlainHtml() const {
    writePlain([row = 0](std::string& buffer, const PivotCell& cell) mutable {
      if (cell.at[0] != row) buffer += "</tr>\n<tr>";
      row = cell.at[0];
      buffer += "<td>";
      buffer += escapedHtml(renderText(cell.value));
      buffer += "</td>";
    });
  }

 private:
  template <typename Append>
  void writePlain(Append append) const {
    std::ofstream file(folder_.file("plain"), std::ios::binary);
    std::string buffer;
    for (const PivotCell& cell : table_->cells) {
      append(buffer, cell);
      if (buffer.size() < kBuffer) continue;
      file.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
      buffer.clear();
    }
    file.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  }

  const Folder& folder_;
  std::shared_ptr<const PivotTable> table_;
  Document document_;
  ExportScope scope_;
};

/// A format, its yardstick, and what is promised of it.
struct Format {
  const char* name;
  void (Subject::*exportIt)() const;
  void (Subject::*writePlain)() const;
  double limit;
};
constexpr std::array kFormats = {
    Format{"TEXT", &Subject::exportText, &Subject::writePlainText, 1.8},
    Format{"HTML", &Subject::exportHtml, &Subject::writePlainHtml, 2.0},
};

void memory(const Effort& effort, const Folder& folder, std::vector<LimitResult>& results) {
  const int most = effort.isSmoke ? 100 : 1000;
  for (const Format& format : kFormats) {
    for (const int side : {most / 10, most}) {
      const Subject subject(folder, side);
      LimitResult result;
      result.name = fmt::format("memory of {} of {} x {} cells, MB", format.name, side, side);
      result.measured = peakBytesOf([&] { (subject.*format.exportIt)(); }) / (1 << 20);
      // Buffers, and what waits in memory before a scratch file takes the rest.
      result.limit = 8;
      result.isPromised = side == most;
      results.push_back(result);
    }
  }
}

void growth(const Effort& effort, const Folder& folder, std::vector<LimitResult>& results) {
  const int most = effort.isSmoke ? 100 : 1000;
  for (const int side : {most / 10, most * 32 / 100, most}) {
    const Subject subject(folder, side);
    for (const Format& format : kFormats) {
      const Medians medians = mediansInTurn(
          effort, [&] { (subject.*format.exportIt)(); }, [&] { (subject.*format.writePlain)(); });
      LimitResult result;
      result.name = fmt::format("{} of {} x {} cells : a plain writer", format.name, side, side);
      result.measured = medians.first / medians.second;
      result.limit = format.limit;
      result.isPromised = side == most;
      result.detail =
          fmt::format("{:.3f} ms against {:.3f} ms", medians.first * 1e3, medians.second * 1e3);
      results.push_back(result);
    }
  }
}

}  // namespace

std::vector<LimitResult> exportLimits(const Effort& effort) {
  const Folder folder;
  std::vector<LimitResult> results;
  // Memory first: what is freed later is used again and counts no more.
  memory(effort, folder, results);
  growth(effort, folder, results);
  return results;
}

}  // namespace vornwout
