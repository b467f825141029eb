#include "host/build/csv_place.h"

#include "host/build/utf8_stream.h"

namespace vornwout {
namespace {

/// Counts lines and characters.
class PlaceCounter {
 public:
  void step(char c) {
    if (c == '\n' && lastWasReturn_) {
      lastWasReturn_ = false;
      return;
    }
    lastWasReturn_ = c == '\r';
    if (c == '\r' || c == '\n') {
      ++line_;
      column_ = 1;
    } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
      ++column_;
    }
  }

  SourcePlace place() const { return {line_, column_}; }

 private:
  int line_ = 1;
  int column_ = 1;
  bool lastWasReturn_ = false;
};

/// Counts records and fields as libcsv does.
class FieldCounter {
 public:
  explicit FieldCounter(char separator) : separator_(separator) {}

  /// True when a field starts at `c`, which may be its empty content's end.
  bool startsField(char c) const {
    return atFieldStart_ && (field_ > 0 || (c != '\r' && c != '\n'));
  }
  std::uint64_t record() const { return record_; }
  std::size_t field() const { return field_; }

  void step(char c) {
    const bool isEnd = c == '\r' || c == '\n';
    if (atFieldStart_ && c == '"') {
      quoted_ = true;
      atFieldStart_ = false;
    } else if (quoted_) {
      // A doubled quote leaves the quotes and enters them again.
      if (c == '"') quoted_ = false;
    } else if (c == '"') {
      quoted_ = true;
    } else if (c == separator_) {
      ++field_;
      atFieldStart_ = true;
    } else if (isEnd) {
      if (!atFieldStart_ || field_ > 0) {
        ++record_;
        field_ = 0;
        atFieldStart_ = true;
      }
    } else {
      atFieldStart_ = false;
    }
  }

 private:
  char separator_;
  bool atFieldStart_ = true;
  bool quoted_ = false;
  std::uint64_t record_ = 0;
  std::size_t field_ = 0;
};

/// Gives every character to `visit` until it returns false, or the text ends or is none.
template <typename Visit>
void walk(ByteSource& source, const CsvTextForm& form, Visit visit) {
  Utf8Stream stream(source, form.encoding);
  const auto visitAll = [&](std::string_view text) {
    for (const char c : text) {
      if (!visit(c)) return false;
    }
    return true;
  };
  try {
    for (std::string_view text = stream.next(); !text.empty(); text = stream.next()) {
      if (!visitAll(text)) return;
    }
  } catch (const InvalidByte& invalid) {
    visitAll(invalid.before);
  }
}

}  // namespace

SourcePlace placeOfOffset(ByteSource& source, const CsvTextForm& form, std::uint64_t offset) {
  PlaceCounter places;
  std::uint64_t at = 0;
  walk(source, form, [&](char c) {
    if (at++ == offset) return false;
    places.step(c);
    return true;
  });
  return places.place();
}

SourcePlace placeOfField(ByteSource& source, const CsvTextForm& form, std::uint64_t record,
                         std::size_t field) {
  PlaceCounter places;
  FieldCounter fields(form.separator);
  std::size_t at = 0;
  walk(source, form, [&](char c) {
    if (at++ < form.preamble) {
      places.step(c);
      return true;
    }
    if (fields.startsField(c) && fields.record() == record && fields.field() == field) return false;
    fields.step(c);
    places.step(c);
    return true;
  });
  return places.place();
}

}  // namespace vornwout
