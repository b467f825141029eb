#include "runner/command_table.h"

#include <array>

#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

constexpr std::string_view kNameDetails = localizable(
    "A document's name starts with a letter and goes on with letters, digits and . _ $ # @; it is "
    "at\n"
    "most 64 bytes long and does not end with a period. Names are compared without regard to "
    "case.\n");

constexpr std::string_view kCommentDetails = localizable(
    "The command's own TEXT is the first line, each /LINE adds one; what a line does not say of\n"
    "colours and boldness, the command's own keywords say. WIDTH is the column's width in points, "
    "an\n"
    "integer from 10 to 1000. A colour is \"#\" and six hexadecimal digits or one of these names,\n"
    "written exactly so: black BLACK blue BLUE cyan CYAN DARK_GRAY darkGray gray GRAY green GREEN\n"
    "LIGHT_GRAY lightGray magenta MAGENTA orange ORANGE pink PINK red RED white WHITE yellow "
    "YELLOW.\n"
    "In a text these are replaced by the current date and time: )DATE 5-March-2024, )ADATE "
    "3/5/2024,\n"
    ")EDATE 5.3.2024, )SDATE 2024/3/5, )TIME hours from 0 to 11, )ETIME hours from 00 to 23 (ten "
    "and\n"
    "eleven o'clock come as 010 and 011).\n");

constexpr std::string_view kOpenDetails = localizable(
    "The file stands in quotes; its path may start with a file handle, written as it was declared, "
    "in\n"
    "the same case. A document is opened locked unless LOCK=NO. A password stands in quotes, "
    "readable or\n"
    "in the form that vornwout password makes.\n");

constexpr std::string_view kSaveDetails = localizable(
    "The file stands in quotes; its path may start with a file handle. NAME=* is the active "
    "document, as\n"
    "is no NAME. Without TYPE the file's extension decides: .qxw is a QXW, anything else a QXV. A\n"
    "password stands in quotes and is at most 10 bytes long, 20 with ENCRYPTEDPW=YES, which takes "
    "the form\n"
    "that vornwout password makes. It is kept in no log, and in a trace only with "
    "--trace-secrets.\n"
    "/PASSPROTECT without a PASSWORD protects nothing: the file is written readable.\n");

constexpr const char* kModifyDetails = localizable(
    "Each group begins with SELECT, which names the types of the objects to act on; IF narrows "
    "them "
    "down,\nand the other subcommands say what to do to them, in an order of their own: INDEXING, "
    "DELETEOBJECT,\nGRAPHS, OBJECTPROPERTIES, TABLE, TABLECELLS, TEXTS. Without NAME the active "
    "document is changed,\nwith NAME=ALL every open one, and so with a NAME that is empty or more "
    "than one text.\nCOMMANDS takes the names of commands in quotes, each with its runs in "
    "parentheses where they are\nmeant, and the word LAST; anything else there is no "
    "condition and narrows nothing down. A mistake in\none group leaves all documents as they are, "
    "but for two that are reported while the rest is carried\nout: a member of SIZE that is too "
    "small or no number, and a run of COMMANDS that is 0, empty or too\nlarge; without another run "
    "all runs are meant.\nDEBUG stands alone and counts as soon as it stands there. TLOOK is also "
    "the "
    "name of a file in quotes.\nSELECT of TABLECELLS is required: a list in square brackets and "
    "without "
    "commas, of any of its words, of\nlabels in quotes and of POSITION(1 2). SELECTCONDITION is "
    "also an "
    "expression over the value x in square\nbrackets, [x>5 and x<10]; APPLYTO leads from the "
    "chosen cells to others.\nSIZE takes a width and a height, each a number or PROPORTIONAL, and "
    "the "
    "unit: SIZE=2 1 INCHES, or\nPERCENT(50 50).\n");

constexpr const char* kExportDetails = localizable(
    "One document or one type of image is exported, or images beside HTML, REPORT or TEXT. Without "
    "NAME\nthe active document is exported; PRINT=ERRORS tells of failures alone, PRINT=NEVER of "
    "nothing but a\nhost that does not answer.\nDOCUMENTFILE is required with every type of "
    "document, IMAGEROOT with every type of image unless HTML,\nREPORT or TEXT stands beside it; "
    "both are paths in quotes and may start with a file handle. XLS and\nXLSX complete a name by "
    "their extension.\nSizes take a width and a height with their unit, PAGESIZE=INCHES(8.5 11), "
    "margins one number,\nTOPMARGIN=20 MM. COLUMNWIDTH is also AUTOFIT; of a border's text the "
    "first character counts. The\nTITLE of a report is a text in quotes or FILENAME, its URL is a "
    "list in parentheses of two texts each,\nwith commas between the pairs: URL=('a' 'b', 'c' 'd')."
    "\nPERCENTSIZE is above 0 and at most 200. MODIFYSHEET needs a SHEET; when there is no "
    "workbook "
    "to change\nor to add a sheet to, one is made.\n");

constexpr std::string_view kStringTableDetails = localizable(
    "Each string table makes two pivot tables, its texts and its help texts, with a column per "
    "language.\nPROCEDURE is the file of one string table, PROCEDURE='output.qbb', LANGUAGE the "
    "directory of one\nlanguage, LANGUAGE='pt_BR'; without them all tables are listed, and all "
    "languages: de, en, es, fr, it,\nja, ko, pl, pt_BR, ru, zh_CN, zh_TW. A file or directory "
    "that is missing makes tables without rows.\n");

constexpr std::array kCommands = {
    Command{"OUTPUT NEW", "outnew_", outnew_,
            localizable("Makes a new, empty output document, which takes the output from then on."),
            "", kNameDetails},
    Command{"OUTPUT NAME", "outname_", outname_,
            localizable("Gives the active output document a name."),
            "OUTPUT NAME [NAME=]name [MINIMIZED={YES | NO}].", kNameDetails},
    Command{"OUTPUT ACTIVATE", "outactiv8_", outactiv8_,
            localizable("Makes an open output document the active one."),
            "OUTPUT ACTIVATE [NAME=]{name | *} [MINIMIZED={YES | NO}].",
            localizable("The asterisk stands for the document that is active already.\n")},
    Command{"OUTPUT CLOSE", "outclose_", outclose_,
            localizable("Closes an output document, the active one (*) or all of them (ALL)."),
            "OUTPUT CLOSE [NAME=]{name | * | ALL}.",
            localizable("When the active document is closed, the one that was active before it is "
                        "active again.\n")},
    Command{"OUTPUT DISPLAY", "outdisp_", outdisp_,
            localizable("Lists the open output documents and marks the active one."), "", ""},
    Command{"OUTPUT COMMENT", "outcomnt_", outcomnt_,
            localizable("Writes lines of text into the output."), "", kCommentDetails},
    Command{"OUTPUT OPEN", "outopen_", outopen_, localizable("Opens an output document's file."),
            "", kOpenDetails},
    Command{"OUTPUT SAVE", "outsave_", outsave_, localizable("Saves an output document to a file."),
            "", kSaveDetails},
    Command{"OUTPUT MODIFY", "outmodify_", outmodify_,
            localizable("Changes objects of output documents."), "", kModifyDetails},
    Command{"OUTPUT EXPORT", "outexport_", outexport_,
            localizable("Exports an output document, or the charts and tables of one as images."),
            "", kExportDetails},
    Command{"STB PRINT", "stbprint_", stbprint_,
            localizable("Lists the texts of the string tables."), "", kStringTableDetails},
};

}  // namespace

std::span<const Command> commandTable() { return kCommands; }

const Command* findCommand(const TokenizedCommand& command) {
  const std::vector<Token>& tokens = command.tokens();
  if (tokens.size() < kNameTokens) return nullptr;
  if (tokens[0].kind != TokenKind::kWord || tokens[1].kind != TokenKind::kWord) return nullptr;
  for (const Command& known : kCommands) {
    const std::size_t blank = known.name.find(' ');
    if (AreStringsEqualCase(command.sourceText(tokens[0]), known.name.substr(0, blank)) &&
        AreStringsEqualCase(command.sourceText(tokens[1]), known.name.substr(blank + 1))) {
      return &known;
    }
  }
  return nullptr;
}

const Command* findCommand(std::string_view name) {
  for (const Command& known : kCommands) {
    if (AreStringsEqualCase(known.name, name)) return &known;
  }
  return nullptr;
}

}  // namespace vornwout
