#include "host/build/csv_reader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <vector>

#include <csv.h>

#include "host/build/build_error.h"
#include "host/build/csv_place.h"
#include "host/build/utf8_stream.h"
#include "platform/strings/localized.h"

namespace vornwout {
namespace {

constexpr std::array<char, 4> kSeparators = {',', ';', '\t', '|'};
constexpr std::size_t kBufferStep = std::size_t{64} << 10;

/// What a complaint is about, before its place is known.
struct BadRecord {
  std::uint64_t record = 0;
  std::size_t field = 0;
  std::string text;
  std::string help;
};

/// The most frequent separator of the first line outside quotes, the comma when there is none.
char detectSeparator(std::string_view text) {
  std::array<std::size_t, kSeparators.size()> counts{};
  bool quoted = false;
  for (const char c : text) {
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    if (c == '\n' || c == '\r') {
      if (std::any_of(counts.begin(), counts.end(), [](std::size_t n) { return n > 0; })) break;
      continue;
    }
    for (std::size_t i = 0; i < kSeparators.size(); ++i) counts[i] += c == kSeparators[i] ? 1 : 0;
  }
  // max_element gives the first of equals.
  return kSeparators.at(
      static_cast<std::size_t>(std::max_element(counts.begin(), counts.end()) - counts.begin()));
}

/// A line before the header that names the separator, with the end of the line.
struct SeparatorLine {
  std::size_t length = 0;  ///< 0 where there is none
  char separator = ',';
};

SeparatorLine separatorLine(std::string_view text) {
  constexpr std::string_view kStart = "sep=";
  SeparatorLine line;
  const std::string_view first = text.substr(0, text.find_first_of("\r\n"));
  if (first.size() != kStart.size() + 1 || !first.starts_with(kStart)) return line;
  if (!isCsvSeparator(first.back())) return line;
  line.separator = first.back();
  line.length = first.size();
  if (text.substr(line.length).starts_with('\r')) ++line.length;
  if (text.substr(line.length).starts_with('\n')) ++line.length;
  return line;
}

/// A record's line breaks are LF, whatever the file's are: other formats would change a CR.
std::string withLineFeeds(std::string_view field) {
  std::string result;
  result.reserve(field.size());
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\r') {
      result += field[i];
    } else if (i + 1 == field.size() || field[i + 1] != '\n') {
      result += '\n';
    }
  }
  return result;
}

int isNoBlank(unsigned char) { return 0; }

/// The parser's buffer for one field; refusing it memory is how the parser is told of a limit.
void* limitedRealloc(void* buffer, std::size_t size) {
  return size > kMaxCsvFieldBytes + kBufferStep ? nullptr : std::realloc(buffer, size);
}

/// Collects what libcsv finds into records.
class RecordCollector {
 public:
  RecordCollector(char separator, const CsvReader::Handler& handler) : handler_(handler) {
    csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI);
    csv_set_delim(&parser_, static_cast<unsigned char>(separator));
    csv_set_space_func(&parser_, isNoBlank);
    csv_set_blk_size(&parser_, kBufferStep);
    csv_set_realloc_func(&parser_, limitedRealloc);
  }
  ~RecordCollector() { csv_free(&parser_); }
  RecordCollector(const RecordCollector&) = delete;
  RecordCollector& operator=(const RecordCollector&) = delete;

  /// False when the text is no table at the byte that refusedAt() then names.
  bool add(std::string_view text) {
    hasReturns_ = hasReturns_ || text.find('\r') != std::string_view::npos;
    const std::size_t taken =
        csv_parse(&parser_, text.data(), text.size(), fieldFound, recordFound, this);
    rethrow();
    given_ += taken;
    if (taken < text.size() && csv_error(&parser_) == CSV_ENOMEM) throwTooLong();
    return taken == text.size();
  }

  /// False when a quote was never closed.
  bool finish() {
    const bool fits = csv_fini(&parser_, fieldFound, recordFound, this) == 0;
    rethrow();
    return fits;
  }

  std::uint64_t refusedAt() const { return given_; }
  std::uint64_t record() const { return record_; }
  std::size_t field() const { return ends_.size(); }

 private:
  // The parser is C: no exception may pass through it, so the first one waits for its return.
  static void fieldFound(void* bytes, std::size_t length, void* self) {
    auto* collector = static_cast<RecordCollector*>(self);
    if (collector->failure_) return;
    try {
      collector->takeField({static_cast<const char*>(bytes), length});
    } catch (...) {
      collector->failure_ = std::current_exception();
    }
  }

  static void recordFound(int, void* self) {
    auto* collector = static_cast<RecordCollector*>(self);
    if (collector->failure_) return;
    try {
      collector->takeRecord();
    } catch (...) {
      collector->failure_ = std::current_exception();
    }
  }

  void takeField(std::string_view field) {
    if (field.size() > kMaxCsvFieldBytes) throwTooLong();
    if (ends_.size() == kMaxCsvColumns) {
      throw BadRecord{
          record_, ends_.size(), localized("There are more than ^1 columns.", kMaxCsvColumns), {}};
    }
    if (!hasReturns_ || field.find('\r') == std::string_view::npos) {
      text_ += field;
    } else {
      text_ += withLineFeeds(field);
    }
    ends_.push_back(text_.size());
  }

  void takeRecord() {
    if (record_ == 0) columns_ = ends_.size();
    if (ends_.size() != columns_) {
      throw BadRecord{
          record_, ends_.size() > columns_ ? columns_ : 0,
          ends_.size() == 1
              ? localized("This row has 1 field, the header has ^1.", columns_)
              : localized("This row has ^1 fields, the header has ^2.", ends_.size(), columns_),
          localized("A field with the separator or a line break in it needs quotes around it.")};
    }
    fields_.clear();
    std::size_t start = 0;
    for (const std::size_t end : ends_) {
      fields_.push_back(std::string_view(text_).substr(start, end - start));
      start = end;
    }
    handler_(record_, fields_);
    ++record_;
    text_.clear();
    ends_.clear();
  }

  [[noreturn]] void throwTooLong() const {
    throw BadRecord{record_, ends_.size(), localized("The field is longer than 16 MiB."),
                    localized("Look whether a quote is missing at its end.")};
  }

  void rethrow() {
    if (failure_) std::rethrow_exception(failure_);
  }

  csv_parser parser_{};
  const CsvReader::Handler& handler_;
  std::exception_ptr failure_;
  std::string text_;               ///< of the record's fields, one behind the other
  std::vector<std::size_t> ends_;  ///< of the fields in text_
  std::vector<std::string_view> fields_;
  bool hasReturns_ = false;  ///< somewhere in what was read so far
  std::uint64_t record_ = 0;
  std::size_t columns_ = 0;
  std::uint64_t given_ = 0;
};

}  // namespace

bool isCsvSeparator(char c) {
  return std::find(kSeparators.begin(), kSeparators.end(), c) != kSeparators.end();
}

CsvReader::CsvReader(ByteSource& source, std::string file, CsvOptions options)
    : source_(source), file_(std::move(file)), options_(std::move(options)) {
  if (!Utf8Stream::isKnown(options_.encoding)) {
    throw BuildError(
        file_, {}, localized("There is no encoding ^1.", options_.encoding),
        localized("UTF-8, UTF-16, windows-1252 and Shift-JIS are some of those there are."));
  }
}

SourcePlace CsvReader::placeOf(std::uint64_t record, std::size_t field) {
  return placeOfField(source_, form(), record, field);
}

void CsvReader::read(const Handler& handler) {
  const auto refuseAt = [&](std::uint64_t offset, const std::string& text,
                            const std::string& help) {
    throw BuildError(file_, placeOfOffset(source_, form(), offset), text, help);
  };
  std::uint64_t given = 0;
  try {
    Utf8Stream stream(source_, options_.encoding);
    std::string_view text = stream.next();
    const SeparatorLine line = separatorLine(text);
    preamble_ = line.length;
    given = line.length;
    text.remove_prefix(line.length);
    separator_ = options_.separator ? *options_.separator
                 : line.length > 0  ? line.separator
                                    : detectSeparator(text);
    if (text.empty()) text = stream.next();
    RecordCollector collector(separator_, handler);
    for (; !text.empty(); text = stream.next()) {
      if (!collector.add(text)) {
        const std::uint64_t refused = preamble_ + collector.refusedAt();
        const bool isQuote = text[static_cast<std::size_t>(refused - given)] == '"';
        refuseAt(refused,
                 isQuote ? localized("A quote stands within a field that does not start with one.")
                         : localized("Something stands behind the quote that closes the field."),
                 localized("Put the whole field in quotes and double the quotes within it."));
      }
      given += text.size();
    }
    if (!collector.finish()) {
      throw BadRecord{collector.record(), collector.field(),
                      localized("The quote that opens this field is never closed."),
                      "Put a quote at the field's end; within it quotes are doubled."};
    }
    if (collector.record() == 0) {
      throw BuildError(file_, {1, 1}, localized("The file is empty."),
                       localized("Its first line names the columns."));
    }
  } catch (const BadRecord& bad) {
    throw BuildError(file_, placeOf(bad.record, bad.field), bad.text, bad.help);
  } catch (const InvalidByte& invalid) {
    refuseAt(given + invalid.before.size(), invalid.what,
             localized("Say in which encoding the file is, or save it as UTF-8."));
  }
}

}  // namespace vornwout
