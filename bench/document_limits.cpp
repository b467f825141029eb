// Limits of saving and opening documents, against zlib, pugixml and libzip on the same bytes.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <pugixml.hpp>
#include <zip.h>
#include <zlib.h>

#include "bench/limits.h"
#include "bench/peak_memory.h"
#include "host/store/container_reader.h"
#include "host/store/container_writer.h"
#include "host/store/document_store.h"

namespace vornwout {
namespace {

/// Files of the measurement, gone with it.
class Folder {
 public:
  Folder() {
    std::string pattern = "/tmp/vornwout-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for documents");
    path_ = pattern;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

CellText text(std::string value) {
  CellText cell;
  cell.text = std::move(value);
  return cell;
}

PivotDimension dimension(const char* label, PivotPlace place, int categories) {
  PivotDimension made;
  made.label = text(label);
  made.position = PivotPosition{static_cast<int>(place), 1, false, false};
  for (int i = 0; i < categories; ++i) {
    PivotCategory& category = made.categories.emplace_back();
    category.label = text(fmt::format("{} {}", label, i));
    category.leaf = made.leafCount++;
  }
  return made;
}

/// A table of `rows` times ten numbers, as a survey has them.
TableContent makeTable(int rows, unsigned int seed) {
  auto table = std::make_shared<PivotTable>();
  table->title = text("Sales by region and month");
  table->dimensions = {dimension("Region", PivotPlace::kRows, rows),
                       dimension("Month", PivotPlace::kColumns, 10)};
  BpFormatSpec format;
  format.display = parseDisplayFormat("F10.2");
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < 10; ++column) {
      PivotCell& cell = table->cells.emplace_back();
      cell.at = {row, column};
      cell.value.kind = CellText::Kind::kNumber;
      seed = seed * 1664525 + 1013904223;
      cell.value.number = static_cast<double>(seed >> 8) / 100;
      cell.value.format = format;
    }
  }
  return table;
}

std::unique_ptr<Document> makeDocument(int tables, int rows) {
  auto document = std::make_unique<Document>(1, "", false);
  for (int i = 0; i < tables; ++i) {
    DocumentObject object;
    object.type = ObjectType::kTable;
    object.label = fmt::format("Table {}", i);
    object.command = "BUILD";
    object.run = i + 1;
    object.content = ObjectContent(makeTable(rows, static_cast<unsigned int>(i)));
    document->append(std::move(object));
  }
  return document;
}

/// A document that lies in no file, whatever was saved before.
void forgetFiles(DocumentObject& object) {
  object.content.setPlace({});
  for (DocumentObject& child : object.children) forgetFiles(child);
}

/// The bytes of all members.
std::vector<std::string> membersOf(const std::string& path) {
  ContainerReader reader(path);
  std::vector<std::string> members;
  for (const ContainerMember& member : reader.members())
    members.push_back(reader.read(member.name));
  return members;
}

std::string deflated(const std::string& bytes) {
  z_stream stream{};
  // Raw deflate, as a container holds it.
  deflateInit2(&stream, 1, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  if (deflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::runtime_error("deflate failed");
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

std::string inflated(const std::string& bytes, std::size_t size) {
  z_stream stream{};
  inflateInit2(&stream, -MAX_WBITS);
  std::string out(size, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  if (inflate(&stream, Z_FINISH) != Z_STREAM_END) throw std::runtime_error("inflate failed");
  inflateEnd(&stream);
  return out;
}

LimitResult ratio(std::string name, double limit, const Medians& medians) {
  LimitResult result;
  result.name = std::move(name);
  result.measured = medians.first / medians.second;
  result.limit = limit;
  result.detail =
      fmt::format("{:.1f} ms against {:.1f} ms", medians.first * 1e3, medians.second * 1e3);
  return result;
}

void savingAndReading(const Effort& effort, int tables, const Folder& folder,
                      std::vector<LimitResult>& results) {
  const std::string path = folder / "document.qxv";
  const auto document = makeDocument(tables, 400);
  saveDocument(*document, path, {});
  const std::vector<std::string> members = membersOf(path);
  std::size_t size = 0;
  for (const std::string& member : members) size += member.size();
  const std::string what = fmt::format("{} MB of parts", size / 1'000'000);
  const auto compressAll = [&] {
    for (const std::string& member : members) deflated(member);
  };
  for (const auto& [threads, limit] : {std::pair{1, 1.25}, std::pair{2, 0.7}}) {
    SaveOptions options;
    options.threads = threads;
    results.push_back(ratio(fmt::format("saving {}, {} threads : zlib level 1", what, threads),
                            limit,
                            mediansInTurn(
                                effort,
                                [&] {
                                  forgetFiles(document->editRoot());
                                  saveDocument(*document, path, options);
                                },
                                compressAll)));
  }
  std::vector<std::string> compressed;
  for (const std::string& member : members) compressed.push_back(deflated(member));
  const auto readAll = [&] {
    const auto opened = openDocument(path);
    for (const DocumentObject& object : opened->root().children) {
      object.content.get();
      object.content.unload();
    }
  };
  double parsing = 0;
  const auto inflateAndParse = [&] {
    double inflating = 0;
    parsing = 0;
    for (std::size_t i = 0; i < members.size(); ++i) {
      std::string bytes;
      inflating += secondsOf([&] { bytes = inflated(compressed[i], members[i].size()); });
      parsing += secondsOf([&] {
        pugi::xml_document xml;
        xml.load_buffer_inplace(bytes.data(), bytes.size());
      });
    }
    return 1.4 * inflating + parsing;
  };
  std::vector<double> ours;
  std::vector<double> allowed;
  for (int i = 0; i < effort.rounds; ++i) {
    ours.push_back(secondsOf(readAll));
    allowed.push_back(inflateAndParse());
  }
  results.push_back(ratio(fmt::format("reading {} : 1.4 inflate + 1.0 pugixml", what), 1.0,
                          {median(ours), median(allowed)}));
}

/// Copies all members of a container into an encrypted one by the zip library alone.
void encryptBare(const std::string& from, const std::string& to) {
  int error = 0;
  zip_t* source = zip_open(from.c_str(), ZIP_RDONLY, &error);
  zip_t* target = zip_open(to.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
  zip_set_default_password(target, "secret");
  const zip_int64_t count = zip_get_num_entries(source, 0);
  for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
    zip_source_t* member = zip_source_zip(target, source, i, 0, 0, 0);
    zip_file_add(target, zip_get_name(source, i, 0), member, ZIP_FL_ENC_UTF_8);
    zip_file_set_encryption(target, i, ZIP_EM_AES_256, nullptr);
  }
  zip_close(target);
  zip_discard(source);
}

/// A container into an encrypted one, by the store and by the zip library alone.
void encryptionLimit(const Effort& effort, int tables, const Folder& folder,
                     std::vector<LimitResult>& results) {
  const std::string plain = folder / "plain.qxv";
  saveDocument(*makeDocument(tables, 400), plain, {});
  const Medians medians = mediansInTurn(
      effort,
      [&] {
        ContainerReader reader(plain);
        ContainerWriter writer(folder / "encrypted.qxv", {"secret", 1});
        for (const ContainerMember& member : reader.members()) writer.copy(reader, member.name);
        writer.commit();
      },
      [&] { encryptBare(plain, folder / "bare.qxv"); });
  results.push_back(
      ratio(fmt::format("encrypting {} tables : the zip library alone", tables), 1.05, medians));
}

void openingLimits(const Effort& effort, const Folder& folder, std::vector<LimitResult>& results) {
  const std::string path = folder / "many.qxv";
  saveDocument(*makeDocument(10'000, 1), path, {});
  std::vector<double> times;
  for (int i = 0; i < effort.rounds; ++i) {
    times.push_back(secondsOf([&] { openDocument(path); }));
  }
  LimitResult result;
  result.name = "opening a document of 10,000 objects, ms";
  result.measured = median(times) * 1e3;
  result.limit = 20;
  results.push_back(result);
}

/// What opening takes for parts that are not looked at: nothing, however large they are.
void openingMemory(const Effort& effort, const Folder& folder, std::vector<LimitResult>& results) {
  const auto peakOfOpening = [&](int rows) {
    const std::string path = folder / "large.qxv";
    saveDocument(*makeDocument(10, rows), path, {});
    return peakBytesOf([&] { openDocument(path); });
  };
  peakOfOpening(1);  // whatever is loaded once
  const double small = peakOfOpening(1);
  LimitResult result;
  result.name = "opening large parts, MB beyond small ones";
  result.measured = (peakOfOpening(effort.isSmoke ? 400 : 20'000) - small) / (1 << 20);
  result.limit = 1;
  results.push_back(result);
}

}  // namespace

std::vector<LimitResult> documentLimits(const Effort& effort) {
  const Folder folder;
  std::vector<LimitResult> results;
  for (const int tables : effort.isSmoke ? std::vector<int>{5} : std::vector<int>{5, 50, 500}) {
    savingAndReading(effort, tables, folder, results);
    encryptionLimit(effort, tables, folder, results);
  }
  // What is promised is promised for 100 MB, which come last.
  constexpr std::size_t kPerSize = 4;
  for (std::size_t i = 0; i + kPerSize < results.size(); ++i) results[i].isPromised = false;
  openingLimits(effort, folder, results);
  openingMemory(effort, folder, results);
  return results;
}

}  // namespace vornwout
