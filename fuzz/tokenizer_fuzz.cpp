// Arbitrary bytes as a job, in an encoding that the first byte chooses.
//
// Properties: tokens are in order, do not overlap, lie within the job and are not empty; lines
// never go back; every place counts from 1; the texts of a token are valid; the end is always
// reached.
#include <array>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_check.h"
#include "platform/parser/tokenizer.h"

using vornwout::Encoding;
using vornwout::Token;

namespace {

void checkCommand(const vornwout::TokenizedCommand& command, std::size_t& position,
                  std::uint32_t& line) {
  VORN_FUZZ_CHECK(!command.tokens().empty() || !command.errors().empty());
  for (const Token& token : command.tokens()) {
    VORN_FUZZ_CHECK(token.offset >= position);
    VORN_FUZZ_CHECK(token.length > 0);
    VORN_FUZZ_CHECK(token.offset + token.length <= command.jobText().size());
    VORN_FUZZ_CHECK(token.line >= line);
    position = token.offset + token.length;
    line = token.line;
    const vornwout::SourcePlace place = command.place(token);
    VORN_FUZZ_CHECK(place.line == static_cast<int>(token.line) && place.column >= 1);
    const std::string_view source = command.sourceText(token);
    VORN_FUZZ_CHECK(source.find_first_of("\r\n") == std::string_view::npos);
    VORN_FUZZ_CHECK(command.text(token).size() <= source.size());
    VORN_FUZZ_CHECK((token.code != vornwout::OperatorCode::kNone) ==
                    (token.kind == vornwout::TokenKind::kOperator));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::array<std::shared_ptr<const Encoding>, 6> kEncodings = {
      Encoding::find("UTF-8"), Encoding::find("windows-1252"), Encoding::find("Shift-JIS"),
      Encoding::find("Big5"),  Encoding::find("GB18030"),      Encoding::find("EUC-KR")};
  if (size == 0) return 0;
  const vornwout::ScopedEncoding encoding(kEncodings[data[0] % kEncodings.size()]);
  const std::string job(data + 1, data + size);
  vornwout::Tokenizer tokenizer(job);
  vornwout::TokenizedCommand command;
  std::size_t position = 0;
  std::uint32_t line = 1;
  std::size_t commands = 0;
  while (tokenizer.next(command)) {
    checkCommand(command, position, line);
    VORN_FUZZ_CHECK(++commands <= job.size());
  }
  return 0;
}
