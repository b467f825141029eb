// A table of comma-separated values as the benchmarks of building read it: every row is a cell with
// three label columns, in the order in which a program would write it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "host/build/table_builder.h"

namespace vornwout {

/// Rows of about 40 bytes, no cell twice.
inline const std::string& csvOfMegabytes(std::int64_t megabytes) {
  static std::map<std::int64_t, std::string> texts;
  std::string& text = texts[megabytes];
  if (!text.empty()) return text;
  const auto size = static_cast<std::size_t>(megabytes) << 20;
  text = "region,product,month,amount\n";
  for (std::size_t i = 0; text.size() < size; ++i) {
    text += "Region " + std::to_string(i / 120 % 500) + ",Product " + std::to_string(i / 60000) +
            ",2017-" + std::to_string(100 + i % 120) + "," + std::to_string(i % 9973) + "." +
            std::to_string(10 + i % 90) + "\n";
  }
  return text;
}

/// The table that is made of it.
inline TableDescription describedCsv() {
  TableDescription description;
  description.csv = "bench.csv";
  const auto add = [&](PivotPlace place, const char* column) {
    DimensionDescription& dimension = description.dimensions.emplace_back();
    dimension.place = place;
    dimension.columns.push_back({column, {}});
  };
  add(PivotPlace::kRows, "product");
  add(PivotPlace::kRows, "region");
  add(PivotPlace::kColumns, "month");
  description.values.emplace_back().column.name = "amount";
  description.format = parseDisplayFormat("F8.2");
  return description;
}

/// One text as every file, without a copy.
class OneFile : public BuildFiles {
 public:
  explicit OneFile(const std::string& text) : text_(text) {}
  std::unique_ptr<ByteSource> open(const std::string&) override {
    return std::make_unique<View>(text_);
  }
  std::uint64_t sizeOf(const std::string&) override { return text_.size(); }

 private:
  class View : public ByteSource {
   public:
    explicit View(const std::string& text) : text_(text) {}
    std::size_t read(char* buffer, std::size_t size) override {
      const std::size_t count = text_.copy(buffer, size, position_);
      position_ += count;
      return count;
    }
    void rewind() override { position_ = 0; }

   private:
    const std::string& text_;
    std::size_t position_ = 0;
  };
  const std::string& text_;
};

}  // namespace vornwout
